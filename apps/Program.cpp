#include "apps/Program.h"

#include <algorithm>
#include <array>
#include <filesystem>

#include "apps/GivenLogin.h"
#include "base/Errors.h"
#include "base/Text.h"
#include "ledger/Screens.h"
#include "maintenance/Screens.h"
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
    options.given.today = Date::parseIso(value);
    if (!options.given.today) throw UsageError("--today takes a day as YYYY-MM-DD, not " + value);
  }
}

}  // namespace

ProgramOptions readProgramOptions(Arguments arguments) {
  constexpr std::array<std::string_view, 9> kKnown = {"--settings", "--user",     "--password-file",
                                                      "--today",    "--country",  "--date-format",
                                                      "--printer",  "--print-to", "--paper"};
  ProgramOptions options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view word = arguments[i];
    if (!word.starts_with("--")) {
      options.words.emplace_back(word);
      continue;
    }
    const std::size_t mark = std::min(word.find('='), word.size());
    const std::string_view option = word.substr(0, mark);
    if (!std::ranges::count(kKnown, option)) throw UsageError("there is no option " + std::string(option));
    if (mark < word.size())
      take(options, option, std::string(word.substr(mark + 1)));
    else
      take(options, option, ++i < arguments.size() ? std::string(arguments[i]) : std::string());
  }
  return options;
}

Program::Program(const ProgramOptions& options, form::Person& person)
    : desktop_(machine_, options.given), session_(environment_.get(), person, desktop_), input_(session_.app()) {
  session_.credentials = options.credentials;
  shell::registerScreens(session_);
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
