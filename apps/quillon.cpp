// The desktop program: the screens in windows.
#include <algorithm>
#include <iostream>
#include <string_view>
#include <vector>

#include "apps/Program.h"
#include "base/Errors.h"
#include "desktop/Desk.h"

namespace quillon::apps {
namespace {

constexpr const char* kUsage = "usage: quillon [FOLDER] [OPTION...]\n";
constexpr const char* kHelp =
    "\n"
    "Opens the company in FOLDER, or the one that was open last. The first time it asks what to begin with.\n"
    "\n"
    "  --settings DIR                        folder of the settings file, in place of the user's own\n"
    "  --user NAME --password-file FILE      log in so, in place of being asked\n"
    "  --today YYYY-MM-DD                    work as on that day\n"
    "  --country NAME, --date-format FMT     in place of the desktop's\n"
    "  --printer none|letter|a4, --paper letter|a4, --print-to DIR\n"
    "                                        a printer of its own, whose jobs land in DIR\n"
    "  --help                                this text\n"
    "\n"
    "The window's toolkit has options of its own, such as -platform NAME and -style NAME. Keys, menus and colours are\n"
    "in the manual: Help in the main window, or F1 in any.\n";

void runProgram(desktop::Desk& desk, Arguments arguments) {
  const ProgramOptions options = readProgramOptions(arguments);
  if (options.words.size() > 1) throw UsageError("one company folder at most");
  Program program(options, desk.person());
  desk.run(
      program.app(), program.session().desktop(),
      [&] { program.start(options.words.empty() ? std::string() : options.words.front()); },
      [&] { return program.isOver(); });
  program.end();
}

}  // namespace
}  // namespace quillon::apps

int main(int count, char** words) {
  using namespace quillon;
  const auto asksHelp = [](std::string_view word) { return word == "--help" || word == "-h"; };
  if (std::any_of(words + 1, words + count, asksHelp)) {
    std::cout << apps::kUsage << apps::kHelp;
    return 0;
  }
  try {
    desktop::Desk desk(count, words);
    const std::vector<std::string_view> arguments(words + 1, words + count);
    apps::runProgram(desk, arguments);
    return 0;
  } catch (const apps::UsageError& error) {
    std::cerr << "quillon: " << error.what() << '\n' << apps::kUsage;
    return 2;
  } catch (const std::exception& error) {
    std::cerr << "quillon: " << error.what() << '\n';
    return 1;
  }
}
