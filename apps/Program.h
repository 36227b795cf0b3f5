#pragma once

#include <optional>
#include <string>
#include <vector>

#include "apps/Command.h"
#include "apps/LocalEnvironment.h"
#include "form/Input.h"
#include "platform/GivenDesktop.h"
#include "platform/LinuxDesktop.h"
#include "shell/Session.h"

namespace quillon::apps {

// What the command line says about the program that is started.
struct ProgramOptions {
  std::vector<std::string> words;  // those that are no options, in order
  platform::Given given;
  std::optional<shell::Credentials> credentials;
};

// The options that all programs with screens have, each given as "--today=X" or "--today X".
inline constexpr std::string_view kProgramOptions[] = {"--settings", "--user",     "--password-file",
                                                       "--today",    "--country",  "--date-format",
                                                       "--printer",  "--print-to", "--paper"};

// The value of --today. UsageError.
Date dayOf(const std::string& value);
// UsageError, and Error for a password file that cannot be read.
ProgramOptions readProgramOptions(Arguments arguments);
// The words without those of the options that are not `read`, so that a script may give the same ones to every command.
// UsageError and Error for the ones left out, too.
std::vector<std::string_view> withoutIdleOptions(Arguments arguments, Arguments read);

// The program put together: the desktop, the store, all screens, and the main window, before whoever sits in front.
class Program {
 public:
  // With the main window on view, and the splash. Error when the program's folders cannot be made.
  Program(const ProgramOptions& options, form::Person& person);

  // What comes before the person may begin: the welcome, or the company and the login. A folder given skips the
  // welcome.
  void start(const std::string& folder);

  shell::Session& session() { return session_; }
  form::App& app() { return session_.app(); }
  form::Screen& mainWindow() { return *main_; }
  bool isOver() const { return main_ == nullptr || !main_->visible(); }
  form::Input& input() { return input_; }
  // Frees every screen, undoing what is edited, and closes the company.
  void end();

 private:
  platform::LinuxDesktop machine_;
  platform::GivenDesktop desktop_;
  LocalEnvironment environment_;
  shell::Session session_;
  form::Input input_;
  form::Screen* main_ = nullptr;
};

}  // namespace quillon::apps
