// The desktop program: the screens in windows.
#include <iostream>

#include "apps/Program.h"
#include "base/Errors.h"
#include "desktop/Desk.h"

namespace quillon::apps {
namespace {

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
  try {
    desktop::Desk desk(count, words);
    const std::vector<std::string_view> arguments(words + 1, words + count);
    apps::runProgram(desk, arguments);
    return 0;
  } catch (const apps::UsageError& error) {
    std::cerr << "quillon: " << error.what() << "\nusage: quillon [FOLDER] [--settings DIR]\n";
    return 2;
  } catch (const std::exception& error) {
    std::cerr << "quillon: " << error.what() << '\n';
    return 1;
  }
}
