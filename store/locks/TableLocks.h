#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <unordered_map>

#include "store/vfs/File.h"

namespace quillon::store {

using RowId = std::uint64_t;  // 1 and up; below 2^40

// Lock bytes on a table's .DAT file.
inline constexpr std::uint64_t kLockBase = std::uint64_t{1} << 40;
inline constexpr std::uint64_t kOpenByte = kLockBase;
inline constexpr std::uint64_t kApplyByte = kLockBase + 1;
inline constexpr std::uint64_t kApplyIntentByte = kLockBase + 2;
inline constexpr std::uint64_t kWriteByte = kLockBase + 3;
inline constexpr std::uint64_t kTransactionByte =
    kLockBase + 4;  // held beside the write byte by a transaction or table lock
inline constexpr std::uint64_t kRecordBase = std::uint64_t{1} << 41;
inline constexpr std::uint64_t kRecordCount = std::uint64_t{1} << 40;

// The locks that this process holds on one table: who of its cursors holds what, and their union on the file.
// Every `try` returns at once and changes nothing when it is refused; whoever waits, waits outside.
//
// Keeps: the file holds exactly the union of what the owners hold, so that releasing one lock never opens a hole in
// another (a record lock under a table lock, a write lock of a transaction under a table lock, ...).
// A try that raises IoError changes nothing either; releasing what is not held is a fault of the caller (asserted).
class TableLocks {
 public:
  using Owner = const void*;  // a cursor or a transaction; compared only
  enum class Answer {
    granted,
    heldElsewhere,  // by another process: worth waiting for
    heldHere,       // by another cursor of this process: waiting is useless
  };
  enum class WriteKind { post, transaction };

  explicit TableLocks(File& dat) : dat_(dat) {}
  TableLocks(const TableLocks&) = delete;
  TableLocks& operator=(const TableLocks&) = delete;

  // Open. Ordinary owners share; one owner may be exclusive, which bars other processes only: own ordinary owners may
  // stand beside it, a second exclusive own owner is refused with heldHere. An owner opens once.
  Answer tryOpen(Owner owner, bool exclusive);
  // Ends what tryOpen granted, and everything else that the owner holds here.
  void close(Owner owner) noexcept;
  bool isOpen() const { return !openers_.empty(); }
  bool heldExclusively() const { return exclusive_ != nullptr; }
  std::size_t openers() const { return openers_.size(); }

  // Record. An owner that holds the record already is granted (counted once). In a transaction, which bars others from
  // every row anyhow, the first one takes the whole record range where nobody else holds a record; under that or a
  // table lock no byte of its own is taken on the file.
  Answer tryRecord(Owner owner, RowId row);
  void releaseRecord(Owner owner, RowId row) noexcept;
  bool holdsRecord(Owner owner, RowId row) const;
  bool recordHeldHere(RowId row, Owner except) const;
  // Whether another process holds the record (asked of the file).
  bool recordHeldElsewhere(RowId row);

  // Table: the whole record range, the transaction byte and the write byte. Counted over owners and calls; binds other
  // processes only. The range is kept until neither table lock nor transaction is held.
  Answer tryTable(Owner owner);
  void releaseTable(Owner owner) noexcept;  // one count
  bool holdsTable() const { return tableCount_ > 0; }
  bool holdsTable(Owner owner) const;

  // Write: `transaction` takes the transaction byte too. Counted. Nothing is taken twice where a table lock covers it.
  Answer tryWrite(WriteKind kind);
  void releaseWrite(WriteKind kind) noexcept;
  // Under a table lock too.
  bool holdsWrite() const { return postCount_ + transactionCount_ + tableCount_ > 0; }
  // Whether another process holds the table in a transaction or under a table lock (asked of the file).
  bool inTransactionElsewhere();

 private:
  bool holdsTransactionByte() const { return transactionCount_ + tableCount_ > 0; }
  void releaseRecords(Owner owner) noexcept;
  void freeRows() noexcept;
  void freeWrite(WriteKind ended) noexcept;

  File& dat_;
  std::set<Owner> openers_;
  Owner exclusive_ = nullptr;
  std::unordered_map<RowId, Owner> records_;  // each a byte on the file unless all rows are held
  std::map<Owner, int> tables_;
  bool allRows_ = false;  // the whole record range on the file
  int tableCount_ = 0;
  int postCount_ = 0;
  int transactionCount_ = 0;
};

}  // namespace quillon::store
