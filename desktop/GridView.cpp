#include "desktop/GridView.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QTimer>
#include <algorithm>
#include <cstdint>
#include <functional>
#include <utility>

#include "desktop/Hands.h"
#include "desktop/Text.h"
#include "form/Screen.h"
#include "store/Cursor.h"

namespace quillon::desktop {
namespace {

constexpr int kThumb = 1000;  // places of the thumb where rows are not counted
constexpr int kRows = 16, kFewRows = 9;
constexpr int kWidest = 1150;  // 1/96 inch; more columns than fit are scrolled to

// What is typed in the active cell. Keys that mean something to the grid go to the program.
class CellEditor final : public QLineEdit {
 public:
  // `complete`: is called when characters were added.
  CellEditor(Hands& hands, QWidget* parent, std::function<void()> complete) : QLineEdit(parent), hands_(hands) {
    setFrame(false);
    setTextMargins(kMargin, 0, kMargin, 0);
    QObject::connect(this, &QLineEdit::textEdited, [this, complete = std::move(complete)](const QString& text) {
      hands_.act([&](form::Input& input) { input.type(hands_.screen(), typed(text)); });
      if (!erases_) complete();
    });
  }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    erases_ = event->key() == Qt::Key_Backspace || event->key() == Qt::Key_Delete;
    switch (event->key()) {
      case Qt::Key_Up:
      case Qt::Key_Down:
      case Qt::Key_PageUp:
      case Qt::Key_PageDown:
        hands_.key(keyName(*event));
        break;
      default:
        QLineEdit::keyPressEvent(event);
    }
  }

 private:
  static constexpr int kMargin = 3;  // with its own, those of a cell

  Hands& hands_;
  bool erases_ = false;
};

}  // namespace

GridArea::GridArea(Hands& hands, form::Control& control, QWidget& parent)
    : QAbstractScrollArea(&parent),
      hands_(hands),
      control_(control),
      editor_(new CellEditor(hands, viewport(), [this] { complete(); })) {
  setFocusPolicy(Qt::StrongFocus);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  editor_->hide();
  makeGridsReadable();
  QObject::connect(verticalScrollBar(), &QScrollBar::valueChanged, [this](int value) { scrolled(value); });
  QObject::connect(verticalScrollBar(), &QScrollBar::actionTriggered, [this](int action) { turned(action); });
  QObject::connect(horizontalScrollBar(), &QScrollBar::valueChanged, [this] {
    syncEditor();
    viewport()->update();
  });
}

GridArea::~GridArea() = default;

QSize GridArea::sizeHint() const {
  int width = verticalScrollBar()->sizeHint().width() + 4;
  for (const Column& column : columns()) width += column.width;
  width = std::min(width, scaled(*this, kWidest));
  // A list alone in its window shows many rows; a part of a document, or of a page, leaves room for the rest.
  const bool alone = !grid().lines() && hands_.screen().pathTo(control_).size() == 1;
  const int rows = control_.height() > 0 ? control_.height() : alone ? kRows : kFewRows;
  return {width, headerHeight() + rowHeight() * rows + 4};
}

int GridArea::rowsOnView() const { return std::max(1, (viewport()->height() - headerHeight()) / rowHeight()); }

// How many rows to show above the active one where rows are not counted, so that nothing moves that need not: as many
// as there are while it is on view already, else it comes in from the side on which it was.
std::size_t GridArea::rowsAbove() {
  const store::RowId active = grid().cursor().isOpen() ? grid().cursor().rowId() : 0;
  const double depth = grid().depth(), before = std::exchange(depth_, depth);
  const auto place = std::ranges::find(view_.rows, active, &form::Grid::Row::id);
  if (place != view_.rows.end()) return static_cast<std::size_t>(place - view_.rows.begin());
  return depth > before && !view_.rows.empty() ? SIZE_MAX : 0;
}

