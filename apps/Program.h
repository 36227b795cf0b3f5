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
};

// Reads the options that all programs with screens have: --today, --country, --date-format, each as "--today=X" or
// "--today X". UsageError, or Error for those that this version does not have.
ProgramOptions readProgramOptions(Arguments arguments);

// The program put together: the desktop, the store, all screens, and the main window, before whoever sits in front.
class Program {
 public:
  // Error when the company cannot be opened, and, since nobody can log in yet, when it has users. An empty folder:
  // none.
  Program(const platform::Given& given, const std::string& folder, form::Person& person);

  shell::Session& session() { return session_; }
  form::App& app() { return session_.app(); }
  form::Screen& mainWindow() { return *main_; }
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
