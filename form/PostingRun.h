#pragma once

#include <memory>
#include <string>
#include <vector>

#include "form/RunLocks.h"
#include "form/Screen.h"
#include "store/Query.h"

namespace quillon::form {

// What a run locks, in which order and with which words, and what its transaction covers.
struct RunPlan {
  std::string title;         // "Post Journal Vouchers"
  std::string counted;       // " JV(s) to be posted"
  std::string documents;     // the statement that selects them
  std::string screen, name;  // of the entry screen that must be closed: "frmJV", "Journal Voucher"
  std::vector<LockPlan> locks;
  std::vector<std::string> transaction;
};

// A run that takes every waiting document of a kind and writes its effect, all or none: a small dialog with a count, a
// progress bar, OK and Cancel.
//
// Keeps: nothing is written unless every lock is held; what was written is committed together or rolled back; locks are
// freed and tables closed on every path. Its result is confirmed once the locks are held, even when the run then fails.
class PostingRun : public Screen {
 public:
  PostingRun(App& app, RunPlan plan) : Screen(app), plan_(std::move(plan)) {}
  std::string title() override { return plan_.title; }

 protected:
  // Under the locks, before the transaction: opens and refreshes what else the run reads and writes.
  virtual void begin() {}
  // Posts the document that the cursor stands on. Raises to end the run; everything is rolled back then.
  virtual void post(store::Cursor& document) = 0;
  // Flushes and closes what `begin` opened; runs whatever happened.
  virtual void end() {}
  // The table that the plan locks, open and locked while documents are posted.
  store::Cursor& locked(std::string_view table);

 private:
  void build(Layout& layout) override;
  void shown(const Open& open) override;
  void btnOKClick();
  void btnCancelClick() { setResult(false); }
  void walk();

  RunPlan plan_;
  std::uint64_t count_ = 0;
  std::unique_ptr<store::Query> documents_;
  RunLocks* locks_ = nullptr;
};

}  // namespace quillon::form
