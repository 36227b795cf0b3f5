#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/Environment.h"
#include "store/locks/TableLocks.h"

namespace quillon::store {

enum class LockKind : std::uint32_t {
  exclusiveOpen = 1,
  record,
  table,
  write
};  // write: by a transaction or a long Post

// A lock on a table, as it is noted and asked for.
struct NotedLock {
  LockKind kind = LockKind::record;
  std::uint64_t table = 0;  // Holders::tableHash
  RowId row = 0;            // of a record lock, else 0
  friend bool operator==(const NotedLock&, const NotedLock&) = default;
};

struct Holder {
  std::string user;     // up to 40 characters
  std::string machine;  // up to 64 bytes
  std::int64_t process = 0;
  std::int64_t since = 0;  // unix seconds: when the lock was noted
};

// Who holds what in a company folder, so that a refused lock can name the person in the way. It only words messages:
// nothing here decides whether a lock is granted, and trouble with the file makes messages vaguer and raises nothing.
//
// Quillon.LCK has 250 slots of 512 bytes. A process owns a slot as long as its handle keeps the byte kLockBase + slot
// locked, so what a dead process left is void at once. Numbers are in the machine's own (little-endian) order.
//   0    u32  mark
//   4    u8   bytes of user, u8 bytes of machine, u16 0
//   8    i64  process number
//   16   i64  unix seconds of the opening
//   24   u64  0
//   32   user, up to 160 bytes
//   192  machine, up to 64 bytes
//   256  8 notes {u32 kind (0: empty), u32 0, u64 table, u64 row, i64 unix seconds}
class Holders {
 public:
  // Takes a slot. Where that fails (read-only folder, all slots taken, no locks) nothing will be noted.
  Holders(const Environment& environment, const std::string& folder);
  // Letter case apart: names of one table give one number.
  static std::uint64_t tableHash(std::string_view table);

  // For locks that are held; counted. Beyond eight, a lock is written down when an earlier one is forgotten.
  // One write of 32 bytes at most, no sync.
  void note(const NotedLock& lock) noexcept;
  void forget(const NotedLock& lock) noexcept;

  // The living process, other than this one, whose noted lock best explains the refusal of `wanted`.
  std::optional<Holder> find(const NotedLock& wanted) noexcept;
  // The other living processes in the folder.
  std::vector<Holder> others() noexcept;
  // "ANNA on PC-7 since 14:05", in local time, with the date when that is not today.
  std::string describe(const Holder& holder) const;

 private:
  struct Note {
    NotedLock lock;
    std::int64_t since = 0;
    int count = 0;
    int place = -1;  // in the slot; -1 while there is none
  };

  void takeSlot(const Environment& environment);
  void write(int place, const Note* note) noexcept;
  std::vector<std::byte> readSlots();
  bool livesElsewhere(std::size_t slot);

  Clock& clock_;
  std::unique_ptr<File> file_;  // the only handle on it in this process; null when there is no file to be had
  int slot_ = -1;
  std::vector<Note> notes_;  // in the order of noting
};

// Who is in the way, as words: "ANNA on PC-7 since 14:05", or "another user" where nobody is found or noted (`holders`
// null, as for a database in memory). Who has a table open like anybody else is not noted, which would cost
// every opening two writes: what an exclusive open meets then is one of those in the folder, and all are named.
std::string inTheWay(Holders* holders, const NotedLock& wanted);

}  // namespace quillon::store
