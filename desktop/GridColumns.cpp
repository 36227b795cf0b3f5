// Where a grid's columns stand: how wide they are, which of them are scrolled, and the room that their figures need.
#include <QScrollBar>
#include <algorithm>
#include <utility>

#include "desktop/GridView.h"
#include "desktop/Hands.h"
#include "desktop/Text.h"
#include "form/Screen.h"

namespace quillon::desktop {
namespace {

constexpr int kWidestColumn = 42;  // characters
constexpr const char* kDigits = "0123456789";

std::size_t decimalsIn(std::string_view figure, std::string_view mark) {
  const std::size_t point = figure.rfind(mark);
  if (point == figure.npos) return 0;
  const std::string_view behind = figure.substr(point + mark.size());
  return std::min(behind.find_first_not_of(kDigits), behind.size());
}

}  // namespace

int GridArea::widthOfColumn(const form::Control& column) const {
  int characters = std::min(column.width(), kWidestColumn);
  if (characters == 0) characters = 12;
  const int caption = fontMetrics().horizontalAdvance(shown(form::plainCaption(column.caption())));
  // In a long number the marks between the digits are narrower than these.
  static const QString kNumber = "(999,999,999,999,999,999.99)";
  constexpr std::size_t kDecimals = 2;
  const bool isNumber = isRight(column) && characters >= 10 && characters <= kNumber.size();
  const std::size_t more = isNumber ? std::max(column.binding()->decimals(), kDecimals) - kDecimals : 0;
  const QString number = kNumber.right(characters) + QString(static_cast<qsizetype>(more), '9');
  const int cell = isNumber ? fontMetrics().horizontalAdvance(number) : widthOf(*this, characters);
  return std::max(cell, caption) + 2 * padding();
}

std::vector<GridArea::Column> GridArea::columns() const {
  std::vector<Column> all;
  int width = 0;
  for (const auto& column : grid().columns()) {
    if (!column->visible()) continue;
    all.push_back({column.get(), all.size(), width, widthOfColumn(*column)});
    width += all.back().width;
  }
  // The widest text takes the room that is left, up to as much again; amounts stay near what they belong to.
  const auto textWidth = [](const Column& column) { return isRight(*column.control) ? 0 : column.width; };
  const auto widest = std::ranges::max_element(all, {}, textWidth);
  if (widest != all.end() && horizontalScrollBar()->maximum() == 0 && width < viewport()->width()) {
    const int more = std::min(viewport()->width() - width, textWidth(*widest));
    widest->width += more;
    for (auto behind = widest + 1; behind != all.end(); ++behind) behind->left += more;
  }
  // Whoever looks at what stands far to the right still sees what it is of: boxes at the front, and the first column
  // behind them, unless little would be left for the others.
  const auto first = std::ranges::find_if(all, [](const Column& column) { return !ticks(column.control); });
  if (first != all.end() && first->left + first->width <= viewport()->width() / 2)
    std::for_each(all.begin(), first + 1, [](Column& column) { column.stays = true; });
  for (Column& column : all)
    if (!column.stays) column.left -= horizontalScrollBar()->value();
  return all;
}

int GridArea::edgeOf(const std::vector<Column>& columns) {
  int edge = 0;
  for (const Column& column : columns)
    if (column.stays) edge = column.left + column.width;
  return edge;
}

void GridArea::limitSideways() {
  int width = 0;
  for (const auto& column : grid().columns())
    if (column->visible()) width += widthOfColumn(*column);
  horizontalScrollBar()->setRange(0, std::max(0, width - viewport()->width()));
  horizontalScrollBar()->setPageStep(viewport()->width() - edgeOf(columns()));
  horizontalScrollBar()->setSingleStep(widthOf(*this, 12));
}

QRect GridArea::cellRect(const std::vector<Column>& columns, const Column& column, std::size_t place) const {
  const QRect cell(column.left, headerHeight() + static_cast<int>(place) * rowHeight(), column.width, rowHeight());
  const int edge = column.stays ? 0 : edgeOf(columns);
  return cell.intersected({edge, 0, viewport()->width() - edge, viewport()->height()});
}

QRect GridArea::activeCell() const {
  const auto all = columns();
  const auto column = std::ranges::find(all, hands_.screen().target(), &Column::control);
  const auto row = std::ranges::find_if(view_.rows, &form::Grid::Row::active);
  if (column == all.end() || row == view_.rows.end()) return {};
  return cellRect(all, *column, static_cast<std::size_t>(row - view_.rows.begin()));
}

// In the lines of a document the cell that is worked in comes on view; nothing else moves sideways by itself.
void GridArea::followCell() {
  const form::Screen& screen = hands_.screen();
  const form::Control* target = screen.focused() == &control_ && grid().lines() ? screen.target() : nullptr;
  const bool same = std::exchange(target_, target) == target;
  if (target == nullptr || (same && !screen.typed())) return;
  const auto all = columns();
  const auto column = std::ranges::find(all, target, &Column::control);
  if (column == all.end() || column->stays) return;
  QScrollBar& bar = *horizontalScrollBar();
  const int over = column->left + column->width - viewport()->width(), before = column->left - edgeOf(all);
  if (over > 0 || before < 0) bar.setValue(bar.value() + std::min(std::max(over, 0), before));
}

// Where the decimal point of a figure is, or would be.
std::size_t GridArea::pointIn(std::string_view figure) const {
  const std::size_t point = figure.rfind(decimalMark());
  if (point != figure.npos) return point;
  const std::size_t last = figure.find_last_of(kDigits);
  return last == figure.npos ? figure.size() : last + 1;
}

const std::string& GridArea::decimalMark() const { return hands_.screen().app().formats().numbers.decimal; }

int GridArea::roomOf(const form::Control& column) const {
  const auto seen = decimals_.find(&column);
  const std::size_t decimals = std::max(column.binding()->decimals(), seen == decimals_.end() ? 0 : seen->second);
  if (decimals == 0) return 0;
  return fontMetrics().horizontalAdvance(shown(decimalMark()) + QString(static_cast<qsizetype>(decimals), '0'));
}

void GridArea::makeRoom() {
  std::size_t place = 0;
  for (const auto& column : grid().columns()) {
    if (!column->visible()) continue;
    if (isRight(*column)) {
      std::size_t& most = decimals_[column.get()];
      for (const form::Grid::Row& row : view_.rows)
        if (place < row.texts.size()) most = std::max(most, decimalsIn(row.texts[place], decimalMark()));
    }
    ++place;
  }
}

}  // namespace quillon::desktop
