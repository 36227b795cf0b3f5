#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/Cursor.h"

namespace quillon::form {

class App;

enum class RunLock {
  table,      // others may read it and not write it
  exclusive,  // nobody else has it open: a control table
};

// A table that is locked for as long as a run takes.
struct LockPlan {
  std::string table;
  RunLock kind = RunLock::table;
  std::string words;  // of the Retry and Cancel when another holds it
};

// The tables that a run has locked. They are let go of in the order in which they were taken, whatever happened.
class RunLocks {
 public:
  explicit RunLocks(App& app) : app_(app) {}
  ~RunLocks();
  RunLocks(const RunLocks&) = delete;
  RunLocks& operator=(const RunLocks&) = delete;

  // Tries until it is held or the person gives up, which raises the store's error.
  void take(const LockPlan& plan);
  // Of a table that is held, open. Error when it is none of them.
  store::Cursor& of(std::string_view table);

 private:
  App& app_;
  std::vector<std::unique_ptr<store::Cursor>> cursors_;
};

}  // namespace quillon::form
