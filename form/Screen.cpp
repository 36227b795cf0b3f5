#include "form/Screen.h"

#include "base/Text.h"
#include "form/App.h"
#include "form/Grid.h"
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

bool takesFocus(const Control& control) {
  switch (control.kind()) {
    case Kind::edit:
    case Kind::memo:
    case Kind::check:
    case Kind::chooser:
    case Kind::choice:
    case Kind::list:
    case Kind::grid:
      return control.visible() && control.enabled();
    default:
      return false;
  }
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
  control->binding()->take(*typed_);
  typed_.reset();
}

void Screen::goTo(const Place& place) {
  if (place.none()) return;
  Control* control = place.lines ? gridOf(*place.lines) : find(place.control);
  if (control == nullptr && !place.control.empty()) control = findField(place.control);
  if (control == nullptr) return;
  if (control != focused_) typed_.reset();
  focused_ = control;
  Grid* grid = control->grid();
  if (grid == nullptr) return;
  for (std::size_t i = 0; i < grid->columns().size(); ++i)
    if (equalFolded(grid->columns()[i]->name(), place.column)) grid->setActiveColumn(static_cast<int>(i));
  if (place.newRow && grid->mayChange()) grid->append();
}

void Screen::focusFirst() {
  typed_.reset();
  focused_ = search(*root_, takesFocus);
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
  if (!open.focus.empty()) goTo(form::focus(open.focus));
}

// Undoes what is being edited, in the details first, and lets go of the tables.
void Screen::hide() {
  visible_ = false;
  typed_.reset();
  closed();
  for (auto table = tables_.rbegin(); table != tables_.rend(); ++table) {
    const store::Cursor::Silence silence(**table);
    if ((*table)->isOpen() && (*table)->isEditing()) (*table)->cancel();
  }
  for (auto table = tables_.rbegin(); table != tables_.rend(); ++table) (*table)->close();
}

}  // namespace quillon::form
