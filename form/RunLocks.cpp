#include "form/RunLocks.h"

#include "base/Text.h"
#include "form/App.h"
#include "store/Errors.h"

namespace quillon::form {

RunLocks::~RunLocks() {
  for (const auto& cursor : cursors_) {
    try {
      cursor->flush();
      cursor->unlockTable();
      cursor->close();
    } catch (const store::StoreError&) {
      // A publish that failed is told at the next settle; the lock ends with the cursor.
    }
  }
}

void RunLocks::take(const LockPlan& plan) {
  auto cursor = std::make_unique<store::Cursor>(app_.database(), plan.table, "tbl" + plan.table);
  cursor->setExclusive(plan.kind == RunLock::exclusive);
  while (true) {
    try {
      cursor->open();
      if (plan.kind == RunLock::table) cursor->lockTable();
      break;
    } catch (const store::StoreError& error) {
      if (error.code() != store::Code::recordLocked && error.code() != store::Code::tableInUse) throw;
      const Button answer = app_.person().ask({.tone = Tone::error,
                                               .text = plan.words,
                                               .buttons = {Button::retry, Button::cancel},
                                               .standard = Button::retry});
      if (answer != Button::retry) throw;
    }
  }
  cursors_.push_back(std::move(cursor));
}

store::Cursor& RunLocks::of(std::string_view table) {
  for (const auto& cursor : cursors_)
    if (equalFolded(cursor->definition().name, table)) return *cursor;
  throw Error("The run does not lock '" + std::string(table) + "'");
}

}  // namespace quillon::form
