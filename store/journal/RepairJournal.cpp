#include "store/Environment.h"
#include "store/Errors.h"
#include "store/Repair.h"
#include "store/journal/Backoff.h"
#include "store/journal/Journal.h"
#include "store/table/ReplaceFiles.h"
#include "store/vfs/File.h"
#include "store/vfs/FileNames.h"

namespace quillon::store {

std::vector<std::string> repairJournal(const Environment& environment, const std::string& folder) {
  FileSystem& files = environment.files;
  const std::string path = findFile(files, folder, kJournalName);
  if (!files.exists(path)) return {};
  Journal journal(files, folder, newJournalId(environment, folder));
  Backoff backoff(environment.clock);
  while (!journal.file().lock(kCommitByte, 1, LockMode::exclusive))
    if (!backoff.wait()) return {};
  if (!journal.file().lock(kCompanyOpenByte, 1, LockMode::exclusive)) return {};
  std::string fault;
  try {
    journal.recoverHead();
    return {};
  } catch (const StoreError& error) {
    if (error.code() != Code::headerDamaged) throw;
    fault = error.what();
  }
  const std::string suffix = freeSuffix(files, path, kDamagedSuffix);
  copyFile(files, path, path + suffix);
  files.open(path + suffix, OpenMode::existing)->sync();
  files.syncFolder(folder);
  journal.makeAnew();
  return {fault, std::string("it begins anew: whether the last changes reached the tables is not known, and the "
                             "damaged one is kept as ") +
                     kJournalName + suffix};
}

}  // namespace quillon::store
