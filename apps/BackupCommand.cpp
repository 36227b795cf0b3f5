#include "apps/BackupCommand.h"

#include <filesystem>
#include <iostream>

#include "apps/Counted.h"
#include "apps/LocalEnvironment.h"
#include "apps/Program.h"
#include "apps/ProgressLine.h"
#include "base/Errors.h"
#include "platform/CopyFolder.h"
#include "shell/CopyTree.h"
#include "shell/Security.h"
#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/Session.h"

namespace quillon::apps {
namespace {

// A folder that is a company's, for somebody who may enter it. One whose users cannot be read any more is open to all,
// so that there is a copy before it is mended.
void requireEntry(store::Database& database, const ProgramOptions& options) {
  const std::string& folder = database.folder();
  if (!database.exists("Company")) throw Error(folder + " is no company");
  try {
    store::Cursor users(database, "Users");
    users.open();
    if (!options.credentials && !users.isEmpty())
      throw Error("the company has users: give --user NAME and --password-file FILE");
    shell::requireUser(users, options.credentials.value_or(shell::Credentials{}));
  } catch (const store::StoreError& error) {
    using store::Code;
    if (error.code() != Code::headerDamaged && error.code() != Code::damaged && error.code() != Code::foreign) throw;
  }
}

}  // namespace

ExitStatus backupCommand(Arguments arguments) {
  const ProgramOptions options = readProgramOptions(arguments);
  if (options.words.empty() || options.words.size() > 2) throw UsageError("backup takes a folder, and one to copy to");
  const std::string& folder = options.words[0];
  platform::LinuxDesktop machine;
  platform::GivenDesktop desktop(machine, options.given);
  const std::string to = options.words.size() == 2 ? std::filesystem::absolute(options.words[1]).string()
                                                   : shell::weekdayFolder(desktop, folder);
  const LocalEnvironment environment;
  store::Session session(environment.get());
  {
    store::Database database(session, folder);
    requireEntry(database, options);
    if (const auto other = shell::otherCompanyIn(database, to))
      throw Error("'" + to + "' holds another company, '" + *other +
                  "': name another folder, or remove that one first");
  }
  std::uint64_t bytes = 0;
  {
    ProgressLine line;
    shell::copyCompany(session, folder, to, [&](const platform::CopyProgress& copied) {
      bytes = copied.done;
      line.show(copied.file + ' ' + std::to_string(copied.total == 0 ? 100 : 100 * copied.done / copied.total) + '%');
    });
  }
  std::cout << folder << ": " << counted(bytes, "byte") << " copied to " << to << '\n';
  return ExitStatus::done;
}

}  // namespace quillon::apps
