#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

#include "apps/AuditCommand.h"
#include "apps/BackupCommand.h"
#include "apps/Command.h"
#include "apps/CreateCommand.h"
#include "apps/ExportCommand.h"
#include "apps/ImportCommand.h"
#include "apps/MaintainCommands.h"
#include "apps/ProbeCommand.h"
#include "apps/Program.h"
#include "apps/ReportCommand.h"
#include "apps/SqlCommand.h"
#include "apps/VerifyCommand.h"
#include "apps/drive/DriveCommand.h"
#include "base/Errors.h"

// The command line tool. A word of the table below for each thing it does.
namespace quillon::apps {
namespace {

constexpr std::string_view kLogin[] = {"--user", "--password-file"};
constexpr std::string_view kLoginAndDay[] = {"--user", "--password-file", "--today"};
constexpr std::string_view kPlaceAndDay[] = {"--country", "--today"};

constexpr Command kCommands[] = {
    {"drive",
     "[FOLDER] [--settings DIR] [--user NAME --password-file FILE] [--today YYYY-MM-DD] [--country NAME] "
     "[--date-format FMT] [--printer none|letter|a4] [--print-to DIR] [--paper letter|a4]",
     "the program without a window, driven by lines of JSON; docs/DRIVE.md tells them", driveCommand,
     "Reads a request a line from standard input and writes a reply a line. With FOLDER that company is opened first.",
     kProgramOptions, true},
    {"create",
     "FOLDER [--sample | --name TEXT --chart service|trade|manufacturing [--year YYYY] [--currency NAME]] "
     "[--country NAME] [--today YYYY-MM-DD]",
     "make a new company: its tables without data, or set up for work, or the sample company", createCommand,
     "Makes the folder where it is not there. A folder that is a company already is refused.", kPlaceAndDay, true},
    {"sql", "FOLDER [STATEMENT] [--json] [--keep-going] [--today YYYY-MM-DD] [LOGIN]",
     "run statements, from standard input without STATEMENT", sqlCommand,
     "Statements are ended by semicolons. Rows come as TSV under a line of names, with --json as JSON lines. The "
     "first\n"
     "statement that fails ends the run, with --keep-going none does. CURRENT_DATE is the day that --today gives.",
     kLoginAndDay, true},
    {"import", "FOLDER TABLE FILE [LOGIN]",
     "add the rows of a file with tabs between its cells to a table; all or none", importCommand,
     "The first line names the fields. \\N is null; \\t, \\n, \\r and \\\\ stand for what they say.", kLogin},
    {"export", "FOLDER TABLE [LOGIN]", "print a table as import reads it", exportCommand,
     "Rows come in the order in which they were added.", kLogin},
    {"report", "FOLDER NAME [KEY=VALUE...] --pdf FILE | --xlsx FILE | --text [LOGIN]",
     "run a report; a name that there is not is answered with those there are", reportCommand,
     "filter=CONDITION and order=FIELDS say which rows and how sorted, in the names of the report's list; other keys "
     "are\n"
     "those of the report.",
     kProgramOptions, true},
    {"verify", "FOLDER", "check every table of the company folder; changes nothing", verifyCommand,
     "Prints a line for each table with its faults under it. A fault is a failure."},
    {"audit", "FOLDER [LOGIN]", "work the ledger out anew from its vouchers and history; changes nothing", auditCommand,
     "Prints each stored value that disagrees with what it follows from, and under a heading of its own entry that "
     "was\n"
     "interrupted or is going on. A disagreement is a failure.",
     kLogin},
    {"repair", "FOLDER [TABLE...] [LOGIN]", "save what can be read of damaged tables; alone in the folder",
     repairCommand,
     "All tables without TABLE, and the journal. Prints a line for each, with what was wrong and what was lost under\n"
     "it. A table of a company that is missing begins empty. Where anything is lost the damaged files are kept with\n"
     "~damaged behind their names, and the exit status is 1.",
     kLogin},
    {"optimize", "FOLDER [TABLE...] [LOGIN]",
     "make tables smaller and faster, and keep a copy of the old; alone in the folder", optimizeCommand,
     "All tables without TABLE. The old files are kept with ~old behind their names, in place of an earlier copy. A\n"
     "table that would gain nothing is left as it is, and so is one that is damaged: repair it first.",
     kLogin},
    {"backup", "FOLDER [TO] [--user NAME --password-file FILE] [--today YYYY-MM-DD]",
     "copy a company, by itself into the folder of the day of the week; alone in the folder", backupCommand,
     "Copies the files of the company, not the folders in it. The earlier copy in the folder TO is replaced when the "
     "new\n"
     "one is whole. A folder with another company is refused. A company that has users asks for one of them.",
     kProgramOptions, true},
    {"probe", "FOLDER", "try whether several processes can share the folder", probeCommand,
     "Tries locks, writes, renames and syncs with a second process, and prints a line for each."},
};

std::string usageOf(const Command& command) { return std::string(command.name).append(" ").append(command.arguments); }

void printHelp(const Command& command) {
  std::cout << "usage: quillonctl " << usageOf(command) << "\n\n" << command.purpose << '\n' << command.details << '\n';
}

void printHelp(std::ostream& out) {
  out << "usage: quillonctl COMMAND ...\n\n";
  for (const Command& command : kCommands)
    out << "  " << command.name << ' ' << command.arguments << "   " << command.purpose << '\n';
  out << "  --help   this text; behind a command, more about that\n"
         "  --version   the version of Quillon\n\n"
         "LOGIN, in a company that has users: --user NAME --password-file FILE, of one who has the right Security; "
         "the\n"
         "password is the first line of the file.\n"
         "Every command may be given the options of drive, also those that mean nothing to it.\n"
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
  if (std::ranges::count(arguments, std::string_view("--help"))) {
    printHelp(command);
    return ExitStatus::done;
  }
  const std::vector<std::string_view> words = withoutIdleOptions(arguments, command.reads);
  for (const std::string_view word : words)
    if (!command.hasOwnOptions && word.starts_with('-') && word.size() > 1 &&
        !std::ranges::count(command.reads, word.substr(0, word.find('='))))
      throw UsageError(std::string(command.name) + " has no option " + std::string(word) +
                       "; a name that begins so is written with ./ before it");
  return command.run(words);
} catch (const UsageError& error) {
  return misused(error.what(), usageOf(command));
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
