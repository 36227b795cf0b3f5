#include "apps/drive/DriveCommand.h"

#include <unistd.h>

#include <iostream>

#include "apps/Program.h"
#include "apps/drive/DrivePerson.h"

namespace quillon::apps {

ExitStatus driveCommand(Arguments arguments) {
  const ProgramOptions options = readProgramOptions(arguments);
  if (options.words.size() > 1) throw UsageError("drive takes at most one folder");
  Lines in(STDIN_FILENO);
  DrivePerson person(in, std::cout);
  Program program(options, person);
  person.serve(program, options.words.empty() ? std::string() : options.words.front());
  return ExitStatus::done;
}

}  // namespace quillon::apps
