#include "apps/Program.h"

#include <algorithm>
#include <filesystem>

#include "apps/GivenLogin.h"
#include "base/Errors.h"
#include "base/Text.h"
#include "ledger/Screens.h"
#include "maintenance/Screens.h"
#include "reports/Screens.h"
#include "shell/Start.h"

namespace quillon::apps {
namespace {

platform::Paper paperOf(std::string_view option, const std::string& value) {
  if (equalFolded(value, "a4")) return platform::Paper::a4;
  if (equalFolded(value, "letter")) return platform::Paper::other;
  throw UsageError(std::string(option) + " takes letter or a4" + (option == "--printer" ? ", or none" : "") + ", not " +
                   value);
}

// A printer of its own, with a name that says what paper is in it; or none.
platform::Printer printerOf(std::string_view option, const std::string& value) {
  if (equalFolded(value, "none")) return {};
  return {.name = foldCase(value), .paper = paperOf(option, value)};
}

void take(ProgramOptions& options, std::string_view option, const std::string& value) {
  if (value.empty()) throw UsageError(std::string(option) + " needs a value");
  if (option == "--country") {
    options.given.country = value;
  } else if (option == "--date-format") {
    options.given.dateFormat = value;
  } else if (option == "--settings") {
    options.given.folder = std::filesystem::absolute(value).lexically_normal();
  } else if (option == "--user" || option == "--password-file") {
    if (!options.credentials) options.credentials.emplace();
    (option == "--user" ? options.credentials->userName : options.credentials->password) =
        option == "--user" ? value : passwordIn(value);
  } else if (option == "--printer") {
    options.given.printer = printerOf(option, value);
  } else if (option == "--print-to") {
    options.given.printTo = value;
  } else if (option == "--paper") {
    options.given.paper = paperOf(option, value);
  } else {
    options.given.today = dayOf(value);
  }
}

std::string_view optionOf(std::string_view word) { return word.substr(0, word.find('=')); }

// The value of the option at `at`; moves `at` to its last word.
std::string takeValue(Arguments arguments, std::size_t& at) {
  const std::string_view word = arguments[at];
  const std::size_t mark = word.find('=');
  if (mark != word.npos) return std::string(word.substr(mark + 1));
  return ++at < arguments.size() ? std::string(arguments[at]) : std::string();
}

}  // namespace

Date dayOf(const std::string& value) {
  const auto day = Date::parseIso(value);
  if (!day) throw UsageError("--today takes a day as YYYY-MM-DD, not " + value);
  return *day;
}

ProgramOptions readProgramOptions(Arguments arguments) {
  ProgramOptions options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view word = arguments[i], option = optionOf(word);
    if (!word.starts_with("--")) {
      options.words.emplace_back(word);
      continue;
    }
    if (!std::ranges::count(kProgramOptions, option)) throw UsageError("there is no option " + std::string(option));
    take(options, option, takeValue(arguments, i));
  }
  return options;
}

std::vector<std::string_view> withoutIdleOptions(Arguments arguments, Arguments read) {
  ProgramOptions idle;
  std::vector<std::string_view> left;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view option = optionOf(arguments[i]);
    if (std::ranges::count(kProgramOptions, option) && !std::ranges::count(read, option))
      take(idle, option, takeValue(arguments, i));
    else
      left.push_back(arguments[i]);
  }
  return left;
}

Program::Program(const ProgramOptions& options, form::Person& person)
    : desktop_(machine_, options.given),
      environment_(options.given.today),
      session_(environment_.get(), person, desktop_),
      input_(session_.app()) {
  session_.credentials = options.credentials;
  shell::registerScreens(session_);
  reports::registerScreens(session_);
  ledger::registerScreens(session_);
  maintenance::registerScreens(session_);
  shell::prepareStart(session_);
  app().open("TfrmSplash");
  main_ = &app().open("TfrmQuillon");
}

void Program::start(const std::string& folder) {
  app().run(*main_, "frmQuillon", [&] {
    if (!shell::enterAtStart(session_, folder, folder.empty())) app().dismiss(*main_);
  });
}

void Program::end() {
  session_.detach();
  main_ = nullptr;
}

}  // namespace quillon::apps
