#include "desktop/GridReading.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QPointer>
#include <algorithm>
#include <map>
#include <utility>

#include "desktop/GridView.h"
#include "desktop/Text.h"

namespace quillon::desktop {
namespace {

constexpr int kHeadings = -1;       // the row that they stand in
constexpr std::size_t kKept = 500;  // cells, behind which those are forgotten that are not on view

class ReadCell final : public QAccessibleInterface,
                       public QAccessibleTableCellInterface,
                       public QAccessibleActionInterface {
 public:
  ReadCell(GridArea& area, int row, int column) : area_(&area), place_{row, column} {}

  bool isValid() const override {
    return area_ && place_.row < area_->rowCount() && place_.column < area_->columnCount();
  }
  QObject* object() const override { return nullptr; }
  QWindow* window() const override { return isValid() ? table()->window() : nullptr; }
  QAccessibleInterface* parent() const override { return table(); }
  QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
  QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
  QString text(QAccessible::Text what) const override {
    if (what != QAccessible::Name || !isValid()) return {};
    return isHeading() ? area_->heading(place_.column) : area_->text(place_);
  }
  void setText(QAccessible::Text /*what*/, const QString& /*text*/) override {}
  QRect rect() const override { return isValid() ? area_->rect(place_) : QRect(); }
  QAccessible::Role role() const override { return isHeading() ? QAccessible::ColumnHeader : QAccessible::Cell; }
  QAccessible::State state() const override;
  void* interface_cast(QAccessible::InterfaceType type) override {
    if (isHeading()) return nullptr;
    if (type == QAccessible::TableCellInterface) return static_cast<QAccessibleTableCellInterface*>(this);
    if (type == QAccessible::ActionInterface) return static_cast<QAccessibleActionInterface*>(this);
    return nullptr;
  }

  bool isSelected() const override { return isValid() && area_->isChosen(place_); }
  QList<QAccessibleInterface*> columnHeaderCells() const override;
  QList<QAccessibleInterface*> rowHeaderCells() const override { return {}; }
  int columnIndex() const override { return place_.column; }
  int rowIndex() const override { return place_.row; }
  int columnExtent() const override { return 1; }
  int rowExtent() const override { return 1; }
  QAccessibleInterface* table() const override { return QAccessible::queryAccessibleInterface(area_); }

  QStringList actionNames() const override {
    QStringList names{setFocusAction()};
    if (isValid() && area_->isTick(place_.column)) names << toggleAction();
    return names;
  }
  void doAction(const QString& name) override {
    if (!isValid()) return;
    area_->turnTo(place_);
    if (name == toggleAction()) area_->turnOver();
  }
  QStringList keyBindingsForAction(const QString& name) const override {
    return name == toggleAction() ? QStringList("Space") : QStringList();
  }

 private:
  bool isHeading() const { return place_.row == kHeadings; }

  QPointer<GridArea> area_;
  GridArea::Place place_;
};

class ReadGrid final : public QAccessibleWidget, public QAccessibleTableInterface {
 public:
  explicit ReadGrid(GridArea& area) : QAccessibleWidget(&area, QAccessible::Table), area_(area) {}
  ~ReadGrid() override {
    forget([](const GridArea::Place&) { return true; });
  }

  QAccessibleInterface* child(int index) const override {
    const int columns = area_.columnCount();
    return columns == 0 || index < 0 ? nullptr : cell(index / columns + kHeadings, index % columns);
  }
  int childCount() const override { return (area_.rowCount() - kHeadings) * area_.columnCount(); }
  int indexOfChild(const QAccessibleInterface* child) const override {
    const auto* cell = dynamic_cast<const ReadCell*>(child);
    return cell ? (cell->rowIndex() - kHeadings) * area_.columnCount() + cell->columnIndex() : -1;
  }
  QAccessibleInterface* childAt(int x, int y) const override {
    const auto place = area_.placeAt({x, y});
    return place ? cell(place->row, place->column) : nullptr;
  }
  QAccessibleInterface* focusChild() const override {
    if (QWidget* typing = area_.typingWidget(); typing != &area_) return QAccessible::queryAccessibleInterface(typing);
    return area_.hasFocus() ? activeCell() : nullptr;
  }
  // Where nobody asks for cells, its description is the active row.
  QString text(QAccessible::Text what) const override {
    const auto active = area_.activePlace();
    if (what != QAccessible::Description || !active) return QAccessibleWidget::text(what);
    return rowDescription(active->row);
  }
  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::TableInterface) return static_cast<QAccessibleTableInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }

  QAccessibleInterface* caption() const override { return nullptr; }
  QAccessibleInterface* summary() const override { return nullptr; }
  QAccessibleInterface* cellAt(int row, int column) const override { return row < 0 ? nullptr : cell(row, column); }
  QString columnDescription(int column) const override { return area_.heading(column); }
  QString rowDescription(int row) const override {
    QString all;
    for (int column = 0; column < area_.columnCount(); ++column)
      if (const QString text = area_.text({row, column}); !text.isEmpty())
        all += area_.heading(column) + ' ' + text + "; ";
    return all;
  }
  int columnCount() const override { return area_.columnCount(); }
  int rowCount() const override { return area_.rowCount(); }