// Reads the rows on view. Another active row than before comes on view. Where it is still the same, so is its place in
// the window, whatever came or went above it.
void GridArea::fetch(bool follows) {
  const auto count = static_cast<std::size_t>(rowsOnView());
  const std::optional<std::uint64_t> active = grid().activeRow(), total = grid().total();
  const store::RowId row = active ? grid().cursor().rowId() : 0;
  if (!total) {
    const std::size_t above = std::min(rowsAbove(), count - 1);
    view_ = grid().rowsAround(above, count - above - 1);
    top_ = 0;
  } else {
    if (row != 0 && row == row_)
      top_ = *active > activeAt_ ? top_ + (*active - activeAt_) : top_ - std::min(top_, activeAt_ - *active);
    else
      follows = true;
    if (follows && active && *active < top_) top_ = *active;
    if (follows && active && *active >= top_ + count) top_ = *active - count + 1;
    top_ = std::min(top_, *total > count ? *total - count : 0);
    view_ = grid().rows(top_, count);
  }
  apart_.reset();
  makeRoom();
  row_ = row;
  activeAt_ = active.value_or(0);
  QScrollBar* bar = verticalScrollBar();
  const QSignalBlocker quiet(bar);
  const bool whole = total && *total <= count;
  bar->setRange(0, whole ? 0 : total ? static_cast<int>(std::min<std::uint64_t>(*total - count, INT32_MAX)) : kThumb);
  bar->setPageStep(total ? static_cast<int>(count) : kThumb / 20);
  // Where rows are not counted, the thumb stands as far down as the row does among all; while a person holds it, there.
  if (total)
    bar->setValue(static_cast<int>(top_));
  else if (!bar->isSliderDown())
    bar->setValue(static_cast<int>(grid().depth() * kThumb));
}

void GridArea::scrolled(int value) {
  if (!grid().total()) return;
  top_ = static_cast<std::uint64_t>(value);
  fetch(false);
  syncEditor();
  viewport()->update();
}

// What is done to the bar where rows are not counted: the active row moves, and the rows on view are those around it.
void GridArea::turned(int action) {
  if (grid().total()) return;
  switch (action) {
    case QAbstractSlider::SliderSingleStepAdd:
      return hands_.key("Down");
    case QAbstractSlider::SliderSingleStepSub:
      return hands_.key("Up");
    case QAbstractSlider::SliderPageStepAdd:
      return hands_.key("PgDn");
    case QAbstractSlider::SliderPageStepSub:
      return hands_.key("PgUp");
    default:
      const double depth = static_cast<double>(verticalScrollBar()->sliderPosition()) / kThumb;
      hands_.act([&](form::Input& input) { input.scroll(hands_.screen(), control_, depth); });
  }
}

void GridArea::sync() {
  fetch(hands_.screen().focused() == &control_ && hands_.screen().typed());
  limitSideways();
  followCell();
  syncEditor();
  tellCell(*this, told_, false);
  viewport()->update();
}

QWidget* GridArea::typingWidget() const {
  return editor_->isHidden() ? static_cast<QWidget*>(const_cast<GridArea*>(this)) : editor_;
}

