#pragma once

#include <functional>
#include <string>

#include "bench/Report.h"
#include "bench/Timing.h"
#include "bench/forms/CountedDisk.h"
#include "form/Input.h"
#include "shell/Session.h"
#include "support/ScriptedPerson.h"
#include "support/SimDesktop.h"

namespace quillon::bench {

// Makes the company that is worked on: `rows` accounts and as many vouchers, of which one in 1,000 passes the filter,
// and voucher number kLongVoucher with 1,000 lines.
inline constexpr int kLongVoucher = 7;
void makeCompany(const std::string& folder, std::int64_t rows);

// The program on that company, and hands to work with.
class Office {
 public:
  Office(const std::string& folder, Report& report);
  ~Office() { session.detach(); }
  form::App& app() { return session.app(); }
  form::Control& control(const char* screen, const char* name);
  void set(const char* screen, const char* name, const std::string& text);
  void click(const char* screen, const char* name);
  // What a window shows of a grid: the rows around the active one. Gives how many.
  std::size_t look(const char* screen, const char* grid);

  // Median milliseconds and mean syncs of an action that `undo` puts back; one round before them is not counted.
  void measure(const std::string& name, int rounds, const std::function<void()>& action,
               const std::function<void()>& undo, const std::string& note = {});

  CountedDisk disk;
  sim::ScriptedPerson person;
  sim::SimDesktop desktop;
  shell::Session session;
  form::Input input;

 private:
  Report& report_;
};

void vouchers(Office& office);
void lists(Office& office, std::int64_t rows);

}  // namespace quillon::bench
