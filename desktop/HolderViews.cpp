// What holds other controls: below each other with their labels in a column, beside each other, on pages.
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSplitter>
#include <QStackedWidget>
#include <QTabWidget>
#include <algorithm>

#include "desktop/ControlView.h"
#include "desktop/Hands.h"
#include "desktop/Text.h"
#include "form/Screen.h"

namespace quillon::desktop {
namespace {

constexpr int kSpacing = 6;  // the one unit of space, at 96 dots an inch

std::vector<ViewPtr> viewsIn(Hands& hands, form::Control& holder, QWidget& parent) {
  std::vector<ViewPtr> views;
  for (const auto& child : holder.children())
    if (ViewPtr view = makeView(hands, *child, parent)) views.push_back(std::move(view));
  return views;
}

QLabel* labelFor(ControlView& view, QWidget& parent) {
  auto* label = new QLabel(shown(view.control().caption()), &parent);
  label->setTextFormat(Qt::PlainText);
  label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  label->setBuddy(view.focusWidget());
  return view.label = label;
}

QLabel* leadingLabel(ControlView& view, QWidget& parent);

class HolderView : public ControlView {
 public:
  HolderView(Hands& hands, form::Control& control) : ControlView(hands, control) {}
  const std::vector<ViewPtr>& inside() const override { return views_; }
  bool stretches() const override {
    return std::ranges::any_of(views_, [](const ViewPtr& view) { return view->stretches(); });
  }
  void sync() override {
    syncLooks();
    syncInside();
  }
  void syncInside() {
    for (const ViewPtr& view : views_) view->sync();
  }

 protected:
  std::vector<ViewPtr> views_;
};

// Beside each other. The label of the first one stands in the column of labels of whatever holds the row.
class RowView final : public HolderView {
 public:
  RowView(Hands& hands, form::Control& control, QWidget& parent)
      : HolderView(hands, control), row_(new QWidget(&parent)) {
    auto* layout = new QHBoxLayout(row_);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(kSpacing);
    views_ = viewsIn(hands, control, *row_);
    const auto isButton = [](const ViewPtr& view) { return view->control().kind() == form::Kind::button; };
    const bool buttons = std::ranges::all_of(views_, isButton);
    if (buttons && control.kind() == form::Kind::row) layout->addStretch();
    for (const ViewPtr& view : views_) {
      QLabel* caption = leadingLabel(*view, *row_);
      if (caption != nullptr && view != views_.front()) layout->addWidget(caption);
      layout->addWidget(view->widget(), view->stretches() ? 1 : 0);
      if (view == views_.front()) lead_ = caption;
    }
    if (!buttons && !stretches()) layout->addStretch();
  }
  QWidget* widget() const override { return row_; }
  // Of the first one in it; null when that has none. It stands nowhere yet.
  QLabel* lead() const { return lead_; }

 private:
  QWidget* row_;
  QLabel* lead_ = nullptr;
};

QLabel* leadingLabel(ControlView& view, QWidget& parent) {
  if (const auto* row = dynamic_cast<const RowView*>(&view)) return row->lead();
  return view.isLabelled() && !view.control().caption().empty() ? labelFor(view, parent) : nullptr;
}

// Below each other.
class GroupView final : public HolderView {
 public:
  GroupView(Hands& hands, form::Control& control, QWidget& parent, bool framed) : HolderView(hands, control) {
    group_ = framed ? new QGroupBox(shown(control.caption()), &parent) : new QWidget(&parent);
    auto* layout = new QGridLayout(group_);
    if (!framed) layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(kSpacing);
    layout->setColumnStretch(1, 1);
    views_ = viewsIn(hands, control, *group_);
    int line = 0;
    for (const ViewPtr& view : views_) place(*layout, *view, line++);
    if (!stretches()) layout->setRowStretch(line, 1);
  }
  QWidget* widget() const override { return group_; }

