#include "form/PostingRun.h"

#include "form/App.h"
#include "form/Transaction.h"
#include "store/Database.h"

namespace quillon::form {

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
  if (const Screen* screen = app().find(plan_.screen); screen != nullptr && screen->visible())
    refuse("A conflicting program is running...\rPlease close '" + plan_.name + "' form");
  RunLocks locks(app());
  for (const LockPlan& lock : plan_.locks) locks.take(lock);
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
