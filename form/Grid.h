#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "form/Control.h"
#include "store/locks/TableLocks.h"

namespace quillon::store {
class Cursor;
}

namespace quillon::form {

// The rows of a cursor or query, a column for each thing shown.
//
// Keeps no rows: it asks the cursor for those on view, by position, or under a filter around the current row, so that
// its cost does not grow with the table. The cursor's row is the active one. A list's rows are only looked at; a grid
// of lines is typed into.
class Grid {
 public:
  struct Row {
    // A visible column each: what is shown, and what stands behind it.
    std::vector<std::string> texts;
    std::vector<store::Value> data;
    store::RowId id = 0;  // 0: being entered
    bool active = false;
    bool isNew = false;  // being entered
  };
  struct View {
    std::vector<Row> rows;
    // Where the first of them stands, 0 is the first; null under a filter, where counting is dear.
    std::optional<std::uint64_t> from;
    std::optional<std::uint64_t> total;
  };

  Grid(store::Cursor& cursor, bool lines) : cursor_(&cursor), lines_(lines) {}

  // Changes to other rows with other columns; the active column is the first.
  void show(store::Cursor& cursor, std::vector<std::unique_ptr<Control>> columns);
  void setColumns(std::vector<std::unique_ptr<Control>> columns) { columns_ = std::move(columns); }

  store::Cursor& cursor() const { return *cursor_; }
  bool lines() const { return lines_; }
  const std::vector<std::unique_ptr<Control>>& columns() const { return columns_; }
  Control* column(std::string_view name) const;
  Control* tick() const;  // the column that is ticked; null where none is

  std::optional<std::uint64_t> total() const;
  std::optional<std::uint64_t> activeRow() const;  // 0 is the first; null without a row, and where counting is dear
  View rows(std::uint64_t from, std::size_t count);
  // The active row with so many before and after it; where one end is near, with more from the other side.
  View rowsAround(std::size_t before, std::size_t after);

  // The active cell.
  int activeColumn() const { return activeColumn_; }
  void setActiveColumn(int column) { activeColumn_ = column; }

  // Where the active row stands among all, 0 to 1: for scroll bars, where rows are not counted.
  double depth() const;

  // Moves. Leaving a row that is being edited posts it, which may be refused.
  bool goTo(std::uint64_t row);
  bool goToDepth(double depth);
  void append();
  void insert();
  void remove();

  bool isNewRow() const;
  // A command that a grid of lines may refuse: adding, inserting and deleting rows.
  Grid& mayChangeWhen(std::function<bool()> condition) { return mayChange_ = std::move(condition), *this; }
  bool mayChange() const { return lines_ && (!mayChange_ || mayChange_()); }
  // In a list: what a typed character does.
  std::function<void(const std::string&)> search;

 private:
  Row current() const;
  bool isDear() const;

  store::Cursor* cursor_;
  bool lines_;
  std::vector<std::unique_ptr<Control>> columns_;
  int activeColumn_ = 0;
  std::function<bool()> mayChange_;
};

}  // namespace quillon::form
