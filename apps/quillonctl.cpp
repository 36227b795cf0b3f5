#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

#include "apps/BackupCommand.h"
#include "apps/Command.h"
#include "apps/CreateCommand.h"
#include "apps/ExportCommand.h"
#include "apps/ImportCommand.h"
#include "apps/MaintainCommands.h"
#include "apps/ProbeCommand.h"
#include "apps/SqlCommand.h"
#include "apps/VerifyCommand.h"
#include "apps/drive/DriveCommand.h"
#include "base/Errors.h"

// The command line tool. A word of the table below for each thing it does.
namespace quillon::apps {
namespace {

constexpr Command kCommands[] = {
    {"drive",
     "[FOLDER] [--settings DIR] [--user NAME --password-file FILE] [--today YYYY-MM-DD] [--country NAME] "
     "[--date-format FMT] [--printer none|letter|a4] [--print-to DIR] [--paper letter|a4]",
     "the program without a window, driven by lines of JSON; docs/DRIVE.md tells them", driveCommand},
    {"create",
     "FOLDER [--sample | --name TEXT --chart service|trade|manufacturing [--year YYYY] [--currency NAME]] "
     "[--country NAME] [--today YYYY-MM-DD]",
     "make a new company: its tables without data, or set up for work, or the sample company", createCommand},
    {"sql", "FOLDER [STATEMENT] [--json] [--keep-going] [LOGIN]",
     "run statements, from standard input without STATEMENT", sqlCommand},
    {"import", "FOLDER TABLE FILE [LOGIN]",
     "add the rows of a file with tabs between its cells to a table; all or none", importCommand},
    {"export", "FOLDER TABLE [LOGIN]", "print a table as import reads it", exportCommand},
    {"verify", "FOLDER", "check every table of the company folder; changes nothing", verifyCommand},
    {"repair", "FOLDER [TABLE...] [LOGIN]", "save what can be read of damaged tables; alone in the folder",
     repairCommand},
    {"optimize", "FOLDER [TABLE...] [LOGIN]",
     "make tables smaller and faster, and keep a copy of the old; alone in the folder", optimizeCommand},
    {"backup", "FOLDER [TO] [--user NAME --password-file FILE]",
     "copy a company, by itself into the folder of the day of the week; alone in the folder", backupCommand},
    {"probe", "FOLDER", "try whether several processes can share the folder", probeCommand},
};

void printHelp(std::ostream& out) {
  out << "usage: quillonctl COMMAND ...\n\n";
  for (const Command& command : kCommands)
    out << "  " << command.name << ' ' << command.arguments << "   " << command.purpose << '\n';
  out << "  --help   this text\n"
         "  --version   the version of Quillon\n\n"
         "LOGIN, in a company that has users: --user NAME --password-file FILE, of one who has the right Security; "
         "the\n"
         "password is the first line of the file.\n"
         "Exit status: 0 done; 1 refused or failed, with the reason on standard error; 2 called wrongly.\n";
}

ExitStatus fail(const std::string& reason) {
  std::string line = reason;
  std::ranges::replace_if(
      line, [](char c) { return c == '\n' || c == '\r'; }, ' ');
  std::cerr << "quillonctl: " << line << '\n';
  return ExitStatus::failed;
}

ExitStatus misused(const std::string& reason, std::string_view usage) {
  std::cerr << "quillonctl: " << reason << "\nusage: quillonctl " << usage << '\n';
  return ExitStatus::usage;
}

ExitStatus runCommand(const Command& command, Arguments arguments) try {
  return command.run(arguments);
} catch (const UsageError& error) {
  return misused(error.what(), std::string(command.name).append(" ").append(command.arguments));
} catch (const Abort&) {
  return ExitStatus::failed;
} catch (const std::exception& error) {
  return fail(error.what());
}

ExitStatus dispatch(Arguments words) {
  constexpr std::string_view kUsage = "COMMAND ...; quillonctl --help lists the commands";
  if (words.empty()) return misused("no command", kUsage);
  if (words.front() == "--help" || words.front() == "--version") {
    if (words.size() > 1) return misused(std::string(words.front()).append(" stands alone"), kUsage);
    if (words.front() == "--help")
      printHelp(std::cout);
    else
      std::cout << "quillonctl " QUILLON_VERSION "\n";
    return ExitStatus::done;
  }
  const auto* command = std::ranges::find(kCommands, words.front(), &Command::name);
  if (command == std::end(kCommands)) return misused("no command \"" + std::string(words.front()) + '"', kUsage);
  // An unset variable of a script; a folder by that name would be the root of all.
  if (std::ranges::count(words, std::string_view())) return misused("an empty word", kUsage);
  return runCommand(*command, words.subspan(1));
}

}  // namespace
}  // namespace quillon::apps

int main(int count, char** words) {
  using namespace quillon::apps;
  // A reader that went away is a failed write, not the end of a process that may be inside the store.
  std::signal(SIGPIPE, SIG_IGN);
  const std::vector<std::string_view> arguments(words + std::min(count, 1), words + count);
  ExitStatus status = dispatch(arguments);
  errno = 0;
  if (!std::cout.flush() && status == ExitStatus::done)
    status = fail(std::string("cannot write the answer: ") + (errno ? std::strerror(errno) : "output closed"));
  return static_cast<int>(status);
}
