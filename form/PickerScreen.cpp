#include "form/PickerScreen.h"

#include "form/App.h"
#include "form/FilterScreen.h"

namespace quillon::form {
namespace {

store::Value valueOf(const Open& open, const char* name) {
  const auto found = open.values.find(name);
  return found == open.values.end() ? store::Value() : found->second;
}

}  // namespace

Control& PickerScreen::findBox(Layout& l, std::string caption, Box& box) {
  boxes_.push_back(&box);
  box.edit = &l.edit(box.control, std::move(caption), box.text, textConverter(0));
  return box.edit->onTyping([this, &box](const std::string& text) { type(box, text); });
}

void PickerScreen::type(Box& box, const std::string& text) {
  rows().setIndex(box.index);
  if (text.empty())
    rows().first();
  else
    rows().findNearest({store::Value(text)});
}

Control& PickerScreen::pickGrid(Layout& l, std::vector<std::unique_ptr<Control>> columns) {
  Control& grid = l.grid(rows(), std::move(columns)).opens([this] { btnOKClick(); });
  for (Box* box : boxes_) box->edit->movesIn(grid);
  return grid;
}

Control& PickerScreen::buttons(Layout& l, Control& toList) {
  Control& ok = l.button("btnOK", "&OK", &PickerScreen::btnOKClick).standard();
  Control& cancel = l.button("btnCancel", "&Cancel", &PickerScreen::btnCancelClick).abandons();
  return l.row(ok, cancel, toList);
}

void PickerScreen::btnOKClick() {
  if (rows().isEmpty()) return btnCancelClick();
  result().values["key"] = rows().value(key_);
  setResult(true);
}

void PickerScreen::maintain(std::string_view list, const store::Value& level) {
  const store::Value key = rows().isEmpty() ? store::Value() : rows().value(key_);
  Open open;
  if (!key.isNull()) open.locate[key_] = key;
  if (!level.isNull()) open.values["level"] = level;
  const Result chosen = app().runModal(list, open);
  rows().refresh();
  const auto there = chosen.values.find(key_);
  const store::Value wanted = there == chosen.values.end() ? key : there->second;
  if (!wanted.isNull()) rows().locate(key_, {wanted});
}

void PickerScreen::narrow(const std::string& condition) {
  condition_ = condition;
  applyFilter();
}

void PickerScreen::applyFilter() {
  const std::string all = allOf({callersFilter_, condition_});
  rows().setFilter(all);
  rows().setFiltered(!all.empty());
}

void PickerScreen::shown(const Open& open) {
  title_ = open.title;
  callersFilter_ = open.filter;
  condition_.clear();
  rows().refresh();
  applyFilter();
  const store::Value index = valueOf(open, "index"), key = valueOf(open, "key"), text = valueOf(open, "text");
  if (!index.isNull() && !index.asText().empty()) rows().setIndex(index.asText());
  if (key.isNull() || key == store::Value(0) || !rows().locate(key_, {key})) rows().first();
  for (Box* box : boxes_) box->text.reset();
  // What was typed goes into the box of the order that the picker begins with, to be typed on.
  for (Box* box : boxes_) {
    if (rows().indexName() != box->index) continue;
    setFocus(find(box->control));
    if (text.isNull() || text.asText().empty()) break;
    box->text.set(text);
    setTyped(text.asText());
    type(*box, text.asText());
    break;
  }
}

}  // namespace quillon::form
