#include "form/ListScreen.h"

#include "form/App.h"
#include "form/FilterScreen.h"
#include "form/Grid.h"
#include "store/Database.h"

namespace quillon::form {

std::string ListScreen::title() {
  std::string states = viewName_;
  if (isFiltered()) states += states.empty() ? "Filtered" : ", Filtered";
  return plan_.title + (states.empty() ? "" : " (" + states + ")");
}

void ListScreen::setFilter(const std::string& text) {
  filter_ = text;
  applyFilter();
}

void ListScreen::setJump(const std::string& clause) {
  jump_ = clause;
  applyFilter();
}

void ListScreen::setView(std::string name, std::string clause) {
  viewName_ = std::move(name);
  view_ = std::move(clause);
  applyFilter();
}

void ListScreen::resetFilter() {
  filter_.clear();
  jump_.clear();
  if (auto* filter =
          dynamic_cast<FilterScreen*>(app().find(plan_.filterScreen.substr(plan_.filterScreen.empty() ? 0 : 1))))
    filter->reset();
  applyFilter();
}

void ListScreen::applyFilter() {
  std::string all;
  for (const std::string* part : {&filter_, &jump_, &view_})
    if (!part->empty()) all += (all.empty() ? "" : " AND ") + *part;
  Table& filtered = *tables().front();
  filtered.setFilter(all);
  filtered.setFiltered(!all.empty());
}

Control& ListScreen::editMenu(Layout& l) {
  Control& make = l.entry("mnuNew", "&New", &ListScreen::mnuNewClick).key("Ctrl+N");
  Control& edit = l.entry("mnuEdit", "&Edit", &ListScreen::mnuEditClick);
  Control& remove = l.entry("mnuDelete", "&Delete", &ListScreen::mnuDeleteClick);
  Control& find = l.entry("mnuFind", "&Find...", &ListScreen::mnuFindClick).key("Ctrl+F");
  Control& filter =
      l.entry("mnuFilter", "F&ilter...", &ListScreen::mnuFilterClick).checkedWhen([this] { return isFiltered(); });
  Control& refresh = l.entry("mnuRefresh", "&Refresh", &ListScreen::mnuRefreshClick).key("F5");
  return l.menu("&Edit", make, edit, remove, find, filter, refresh);
}

Control& ListScreen::sortEntry(Layout& l, std::string name, std::string caption, std::string index) {
  return l.entry(std::move(name), std::move(caption), [this, index] { rows().setIndex(index); })
      .checkedWhen([this, index] { return rows().indexName() == index; });
}

Control& ListScreen::listGrid(Layout& l, std::vector<std::unique_ptr<Control>> columns) {
  Control& control = l.grid(rows(), std::move(columns)).opens([this] { mnuEditClick(); });
  control.grid()->search = [this](const std::string& typed) { find(typed); };
  return control;
}

void ListScreen::requireRow() {
  if (rows().isEmpty()) abort();
}

void ListScreen::mnuNewClick() { app().open(plan_.record, {.newRow = true}); }

void ListScreen::mnuEditClick() {
  requireRow();
  app().open(plan_.record, {.locate = {{keyField(), rows().value(keyField())}}});
}

void ListScreen::mnuDeleteClick() {
  requireRow();
  // What hangs on the row goes with it, or neither goes.
  const store::Database::BulkScope whole(database());
  rows().remove();
  rows().flush();
}

void ListScreen::mnuFilterClick() { app().runModal(plan_.filterScreen); }
void ListScreen::mnuRefreshClick() { rows().refresh(); }

void ListScreen::find(const std::string& typed) {
  Open open{.title = "Find", .values = {{"text", store::Value(typed)}, {"key", rows().value(keyField())}}};
  app().runModal(plan_.find, open);
}

void ListScreen::shown(const Open& open) {
  setFocus(gridOf(rows()));
  rows().refresh();
  if (!open.filter.empty()) resetFilter();
  jump_ = open.filter;
  applyFilter();
  for (const auto& [field, value] : open.locate) rows().locate(field, {value});
}

void ListScreen::closed() {
  if (!rows().isEmpty()) result().values[keyField()] = rows().value(keyField());
}

void ListScreen::shownAgain(const Open& open) {
  resetFilter();
  shown(open);
}

}  // namespace quillon::form
