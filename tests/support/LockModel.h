#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>

#include "store/locks/TableLocks.h"

// What the table locks of a few processes must answer and hold, told from the rules and not from their code.
namespace quillon::sim::locks {

using store::kOpenByte;
using store::kRecordBase;
using store::kRecordCount;
using store::kTransactionByte;
using store::kWriteByte;
using store::RowId;
using Answer = store::TableLocks::Answer;

enum class Held { no, shared, exclusive };

inline constexpr int kProcesses = 3;
inline constexpr int kOwners = 3;
inline constexpr std::array<RowId, 5> kRows{1, 2, 3, 1000, kRecordCount - 1};

// The rules as a person states them: what each process has, and what that keeps from the others.
struct ModelledProcess {
  std::map<int, bool> openers;  // owner: exclusive
  std::map<RowId, int> records;
  std::map<int, int> tables;
  int posts = 0;
  int transactions = 0;
  bool allRows = false;  // by a table lock, or a transaction that has locked a record: until both have ended

  bool hasTable() const { return !tables.empty(); }
  bool exclusive() const {
    return std::ranges::any_of(openers, [](const auto& opener) { return opener.second; });
  }
  bool bars(RowId row) const { return allRows || records.contains(row); }
  bool inTransaction() const { return hasTable() || transactions > 0; }
  bool writes() const { return inTransaction() || posts > 0; }

  Held on(std::uint64_t byte) const {
    const auto whole = [](bool held) { return held ? Held::exclusive : Held::no; };
    if (byte == kOpenByte) return openers.empty() ? Held::no : exclusive() ? Held::exclusive : Held::shared;
    if (byte == kWriteByte) return whole(writes());
    if (byte == kTransactionByte) return whole(inTransaction());
    return whole(byte >= kRecordBase && byte < kRecordBase + kRecordCount && bars(byte - kRecordBase));
  }
};

enum class Verb { open, close, record, releaseRecord, table, releaseTable, write, releaseWrite };

struct Operation {
  Verb verb;
  int process;
  int owner;
  RowId row;
  bool flag;  // open: exclusive; write: for a transaction
};

inline bool isTry(Verb verb) {
  return verb == Verb::open || verb == Verb::record || verb == Verb::table || verb == Verb::write;
}

class LockModel {
 public:
  const ModelledProcess& operator[](int process) const { return processes_.at(static_cast<std::size_t>(process)); }
  ModelledProcess& operator[](int process) { return processes_.at(static_cast<std::size_t>(process)); }

  bool possible(const Operation& o) const {
    const ModelledProcess& me = (*this)[o.process];
    switch (o.verb) {
      case Verb::open:
        return !me.openers.contains(o.owner);
      case Verb::close:
        return me.openers.contains(o.owner);
      case Verb::releaseRecord:
        return me.records.contains(o.row) && me.records.at(o.row) == o.owner;
      case Verb::releaseTable:
        return me.tables.contains(o.owner);
      case Verb::releaseWrite:
        return (o.flag ? me.transactions : me.posts) > 0;
      case Verb::record:
      case Verb::table:
      case Verb::write:
        return true;
    }
    return false;
  }

  Answer answer(const Operation& o) const {
    const ModelledProcess& me = (*this)[o.process];
    if (o.verb == Verb::open && o.flag && me.exclusive()) return Answer::heldHere;
    if (o.verb == Verb::record && me.records.contains(o.row)) {
      return me.records.at(o.row) == o.owner ? Answer::granted : Answer::heldHere;
    }
    for (int p = 0; p < kProcesses; ++p) {
      if (p != o.process && bars((*this)[p], o)) return Answer::heldElsewhere;
    }
    return Answer::granted;
  }

  void grant(const Operation& o) {
    ModelledProcess& me = (*this)[o.process];
    if (o.verb == Verb::open) me.openers[o.owner] = o.flag;
    if (o.verb == Verb::record) {
      const bool held = me.records.contains(o.row);
      if (!held && me.inTransaction() && othersHoldNoRecord(o.process)) me.allRows = true;
      me.records[o.row] = o.owner;
    }
    if (o.verb == Verb::table) {
      ++me.tables[o.owner];
      me.allRows = true;
    }
    if (o.verb == Verb::write) ++(o.flag ? me.transactions : me.posts);
    if (o.verb == Verb::releaseRecord) me.records.erase(o.row);
    if (o.verb == Verb::releaseTable && --me.tables[o.owner] == 0) me.tables.erase(o.owner);
    if (o.verb == Verb::releaseWrite) --(o.flag ? me.transactions : me.posts);
    if (o.verb == Verb::close) {
      me.openers.erase(o.owner);
      me.tables.erase(o.owner);
      std::erase_if(me.records, [&](const auto& record) { return record.second == o.owner; });
    }
    me.allRows = me.allRows && me.inTransaction();
  }

 private:
  bool othersHoldNoRecord(int process) const {
    for (int p = 0; p < kProcesses; ++p)
      if (p != process && ((*this)[p].allRows || !(*this)[p].records.empty())) return false;
    return true;
  }
  static bool bars(const ModelledProcess& other, const Operation& o) {
    if (o.verb == Verb::open) return o.flag ? !other.openers.empty() : other.exclusive();
    if (o.verb == Verb::record) return other.bars(o.row);
    if (o.verb == Verb::table) return other.writes() || !other.records.empty();
    return other.writes();
  }

  std::array<ModelledProcess, kProcesses> processes_;
};

}  // namespace quillon::sim::locks
