#include "apps/Program.h"

#include <algorithm>
#include <array>

#include "base/Errors.h"
#include "ledger/Screens.h"
#include "store/Cursor.h"
#include "store/Database.h"

namespace quillon::apps {
namespace {

// They belong to parts of the program that are not there yet.
constexpr std::array<std::string_view, 6> kNotHere = {"--settings", "--user",     "--password-file",
                                                      "--printer",  "--print-to", "--paper"};

void take(ProgramOptions& options, std::string_view option, const std::string& value) {
  if (value.empty()) throw UsageError(std::string(option) + " needs a value");
  if (option == "--country") {
    options.given.country = value;
  } else if (option == "--date-format") {
    options.given.dateFormat = value;
  } else {
    options.given.today = Date::parseIso(value);
    if (!options.given.today) throw UsageError("--today takes a day as YYYY-MM-DD, not " + value);
  }
}

}  // namespace

ProgramOptions readProgramOptions(Arguments arguments) {
  constexpr std::array<std::string_view, 3> kKnown = {"--today", "--country", "--date-format"};
  ProgramOptions options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view word = arguments[i];
    if (!word.starts_with("--")) {
      options.words.emplace_back(word);
      continue;
    }
    const std::size_t mark = std::min(word.find('='), word.size());
    const std::string_view option = word.substr(0, mark);
    if (std::ranges::count(kNotHere, option))
      throw Error("this version does not have the option " + std::string(option));
    if (!std::ranges::count(kKnown, option)) throw UsageError("there is no option " + std::string(option));
    if (mark < word.size())
      take(options, option, std::string(word.substr(mark + 1)));
    else
      take(options, option, ++i < arguments.size() ? std::string(arguments[i]) : std::string());
  }
  return options;
}

Program::Program(const platform::Given& given, const std::string& folder, form::Person& person)
    : desktop_(machine_, given),
      session_(environment_.get(), person,
               {.formats = {.date = desktop_.shortDateFormat(),
                            .numbers = desktop_.separators(),
                            .today = [this] { return desktop_.today(); }},
                .country = desktop_.countryName(),
                .userName = desktop_.userName()}),
      input_(session_.app()) {
  shell::registerScreens(session_);
  ledger::registerScreens(session_);
  if (!folder.empty()) {
    session_.openCompany(folder);
    store::Cursor users(session_.database(), "Users");
    users.open();
    if (!users.isEmpty()) throw Error("This company has users, and this version cannot log them in yet");
  }
  main_ = &app().open("TfrmQuillon");
}

void Program::end() {
  session_.closeCompany();
  main_ = nullptr;
}

}  // namespace quillon::apps
