#include "store/Database.h"

#include <algorithm>

#include "base/Text.h"
#include "store/Errors.h"
#include "store/journal/Backoff.h"
#include "store/journal/CommitProtocol.h"
#include "store/locks/Holders.h"
#include "store/table/Table.h"
#include "store/vfs/File.h"
#include "store/vfs/MemoryFileSystem.h"

namespace quillon::store {
namespace {

constexpr const char* kMemoryFolder = "\\Memory";

}  // namespace

Database::Database(Session& session, std::string folder)
    : session_(session), files_(session.environment().files), folder_(std::move(folder)) {
  if (!files_.folderExists(folder_))
    throw StoreError(Code::noSuchFolder, "The folder '" + folder_ + "' is not there. Check the drive or the network.");
  protocol_ = std::make_unique<CommitProtocol>(session.environment(), folder_);
  protocol_->setJournalLimit(session.settings().journalBytes);
  holders_ = std::make_unique<Holders>(session.environment(), folder_);
}

Database::Database(Session& session, FileSystem& memory) : session_(session), files_(memory), folder_(kMemoryFolder) {
  files_.makeFolder(folder_);
}

Database::~Database() {
  try {
    if (transaction_) rollback();
    settle();
  } catch (...) {
    // A destructor tells nobody; whoever must know settles before.
  }
  tables_.clear();
}

std::string Database::plainName(std::string_view name) const {
  const std::string folded = foldCase(name);
  if (folded.starts_with("\\memory\\")) name.remove_prefix(8);
  if (folded.ends_with(".dat")) name.remove_suffix(4);
  return std::string(name);
}

// The name as the files spell it; empty when there is no such table.
std::string Database::findName(std::string_view name) {
  const std::string plain = plainName(name);
  if (plain.empty() || plain.find('/') != std::string::npos) return {};
  if (files_.exists(folder_ + "/" + plain + kExtensions[kDat])) return plain;
  if (inMemory()) {
    for (const std::string& file : files_.list(folder_))
      if (equalFolded(file, plain + kExtensions[kDat])) return file.substr(0, file.size() - 4);
    return {};
  }
  for (const std::string& file : files_.list(folder_))
    if (file.ends_with(kExtensions[kDat]) && equalFolded(file, plain + kExtensions[kDat]))
      return file.substr(0, file.size() - 4);
  return {};
}

bool Database::exists(std::string_view name) { return !findName(name).empty(); }

std::vector<std::string> Database::tableNames() {
  std::vector<std::string> names;
  for (const std::string& file : files_.list(folder_))
    if (file.ends_with(kExtensions[kDat])) names.push_back(file.substr(0, file.size() - 4));
  return names;
}

std::uint64_t Database::newFileId(std::string_view name) {
  const Environment& environment = session_.environment();
  const std::int64_t parts[] = {environment.clock.unixSeconds(), environment.clock.milliseconds(), environment.process,
                                static_cast<std::int64_t>(++made_)};
  return hashBytes(parts, sizeof parts, hashBytes(name.data(), name.size())) & ~std::uint64_t{3};
}

void Database::createTable(const TableDef& definition) { createTables({&definition, 1}); }

void Database::createTables(std::span<const TableDef> definitions) {
  for (const TableDef& definition : definitions) {
    definition.validate();
    if (exists(definition.name))
      throw StoreError(Code::tableExists, "Table '" + definition.name + "' exists already.");
  }
  for (const TableDef& definition : definitions)
    TableFiles::create(files_, folder_, definition.name, newFileId(definition.name), definition.encode(),
                       definition.indexes.size());
  files_.syncFolder(folder_);
}

void Database::dropTable(std::string_view name) {
  const std::string found = findName(name);
  if (found.empty()) throw StoreError(Code::noSuchTable, "Table '" + plainName(name) + "' is not there.");
  if (tables_.count(foldCase(found)) > 0)
    throw StoreError(Code::tableInUse, "Table '" + found + "' is in use by this program and cannot be dropped.");
  const auto removeFiles = [&] {
    // The .DAT file goes first: without it there is no table, whatever else is left.
    for (const char* extension : kExtensions) files_.remove(folder_ + "/" + found + extension);
    files_.syncFolder(folder_);
  };
  if (inMemory()) return removeFiles();
  const int marker = 0;
  Table& table = openTable(found, &marker, true);
  try {
    CommitProtocol::Quiet quiet(*protocol_);
    removeFiles();
  } catch (...) {
    closeTable(table, &marker);
    throw;
  }
  closeTable(table, &marker);
}

void Database::emptyTable(std::string_view name) {
  const auto open = tables_.find(foldCase(findName(name)));
  if (open != tables_.end() && (transaction_ || open->second->locks().openers() > 0))
    throw StoreError(Code::tableInUse, "Table '" + open->second->name() + "' is in use by this program and cannot be emptied.");
  const int marker = 0;
  Table& table = openTable(name, &marker, true);
  try {
    {
      Change change(*this, table);
      table.removeAll();
      change.done();
    }
    settle();
    if (!inMemory()) protocol_->checkpoint();
    for (const Role role : {kDat, kIdx, kBlb}) table.files().file(role).cut();
  } catch (...) {
    closeTable(table, &marker);
    throw;
  }
  closeTable(table, &marker);
}

Table& Database::openTable(std::string_view name, TableLocks::Owner owner, bool exclusive) {
  const std::string found = findName(name);
  if (found.empty())
    throw StoreError(Code::noSuchTable, "Table '" + plainName(name) + "' is not in the folder '" + folder_ + "'.");
  auto& slot = tables_[foldCase(found)];
  const bool made = slot == nullptr;
  try {
    if (made) slot = std::make_unique<Table>(*this, found);
    Table& table = *slot;
    takeLock(table, LockKind::exclusiveOpen, 0, [&] { return table.locks().tryOpen(owner, exclusive); });
    if (!exclusive) forgetLock(table, LockKind::exclusiveOpen, 0);
    try {
      if (made) table.load();
      if (exclusive) table.refreshUnderLock();
    } catch (...) {
      table.locks().close(owner);
      throw;
    }
    return table;
  } catch (...) {
    if (made) tables_.erase(foldCase(found));
    throw;
  }
}

void Database::closeTable(Table& table, TableLocks::Owner owner) {
  const bool exclusive = table.locks().heldExclusively();
  const auto finish = [&] {
    table.locks().close(owner);
    if (exclusive && !table.locks().heldExclusively()) forgetLock(table, LockKind::exclusiveOpen, 0);
    if (!table.locks().isOpen()) tables_.erase(foldCase(table.name()));
  };
  if (table.gathered > 0) {
    try {
      settle();
    } catch (...) {
      finish();
      throw;
    }
  }
  finish();
}

// Locks.

void Database::takeLock(Table& table, LockKind kind, RowId row, const std::function<TableLocks::Answer()>& attempt) {
  const Settings& settings = session_.settings();
  for (int tries = 1;; ++tries) {
    const TableLocks::Answer answer = attempt();
    if (answer == TableLocks::Answer::granted) break;
    if (answer == TableLocks::Answer::heldHere || tries >= settings.lockRetryCount)
      raiseLocked(table, kind, row, answer == TableLocks::Answer::heldHere);
    session_.environment().clock.sleep(std::int64_t{settings.lockWaitTime} * 1000);
  }
  if (holders_) holders_->note({kind, Holders::tableHash(table.name()), row});
}

void Database::forgetLock(Table& table, LockKind kind, RowId row) noexcept {
  if (holders_) holders_->forget({kind, Holders::tableHash(table.name()), row});
}

void Database::waitOutTransaction(Table& table) {
  if (inMemory() || table.locks().holdsWrite() || table.locks().heldExclusively()) return;
  const Settings& settings = session_.settings();
  for (int tries = 1; table.locks().inTransactionElsewhere(); ++tries) {
    if (tries >= settings.lockRetryCount) raiseLocked(table, LockKind::write, 0, false);
    session_.environment().clock.sleep(std::int64_t{settings.lockWaitTime} * 1000);
  }
}

void Database::raiseLocked(Table& table, LockKind kind, RowId row, bool here) {
  const std::string what =
      (kind == LockKind::record ? "The record of table '" : "Table '") + table.name() + "'";
  const Code code = kind == LockKind::exclusiveOpen ? Code::tableInUse : Code::recordLocked;
  if (here) throw StoreError(code, what + " is in use in another window of this program.");
  throw StoreError(code, inUse(what, holders_.get(), {kind, Holders::tableHash(table.name()), row}) + ".");
}

void Database::takeWrite(Table& table) {
  TableLocks& locks = table.locks();
  if (locks.tryWrite(TableLocks::WriteKind::post) == TableLocks::Answer::granted) return;
  // Nobody is waited for while a gathered group keeps others waiting.
  settle();
  Backoff backoff(session_.environment().clock);
  while (locks.tryWrite(TableLocks::WriteKind::post) != TableLocks::Answer::granted) {
    waitOutTransaction(table);
    if (!backoff.wait()) raiseLocked(table, LockKind::write, 0, false);
  }
}

// Publishing.

void Database::publish(std::span<Table* const> tables) {
  if (inMemory()) {
    for (Table* table : tables) {
      TableFiles& files = table->files();
      const std::uint64_t commit = files.stamp() == ~std::uint64_t{0} ? 1 : files.stamp() + 1;
      files.storeMeta(commit);
      for (const Role role : {kDat, kIdx, kBlb}) {
        PageFile& file = files.file(role);
        const std::vector<PageNo> numbers = file.dirtyNumbers();
        for (const PageNo number : numbers) sealPage(file.dirtyPage(number).page.writable(), file.fileId(), commit);
        file.writeInPlace(numbers);
      }
      files.published(commit);
    }
    return;
  }
  std::vector<TableFiles*> files;
  for (Table* table : tables)
    if (table->files().changed()) files.push_back(&table->files());
  if (!files.empty()) protocol_->publish(files);
}

bool Database::gathersNow(Table& table) const {
  return !inMemory() && (bulk_ > 0 || table.locks().holdsTable() || table.locks().heldExclusively());
}

void Database::settle() {
  if (gathering_.empty() && lost_ == 0) return;
  std::vector<Table*> tables;
  tables.swap(gathering_);
  const auto release = [&] {
    for (Table* table : tables) {
      table->gathered = 0;
      table->locks().releaseWrite(TableLocks::WriteKind::post);
    }
  };
  try {
    publish(tables);
  } catch (...) {
    for (Table* table : tables) {
      table->discardChanges();
      table->everythingChanged(false);
    }
    release();
    throw;
  }
  release();
  if (const int lost = std::exchange(lost_, 0); lost > 0)
    throw StoreError(Code::ioFailed, std::to_string(lost) +
                                         " changed records could not be saved after an earlier error. Enter them again.");
}

void Database::dropGathered(Table& table) noexcept {
  lost_ += table.gathered;
  table.discardChanges();
  std::erase(gathering_, &table);
}

Database::Change::Change(Database& database, Table& table) : database_(database), table_(table) {
  if (table.doomed)
    throw StoreError(Code::badTransaction, "An earlier error broke this transaction of table '" + table.name() +
                                               "'. Undo the command and try again.");
  table.touched = false;
  covered_ = std::find(database.covered_.begin(), database.covered_.end(), &table) != database.covered_.end();
  if (covered_) return;
  gathers_ = database.gathersNow(table);
  inGroup_ = std::find(database.gathering_.begin(), database.gathering_.end(), &table) != database.gathering_.end();
  if (inGroup_) return;
  database.takeWrite(table);
  try {
    table.refreshUnderLock();
  } catch (...) {
    table.locks().releaseWrite(TableLocks::WriteKind::post);
    throw;
  }
}

Database::Change::~Change() {
  if (finished_ || covered_) {
    if (!finished_ && table_.touched) table_.doomed = true;
    return;
  }
  if (table_.touched) {
    if (inGroup_) {
      database_.dropGathered(table_);
      table_.everythingChanged(false);
    } else {
      table_.discardChanges();
    }
  } else if (inGroup_) {
    return;
  }
  table_.locks().releaseWrite(TableLocks::WriteKind::post);
}

void Database::Change::done(int rows) {
  if (covered_) {
    finished_ = true;
    return;
  }
  if (!gathers_ && !inGroup_) {
    Table* const tables[] = {&table_};
    database_.publish(tables);
    finished_ = true;
    table_.locks().releaseWrite(TableLocks::WriteKind::post);
    return;
  }
  Clock& clock = database_.session_.environment().clock;
  if (database_.gathering_.empty()) database_.gatherStart_ = clock.milliseconds();
  if (!inGroup_) database_.gathering_.push_back(&table_);
  finished_ = true;
  table_.gathered += rows;
  constexpr int kMostRows = 1000;
  constexpr std::int64_t kLongest = 500;
  if (table_.gathered >= kMostRows || clock.milliseconds() - database_.gatherStart_ >= kLongest) database_.settle();
}

Database::BulkScope::BulkScope(Database& database) : database_(database) { ++database_.bulk_; }

Database::BulkScope::~BulkScope() {
  if (--database_.bulk_ > 0) return;
  try {
    database_.settle();
  } catch (...) {
    // Told by the settle that the caller makes; a destructor raises nothing.
  }
}

// Transactions.

void Database::startTransaction(std::span<const std::string> tables) {
  if (transaction_) throw StoreError(Code::badTransaction, "A transaction is open already.");
  settle();
  std::map<std::string, std::string> names;  // folded: the order of the locks
  for (const std::string& name : tables) names.emplace(foldCase(plainName(name)), name);
  transaction_ = true;
  try {
    for (const auto& [folded, name] : names) {
      Table& table = openTable(name, this, false);
      try {
        takeLock(table, LockKind::write, 0, [&] { return table.locks().tryWrite(TableLocks::WriteKind::transaction); });
      } catch (...) {
        closeTable(table, this);
        throw;
      }
      covered_.push_back(&table);
      table.refreshUnderLock();
    }
  } catch (...) {
    releaseTransaction();
    throw;
  }
}

void Database::releaseTransaction() noexcept {
  for (Table* table : covered_) {
    table->locks().releaseWrite(TableLocks::WriteKind::transaction);
    forgetLock(*table, LockKind::write, 0);
    table->doomed = false;
  }
  for (Table* table : std::exchange(covered_, {})) {
    table->locks().close(this);
    if (!table->locks().isOpen()) tables_.erase(foldCase(table->name()));
  }
  transaction_ = false;
}

void Database::commit(bool) {
  if (!transaction_) throw StoreError(Code::badTransaction, "No transaction is open.");
  for (const Table* table : covered_)
    if (table->doomed)
      throw StoreError(Code::badTransaction, "An earlier error broke the transaction of table '" + table->name() + "'.");
  publish(covered_);
  releaseTransaction();
}

void Database::rollback() {
  if (!transaction_) throw StoreError(Code::badTransaction, "No transaction is open.");
  for (Table* table : covered_) {
    table->discardChanges();
    table->everythingChanged(true);
  }
  releaseTransaction();
}

Database::Snapshot::Snapshot(Database& database, std::vector<Table*> tables) {
  Backoff backoff(database.session_.environment().clock);
  while (true) {
    for (Table* table : tables) {
      // Only the first is waited for: whoever waits with one lock in hand can block a commit that waits for it.
      if (tables_.empty())
        table->beginReading();
      else if (!table->tryBeginReading())
        break;
      tables_.push_back(table);
    }
    if (tables_.size() == tables.size()) return;
    for (Table* table : tables_) table->endReading();
    tables_.clear();
    if (!backoff.wait()) throw StoreError(Code::recordLocked, "The tables are being saved by another user. Try again.");
  }
}

Database::Snapshot::~Snapshot() {
  for (Table* table : tables_) table->endReading();
}

}  // namespace quillon::store
