#include "form/RecordScreen.h"

#include <algorithm>

#include "form/App.h"
#include "form/NextId.h"
#include "form/QueryListScreen.h"
#include "form/RowKey.h"
#include "form/UsedBy.h"
#include "store/Errors.h"

namespace quillon::form {
namespace {

constexpr int kIdTries = 20;

}  // namespace

void RecordScreen::shown(const Open& open) {
  savedOnce_ = false;
  for (LineSnapshot* snapshot : snapshots_) snapshot->drop();
  if (open.newRow) {
    startNew();
  } else if (!open.locate.empty()) {
    std::string fields;
    std::vector<store::Value> values;
    for (const auto& [field, value] : open.locate) {
      fields += (fields.empty() ? "" : ";") + field;
      values.push_back(value);
    }
    record().refresh();
    if (!record().locate(fields, values)) refuse("This record has been deleted by another user");
  }
  record().events.onEditError = [this](const store::StoreError& error) { return recordError(error); };
  recordShown(open);
}

// What others changed is shown; when they deleted it, the cursor stands on another record, which is none of this
// screen.
store::ErrorAnswer RecordScreen::recordError(const store::StoreError& error) {
  const std::vector<store::Value> key = valuesOf(record(), plan_.key);
  const store::ErrorAnswer answer = app().editError(record(), error);
  if (error.code() != store::Code::recordChanged) return answer;
  if (record().isEmpty() || valuesOf(record(), plan_.key) != key)
    app().closeLater(*this);
  else
    recordShown({});
  return answer;
}

void RecordScreen::shownAgain(const Open& open) {
  if (!mayClose()) abort();
  focusFirst();
  shown(open);
}

void RecordScreen::startNew() {
  record().append();
  for (LineSnapshot* snapshot : snapshots_) snapshot->takeEmpty();
}

bool RecordScreen::isUnsaved() const {
  const auto typesInto = [this](const Table* table) {
    return typed() && target() != nullptr && target()->binding() != nullptr && target()->binding()->cursor() == table;
  };
  return std::ranges::any_of(
             tables(),
             [&](const Table* table) { return table->isOpen() && (table->modified() || typesInto(table)); }) ||
         std::ranges::any_of(snapshots_, [](const LineSnapshot* lines) { return lines->changed(); });
}

void RecordScreen::save() {
  for (auto table = tables().rbegin(); table != tables().rend(); ++table)
    if (*table != &record() && (*table)->isEditing()) (*table)->modified() ? (*table)->post() : (*table)->cancel();
  if (record().isEditing()) {
    postRecord();
    savedOnce_ = true;
  }
  for (Table* table : tables()) table->flush();
  for (LineSnapshot* snapshot : snapshots_) snapshot->drop();
  if (savedOnce_) moveList();
}

// An id that another process took meanwhile is taken anew: nobody typed it, so nobody is to mend it.
void RecordScreen::postRecord() {
  const std::string& table = record().definition().name;
  const bool takesId = plan_.nextId && isNew();
  for (int tries = 1;; ++tries) {
    if (takesId) record()[plan_.key] = nextId(database(), table, plan_.key);
    try {
      return record().post();
    } catch (const store::StoreError& error) {
      if (error.code() != store::Code::keyViolation) throw;
      // Ids are the fields whose names say so; nobody types them, and the words are about what was typed.
      const bool idIsTaken =
          isNew() && plan_.key.ends_with("ID") && isUsed(database(), {table, plan_.key, {}}, record().value(plan_.key));
      if (takesId && idIsTaken && tries < kIdTries) continue;
      if (idIsTaken || plan_.keyViolation.empty()) throw;
      refuse(plan_.keyViolation, focus(plan_.keyFocus));
    }
  }
}

void RecordScreen::undo() {
  app().person().hourglass(true);
  for (LineSnapshot* snapshot : snapshots_) snapshot->restore();
  for (auto table = tables().rbegin(); table != tables().rend(); ++table)
    if ((*table)->isOpen() && (*table)->isEditing()) (*table)->cancel();
  app().person().hourglass(false);
}

// The list may be closed, or its filter may hide the row: neither concerns the record, which is saved.
void RecordScreen::moveList() {
  if (plan_.list.empty()) return;
  Screen* list = app().find(plan_.list);
  if (list == nullptr || !list->visible()) return;
  const std::vector<store::Value> key = valuesOf(record(), plan_.key);
  if (auto* query = dynamic_cast<QueryListScreen*>(list)) return query->moveTo(key);
  const std::string& table = record().definition().name;
  const auto rows =
      std::ranges::find_if(list->tables(), [&](const Table* some) { return some->definition().name == table; });
  if (rows == list->tables().end()) return;
  try {
    (*rows)->refresh();
    (*rows)->locate(plan_.key, key);
  } catch (const store::StoreError&) {
  }
}

void RecordScreen::btnOKClick() {
  save();
  setResult(true);
}

void RecordScreen::btnCancelClick() {
  undo();
  setResult(false);
}

bool RecordScreen::mayClose() {
  if (isUnsaved()) {
    const Button answer = app().person().ask({.tone = Tone::confirmation,
                                              .text = "Do you want to save changes?",
                                              .buttons = {Button::yes, Button::no, Button::cancel},
                                              .standard = Button::yes});
    if (answer == Button::cancel) return false;
    if (answer == Button::yes) {
      takeTyped();
      save();
      return true;
    }
  }
  undo();
  return true;
}

}  // namespace quillon::form
