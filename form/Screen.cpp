#include "form/Screen.h"

#include <algorithm>

#include "base/Text.h"
#include "form/App.h"
#include "form/Ending.h"
#include "form/Grid.h"
#include "form/Registry.h"
#include "form/Table.h"

namespace quillon::form {
namespace {

// The first control for which `test` holds, in reading order; columns are not among them.
template <typename Test>
Control* search(Control& control, const Test& test) {
  if (test(control)) return &control;
  for (const auto& child : control.children())
    if (Control* found = search(*child, test)) return found;
  return nullptr;
}

bool pathFrom(Control& from, const Control& to, std::vector<Control*>& path) {
  for (const auto& child : from.children()) {
    path.push_back(child.get());
    if (child.get() == &to || pathFrom(*child, to, path)) return true;
    path.pop_back();
  }
  return false;
}

bool turns(const Control& control) { return control.kind() == Kind::pages || control.kind() == Kind::steps; }

// The place of a page among those of what holds it.
int placeOf(const Control& holder, const Control& page) {
  const auto& pages = holder.children();
  return static_cast<int>(std::ranges::find(pages, &page, &std::unique_ptr<Control>::get) - pages.begin());
}

void collectFocusable(Control& control, std::vector<Control*>& all) {
  if (!control.visible() || !control.enabled()) return;
  if (takesFocus(control.kind())) all.push_back(&control);
  int place = 0;
  for (const auto& child : control.children())
    if (!turns(control) || place++ == control.page) collectFocusable(*child, all);
}

}  // namespace

Screen::~Screen() = default;

store::Database& Screen::database() const { return app_.database(); }

Control* Screen::find(std::string_view name) {
  if (name.empty()) return nullptr;
  return search(*root_, [&](const Control& control) { return equalFolded(control.name(), name); });
}

Control* Screen::findField(std::string_view field) {
  return search(*root_, [&](const Control& control) {
    return control.binding() != nullptr && equalFolded(control.binding()->field(), field);
  });
}

Control* Screen::gridOf(const store::Cursor& cursor) {
  return search(*root_, [&](const Control& control) { return control.grid() && &control.grid()->cursor() == &cursor; });
}

std::vector<Control*> Screen::pathTo(const Control& control) {
  std::vector<Control*> path;
  pathFrom(*root_, control, path);
  return path;
}

bool Screen::isVisible(const Control& control) {
  const std::vector<Control*> path = pathTo(control);
  for (std::size_t i = 0; i < path.size(); ++i) {
    if (!path[i]->visible()) return false;
    if (i > 0 && path[i - 1]->kind() == Kind::steps && placeOf(*path[i - 1], *path[i]) != path[i - 1]->page)
      return false;
  }
  return true;
}

bool Screen::isEnabled(const Control& control) {
  return std::ranges::all_of(pathTo(control), [](const Control* some) { return some->enabled(); });
}

std::vector<Control*> Screen::tabOrder() {
  std::vector<Control*> all;
  collectFocusable(*root_, all);
  return all;
}

void Screen::setFocus(Control* control) {
  focused_ = control;
  if (control == nullptr) return;
  const std::vector<Control*> path = pathTo(*control);
  for (std::size_t i = 1; i < path.size(); ++i)
    if (turns(*path[i - 1])) path[i - 1]->page = placeOf(*path[i - 1], *path[i]);
}

Control* Screen::target() const {
  if (focused_ == nullptr || !focused_->grid()) return focused_;
  const Grid& grid = *focused_->grid();
  const auto column = static_cast<std::size_t>(grid.activeColumn());
  return column < grid.columns().size() ? grid.columns()[column].get() : nullptr;
}

bool Screen::isTyping(std::string_view field) const {
  return taking_ != nullptr && taking_->binding() != nullptr && equalFolded(taking_->binding()->field(), field);
}

void Screen::takeTyped() {
  if (!typed_) return;
  struct Taking {
    const Control*& slot;
    ~Taking() { slot = nullptr; }
  };
  Control* control = target();
  if (control == nullptr || control->binding() == nullptr) return typed_.reset();
  taking_ = control;
  const Taking taking{taking_};
  const std::string typed = *typed_;  // a handler of the change may move the focus
  control->binding()->take(typed);
  typed_.reset();
}

void Screen::goTo(const Place& place) {
  if (place.none()) return;
  Control* control = place.lines ? gridOf(*place.lines) : find(place.control);
  if (control == nullptr && !place.control.empty()) control = findField(place.control);
  if (control == nullptr) return;
  if (control != focused_) typed_.reset();
  setFocus(control);
  Grid* grid = control->grid();
  if (grid == nullptr) return;
  for (std::size_t i = 0; i < grid->columns().size(); ++i)
    if (equalFolded(grid->columns()[i]->name(), place.column)) grid->setActiveColumn(static_cast<int>(i));
  if (place.newRow && grid->mayChange()) grid->append();
}

void Screen::focusFirst() {
  typed_.reset();
  const std::vector<Control*> all = tabOrder();
  const auto first = std::ranges::find_if(all, [](const Control* some) { return some->kind() != Kind::button; });
  focused_ = first != all.end() ? *first : all.empty() ? nullptr : all.front();
}

void Screen::prepare(const ScreenEntry& entry, std::string name) {
  entry_ = &entry;
  name_ = std::move(name);
  openTables();
  Layout layout(*this);
  build(layout);
  root_ = layout.finish();
}

void Screen::openTables() {
  for (Table* table : tables_)
    if (!table->isOpen()) table->open();
}

void Screen::show(const Open& open) {
  if (visible_) {
    shownAgain(open);
  } else {
    openTables();
    result_ = {};
    resultSet_ = false;
    focusFirst();
    shown(open);
    visible_ = true;
  }
  minimised = false;
  if (!open.page.empty()) turnTo(open.page);
  if (!open.focus.empty()) goTo(form::focus(open.focus));
}

void Screen::turnTo(std::string_view page) {
  const auto isIt = [&](const auto& some) {
    return equalFolded(plainCaption(some->caption()), page) || equalFolded(some->name(), page);
  };
  Control* pages = search(
      *root_, [&](const Control& control) { return turns(control) && std::ranges::any_of(control.children(), isIt); });
  if (pages == nullptr) throw Error("'" + name_ + "' has no page '" + std::string(page) + "'");
  pages->page = static_cast<int>(std::ranges::find_if(pages->children(), isIt) - pages->children().begin());
  focusFirst();
}

// Undoes what is being edited, in the details first, and lets go of the tables, whatever goes wrong on the way.
void Screen::hide() {
  visible_ = false;
  typed_.reset();
  Ending ending;
  ending.step([this] { closed(); });
  ending.step([this] { closeTables(); });
  ending.raise();
}

void Screen::closeTables() {
  Ending ending;
  for (auto each = tables_.rbegin(); each != tables_.rend(); ++each)
    ending.step([&table = **each] {
      const store::Cursor::Silence silence(table);
      if (table.isOpen() && table.isEditing()) table.cancel();
    });
  for (auto each = tables_.rbegin(); each != tables_.rend(); ++each) ending.step([&table = **each] { table.close(); });
  ending.raise();
}

}  // namespace quillon::form
