#include "store/Database.h"

#include <algorithm>
#include <optional>

#include "base/Text.h"
#include "store/Cursor.h"
#include "store/Errors.h"
#include "store/InUse.h"
#include "store/Planted.h"
#include "store/journal/Backoff.h"
#include "store/journal/CommitProtocol.h"
#include "store/locks/Holders.h"
#include "store/table/ReplaceFiles.h"
#include "store/table/Table.h"
#include "store/vfs/File.h"
#include "store/vfs/FileNames.h"
#include "store/vfs/MemoryFileSystem.h"

namespace quillon::store {
Database::Database(Session& session, std::string folder)
    : session_(session), files_(session.environment().files), folder_(std::move(folder)) {
  if (session.settings().sessionType == SessionType::remote)
    throw StoreError(Code::noSuchFolder,
                     "This version works on folders and not with a store server. Take the remote host "
                     "out of the settings.");
  if (!files_.folderExists(folder_) && files_.exists(folder_))
    throw StoreError(Code::noSuchFolder,
                     "'" + folder_ + "' is a file and not a folder. Name the folder that it lies in.");
  if (!files_.folderExists(folder_))
    throw StoreError(Code::noSuchFolder, "The folder '" + folder_ + "' is not there. Check the drive or the network.");
  protocol_ = std::make_unique<CommitProtocol>(session.environment(), folder_);
  protocol_->setJournalLimit(session.settings().journalBytes);
  holders_ = std::make_unique<Holders>(session.environment(), folder_);
  session_.setScratchFolder(folder_);
}

Database::Database(Session& session, FileSystem& files, std::string folder)
    : session_(session), files_(files), folder_(std::move(folder)) {
  files_.makeFolder(folder_);
}

Database::~Database() {
  try {
    if (transaction_) rollback();
    settle();
  } catch (...) {
    // A destructor tells nobody; whoever must know settles before.
  }
  // Cursors that outlive their database are closed under them.
  for (const auto& entry : tables_)
    while (entry.second && !entry.second->cursors().empty()) entry.second->cursors().back()->abandon();
  tables_.clear();
  // Another one in the same folder may be a table in the making beside its files.
  if (!inMemory() && session_.scratchFolder() == folder_) session_.setScratchFolder({});
}

std::string Database::plainName(std::string_view name) {
  const std::string folded = foldCase(name);
  if (folded.starts_with("\\memory\\")) name.remove_prefix(8);
  if (folded.ends_with(".dat")) name.remove_suffix(4);
  return std::string(name);
}

// The name as the files spell it; empty when there is no such table.
std::string Database::findName(std::string_view name) {
  if (!inMemory() && foldCase(name).starts_with("\\memory\\")) return {};
  const std::string plain = plainName(name);
  if (plain.empty() || plain.find('/') != std::string::npos) return {};
  const std::string path = findFile(files_, folder_, plain + kExtensions[kDat]);
  if (!files_.exists(path)) return {};
  const std::string file = path.substr(folder_.size() + 1);
  return file.substr(0, file.size() - 4);
}

bool Database::exists(std::string_view name) { return !findName(name).empty(); }

std::vector<std::string> Database::tableNames() {
  std::vector<std::string> names;
  for (const std::string& file : files_.list(folder_))
    if (foldCase(file).ends_with(".dat")) names.push_back(file.substr(0, file.size() - 4));
  return names;
}

std::uint64_t Database::newFileId(std::string_view name, std::uint64_t before) {
  const Environment& environment = session_.environment();
  const std::int64_t parts[] = {environment.clock.unixSeconds(), environment.clock.milliseconds(), environment.process,
                                static_cast<std::int64_t>(++made_)};
  return hashBytes(parts, sizeof parts, hashBytes(name.data(), name.size(), before)) & ~std::uint64_t{3};
}

void Database::createTable(const TableDef& definition) { createTables({&definition, 1}); }

void Database::refuseInTransaction() const {
  if (transaction_ && !inMemory())
    throw StoreError(Code::badTransaction, "Tables cannot be made, emptied or dropped inside a transaction.");
}

void Database::createTables(std::span<const TableDef> definitions) {
  refuseInTransaction();
  for (const TableDef& definition : definitions) definition.validate();
  std::optional<CommitProtocol::Quiet> alone;  // of two processes that make the same table one is refused
  if (!inMemory()) alone.emplace(*protocol_, CommitProtocol::Quiet::Journal::asItIs);
  for (const TableDef& definition : definitions)
    if (exists(definition.name)) throw StoreError(Code::tableExists, "Table '" + definition.name + "' exists already.");
  // Where remains of an earlier table lie, the removal of its .DAT file may not be safe yet: it must not come back
  // beside the companions of the new one.
  const auto remains = [&](const TableDef& definition, Role role) {
    return files_.exists(findFile(files_, folder_, definition.name + kExtensions[role]));
  };
  if (std::any_of(definitions.begin(), definitions.end(),
                  [&](const TableDef& definition) { return remains(definition, kBlb) || remains(definition, kIdx); }))
    files_.syncFolder(folder_);
  std::vector<std::string> written;
  for (const TableDef& definition : definitions)
    TableFiles::prepare(files_, folder_, definition.name, newFileId(definition.name), definition.encode(),
                        definition.indexes.size(), written);
  files_.syncFiles(folder_, written);
  files_.syncFolder(folder_);
  try {
    for (const TableDef& definition : definitions) TableFiles::appear(files_, folder_, definition.name);
    if (!planted(Bug::skippedFolderSync)) files_.syncFolder(folder_);
  } catch (...) {
    // Refused as a whole: without its .DAT file there is no table.
    for (const TableDef& definition : definitions) files_.remove(folder_ + "/" + definition.name + kExtensions[kDat]);
    throw;
  }
}

void Database::dropTable(std::string_view name) {
  refuseInTransaction();
  const std::string found = findName(name);
  if (found.empty()) throw StoreError(Code::noSuchTable, "Table '" + plainName(name) + "' is not there.");
  refuseOpenHere(found, "dropped");
  const auto removeFiles = [&] {
    // The .DAT file goes first: without it there is no table, whatever else is left.
    files_.remove(findFile(files_, folder_, found + kExtensions[kDat]));
    files_.syncFolder(folder_);
    for (const Role role : {kIdx, kBlb}) files_.remove(findFile(files_, folder_, found + kExtensions[role]));
  };
  if (inMemory()) {
    endStandBy(found);
    return removeFiles();
  }
  const int marker = 0;
  Table& table = openTable(found, &marker, true);
  try {
    const CommitProtocol::Quiet alone(*protocol_, CommitProtocol::Quiet::Journal::emptied);
    removeFiles();
  } catch (...) {
    closeTable(table, &marker);
    throw;
  }
  closeTable(table, &marker);
  endStandBy(found);
}

void Database::emptyTable(std::string_view name) {
  refuseInTransaction();
  refuseOpenHere(findName(name), "emptied");
  const int marker = 0;
  Table& table = openTable(name, &marker, true);
  try {
    {
      Change change(*this, table);
      table.removeAll();
      change.done();
    }
    settle();
    try {
      if (!inMemory()) protocol_->checkpoint();
      for (const Role role : {kDat, kIdx, kBlb}) table.files().file(role).cut();
    } catch (const StoreError&) {
      // The table is empty all the same; its files keep their length.
    }
  } catch (...) {
    closeTable(table, &marker);
    throw;
  }
  closeTable(table, &marker);
}

// Locks.

void Database::takeLock(const std::string& table, LockKind kind, RowId row,
                        const std::function<TableLocks::Answer()>& attempt) {
  const Settings& settings = session_.settings();
  for (int tries = 1;; ++tries) {
    const TableLocks::Answer answer = attempt();
    if (answer == TableLocks::Answer::granted) break;
    if (answer == TableLocks::Answer::heldHere || tries >= settings.lockRetryCount)
      raiseLocked(table, kind, row, answer == TableLocks::Answer::heldHere);
    settle();  // nobody is waited for while a gathered group keeps others waiting
    session_.environment().clock.sleep(std::int64_t{settings.lockWaitTime} * 1000);
  }
}

void Database::noteLock(const std::string& table, LockKind kind, RowId row) noexcept {
  if (holders_) holders_->note({kind, Holders::tableHash(table), row});
}

void Database::forgetLock(const std::string& table, LockKind kind, RowId row) noexcept {
  if (holders_) holders_->forget({kind, Holders::tableHash(table), row});
}

void Database::waitOutTransaction(Table& table) {
  if (inMemory() || table.locks().holdsWrite() || table.locks().heldExclusively()) return;
  const Settings& settings = session_.settings();
  for (int tries = 1; table.locks().inTransactionElsewhere(); ++tries) {
    if (tries >= settings.lockRetryCount) raiseLocked(table.name(), LockKind::write, 0, false);
    session_.environment().clock.sleep(std::int64_t{settings.lockWaitTime} * 1000);
  }
}

void Database::raiseLocked(const std::string& table, LockKind kind, RowId row, bool here) {
  const Code code = kind == LockKind::exclusiveOpen ? Code::tableInUse : Code::recordLocked;
  const std::string holder = here ? "" : inTheWay(holders_.get(), {kind, Holders::tableHash(table), row});
  throw InUseError(code, table, kind == LockKind::record, holder);
}

}  // namespace quillon::store
