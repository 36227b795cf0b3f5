#pragma once

#include <string>
#include <vector>

#include "form/LineSnapshot.h"
#include "form/Screen.h"
#include "form/Table.h"

namespace quillon::form {

// What a record screen does as all others do.
struct RecordPlan {
  std::string key;           // the fields, joined by ';', by which its row is found, here and in the list
  std::string list;          // instance name of its list; empty: none
  std::string keyViolation;  // what a value that is there already is told as
  std::string keyFocus;      // and the field to go to
  bool nextId = false;       // a new record's key is one above the highest of its table, taken when it is saved
};

// A screen over one record of the first of its tables, and the lines that hang on it.
//
// Keeps: nothing is lost without a question; Cancel, and No to "Do you want to save changes?", leave the record and its
// lines as they were when it was opened.
class RecordScreen : public Screen {
 public:
  RecordScreen(App& app, RecordPlan plan) : Screen(app), plan_(std::move(plan)) {}

 protected:
  Table& record() const { return *tables().front(); }
  bool isNew() const { return record().state() == store::CursorState::insert; }
  // Lines that Cancel puts back.
  void restores(LineSnapshot& lines) { snapshots_.push_back(&lines); }

  // Posts the lines' pending row and the record, flushes, and moves the list there. A screen that keeps more than its
  // tables do saves that too, and says what is unsaved of it.
  virtual void save();
  virtual bool isUnsaved() const;
  // Puts the lines back and cancels.
  void undo();
  // Starts another record.
  void startNew();
  bool savedOnce() const { return savedOnce_; }

  // Shows the record in the list, where that is on view.
  void moveList();

  // The commands that every one has.
  void btnOKClick();
  void btnCancelClick();

  void shown(const Open& open) override;
  void shownAgain(const Open& open) override;
  bool mayClose() override;
  // When it stands on its record, new or old.
  virtual void recordShown(const Open& /*open*/) {}

 private:
  store::ErrorAnswer recordError(const store::StoreError& error);
  void postRecord();

  RecordPlan plan_;
  std::vector<LineSnapshot*> snapshots_;
  bool savedOnce_ = false;
};

}  // namespace quillon::form
