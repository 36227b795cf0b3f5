#include "form/PostingRun.h"

#include "base/Text.h"
#include "form/App.h"
#include "form/Transaction.h"
#include "store/Database.h"
#include "store/Errors.h"

namespace quillon::form {

// The locks that a run holds; let go of in the order in which they were taken.
class PostingRun::Locks {
 public:
  explicit Locks(App& app) : app_(app) {}
  ~Locks() {
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
  Locks(const Locks&) = delete;
  Locks& operator=(const Locks&) = delete;

  // Tries until it is held or the person gives up, which raises the store's error.
  void take(const RunPlan::Lock& lock) {
    auto cursor = std::make_unique<store::Cursor>(app_.database(), lock.table, "tbl" + lock.table);
    cursor->setExclusive(lock.kind == RunLock::exclusive);
    while (true) {
      try {
        cursor->open();
        if (lock.kind == RunLock::table) cursor->lockTable();
        break;
      } catch (const store::StoreError& error) {
        if (error.code() != store::Code::recordLocked && error.code() != store::Code::tableInUse) throw;
        const Button answer = app_.person().ask({.tone = Tone::error,
                                                 .text = lock.words,
                                                 .buttons = {Button::retry, Button::cancel},
                                                 .standard = Button::retry});
        if (answer != Button::retry) throw;
      }
    }
    cursors_.push_back(std::move(cursor));
  }

  store::Cursor& of(std::string_view table) {
    for (const auto& cursor : cursors_)
      if (equalFolded(cursor->definition().name, table)) return *cursor;
    throw Error("The run does not lock '" + std::string(table) + "'");
  }

 private:
  App& app_;
  std::vector<std::unique_ptr<store::Cursor>> cursors_;
};

store::Cursor& PostingRun::locked(std::string_view table) { return locks_->of(table); }

void PostingRun::build(Layout& l) {
  l.label("lblRecordCount", [this] { return std::to_string(count_) + plan_.counted; });
  l.progress("ProgressBar");
  l.row(l.button("btnOK", "OK", &PostingRun::btnOKClick).standard(),
        l.button("btnCancel", "Cancel", &PostingRun::btnCancelClick).abandons());
}

void PostingRun::shown(const Open& /*open*/) {
  documents_ = std::make_unique<store::Query>(database(), plan_.documents);
  documents_->open();
  count_ = documents_->recordCount();
}

void PostingRun::btnOKClick() {
  setResult(false);
  if (count_ == 0) return;
  if (app().find(plan_.screen) != nullptr)
    refuse("A conflicting program is running...\rPlease close '" + plan_.name + "' form");
  Locks locks(app());
  for (const RunPlan::Lock& lock : plan_.locks) locks.take(lock);
  setResult(true);
  app().person().hourglass(true);
  struct Closing {
    PostingRun& run;
    ~Closing() {
      try {
        run.end();
      } catch (const std::exception&) {
        // What went wrong before is what the person hears.
      }
      run.locks_ = nullptr;
      run.app().person().hourglass(false);
    }
  };
  locks_ = &locks;
  const Closing closing{*this};
  // Under the locks this is the true working set; the label's count may be old.
  documents_->close();
  documents_->open();
  begin();
  walk();
}

void PostingRun::walk() {
  transact(database(), plan_.transaction, [this] {
    const auto total = static_cast<long>(documents_->recordCount());
    long done = 0;
    for (documents_->first(); !documents_->eof(); documents_->next()) {
      post(*documents_);
      app().person().progress({.text = plan_.title, .done = ++done, .total = total});
    }
  });
}

}  // namespace quillon::form
