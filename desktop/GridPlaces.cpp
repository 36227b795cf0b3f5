// A grid's rows and columns as they are read out.
#include <algorithm>
#include <limits>

#include "base/Errors.h"
#include "desktop/GridView.h"
#include "desktop/Hands.h"
#include "desktop/Text.h"
#include "form/Screen.h"

namespace quillon::desktop {

int GridArea::rowCount() const {
  constexpr std::uint64_t kMost = std::numeric_limits<int>::max() / 1000;  // cells are counted, too
  return static_cast<int>(std::min<std::uint64_t>(view_.total.value_or(view_.rows.size()), kMost));
}

int GridArea::columnCount() const {
  const auto visible = [](const std::unique_ptr<form::Control>& column) { return column->visible(); };
  return static_cast<int>(std::ranges::count_if(grid().columns(), visible));
}

bool GridArea::isOnView(int row) const {
  const int first = static_cast<int>(view_.from.value_or(0));
  return row >= first && row - first < static_cast<int>(view_.rows.size());
}

const form::Control* GridArea::columnAt(int column) const {
  for (const auto& some : grid().columns())
    if (some->visible() && column-- == 0) return some.get();
  return nullptr;
}

// The screen's rows are its own while a command of it runs.
const form::Grid::Row* GridArea::rowAt(int row) const {
  const auto wanted = static_cast<std::uint64_t>(row);
  if (isOnView(row)) return &view_.rows[wanted - view_.from.value_or(0)];
  if (!view_.from || !hands_.screen().app().accepts(hands_.screen())) return nullptr;
  try {
    if (!apart_ || apart_->from != wanted) apart_ = grid().rows(wanted, 1);
  } catch (const Error&) {
    apart_.reset();
  }
  return apart_ && !apart_->rows.empty() ? &apart_->rows.front() : nullptr;
}

std::optional<GridArea::Place> GridArea::activePlace() const {
  const form::Control* target = hands_.screen().focused() == &control_ ? hands_.screen().target() : nullptr;
  int column = 0;
  while (target != nullptr && columnAt(column) != nullptr && columnAt(column) != target) ++column;
  if (column >= columnCount()) column = 0;
  const auto row = std::ranges::find_if(view_.rows, &form::Grid::Row::active);
  if (row != view_.rows.end())
    return Place{static_cast<int>(view_.from.value_or(0)) + static_cast<int>(row - view_.rows.begin()), column};
  if (!view_.from || row_ == 0) return std::nullopt;
  return Place{static_cast<int>(activeAt_), column};
}

bool GridArea::isChosen(const Place& place) const {
  const auto active = activePlace();
  return active && active->row == place.row && (isList() || active->column == place.column);
}

QString GridArea::heading(int column) const {
  const form::Control* control = columnAt(column);
  return control ? shown(form::plainCaption(control->caption())) : QString();
}

QString GridArea::text(const Place& place) const {
  const form::Grid::Row* row = rowAt(place.row);
  const auto column = static_cast<std::size_t>(place.column);
  return row != nullptr && column < row->texts.size() ? shown(row->texts[column]) : QString();
}

bool GridArea::isTick(int column) const { return ticks(columnAt(column)); }

bool GridArea::isTicked(const Place& place) const {
  const form::Grid::Row* row = rowAt(place.row);
  return row != nullptr && row->data[static_cast<std::size_t>(place.column)].asBool();
}

bool GridArea::canBeTyped(int column) const {
  const form::Control* control = columnAt(column);
  return !isList() && control != nullptr && !control->readOnly() && !control_.readOnly();
}

QRect GridArea::rect(const Place& place) const {
  const auto all = columns();
  if (static_cast<std::size_t>(place.column) >= all.size()) return {};
  const Column& column = all[static_cast<std::size_t>(place.column)];
  QRect found;
  if (place.row < 0)
    found = QRect(column.left, 0, column.width, headerHeight()).intersected(viewport()->rect());
  else if (isOnView(place.row))
    found = cellRect(all, column, static_cast<std::size_t>(place.row) - view_.from.value_or(0));
  return found.isEmpty() ? QRect() : found.translated(viewport()->mapToGlobal(QPoint()));
}

std::optional<GridArea::Place> GridArea::placeAt(QPoint onDisplay) const {
  const auto spot = spotAt(viewport()->mapFromGlobal(onDisplay));
  if (!spot || spot->column == nullptr) return std::nullopt;
  int column = 0;
  while (columnAt(column) != spot->column) ++column;
  return Place{static_cast<int>(view_.from.value_or(0) + spot->place), column};
}

void GridArea::turnTo(const Place& place) {
  const form::Control* column = columnAt(place.column);
  if (view_.from)
    goTo(static_cast<std::uint64_t>(place.row), column);
  else
    goTo(Spot{static_cast<std::size_t>(place.row), column});
}

void GridArea::turnOver() {
  hands_.act([this](form::Input& input) { input.tick(hands_.screen(), control_); });
}

}  // namespace quillon::desktop
