// Opening and closing the tables of a folder, and those that stand by between.
#include <algorithm>

#include "base/Text.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/journal/CommitProtocol.h"
#include "store/locks/Holders.h"
#include "store/table/ReplaceFiles.h"
#include "store/table/Table.h"

namespace quillon::store {
namespace {

constexpr std::size_t kMostStandingBy = 24;  // tables, of three files each

}  // namespace

bool Database::isOpenHere(std::string_view name) const {
  const auto known = tables_.find(foldCase(plainName(name)));
  return known != tables_.end() && known->second->locks().isOpen();
}

std::unique_ptr<Table> Database::openFiles(const std::string& name) {
  try {
    return std::make_unique<Table>(*this, name);
  } catch (const StoreError& error) {
    if (inMemory() || (error.code() != Code::foreign && error.code() != Code::headerDamaged)) throw;
  }
  // The three files are being replaced, or whoever did so died between them; or they are damaged.
  {
    const CommitProtocol::Quiet alone(*protocol_, CommitProtocol::Quiet::Journal::asItIs);
    finishReplacing(files_, folder_, name);
  }
  return std::make_unique<Table>(*this, name);
}

Table& Database::openTable(std::string_view name, TableLocks::Owner owner, bool exclusive) {
  if (Table* table = openAgain(name, owner, exclusive)) return *table;
  const std::string found = inMemory() && isOpenHere(name) ? plainName(name) : findName(name);
  if (found.empty())
    throw StoreError(Code::noSuchTable, "Table '" + plainName(name) + "' is not in the folder '" + folder_ + "'.");
  const std::string folded = foldCase(found);
  auto& slot = tables_[folded];
  const bool made = slot == nullptr;
  try {
    if (made) slot = openFiles(found);
    Table& table = *slot;
    takeLock(found, LockKind::exclusiveOpen, 0, [&] { return table.locks().tryOpen(owner, exclusive); });
    if (made && !table.files().isInPlace(files_)) {
      // While the lock was waited for the table was dropped, and perhaps made anew.
      tables_.erase(folded);
      return openTable(name, owner, exclusive);
    }
    if (exclusive) noteLock(found, LockKind::exclusiveOpen, 0);
    try {
      if (made) table.load();
      if (exclusive) table.refreshUnderLock();
    } catch (...) {
      table.locks().close(owner);
      if (exclusive) forgetLock(found, LockKind::exclusiveOpen, 0);
      throw;
    }
    return table;
  } catch (...) {
    if (made) tables_.erase(folded);
    throw;
  }
}

void Database::closeTable(Table& table, TableLocks::Owner owner) {
  const bool exclusive = table.locks().heldExclusively();
  const auto finish = [&] {
    table.locks().close(owner);
    if (exclusive && !table.locks().heldExclusively()) forgetLock(table.name(), LockKind::exclusiveOpen, 0);
    if (!table.locks().isOpen()) standBy(table);
  };
  // Also one in which a gathering statement found nothing to change: its lock is let go of with the others.
  if (std::find(gathering_.begin(), gathering_.end(), &table) != gathering_.end()) {
    try {
      settle();
    } catch (...) {
      finish();
      throw;
    }
  }
  finish();
}

// A table that nobody has open any more keeps its files and what was read of them for the next opening. It holds no
// lock, so that it is in nobody's way, an exclusive open's neither; `openAgain` finds out what happened meanwhile. On a
// network a handle that is kept can hinder others from replacing the file.
void Database::standBy(Table& table) noexcept {
  const std::string folded = foldCase(table.name());
  if ((protocol_ && protocol_->onNetwork()) || table.files().changed() || table.doomed) {
    tables_.erase(folded);
    return;
  }
  standingBy_.push_back(folded);
  if (standingBy_.size() > kMostStandingBy) endStandBy(standingBy_.front());
}

void Database::endStandBy(std::string_view name) noexcept {
  const std::string folded = foldCase(name);
  if (std::erase(standingBy_, folded) > 0) tables_.erase(folded);
}

// The table that stands by, if it still is what the folder has under that name; null: it has to be opened anew.
Table* Database::openAgain(std::string_view name, TableLocks::Owner owner, bool exclusive) {
  if (!inMemory() && foldCase(name).starts_with("\\memory\\")) return nullptr;
  const std::string folded = foldCase(plainName(name));
  if (std::erase(standingBy_, folded) == 0) return nullptr;
  Table& table = *tables_.find(folded)->second;
  try {
    takeLock(table.name(), LockKind::exclusiveOpen, 0, [&] { return table.locks().tryOpen(owner, exclusive); });
    bool same = table.files().isInPlace(files_);
    if (same && exclusive) table.refreshUnderLock();
    same = same && table.isAsLoaded();
    if (same && exclusive) noteLock(table.name(), LockKind::exclusiveOpen, 0);
    if (same) return &table;
  } catch (...) {
    tables_.erase(folded);
    throw;
  }
  tables_.erase(folded);
  return nullptr;
}

}  // namespace quillon::store
