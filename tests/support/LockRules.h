#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>

// Who may do what while others hold locks and transactions, and what each process sees, as rules over plain values.
// Two tables; every process has three cursors on the first and two on the second.
namespace quillon::sim {

inline constexpr int kRuleProcesses = 3, kRuleCursors = 5, kRuleTables = 2;
constexpr int tableOfCursor(int cursor) { return cursor < 3 ? 0 : 1; }

struct RuleCursor {
  enum class State { closed, browse, edit, insert } state = State::closed;
  std::optional<int> row;   // where it stands, known to the model
  std::optional<int> seen;  // the value that it read, or that its own process gave the row; none: deleted here
  int typed = 0, typedRow = 0;
  int tableLocks = 0;
  bool exclusive = false;
};

// Calls are named after the cursor's and return the code that the store must give; refused, they change nothing.
class LockRules {
 public:
  using Rows = std::map<int, int>;

  RuleCursor& cursor(int process, int cursor) { return cursors_[at(process)][at(cursor)]; }
  const Rows& view(int process, int table) const;
  bool inTransaction(int process) const { return !covered_[at(process)].empty(); }

  void putRow(int table, int row, int value) { committed_[at(table)][row] = value; }
  int open(int process, int cursor, bool exclusive);
  void close(int process, int cursor);
  bool goTo(int process, int cursor, int row);
  int edit(int process, int cursor);
  void insert(int process, int cursor, int row);
  int post(int process, int cursor);
  void cancel(int process, int cursor);
  int remove(int process, int cursor);
  int lockTable(int process, int cursor);
  void unlockTable(int process, int cursor);
  int startTransaction(int process, const std::set<int>& tables);
  void commit(int process);
  void rollback(int process);
  void settle(int process);
  void kill(int process);

 private:
  static std::size_t at(int number) { return static_cast<std::size_t>(number); }
  bool holdsTable(int process, int table) const;  // by a table lock or an exclusive open
  bool bound(int process, int table) const;       // another's transaction or table lock is in the way
  bool openElsewhere(int process, int table, bool exclusivelyOnly) const;
  bool lockedByOther(int process, int cursor, int table, int row) const;
  Rows& writable(int process, int table);
  void tellOwn(int process, int table, int row, std::optional<int> value);
  void toBrowse(RuleCursor& cursor);

  std::array<Rows, kRuleTables> committed_;
  std::array<std::array<std::optional<Rows>, kRuleTables>, kRuleProcesses> pending_;
  std::array<std::set<int>, kRuleProcesses> covered_;
  std::array<std::array<RuleCursor, kRuleCursors>, kRuleProcesses> cursors_;
};

}  // namespace quillon::sim
