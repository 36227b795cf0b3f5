// What shows one thing at a time, or two side by side: tabs, the steps of a wizard, sides.
#include <QSplitter>
#include <QStackedWidget>
#include <QTabWidget>
#include <QVBoxLayout>

#include "desktop/Hands.h"
#include "desktop/HolderView.h"
#include "desktop/Text.h"
#include "form/Screen.h"

namespace quillon::desktop {
namespace {

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
      views_.push_back(makePageView(hands, *child, *page));
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

ViewPtr makePagesView(Hands& hands, form::Control& control, QWidget& parent) {
  if (control.kind() == form::Kind::pages) return std::make_unique<TabsView>(hands, control, parent);
  if (control.kind() == form::Kind::splitter) return std::make_unique<SidesView>(hands, control, parent);
  return std::make_unique<StepsView>(hands, control, parent);
}

}  // namespace quillon::desktop
