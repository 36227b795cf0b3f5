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
  const int edge = edgeOf(all), width = viewport()->width(), height = viewport()->height();
  const auto paintPart = [&](std::span<const Column> part, int from, int to) {
    painter.setClipRect(from, 0, to - from, height);
    for (std::size_t place = 0; place < view_.rows.size(); ++place) paintRow(painter, part, place);
    paintHeader(painter, part);
  };
  const auto staying = static_cast<std::size_t>(std::ranges::count(all, true, &Column::stays));
  paintPart(std::span(all).subspan(staying), edge, width);
  if (edge == 0) return;
  paintPart(std::span(all).first(staying), 0, edge);
  if (horizontalScrollBar()->value() == 0) return;
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawLine(edge - 1, 0, edge - 1, height);
}

void GridArea::paintHeader(QPainter& painter, std::span<const Column> columns) const {
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
    painter.drawText(cell.adjusted(padding(), 0, -padding(), 0),
                     (right ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter,
                     shown(form::plainCaption(column.control->caption())));
  }
}

// Figures stand below each other by their decimal points; what is behind a shorter one, as the parenthesis of a
// negative amount, has its room there.
void GridArea::paintText(QPainter& painter, QRect cell, const Column& column, const std::string& text) const {
  const QFontMetrics font = painter.fontMetrics();
  const QRect inner = cell.adjusted(padding(), 0, -padding(), 0);
  const bool right = isRight(*column.control);
  if (right) {
    const std::size_t end = pointIn(text);
    const QString whole = shown(std::string_view(text).substr(0, end)),
                  rest = shown(std::string_view(text).substr(end));
    const int room = roomOf(*column.control), point = inner.right() + 1 - room;
    if (font.horizontalAdvance(whole) <= point - inner.left() && font.horizontalAdvance(rest) <= room + padding()) {
      painter.drawText(inner.adjusted(0, 0, -room, 0), Qt::AlignRight | Qt::AlignVCenter, whole);
      painter.drawText(QRect(point, cell.top(), room + padding(), cell.height()), Qt::AlignLeft | Qt::AlignVCenter,
                       rest);
      return;
    }
  }
  painter.drawText(inner, (right ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter,
                   font.elidedText(shown(text).section('\n', 0, 0), Qt::ElideRight, inner.width()));
}

void GridArea::paintRow(QPainter& painter, std::span<const Column> columns, std::size_t place) const {
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
  for (const Column& column : columns) {
    const QRect cell(column.left, top, column.width, rowHeight());
    if (column.place >= row.texts.size() || !cell.intersects(whole)) continue;
    if (row.active && grid().lines() && focused && column.control == hands_.screen().target()) {
      painter.fillRect(cell.adjusted(1, 1, -1, -1), palette().color(QPalette::Highlight));
      painter.setPen(palette().color(QPalette::HighlightedText));
    } else {
      painter.setPen(ink);
    }
    if (ticks(column.control))
      paintTick(painter, cell, row.data[column.place].asBool(), *viewport());
    else
      paintText(painter, cell, column, row.texts[column.place]);
    if (!grid().lines()) continue;
    painter.setPen(lineColour(palette()));
    painter.drawLine(cell.topRight(), cell.bottomRight());
  }
  painter.setPen(lineColour(palette()));
  if (grid().lines()) painter.drawLine(whole.bottomLeft(), whole.bottomRight());
}

}  // namespace quillon::desktop
