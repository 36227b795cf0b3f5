// The desktop program: the screens in windows.
#include <QApplication>
#include <QTimer>
#include <iostream>

#include "apps/Program.h"
#include "base/Errors.h"
#include "desktop/Front.h"
#include "desktop/QtPerson.h"

namespace quillon::apps {
namespace {

int runProgram(Arguments arguments) {
  const ProgramOptions options = readProgramOptions(arguments);
  if (options.words.size() > 1) throw UsageError("one company folder at most");
  desktop::QtPerson person;
  Program program(options, person);
  desktop::Front front(program.app());
  person.sitBefore(front, program.session().desktop());
  front.sync();
  QTimer::singleShot(0, [&] {
    program.start(options.words.empty() ? std::string() : options.words.front());
    front.sync();
  });
  QApplication::setQuitOnLastWindowClosed(false);
  QEventLoop loop;
  while (!program.isOver()) loop.processEvents(QEventLoop::WaitForMoreEvents);
  program.end();
  return 0;
}

}  // namespace
}  // namespace quillon::apps

int main(int count, char** words) {
  QApplication application(count, words);
  QApplication::setApplicationName("quillon");
  const std::vector<std::string_view> arguments(words + 1, words + count);
  try {
    return quillon::apps::runProgram(arguments);
  } catch (const quillon::apps::UsageError& error) {
    std::cerr << "quillon: " << error.what() << "\nusage: quillon [FOLDER] [--settings DIR]\n";
    return 2;
  } catch (const std::exception& error) {
    std::cerr << "quillon: " << error.what() << '\n';
    return 1;
  }
}
