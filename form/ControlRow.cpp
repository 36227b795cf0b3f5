#include "form/ControlRow.h"

#include <utility>

#include "base/Errors.h"
#include "form/App.h"
#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Environment.h"
#include "store/Errors.h"

namespace quillon::form {
namespace {

constexpr int kPause = 10'000;  // microseconds

// While one lives a lock is tried once.
class OneTry {
 public:
  explicit OneTry(store::Session& session) : settings_(session.settings()), tries_(settings_.lockRetryCount) {
    settings_.lockRetryCount = 1;
  }
  ~OneTry() { settings_.lockRetryCount = tries_; }
  OneTry(const OneTry&) = delete;
  OneTry& operator=(const OneTry&) = delete;

 private:
  store::Settings& settings_;
  int tries_;
};

bool tryOpen(store::Cursor& cursor, bool last) {
  const OneTry once(cursor.database().session());
  try {
    cursor.open();
    return true;
  } catch (const store::StoreError& error) {
    if (error.code() != store::Code::tableInUse || last) throw;
    return false;
  }
}

void openExclusively(App& app, const ControlRow& control, store::Cursor& cursor) {
  cursor.setExclusive(true);
  while (true) {
    for (int attempt = 1; attempt <= control.attempts; ++attempt) {
      if (tryOpen(cursor, attempt == control.attempts && control.words.empty())) return;
      cursor.database().session().environment().clock.sleep(kPause);
    }
    const Button answer = app.person().ask({.tone = Tone::error,
                                            .text = control.words,
                                            .buttons = {Button::retry, Button::cancel},
                                            .standard = Button::retry});
    if (answer == Button::cancel) throw Abort();
  }
}

}  // namespace

// Without it numbers would begin anew, and meet those that documents have.
void requireControlRow(store::Cursor& row) {
  if (row.isEmpty())
    throw Error("The table '" + row.definition().name +
                "' has lost its row of next numbers. Please restore it from a backup.");
}

void takeNumbers(App& app, const ControlRow& control, const std::function<void(store::Cursor& row)>& take) {
  store::Cursor row(app.database(), control.table, "tbl" + control.table);
  openExclusively(app, control, row);
  requireControlRow(row);
  row.edit();
  take(row);
  row.post();
  row.flush();
  row.close();
}

}  // namespace quillon::form