void GridArea::syncEditor() {
  const form::Screen& screen = hands_.screen();
  const QRect cell = activeCell();
  if (screen.focused() != &control_ || !screen.typed() || cell.isEmpty()) {
    // Hidden with the focus it would pass that on to whatever field comes next.
    if (editor_->hasFocus()) setFocus();
    editor_->hide();
    return;
  }
  editor_->setGeometry(cell.adjusted(1, 1, -1, -1));
  editor_->setAlignment((isRight(*screen.target()) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
  editor_->setAccessibleName(shown(form::plainCaption(screen.target()->caption())));
  if (const QString text = shown(*screen.typed()); editor_->text() != text) editor_->setText(text);
  if (!editor_->isHidden()) return;
  editor_->show();
  editor_->setFocus();
  editor_->end(false);
}

// Hands.

void GridArea::resizeEvent(QResizeEvent* event) {
  QAbstractScrollArea::resizeEvent(event);
  limitSideways();
  fetch(true);
  syncEditor();
}

std::optional<GridArea::Spot> GridArea::spotAt(QPoint point) const {
  if (point.y() < headerHeight()) return std::nullopt;
  const auto place = static_cast<std::size_t>((point.y() - headerHeight()) / rowHeight());
  if (place >= view_.rows.size()) return std::nullopt;
  for (const Column& column : columns())
    if (point.x() >= column.left && point.x() < column.left + column.width) return Spot{place, column.control};
  return Spot{place, nullptr};
}

void GridArea::goTo(std::uint64_t row, const form::Control* column) {
  const std::string name = column ? column->name() : std::string();
  hands_.act([&](form::Input& input) { input.cell(hands_.screen(), control_, row, name); });
}

void GridArea::goTo(const Spot& spot) {
  if (view_.from) return goTo(*view_.from + spot.place, spot.column);
  const auto active = std::ranges::find_if(view_.rows, [](const form::Grid::Row& row) { return row.active; });
  for (auto way = static_cast<std::ptrdiff_t>(spot.place) - (active - view_.rows.begin()); way != 0;
       way += way > 0 ? -1 : 1)
    hands_.act([&](form::Input& input) { input.grid(hands_.screen(), control_, way > 0 ? "down" : "up"); });
}

void GridArea::mousePressEvent(QMouseEvent* event) {
  const auto spot = spotAt(event->pos());
  setFocus(Qt::MouseFocusReason);
  if (!spot) return;
  goTo(*spot);
  if (ticks(spot->column)) turnOver();
}

void GridArea::mouseDoubleClickEvent(QMouseEvent* event) {
  const auto spot = spotAt(event->pos());
  if (!spot) return;
  if (ticks(spot->column)) return mousePressEvent(event);
  if (control_.command())
    hands_.act([this](form::Input& input) { input.click(hands_.screen(), control_); });
  else if (const form::Control* target = hands_.screen().target();
           target && target->binding() && target->binding()->hasPicker())
    hands_.key("F2");
  else if (spot->column == target)
    dropDown();
}

void GridArea::keyPressEvent(QKeyEvent* event) {
  const std::string key = keyName(*event);
  if (QScrollBar* bar = horizontalScrollBar();
      !grid().lines() && bar->maximum() > 0 && (key == "Left" || key == "Right"))
    bar->triggerAction(key == "Left" ? QAbstractSlider::SliderSingleStepSub : QAbstractSlider::SliderSingleStepAdd);
  else if (key.empty())
    QAbstractScrollArea::keyPressEvent(event);
  else if (hands_.key(key); key.size() == 1)
    complete();
}

// In a column of fixed texts the first that begins as it is typed stands there; what it has more is typed over.
void GridArea::complete() {
  form::Screen& screen = hands_.screen();
  if (editor_->isHidden() || !screen.typed() || screen.typed()->empty()) return;
  const QString text = shown(*screen.typed());
  for (const auto& choice : screen.target()->binding()->choices()) {
    const QString whole = shown(choice.second);
    if (!whole.startsWith(text, Qt::CaseInsensitive)) continue;
    hands_.act([&](form::Input& input) { input.type(screen, choice.second); });
    return editor_->setSelection(static_cast<int>(whole.size()), static_cast<int>(text.size() - whole.size()));
  }
}

bool GridArea::dropDown() {
  const form::Control* column = hands_.screen().target();
  const QRect cell = activeCell();
  if (!grid().lines() || !column || !column->binding() || column->binding()->hasPicker() || cell.isEmpty())
    return false;
  const form::Choices choices = column->binding()->choices();
  if (choices.empty()) return false;
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  for (const auto& [value, text] : choices) {
    QAction* action = menu->addAction(shown(text).replace('&', "&&"));
    QObject::connect(action, &QAction::triggered, this, [this, chosen = text] {
      hands_.act([&](form::Input& input) { input.type(hands_.screen(), chosen); });
    });
    if (value == column->binding()->data()) menu->setDefaultAction(action);
  }
  menu->popup(viewport()->mapToGlobal(cell.bottomLeft()));
  menu->setActiveAction(menu->defaultAction());
  return true;
}

void GridArea::focusInEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusInEvent(event);
  viewport()->update();
  // Behind the toolkit, which tells of the grid as a whole.
  QTimer::singleShot(0, this, [this] { tellCell(*this, told_, true); });
  if (!hands_.isSyncing() && hands_.screen().focused() != &control_)
    hands_.act([this](form::Input& input) { input.focus(hands_.screen(), control_); });
}

namespace {

class GridView final : public ControlView {
 public:
  GridView(Hands& hands, form::Control& control, QWidget& parent)
      : ControlView(hands, control), area_(new GridArea(hands, control, parent)) {}
  QWidget* widget() const override { return area_; }
  QWidget* focusWidget() const override { return area_->typingWidget(); }
  bool dropDown() override { return area_->dropDown(); }
  bool stretches() const override { return true; }
  void sync() override {
    syncLooks();
    area_->sync();
  }

 private:
  GridArea* area_;
};

}  // namespace

ViewPtr makeGridView(Hands& hands, form::Control& control, QWidget& parent) {
  return std::make_unique<GridView>(hands, control, parent);
}

}  // namespace quillon::desktop
