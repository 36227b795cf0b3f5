// How a grid's rows and headings are drawn.
#include <QLineEdit>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionButton>
#include <algorithm>

#include "desktop/GridView.h"
#include "desktop/Hands.h"
#include "desktop/Text.h"
#include "form/Registry.h"

namespace quillon::desktop {
namespace {

// A little of the ink on the paper: lines that stay behind what they part, in light palettes and in dark ones.
QColor lineColour(const QPalette& palette) {
  const QColor ink = palette.color(QPalette::Text), paper = palette.color(QPalette::Base);
  const auto mixed = [](int some, int other) { return (some + 5 * other) / 6; };
  return {mixed(ink.red(), paper.red()), mixed(ink.green(), paper.green()), mixed(ink.blue(), paper.blue())};
}

// A box in the middle of a cell.
void paintTick(QPainter& painter, QRect cell, bool ticked, const QWidget& grid) {
  QStyleOptionButton box;
  box.initFrom(&grid);
  box.state = QStyle::State_Enabled | (ticked ? QStyle::State_On : QStyle::State_Off);
  const QSize size(grid.style()->pixelMetric(QStyle::PM_IndicatorWidth, &box, &grid),
                   grid.style()->pixelMetric(QStyle::PM_IndicatorHeight, &box, &grid));
  box.rect = QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, size, cell);
  grid.style()->drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, &painter, &grid);
  painter.setPen(grid.palette().color(QPalette::PlaceholderText));  // a style's own frame is lost in dark palettes
  painter.drawRect(box.rect.adjusted(0, 0, -1, -1));
}

}  // namespace

void GridArea::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  painter.fillRect(viewport()->rect(), palette().base());
  const auto all = columns();
  for (std::size_t place = 0; place < view_.rows.size(); ++place) paintRow(painter, all, place);
  paintHeader(painter, all);
}

void GridArea::paintHeader(QPainter& painter, const std::vector<Column>& columns) const {
  const QRect whole(0, 0, viewport()->width(), headerHeight());
  painter.fillRect(whole, palette().button());
  painter.setPen(lineColour(palette()));
  painter.drawLine(whole.bottomLeft(), whole.bottomRight());
  for (const Column& column : columns) {
    const QRect cell(column.left, 0, column.width, headerHeight());
    painter.setPen(lineColour(palette()));
    painter.drawLine(cell.right(), cell.top() + 4, cell.right(), cell.bottom() - 4);
    painter.setPen(palette().color(QPalette::ButtonText));
    const bool right = isRight(*column.control);
    painter.drawText(cell.adjusted(kPadding, 0, -kPadding, 0),
                     (right ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter,
                     shown(form::plainCaption(column.control->caption())));
  }
}

void GridArea::paintText(QPainter& painter, QRect cell, const Column& column, const std::string& text) {
  const bool right = isRight(*column.control);
  QRect inner = cell.adjusted(kPadding, 0, -kPadding, 0);
  // The parenthesis of a negative amount stands in the air behind it, so that the decimals are below each other.
  if (right && text.ends_with(')'))
    inner.setRight(inner.right() + std::min(int{kPadding}, painter.fontMetrics().horizontalAdvance(')')));
  painter.drawText(inner, (right ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter,
                   painter.fontMetrics().elidedText(shown(text).section('\n', 0, 0), Qt::ElideRight, inner.width()));
}

void GridArea::paintRow(QPainter& painter, const std::vector<Column>& columns, std::size_t place) const {
  const form::Grid::Row& row = view_.rows[place];
  const int top = headerHeight() + static_cast<int>(place) * rowHeight();
  const QRect whole(0, top, viewport()->width(), rowHeight());
  const bool focused = hasFocus() || editor_->hasFocus();
  const bool marked = row.active && (!grid().lines() || !focused);
  const QPalette::ColorGroup group = focused ? QPalette::Active : QPalette::Inactive;
  if (row.active && !grid().lines())
    painter.fillRect(whole, palette().color(group, QPalette::Highlight));
  else if (place % 2 == 1 && !grid().lines())
    painter.fillRect(whole, palette().alternateBase());
  const QColor ink =
      marked && !grid().lines() ? palette().color(group, QPalette::HighlightedText) : palette().color(QPalette::Text);
  for (std::size_t i = 0; i < columns.size() && i < row.texts.size(); ++i) {
    const QRect cell(columns[i].left, top, columns[i].width, rowHeight());
    if (row.active && grid().lines() && focused && columns[i].control == hands_.screen().target()) {
      painter.fillRect(cell.adjusted(1, 1, -1, -1), palette().color(QPalette::Highlight));
      painter.setPen(palette().color(QPalette::HighlightedText));
    } else {
      painter.setPen(ink);
    }
    if (ticks(columns[i].control))
      paintTick(painter, cell, row.data[i].asBool(), *viewport());
    else
      paintText(painter, cell, columns[i], row.texts[i]);
    if (!grid().lines()) continue;
    painter.setPen(lineColour(palette()));
    painter.drawLine(cell.topRight(), cell.bottomRight());
  }
  painter.setPen(lineColour(palette()));
  if (grid().lines()) painter.drawLine(whole.bottomLeft(), whole.bottomRight());
}

}  // namespace quillon::desktop
