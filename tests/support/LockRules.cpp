#include "support/LockRules.h"

namespace quillon::sim {
namespace {

constexpr int kLocked = 10258, kChanged = 8708, kInUse = 11013, kBadTransaction = 9015;
using State = RuleCursor::State;

bool isOpen(const RuleCursor& cursor) { return cursor.state != State::closed; }

}  // namespace

const LockRules::Rows& LockRules::view(int process, int table) const {
  const auto& own = pending_[at(process)][at(table)];
  return own ? *own : committed_[at(table)];
}

LockRules::Rows& LockRules::writable(int process, int table) {
  auto& own = pending_[at(process)][at(table)];
  if (!own && !covered_[at(process)].contains(table) && !holdsTable(process, table)) return committed_[at(table)];
  if (!own) own = committed_[at(table)];
  return *own;
}

bool LockRules::holdsTable(int process, int table) const {
  for (int c = 0; c < kRuleCursors; ++c) {
    const RuleCursor& cursor = cursors_[at(process)][at(c)];
    if (tableOfCursor(c) == table && (cursor.tableLocks > 0 || cursor.exclusive)) return true;
  }
  return false;
}

bool LockRules::bound(int process, int table) const {
  for (int p = 0; p < kRuleProcesses; ++p) {
    if (p == process) continue;
    if (covered_[at(p)].contains(table)) return true;
    for (int c = 0; c < kRuleCursors; ++c)
      if (tableOfCursor(c) == table && cursors_[at(p)][at(c)].tableLocks > 0) return true;
  }
  return false;
}

bool LockRules::openElsewhere(int process, int table, bool exclusivelyOnly) const {
  for (int p = 0; p < kRuleProcesses; ++p) {
    if (p == process) continue;
    if (!exclusivelyOnly && covered_[at(p)].contains(table)) return true;
    for (int c = 0; c < kRuleCursors; ++c) {
      const RuleCursor& cursor = cursors_[at(p)][at(c)];
      if (tableOfCursor(c) == table && (exclusivelyOnly ? cursor.exclusive : isOpen(cursor))) return true;
    }
  }
  return false;
}

bool LockRules::lockedByOther(int process, int cursor, int table, int row) const {
  for (int p = 0; p < kRuleProcesses; ++p)
    for (int c = 0; c < kRuleCursors; ++c) {
      const RuleCursor& other = cursors_[at(p)][at(c)];
      if ((p != process || c != cursor) && tableOfCursor(c) == table && other.state == State::edit && other.row == row)
        return true;
    }
  return false;
}

void LockRules::tellOwn(int process, int table, int row, std::optional<int> value) {
  for (int c = 0; c < kRuleCursors; ++c) {
    RuleCursor& cursor = cursors_[at(process)][at(c)];
    if (tableOfCursor(c) == table && isOpen(cursor) && cursor.row == row) cursor.seen = value;
  }
}

void LockRules::toBrowse(RuleCursor& cursor) {
  if (isOpen(cursor)) cursor.state = State::browse;
}

int LockRules::open(int process, int cursorAt, bool exclusive) {
  RuleCursor& cursor = this->cursor(process, cursorAt);
  const int table = tableOfCursor(cursorAt);
  if (openElsewhere(process, table, !exclusive)) return kInUse;
  for (int c = 0; c < kRuleCursors && exclusive; ++c)
    if (tableOfCursor(c) == table && this->cursor(process, c).exclusive) return kInUse;
  cursor = {};
  cursor.state = State::browse;
  cursor.exclusive = exclusive;
  return 0;
}

void LockRules::close(int process, int cursorAt) {
  const int table = tableOfCursor(cursorAt);
  if (pending_[at(process)][at(table)] && !covered_[at(process)].contains(table)) settle(process);
  cursor(process, cursorAt) = {};
}

bool LockRules::goTo(int process, int cursorAt, int row) {
  RuleCursor& cursor = this->cursor(process, cursorAt);
  const Rows& rows = view(process, tableOfCursor(cursorAt));
  const auto found = rows.find(row);
  if (found == rows.end()) return false;
  cursor.row = row;
  cursor.seen = found->second;
  return true;
}

int LockRules::edit(int process, int cursorAt) {
  RuleCursor& cursor = this->cursor(process, cursorAt);
  const int table = tableOfCursor(cursorAt);
  if (bound(process, table) || lockedByOther(process, cursorAt, table, *cursor.row)) return kLocked;
  const Rows& rows = view(process, table);
  const auto found = rows.find(*cursor.row);
  if (found == rows.end() || !cursor.seen || *cursor.seen != found->second) return kChanged;
  cursor.state = State::edit;
  cursor.typedRow = *cursor.row;
  return 0;
}

void LockRules::insert(int process, int cursorAt, int row) {
  RuleCursor& cursor = this->cursor(process, cursorAt);
  cursor.state = State::insert;
  cursor.typedRow = row;
}

int LockRules::post(int process, int cursorAt) {
  RuleCursor& cursor = this->cursor(process, cursorAt);
  const int table = tableOfCursor(cursorAt);
  if (bound(process, table)) {
    settle(process);  // nobody is waited for while a gathered group keeps others waiting
    return kLocked;
  }
  writable(process, table)[cursor.typedRow] = cursor.typed;
  cursor.state = State::browse;
  cursor.row = cursor.typedRow;
  tellOwn(process, table, cursor.typedRow, cursor.typed);
  return 0;
}

void LockRules::cancel(int process, int cursorAt) { toBrowse(cursor(process, cursorAt)); }

int LockRules::remove(int process, int cursorAt) {
  RuleCursor& cursor = this->cursor(process, cursorAt);
  if (const int code = edit(process, cursorAt)) return code;
  const int table = tableOfCursor(cursorAt);
  writable(process, table).erase(*cursor.row);
  cursor.state = State::browse;
  tellOwn(process, table, *cursor.row, {});
  cursor.row.reset();
  return 0;
}

int LockRules::lockTable(int process, int cursorAt) {
  const int table = tableOfCursor(cursorAt);
  if (bound(process, table)) return kLocked;
  for (int p = 0; p < kRuleProcesses; ++p)
    for (int c = 0; c < kRuleCursors; ++c)
      if (p != process && tableOfCursor(c) == table && cursor(p, c).state == State::edit) return kLocked;
  ++cursor(process, cursorAt).tableLocks;
  return 0;
}

void LockRules::unlockTable(int process, int cursorAt) {
  if (cursor(process, cursorAt).tableLocks == 0) return;
  settle(process);
  --cursor(process, cursorAt).tableLocks;
}

int LockRules::startTransaction(int process, const std::set<int>& tables) {
  if (inTransaction(process)) return kBadTransaction;
  settle(process);
  for (const int table : tables) {
    if (openElsewhere(process, table, true)) return kInUse;
    if (bound(process, table)) return kLocked;
  }
  covered_[at(process)] = tables;
  return 0;
}

void LockRules::commit(int process) {
  for (const int table : covered_[at(process)])
    if (auto& own = pending_[at(process)][at(table)]) {
      committed_[at(table)] = *own;
      own.reset();
    }
  covered_[at(process)].clear();
}

void LockRules::rollback(int process) {
  for (const int table : covered_[at(process)]) {
    pending_[at(process)][at(table)].reset();
    for (int c = 0; c < kRuleCursors; ++c) {
      if (tableOfCursor(c) != table) continue;
      toBrowse(cursor(process, c));
      cursor(process, c).row.reset();
    }
  }
  covered_[at(process)].clear();
}

void LockRules::settle(int process) {
  for (int table = 0; table < kRuleTables; ++table) {
    auto& own = pending_[at(process)][at(table)];
    if (!own || covered_[at(process)].contains(table)) continue;
    committed_[at(table)] = *own;
    own.reset();
  }
}

void LockRules::kill(int process) {
  covered_[at(process)].clear();
  for (auto& own : pending_[at(process)]) own.reset();
  for (RuleCursor& cursor : cursors_[at(process)]) cursor = {};
}

}  // namespace quillon::sim
