#include "apps/Program.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>

#include "base/Errors.h"
#include "ledger/Screens.h"
#include "shell/Start.h"

namespace quillon::apps {
namespace {

// They belong to parts of the program that are not there yet.
constexpr std::array<std::string_view, 3> kNotHere = {"--printer", "--print-to", "--paper"};

// The first line of a file.
std::string passwordIn(const std::string& path) {
  std::ifstream file(path);
  std::string line;
  if (!std::getline(file, line)) throw Error("cannot read a password from " + path);
  if (line.ends_with('\r')) line.pop_back();
  return line;
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
  } else {
    options.given.today = Date::parseIso(value);
    if (!options.given.today) throw UsageError("--today takes a day as YYYY-MM-DD, not " + value);
  }
}

}  // namespace

ProgramOptions readProgramOptions(Arguments arguments) {
  constexpr std::array<std::string_view, 6> kKnown = {"--today",    "--country", "--date-format",
                                                      "--settings", "--user",    "--password-file"};
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

Program::Program(const ProgramOptions& options, form::Person& person)
    : desktop_(machine_, options.given), session_(environment_.get(), person, desktop_), input_(session_.app()) {
  session_.credentials = options.credentials;
  shell::registerScreens(session_);
  ledger::registerScreens(session_);
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
