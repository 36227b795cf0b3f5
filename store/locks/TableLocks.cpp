#include "store/locks/TableLocks.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <utility>
#include <vector>

#include "store/Planted.h"

namespace quillon::store {
namespace {

std::uint64_t byteOf(RowId row) {
  assert(row > 0 && row < kRecordCount);
  return kRecordBase + row;
}

// The single bytes that one `try` takes; given back when it is refused or raises, that is unless kept.
class Taking {
 public:
  explicit Taking(File& file) : file_(file) {}
  Taking(const Taking&) = delete;
  Taking& operator=(const Taking&) = delete;
  ~Taking() {
    while (count_ > 0) file_.unlock(taken_[--count_], 1);
  }
  // A byte that is held already is not taken again, so that giving back cannot lose it.
  bool take(std::uint64_t byte, bool held) {
    if (held) return true;
    if (!file_.lock(byte, 1, LockMode::exclusive)) return false;
    taken_.at(count_++) = byte;
    return true;
  }
  void keep() { count_ = 0; }

 private:
  File& file_;
  std::array<std::uint64_t, 2> taken_{};
  std::size_t count_ = 0;
};

}  // namespace

TableLocks::Answer TableLocks::tryOpen(Owner owner, bool exclusive) {
  assert(!openers_.contains(owner));
  if (exclusive && exclusive_ != nullptr) return Answer::heldHere;
  if (exclusive || openers_.empty()) {
    if (!dat_.lock(kOpenByte, 1, exclusive ? LockMode::exclusive : LockMode::shared)) return Answer::heldElsewhere;
  }
  openers_.insert(owner);
  if (exclusive) exclusive_ = owner;
  return Answer::granted;
}

void TableLocks::close(Owner owner) noexcept {
  assert(openers_.contains(owner));
  releaseRecords(owner);
  if (const auto table = tables_.find(owner); table != tables_.end()) {
    tableCount_ -= table->second;
    tables_.erase(table);
    if (tableCount_ == 0) freeWrite(WriteKind::transaction);
  }
  openers_.erase(owner);
  const bool wasExclusive = exclusive_ == owner;
  if (wasExclusive) exclusive_ = nullptr;
  if (openers_.empty()) {
    dat_.unlock(kOpenByte, 1);
  } else if (wasExclusive) {
    try {
      dat_.lock(kOpenByte, 1, LockMode::shared);
    } catch (...) {
      // The byte stays exclusive until the last close: others wait longer, nobody is let in who should not be.
    }
  }
}

TableLocks::Answer TableLocks::tryRecord(Owner owner, RowId row) {
  const std::uint64_t byte = byteOf(row);
  if (const auto held = records_.find(row); held != records_.end()) {
    return held->second == owner ? Answer::granted : Answer::heldHere;
  }
  // A byte for each would cost two calls for every row of a transaction, and bar nobody whom it does not bar already.
  if (!allRows_ && holdsTransactionByte()) allRows_ = dat_.lock(kRecordBase, kRecordCount, LockMode::exclusive);
  if (!allRows_ && !dat_.lock(byte, 1, LockMode::exclusive)) return Answer::heldElsewhere;
  records_.emplace(row, owner);
  return Answer::granted;
}

void TableLocks::releaseRecord(Owner owner, RowId row) noexcept {
  const auto held = records_.find(row);
  assert(held != records_.end() && held->second == owner);
  if (held == records_.end() || held->second != owner) return;
  records_.erase(held);
  if (!allRows_ || planted(Bug::holeInTableLock)) dat_.unlock(byteOf(row), 1);
}

void TableLocks::releaseRecords(Owner owner) noexcept {
  for (auto at = records_.begin(); at != records_.end();) {
    if (at->second != owner) {
      ++at;
      continue;
    }
    if (!allRows_) dat_.unlock(byteOf(at->first), 1);
    at = records_.erase(at);
  }
}

bool TableLocks::holdsRecord(Owner owner, RowId row) const {
  const auto held = records_.find(row);
  return held != records_.end() && held->second == owner;
}

bool TableLocks::recordHeldHere(RowId row, Owner except) const {
  const auto held = records_.find(row);
  return held != records_.end() && held->second != except;
}

bool TableLocks::recordHeldElsewhere(RowId row) { return dat_.lockedByOther(byteOf(row), 1, LockMode::exclusive); }

TableLocks::Answer TableLocks::tryTable(Owner owner) {
  if (!holdsTable()) {
    Taking taking(dat_);
    // The range comes last: giving it back would free own record locks inside it.
    if (!taking.take(kTransactionByte, holdsTransactionByte()) || !taking.take(kWriteByte, holdsWrite()) ||
        (!allRows_ && !dat_.lock(kRecordBase, kRecordCount, LockMode::exclusive))) {
      return Answer::heldElsewhere;
    }
    taking.keep();
    allRows_ = true;
  }
  ++tables_[owner];
  ++tableCount_;
  return Answer::granted;
}

void TableLocks::releaseTable(Owner owner) noexcept {
  const auto held = tables_.find(owner);
  assert(held != tables_.end());
  if (held == tables_.end()) return;
  if (--held->second == 0) tables_.erase(held);
  if (--tableCount_ == 0) freeWrite(WriteKind::transaction);
}

bool TableLocks::holdsTable(Owner owner) const { return tables_.contains(owner); }

// Frees the gaps between own record locks: what stays is never let go.
void TableLocks::freeRows() noexcept {
  if (!std::exchange(allRows_, false)) return;
  std::vector<RowId> rows;
  rows.reserve(records_.size());
  for (const auto& record : records_) rows.push_back(record.first);
  std::ranges::sort(rows);
  std::uint64_t from = kRecordBase;
  for (const RowId row : rows) {
    dat_.unlock(from, byteOf(row) - from);
    from = byteOf(row) + 1;
  }
  dat_.unlock(from, kRecordBase + kRecordCount - from);
}

TableLocks::Answer TableLocks::tryWrite(WriteKind kind) {
  const bool transaction = kind == WriteKind::transaction;
  Taking taking(dat_);
  if (transaction && !taking.take(kTransactionByte, holdsTransactionByte())) return Answer::heldElsewhere;
  if (!taking.take(kWriteByte, holdsWrite())) return Answer::heldElsewhere;
  taking.keep();
  ++(transaction ? transactionCount_ : postCount_);
  return Answer::granted;
}

void TableLocks::releaseWrite(WriteKind kind) noexcept {
  int& count = kind == WriteKind::transaction ? transactionCount_ : postCount_;
  assert(count > 0);
  if (count == 0) return;
  --count;
  freeWrite(kind);
}

void TableLocks::freeWrite(WriteKind ended) noexcept {
  if (!holdsTransactionByte()) freeRows();
  if (!holdsWrite()) dat_.unlock(kWriteByte, 1);
  if (ended == WriteKind::transaction && !holdsTransactionByte()) dat_.unlock(kTransactionByte, 1);
}

bool TableLocks::inTransactionElsewhere() { return dat_.lockedByOther(kTransactionByte, 1, LockMode::exclusive); }

}  // namespace quillon::store
