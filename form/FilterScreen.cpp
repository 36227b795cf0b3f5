#include "form/FilterScreen.h"

#include "form/App.h"
#include "form/ListScreen.h"

namespace quillon::form {

void FilterScreen::reset() {
  for (Variable* variable : variables_) variable->reset();
}

void FilterScreen::shown(const Open& /*open*/) {
  clearsJump_ = false;
  before_.clear();
  for (const Variable* variable : variables_) before_.push_back(variable->value);
}

void FilterScreen::btnOKClick() {
  const std::string filter = expression();
  Screen* list = app().find(list_.substr(1));
  if (list == nullptr || !list->visible()) list = &app().open(list_);
  auto& rows = dynamic_cast<ListScreen&>(*list);
  if (clearsJump_) rows.setJump("");
  rows.setFilter(filter);
  setResult(true);
}

void FilterScreen::btnResetClick() {
  reset();
  clearsJump_ = true;
}

// Every other way out is Cancel.
void FilterScreen::closed() {
  if (result().confirmed) return;
  for (std::size_t i = 0; i < variables_.size(); ++i) variables_[i]->set(before_[i]);
}

Control& FilterScreen::buttons(Layout& l) {
  Control& ok = l.button("btnOK", "OK", &FilterScreen::btnOKClick).standard();
  Control& cancel = l.button("btnCancel", "Cancel", &FilterScreen::btnCancelClick).abandons();
  Control& clear = l.button("btnReset", "&Reset", &FilterScreen::btnResetClick).abandons();
  return l.row(ok, cancel, clear);
}

ConverterPtr orAllConverter(const Choices& choices) {
  Choices all;
  all.emplace_back(store::Value(), "All");
  all.insert(all.end(), choices.begin(), choices.end());
  return choicesConverter(std::move(all));
}

ConverterPtr yesNoAllConverter() {
  return choicesConverter({{store::Value(true), "Yes"}, {store::Value(false), "No"}, {store::Value(), "All"}});
}

std::string allOf(std::initializer_list<std::string> conditions) {
  std::string all;
  for (const std::string& condition : conditions)
    if (!condition.empty()) all += (all.empty() ? "" : " AND ") + condition;
  return all;
}

}  // namespace quillon::form
