#pragma once

#include <QAbstractScrollArea>
#include <optional>

#include "desktop/ControlView.h"
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
  static constexpr int kPadding = 6;
  struct Column {
    form::Control* control;
    int left, width;
  };

  form::Grid& grid() const { return *control_.grid(); }
  int rowHeight() const { return fontMetrics().height() + 6; }
  int headerHeight() const { return fontMetrics().height() + 10; }
  int rowsOnView() const;
  std::vector<Column> columns() const;
  int widthOfColumn(const form::Control& column) const;
  std::size_t rowsAbove();
  void fetch(bool follows);
  void limitSideways();
  void scrolled(int value);
  void turned(int action);
  void paintHeader(QPainter& painter, const std::vector<Column>& columns) const;
  static void paintText(QPainter& painter, QRect cell, const Column& column, const std::string& text);
  void paintRow(QPainter& painter, const std::vector<Column>& columns, std::size_t place) const;
  QRect activeCell() const;
  void followCell();
  void tellActive();
  void syncEditor();
  // Which row of those on view, and which column, is at a point; nothing outside of the rows.
  struct Spot {
    std::size_t place;
    const form::Control* column;
  };
  std::optional<Spot> spotAt(QPoint point) const;
  void goTo(const Spot& spot);

  Hands& hands_;
  form::Control& control_;
  form::Grid::View view_;
  std::uint64_t top_ = 0;
  // The active row when they were read, and where it stood.
  std::uint64_t row_ = 0, activeAt_ = 0;
  double depth_ = 0;                       // of the active row, where rows are not counted
  const form::Control* target_ = nullptr;  // the cell that was last brought on view; of lines
  QLineEdit* editor_;
};

}  // namespace quillon::desktop
