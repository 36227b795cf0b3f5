#include "form/Grid.h"

#include <algorithm>
#include <iterator>

#include "base/Text.h"
#include "store/Cursor.h"
#include "store/Glance.h"
#include "store/table/Table.h"

namespace quillon::form {
namespace {

// Under a filter, rows of a larger table are not counted.
constexpr std::uint64_t kCounted = 5000;

}  // namespace

void Grid::show(store::Cursor& cursor, std::vector<std::unique_ptr<Control>> columns) {
  cursor_ = &cursor;
  columns_ = std::move(columns);
  activeColumn_ = 0;
}

Control* Grid::column(std::string_view name) const {
  for (const auto& column : columns_)
    if (equalFolded(column->name(), name)) return column.get();
  return nullptr;
}

Control* Grid::tick() const {
  for (const auto& column : columns_)
    if (column->visible() && column->binding() && column->binding()->ticks()) return column.get();
  return nullptr;
}

bool Grid::isNewRow() const { return cursor_->isOpen() && cursor_->state() == store::CursorState::insert; }

bool Grid::isDear() const {
  if (!cursor_->filtered()) return false;
  const store::Table::Reading reading(cursor_->table());
  return cursor_->table().rowCount() > kCounted;
}

std::optional<std::uint64_t> Grid::total() const {
  if (!cursor_->isOpen()) return 0;
  if (isDear()) return std::nullopt;
  return cursor_->recordCount() + (isNewRow() ? 1 : 0);
}

// A row being entered stands behind all others: that is where its number puts it.
std::optional<std::uint64_t> Grid::activeRow() const {
  if (!cursor_->isOpen() || isDear()) return std::nullopt;
  if (isNewRow()) return cursor_->recordCount();
  const std::uint64_t number = cursor_->recordNumber();
  if (number == 0) return std::nullopt;
  return number - 1;
}

Grid::Row Grid::current() const {
  Row row;
  for (const auto& column : columns_) {
    if (!column->visible()) continue;
    row.texts.push_back(column->binding()->text());
    row.data.push_back(column->binding()->data());
  }
  return row;
}

Grid::View Grid::rows(std::uint64_t from, std::size_t count) {
  View view{.rows = {}, .from = from, .total = total()};
  if (!cursor_->isOpen()) return view;
  const bool entering = isNewRow(), editing = cursor_->isEditing() && !entering;
  const store::RowId active = entering ? 0 : cursor_->rowId();
  std::optional<Row> edited;
  if (entering || editing) edited = current();
  {
    store::Glance glance(*cursor_);
    bool there = glance.goTo(from + 1);
    for (; there && view.rows.size() < count; there = glance.next()) {
      const bool isActive = active != 0 && glance.rowId() == active;
      view.rows.push_back(isActive && editing ? *edited : current());
      view.rows.back().id = glance.rowId();
      view.rows.back().active = isActive;
    }
    if (there) return view;
  }
  if (entering && view.rows.size() < count && from <= view.total.value_or(0)) {
    view.rows.push_back(*edited);
    view.rows.back().active = view.rows.back().isNew = true;
  }
  return view;
}

Grid::View Grid::rowsAround(std::size_t before, std::size_t after) {
  if (const std::optional<std::uint64_t> active = activeRow())
    return rows(*active > before ? *active - before : 0, before + after + 1);
  if (!cursor_->isOpen() || !isDear()) return rows(0, before + after + 1);
  View view;
  const bool editing = cursor_->isEditing();
  std::optional<Row> edited;
  if (editing) edited = current();
  store::Glance glance(*cursor_);
  if (!glance.onRow() && !glance.first()) return view;
  const store::RowId active = glance.rowId();
  std::size_t above = 0;
  while (above < before && glance.prior()) ++above;
  const std::size_t count = before + 1 + after;
  const auto look = [&] {
    Row row = glance.rowId() == active && editing ? *edited : current();
    row.id = glance.rowId();
    row.active = row.id == active;
    return row;
  };
  for (bool there = true; there && view.rows.size() < count; there = glance.next()) view.rows.push_back(look());
  if (view.rows.size() == count || above < before || !glance.goToRow(view.rows.front().id)) return view;
  std::vector<Row> more;
  while (view.rows.size() + more.size() < count && glance.prior()) more.push_back(look());
  view.rows.insert(view.rows.begin(), std::make_move_iterator(more.rbegin()), std::make_move_iterator(more.rend()));
  return view;
}

bool Grid::goTo(std::uint64_t row) {
  if (const std::optional<std::uint64_t> active = activeRow(); active && *active == row) return true;
  // The empty grid offers a row: typing there begins the first.
  if (row == 0 && mayChange() && cursor_->isEmpty() && !cursor_->isEditing()) return true;
  return cursor_->goTo(row + 1);
}

double Grid::depth() const { return cursor_->isOpen() ? cursor_->depth() : 0; }
bool Grid::goToDepth(double depth) { return cursor_->goToDepth(depth); }

void Grid::append() {
  if (isNewRow() && !cursor_->modified()) return;
  cursor_->append();
  activeColumn_ = 0;
}

void Grid::insert() {
  cursor_->insert();
  activeColumn_ = 0;
}

void Grid::remove() { cursor_->remove(); }

}  // namespace quillon::form
