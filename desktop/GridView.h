#pragma once

#include <QAbstractScrollArea>
#include <algorithm>
#include <map>
#include <optional>
#include <span>

#include "desktop/ControlView.h"
#include "desktop/GridReading.h"
#include "form/Grid.h"

class QLineEdit;

namespace quillon::desktop {

// Of a column: whether its cells are boxes that are ticked, and whether they end at the right.
inline bool ticks(const form::Control* column) { return column && column->binding() && column->binding()->ticks(); }
inline bool isRight(const form::Control& column) { return column.binding() && column.binding()->alignsRight(); }

// The rows of a grid. Asks for those on view and no others. The active one stays on view, unless the thumb is drawn
// away from it.
class GridArea final : public QAbstractScrollArea {
 public:
  GridArea(Hands& hands, form::Control& control, QWidget& parent);
  ~GridArea() override;

  void sync();
  QWidget* typingWidget() const;  // where the next key goes
  // Shows what may stand in the active cell, to be chosen; false where anything may.
  bool dropDown();

  // As it is read out. Row 0 is the first of all, or of those on view where rows are not counted; -1 is the headings.
  // Columns are those that are visible. A row that is not on view is read when its text is asked for.
  struct Place {
    int row, column;
    auto operator<=>(const Place&) const = default;
  };
  int rowCount() const;
  int columnCount() const;
  bool isOnView(int row) const;
  bool isList() const { return !grid().lines(); }
  std::optional<Place> activePlace() const;
  bool isChosen(const Place& place) const;
  QString heading(int column) const;
  QString text(const Place& place) const;
  bool isTick(int column) const;
  bool isTicked(const Place& place) const;
  bool canBeTyped(int column) const;
  QRect rect(const Place& place) const;  // on the display; empty where it is not on view
  std::optional<Place> placeAt(QPoint onDisplay) const;
  void turnTo(const Place& place);
  void turnOver();  // what is ticked in the active row
  const ToldCell& told() const { return told_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  bool focusNextPrevChild(bool) override { return false; }  // the program moves the focus
  QSize sizeHint() const override;

 private:
  struct Column {
    form::Control* control;
    std::size_t place;  // among those that are visible
    int left, width;
    bool stays = false;  // where it is when the others are scrolled sideways; these come first
  };

  form::Grid& grid() const { return *control_.grid(); }
  int rowHeight() const { return fontMetrics().height() + 6; }
  int headerHeight() const { return fontMetrics().height() + 10; }
  int rowsOnView() const;
  // At both sides of a cell; the parenthesis of a negative figure has its room in it.
  int padding() const { return std::max(6, fontMetrics().horizontalAdvance(')') + 1); }
  std::vector<Column> columns() const;
  int widthOfColumn(const form::Control& column) const;
  // Where those that stay end, and the others come out from below them.
  static int edgeOf(const std::vector<Column>& columns);
  std::size_t pointIn(std::string_view figure) const;
  const std::string& decimalMark() const;
  int roomOf(const form::Control& column) const;  // behind the whole part of its figures
  void makeRoom();
  std::size_t rowsAbove();
  void fetch(bool follows);
  void limitSideways();
  void scrolled(int value);
  void turned(int action);
  void paintHeader(QPainter& painter, std::span<const Column> columns) const;
  void paintText(QPainter& painter, QRect cell, const Column& column, const std::string& text) const;
  void paintRow(QPainter& painter, std::span<const Column> columns, std::size_t place) const;
  const form::Control* columnAt(int column) const;  // null: none
  const form::Grid::Row* rowAt(int row) const;      // null: none, or not to be read now
  // What of it is on view, of the rows that are.
  QRect cellRect(const std::vector<Column>& columns, const Column& column, std::size_t place) const;
  QRect activeCell() const;
  void followCell();
  void syncEditor();
  void complete();
  // Which row of those on view, and which column, is at a point; nothing outside of the rows.
  struct Spot {
    std::size_t place;
    const form::Control* column;
  };
  std::optional<Spot> spotAt(QPoint point) const;
  void goTo(const Spot& spot);
  void goTo(std::uint64_t row, const form::Control* column);

  Hands& hands_;
  form::Control& control_;
  form::Grid::View view_;
  std::uint64_t top_ = 0;
  // The active row when they were read, and where it stood.
  std::uint64_t row_ = 0, activeAt_ = 0;
  double depth_ = 0;                       // of the active row, where rows are not counted
  const form::Control* target_ = nullptr;  // the cell that was last brought on view; of lines
  // The most decimals that were on view: figures end below each other at the point, and never move back.
  std::map<const form::Control*, std::size_t> decimals_;
  QLineEdit* editor_;
  mutable std::optional<form::Grid::View> apart_;  // a row that is not on view
  ToldCell told_;
};

}  // namespace quillon::desktop
