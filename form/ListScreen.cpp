#include "form/ListScreen.h"

#include "base/Text.h"
#include "form/App.h"
#include "form/FilterScreen.h"
#include "form/Grid.h"
#include "store/Database.h"

namespace quillon::form {

std::string ListScreen::title() {
  const std::string all = states();
  return plan_.title + (all.empty() ? "" : " (" + all + ")");
}

std::string ListScreen::states() const {
  std::string all = viewName_;
  if (isFiltered()) all += all.empty() ? "Filtered" : ", Filtered";
  return all;
}

Open ListScreen::asShown() {
  Open open{.filter = condition()};
  open.values["selection"] = store::Value(states());
  if (!rows().isOpen()) return open;
  std::string order;
  for (const store::IndexDef& index : rows().definition().indexes) {
    if (index.name.empty() || !equalFolded(index.name, rows().indexName())) continue;
    for (const store::IndexPart& part : index.parts)
      order += (order.empty() ? "" : ", ") + rows().definition().fields[static_cast<std::size_t>(part.field)].name +
               (part.descending ? " DESC" : "");
    if (index.caseInsensitive) order += " NOCASE";
  }
  open.values["order"] = store::Value(order);
  return open;
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
  clearConditions();
  applyFilter();
}

void ListScreen::clearConditions() {
  filter_.clear();
  jump_.clear();
  if (plan_.filterScreen.empty()) return;
  if (auto* filter = dynamic_cast<FilterScreen*>(app().find(plan_.filterScreen.substr(1)))) filter->reset();
}

std::string ListScreen::condition() const {
  std::string all;
  for (const std::string* part : {&filter_, &jump_, &view_})
    if (!part->empty()) all += (all.empty() ? "" : " AND ") + *part;
  return all;
}

void ListScreen::applyFilter() { showOnly(condition()); }

void ListScreen::showOnly(const std::string& condition) {
  Table& filtered = *tables().front();
  filtered.setFilter(condition);
  filtered.setFiltered(!condition.empty());
}

Control& ListScreen::editMenu(Layout& l) {
  std::vector<Control*> entries;
  if (!plan_.record.empty()) {
    entries.push_back(&l.entry("mnuNew", "&New", &ListScreen::mnuNewClick).key("Ctrl+N"));
    entries.push_back(&l.entry("mnuEdit", "&Edit", &ListScreen::mnuEditClick));
    entries.push_back(&l.entry("mnuDelete", "&Delete", &ListScreen::mnuDeleteClick));
  }
  if (!plan_.find.empty()) entries.push_back(&l.entry("mnuFind", "&Find...", &ListScreen::mnuFindClick).key("Ctrl+F"));
  if (!plan_.filterScreen.empty())
    entries.push_back(
        &l.entry("mnuFilter", "F&ilter...", &ListScreen::mnuFilterClick).checkedWhen([this] { return isFiltered(); }));
  entries.push_back(&l.entry("mnuRefresh", "&Refresh", &ListScreen::mnuRefreshClick).key("F5"));
  return l.menuOf("&Edit", entries);
}

Control& ListScreen::sortEntry(Layout& l, std::string name, std::string caption, const std::string& index) {
  return l.entry(std::move(name), std::move(caption), [this, index] { rows().setIndex(index); })
      .checkedWhen([this, index] { return rows().indexName() == index; });
}

Control& ListScreen::listGrid(Layout& l, std::vector<std::unique_ptr<Control>> columns) {
  Control& control = l.grid(rows(), std::move(columns)).opens([this] { mnuEditClick(); });
  if (!plan_.find.empty()) control.grid()->search = [this](const std::string& typed) { find(typed); };
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
  if (rows().isOpen()) rows().refresh();
  if (!open.filter.empty()) clearConditions();
  jump_ = open.filter;
  applyFilter();
  for (const auto& [field, value] : open.locate) rows().locate(field, {value});
}

void ListScreen::closed() {
  if (!rows().isEmpty()) result().values[keyField()] = rows().value(keyField());
}

void ListScreen::shownAgain(const Open& open) {
  clearConditions();
  shown(open);
}

}  // namespace quillon::form