 private:
  void place(QGridLayout& layout, ControlView& view, int line) {
    const bool tall = view.stretches(), row = view.control().kind() == form::Kind::row;
    if (tall) layout.setRowStretch(line, 1);
    if (QLabel* caption = leadingLabel(view, *group_)) {
      if (tall) caption->setAlignment(Qt::AlignRight | Qt::AlignTop);
      layout.addWidget(caption, line, 0);
      layout.addWidget(view.widget(), line, 1, tall || row ? Qt::Alignment() : Qt::AlignLeft | Qt::AlignVCenter);
    } else if (view.isLabelled() || view.control().kind() == form::Kind::check) {
      layout.addWidget(view.widget(), line, 1, tall ? Qt::Alignment() : Qt::AlignLeft | Qt::AlignVCenter);
    } else if (view.control().kind() == form::Kind::button) {
      layout.addWidget(view.widget(), line, 0, 1, 2, Qt::AlignRight);
    } else {
      layout.addWidget(view.widget(), line, 0, 1, 2);
    }
  }

  QWidget* group_;
};

// Two sides that share the width as the person draws it.
class SidesView final : public HolderView {
 public:
  SidesView(Hands& hands, form::Control& control, QWidget& parent)
      : HolderView(hands, control), sides_(new QSplitter(Qt::Horizontal, &parent)) {
    sides_->setChildrenCollapsible(false);
    views_ = viewsIn(hands, control, *sides_);
    for (const ViewPtr& view : views_) sides_->addWidget(view->widget());
  }
  QWidget* widget() const override { return sides_; }
  bool stretches() const override { return true; }

 private:
  QSplitter* sides_;
};

class TabsView final : public HolderView {
 public:
  TabsView(Hands& hands, form::Control& control, QWidget& parent)
      : HolderView(hands, control), tabs_(new QTabWidget(&parent)) {
    tabs_->setUsesScrollButtons(false);
    for (const auto& child : control.children()) {
      auto* page = new QWidget(tabs_);
      auto* layout = new QVBoxLayout(page);
      views_.push_back(std::make_unique<GroupView>(hands, *child, *page, false));
      layout->addWidget(views_.back()->widget());
      tabs_->addTab(page, shown(child->caption()));
    }
    QObject::connect(tabs_, &QTabWidget::currentChanged, [this](int page) {
      hands_.act([&](form::Input& input) { input.turn(hands_.screen(), control_, page); });
    });
  }
  QWidget* widget() const override { return tabs_; }
  bool stretches() const override { return true; }
  void sync() override {
    HolderView::sync();
    for (std::size_t i = 0; i < views_.size(); ++i)
      tabs_->setTabVisible(static_cast<int>(i), views_[i]->control().visible());
    tabs_->setCurrentIndex(control_.page);
  }

 private:
  QTabWidget* tabs_;
};

class StepsView final : public HolderView {
 public:
  StepsView(Hands& hands, form::Control& control, QWidget& parent)
      : HolderView(hands, control), stack_(new QStackedWidget(&parent)) {
    for (const auto& child : control.children()) {
      views_.push_back(makeHolderView(hands, *child, *stack_));
      stack_->addWidget(views_.back()->widget());
    }
  }
  QWidget* widget() const override { return stack_; }
  bool stretches() const override { return true; }
  // Which page shows is the stack's business.
  void sync() override {
    for (const ViewPtr& view : views_) dynamic_cast<HolderView&>(*view).syncInside();
    stack_->setCurrentIndex(control_.page);
  }

 private:
  QStackedWidget* stack_;
};

}  // namespace

ViewPtr makeHolderView(Hands& hands, form::Control& control, QWidget& parent) {
  if (control.kind() == form::Kind::group)
    return std::make_unique<GroupView>(hands, control, parent, !control.caption().empty());
  if (control.kind() == form::Kind::splitter) return std::make_unique<SidesView>(hands, control, parent);
  return std::make_unique<RowView>(hands, control, parent);
}

ViewPtr makePagesView(Hands& hands, form::Control& control, QWidget& parent) {
  if (control.kind() == form::Kind::pages) return std::make_unique<TabsView>(hands, control, parent);
  return std::make_unique<StepsView>(hands, control, parent);
}

}  // namespace quillon::desktop
