#pragma once

#include <functional>
#include <memory>

namespace quillon::form {
class App;
class Person;
}  // namespace quillon::form

namespace quillon::platform {
class Desktop;
}

namespace quillon::desktop {

// The connection to the desktop's windows; one in a process.
class Desk {
 public:
  // Takes the words that are the toolkit's own off the command line. Ends the process, with words on standard error,
  // where there is no display.
  Desk(int& count, char** words);
  ~Desk();
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;

  form::Person& person();
  // Shows the program's screens and passes on what people do until it is over. `start` runs once they are on view.
  void run(form::App& app, platform::Desktop& desktop, const std::function<void()>& start,
           const std::function<bool()>& isOver);

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quillon::desktop