  // In a list the active row is the one that is chosen, in lines the active cell.
  int selectedCellCount() const override { return static_cast<int>(selectedCells().size()); }
  QList<QAccessibleInterface*> selectedCells() const override {
    QList<QAccessibleInterface*> all;
    const auto active = area_.activePlace();
    for (int column = 0; active && column < area_.columnCount(); ++column)
      if (area_.isChosen({active->row, column})) all << cell(active->row, column);
    return all;
  }
  int selectedColumnCount() const override { return 0; }
  int selectedRowCount() const override { return static_cast<int>(selectedRows().size()); }
  QList<int> selectedColumns() const override { return {}; }
  QList<int> selectedRows() const override {
    const auto active = area_.activePlace();
    return active && isRowSelected(active->row) ? QList<int>{active->row} : QList<int>();
  }
  bool isColumnSelected(int /*column*/) const override { return false; }
  bool isRowSelected(int row) const override { return area_.isList() && area_.isChosen({row, 0}); }
  bool selectRow(int row) override {
    if (row < 0 || row >= area_.rowCount()) return false;
    area_.turnTo({row, 0});
    return isRowSelected(row);
  }
  bool selectColumn(int /*column*/) override { return false; }
  bool unselectRow(int /*row*/) override { return false; }
  bool unselectColumn(int /*column*/) override { return false; }
  void modelChange(QAccessibleTableModelChangeEvent* /*event*/) override {
    forget([this](const GridArea::Place& place) {
      return place.row >= area_.rowCount() || place.column >= area_.columnCount();
    });
  }

  QAccessibleInterface* activeCell() const {
    const auto active = area_.activePlace();
    return active ? cell(active->row, active->column) : nullptr;
  }
  QAccessibleInterface* cell(int row, int column) const {
    if (row >= area_.rowCount() || column < 0 || column >= area_.columnCount()) return nullptr;
    if (const auto found = cells_.find({row, column}); found != cells_.end())
      return QAccessible::accessibleInterface(found->second);
    if (cells_.size() > kKept)
      forget([this](const GridArea::Place& place) {
        const auto active = area_.activePlace();
        return place.row >= 0 && !area_.isOnView(place.row) && !(active && active->row == place.row);
      });
    auto* made = new ReadCell(area_, row, column);
    cells_[{row, column}] = QAccessible::registerAccessibleInterface(made);
    return made;
  }

 private:
  template <typename Test>
  void forget(const Test& test) const {
    std::erase_if(cells_, [&](const auto& kept) {
      const bool goes = test(kept.first);
      if (goes) QAccessible::deleteAccessibleInterface(kept.second);
      return goes;
    });
  }

  GridArea& area_;
  mutable std::map<GridArea::Place, QAccessible::Id> cells_;
};

QAccessible::State ReadCell::state() const {
  QAccessible::State state;
  if (!isValid()) return state.invalid = true, state;
  state.offscreen = state.invisible = rect().isEmpty();
  if (isHeading()) return state;
  const bool active = area_->activePlace() == place_;
  state.focusable = state.selectable = true;
  state.selected = isSelected();
  state.active = active;
  state.focused = active && area_->hasFocus();
  state.readOnly = !area_->canBeTyped(place_.column);
  state.editable = !state.readOnly;
  state.checkable = area_->isTick(place_.column);
  state.checked = state.checkable && area_->isTicked(place_);
  return state;
}

QList<QAccessibleInterface*> ReadCell::columnHeaderCells() const {
  if (!isValid()) return {};
  return {static_cast<ReadGrid*>(table())->cell(kHeadings, place_.column)};
}

QAccessibleInterface* readingOf(const QString& /*key*/, QObject* object) {
  auto* area = dynamic_cast<GridArea*>(object);
  return area ? new ReadGrid(*area) : nullptr;
}

// Whether anybody has the screen read out.
class Listening final : public QAccessible::ActivationObserver {
 public:
  Listening() : active_(QAccessible::isActive()) {
    QAccessible::installFactory(readingOf);
    QAccessible::installActivationObserver(this);
  }
  ~Listening() override { QAccessible::removeActivationObserver(this); }
  void accessibilityActiveChanged(bool active) override { active_ = active; }
  bool isActive() const { return active_; }

 private:
  bool active_;
};

const Listening& listening() {
  static const Listening one;
  return one;
}

}  // namespace

void makeGridsReadable() { listening(); }

void tellCell(GridArea& area, ToldCell& told, bool focused) {
  if (!listening().isActive()) return;
  ToldCell now{.rows = area.rowCount(), .columns = area.columnCount(), .text = {}};
  if (const auto active = area.activePlace()) {
    now.row = active->row, now.column = active->column;
    now.text = area.text(*active);
  }
  const ToldCell before = std::exchange(told, now);
  if (before.rows != now.rows || before.columns != now.columns) {
    QAccessibleTableModelChangeEvent event(&area, QAccessibleTableModelChangeEvent::ModelReset);
    QAccessible::updateAccessibility(&event);
  }
  if (!area.hasFocus() || (now == before && !focused)) return;
  auto* grid = dynamic_cast<ReadGrid*>(QAccessible::queryAccessibleInterface(&area));
  QAccessibleInterface* cell = grid ? grid->activeCell() : nullptr;
  if (cell == nullptr) return;
  for (const QAccessible::Event type : {QAccessible::Selection, QAccessible::Focus}) {
    QAccessibleEvent event(cell, type);
    QAccessible::updateAccessibility(&event);
  }
}

}  // namespace quillon::desktop
