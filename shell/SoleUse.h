#pragma once

#include <string>

namespace quillon::form {
class Screen;
}

namespace quillon::shell {

class Session;

// Why the company cannot be had alone.
std::string notAlone();
inline constexpr const char* kFormsOpen = "All forms must be closed before running this option";

// The company for this process alone, for the commands of maintenance: nobody else has it open, and no screen stands on
// it. One test on the table Company answers for all of it, because whoever works in a company has that table open.
//
// While it lives the company's database is closed, and its screens are freed; the command works on the files. Its end
// opens the company again, whatever happened; where that cannot be the person is told, and the menus are off.
class SoleUse {
 public:
  // `own`: the screen whose command this is, which stays open, as the calendar and the dialler may. Error with
  // notAlone() or kFormsOpen, or the store's, with the company open as before.
  explicit SoleUse(Session& session, const form::Screen* own = nullptr);
  ~SoleUse();
  SoleUse(const SoleUse&) = delete;
  SoleUse& operator=(const SoleUse&) = delete;

  // The program ends: the company is not opened again.
  void stayClosed() { reopens_ = false; }

 private:
  Session& session_;
  std::string folder_;
  bool reopens_ = true;
};

}  // namespace quillon::shell
