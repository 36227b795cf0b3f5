// Changes, groups of gathered changes and transactions: what is published when.
#include <algorithm>

#include "base/Text.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/Planted.h"
#include "store/journal/Backoff.h"
#include "store/journal/CommitProtocol.h"
#include "store/locks/Holders.h"
#include "store/table/Table.h"
#include "store/vfs/IoErrors.h"

namespace quillon::store {

void Database::takeWrite(Table& table) {
  TableLocks& locks = table.locks();
  if (locks.tryWrite(TableLocks::WriteKind::post) == TableLocks::Answer::granted) return;
  // Nobody is waited for while a gathered group keeps others waiting.
  settle();
  Backoff backoff(session_.environment().clock);
  while (locks.tryWrite(TableLocks::WriteKind::post) != TableLocks::Answer::granted) {
    waitOutTransaction(table);
    if (!backoff.wait()) raiseLocked(table.name(), LockKind::write, 0, false);
  }
}

void Database::publish(std::span<Table* const> tables) {
  if (inMemory()) {
    for (Table* table : tables) {
      TableFiles& files = table->files();
      const std::uint64_t commit = files.meta().stamp;  // 0, as made: without a journal there is nothing to tell apart
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
  publishGathered();
  const int lost = std::exchange(lost_, 0);
  if (lost == 0) return;
  const std::string records = std::to_string(lost) + " changed records of '" + baseName(folder_) + "'";
  if (unknown_)
    throw StoreError(Code::outcomeUnknown, "Whether " + records +
                                               " were saved is known only when the company is opened "
                                               "again. Close the company and open it again.");
  throw StoreError(Code::ioFailed, records + " could not be saved after an earlier error. Enter them again.");
}

void Database::publishGathered() {
  untold_ = 0;
  if (gathering_.empty()) return;
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
  } catch (const StoreError& error) {
    for (Table* table : tables) {
      untold_ += table->gathered;
      table->discardChanges();
      table->everythingChanged(false);
    }
    release();
    unknown_ = unknown_ || error.code() == Code::outcomeUnknown;
    if (unknown_ || untold_ <= 1) throw;
    throw StoreError(error.code(), std::string(error.what()) + "\r" + std::to_string(untold_) +
                                       " changed records were not saved. Enter them again.");
  } catch (...) {
    for (Table* table : tables) table->discardChanges();
    release();
    throw;
  }
  release();
}

// A group is published wholly or not at all: one table's failure takes the others' changes with it.
void Database::dropGathered() noexcept {
  for (Table* table : std::exchange(gathering_, {})) {
    lost_ += table->gathered;
    table->discardChanges();
    table->everythingChanged(false);
    table->locks().releaseWrite(TableLocks::WriteKind::post);
  }
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
      database_.dropGathered();
      return;
    }
    table_.discardChanges();
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
    if (planted(Bug::earlyUnlock)) table_.locks().releaseWrite(TableLocks::WriteKind::post);
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
  if (table_.gathered >= kMostRows || clock.milliseconds() - database_.gatherStart_ >= kLongest)
    database_.publishGathered();
}

Database::BulkScope::BulkScope(Database& database) : database_(database) { ++database_.bulk_; }

Database::BulkScope::~BulkScope() {
  if (--database_.bulk_ > 0) return;
  try {
    database_.settle();
  } catch (...) {
    database_.tellAtSettle();  // a destructor raises nothing
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
        takeLock(table.name(), LockKind::write, 0,
                 [&] { return table.locks().tryWrite(TableLocks::WriteKind::transaction); });
      } catch (...) {
        closeTable(table, this);
        throw;
      }
      covered_.push_back(&table);
      noteLock(table.name(), LockKind::write, 0);
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
    forgetLock(table->name(), LockKind::write, 0);
    table->doomed = false;
  }
  for (Table* table : std::exchange(covered_, {})) {
    table->locks().close(this);
    if (!table->locks().isOpen()) standBy(*table);
  }
  transaction_ = false;
}

void Database::commit(bool) {
  if (!transaction_) throw StoreError(Code::badTransaction, "No transaction is open.");
  for (const Table* table : covered_)
    if (table->doomed)
      throw StoreError(Code::badTransaction,
                       "An earlier error broke the transaction of table '" + table->name() + "'.");
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

Database::Snapshot::Snapshot(Database& database, const std::vector<Table*>& tables) {
  Backoff backoff(database.session_.environment().clock);
  const auto letGo = [&] {
    for (Table* table : std::exchange(tables_, {})) table->endReading();
  };
  while (true) {
    try {
      for (Table* table : tables) {
        // Only the first is waited for, and brought up after a dead writer: whoever waits with one lock in hand can
        // block a commit, or a replay, that waits for it.
        if (tables_.empty())
          table->beginReading();
        else if (!table->tryBeginReading(true, false))
          break;
        tables_.push_back(table);
      }
    } catch (...) {
      letGo();
      throw;
    }
    if (tables_.size() == tables.size()) return;
    letGo();
    if (!database.inMemory()) database.protocol_->catchUp();
    if (!backoff.wait()) throw StoreError(Code::recordLocked, "The tables are being saved by another user. Try again.");
  }
}

Database::Snapshot::~Snapshot() {
  for (Table* table : tables_) table->endReading();
}

}  // namespace quillon::store
