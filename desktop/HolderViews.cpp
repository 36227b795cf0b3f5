// What holds other controls: below each other with their labels in a column, beside each other, in a toolbar.
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <algorithm>

#include "desktop/Hands.h"
#include "desktop/HolderView.h"
#include "desktop/Text.h"
#include "form/Screen.h"

namespace quillon::desktop {

bool HolderView::stretches() const {
  return std::ranges::any_of(views_, [](const ViewPtr& view) { return view->stretches(); });
}

void HolderView::sync() {
  syncLooks();
  syncInside();
}

void HolderView::syncInside() {
  for (const ViewPtr& view : views_) view->sync();
}

std::vector<ViewPtr> viewsIn(Hands& hands, form::Control& holder, QWidget& parent) {
  std::vector<ViewPtr> views;
  for (const auto& child : holder.children())
    if (ViewPtr view = makeView(hands, *child, parent)) views.push_back(std::move(view));
  return views;
}

namespace {

QLabel* labelFor(ControlView& view, QWidget& parent) {
  auto* label = new QLabel(shown(view.control().caption()), &parent);
  label->setTextFormat(Qt::PlainText);
  label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  label->setBuddy(view.focusWidget());
  return view.label = label;
}

QLabel* leadingLabel(ControlView& view, QWidget& parent);

bool holdsButtons(const form::Control& row) {
  return row.kind() == form::Kind::row && !row.children().empty() &&
         std::ranges::all_of(row.children(), [](const auto& some) { return some->kind() == form::Kind::button; });
}

// Of the window itself, and not of a page or group in it.
bool isOutermost(const Hands& hands, const form::Control& control) {
  const auto& all = hands.screen().root().children();
  return std::ranges::any_of(all, [&](const auto& some) { return some.get() == &control; });
}

// Beside each other. The label of the first one stands in the column of labels of whatever holds the row.
class RowView final : public HolderView {
 public:
  RowView(Hands& hands, form::Control& control, QWidget& parent)
      : HolderView(hands, control), row_(new QWidget(&parent)) {
    auto* layout = new QHBoxLayout(row_);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(kSpacing);
    views_ = viewsIn(hands, control, *row_);
    const bool ends = holdsButtons(control) && isOutermost(hands, control);
    if (ends) layout->addStretch();
    for (const ViewPtr& view : views_) {
      QLabel* caption = leadingLabel(*view, *row_);
      if (caption != nullptr && view != views_.front()) layout->addWidget(caption);
      // Those that stand beside each other share the room as they need it.
      layout->addWidget(view->widget(), view->stretches() ? std::max(1, view->widget()->sizeHint().width()) : 0);
      if (view == views_.front()) lead_ = caption;
    }
    if (!ends && !stretches()) layout->addStretch();
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

// The controls of a row that hold no others, from left to right.
void addLeaves(const ControlView& view, std::vector<const ControlView*>& leaves) {
  if (view.inside().empty()) leaves.push_back(&view);
  for (const ViewPtr& below : view.inside()) addLeaves(*below, leaves);
}

// Rows of the same kinds of controls that follow each other read as a table: the captions within them are made equally
// wide, so that what stands behind them is in line.
void alignRows(const std::vector<ViewPtr>& views) {
  std::vector<const ControlView*> above;
  for (const ViewPtr& view : views) {
    std::vector<const ControlView*> here;
    if (view->control().kind() == form::Kind::row) addLeaves(*view, here);
    const bool alike = std::ranges::equal(
        above, here, {}, [](const ControlView* some) { return some->control().kind(); },
        [](const ControlView* some) { return some->control().kind(); });
    for (std::size_t i = 1; alike && i < here.size(); ++i) {
      QLabel *upper = above[i]->label, *lower = here[i]->label;
      if (upper == nullptr || lower == nullptr) continue;
      const int width = std::max(upper->sizeHint().width(), lower->sizeHint().width());
      upper->setMinimumWidth(width);
      lower->setMinimumWidth(width);
    }
    above = std::move(here);
  }
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
    for (const ViewPtr& view : views_) place(*layout, *view, line);
    alignRows(views_);
    if (!stretches()) layout->setRowStretch(line, 1);
  }
  QWidget* widget() const override { return group_; }

 private:
  static bool isField(const ControlView& view) {
    return view.isLabelled() || view.control().kind() == form::Kind::check;
  }
  void place(QGridLayout& layout, ControlView& view, int& line) {
    const form::Control& control = view.control();
    const bool tall = view.stretches(), row = control.kind() == form::Kind::row;
    const auto beside = tall || row ? Qt::Alignment() : Qt::AlignLeft | Qt::AlignVCenter;
    // The buttons that end a window stand off from what they are about.
    if (holdsButtons(control) && isOutermost(hands_, control) && line > 0) layout.setRowMinimumHeight(line++, kSpacing);
    if (tall) layout.setRowStretch(line, 1);
    if (QLabel* caption = leadingLabel(view, *group_)) {
      if (tall) caption->setAlignment(Qt::AlignRight | Qt::AlignTop);
      layout.addWidget(caption, line, 0);
      layout.addWidget(view.widget(), line, 1, beside);
    } else if (isField(view) || (holdsButtons(control) && !isOutermost(hands_, control) &&
                                 std::ranges::any_of(views_, [](const ViewPtr& some) { return isField(*some); }))) {
      layout.addWidget(view.widget(), line, 1, beside);
    } else if (control.kind() == form::Kind::button) {
      layout.addWidget(view.widget(), line, 0, 1, 2, Qt::AlignRight);
    } else {
      layout.addWidget(view.widget(), line, 0, 1, 2);
    }
    ++line;
  }

  QWidget* group_;
};

// Fields in one line, and in another one below the buttons, which share it. Captions of two words stand in two lines,
// and leave them to all, so that icons are in line.
class ToolbarView final : public HolderView {
 public:
  ToolbarView(Hands& hands, form::Control& control, QWidget& parent)
      : HolderView(hands, control), bar_(new QWidget(&parent)) {
    auto* lines = new QVBoxLayout(bar_);
    auto* fields = new QHBoxLayout;
    auto* buttons = new QHBoxLayout;
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(kSpacing / 2);
    lines->addLayout(fields);
    lines->addLayout(buttons);
    fields->setSpacing(kSpacing);
    buttons->setSpacing(0);
    views_ = viewsIn(hands, control, *bar_);
    for (const ViewPtr& view : views_) {
      if (view->control().kind() == form::Kind::button) {
        view->widget()->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        buttons->addWidget(view->widget());
        continue;
      }
      if (QLabel* caption = leadingLabel(*view, *bar_)) fields->addWidget(caption);
      fields->addWidget(view->widget(), 1);
    }
  }
  QWidget* widget() const override { return bar_; }
  void sync() override {
    HolderView::sync();
    const auto hasTwo = [](const ViewPtr& view) { return view->control().caption().find(' ') != std::string::npos; };
    const bool two = std::ranges::any_of(views_, hasTwo);
    for (const ViewPtr& view : views_) {
      auto* button = qobject_cast<QToolButton*>(view->widget());
      if (button == nullptr) continue;
      const QString caption = shown(view->control().caption());
      button->setToolButtonStyle(control_.showsCaptions() ? Qt::ToolButtonTextUnderIcon : Qt::ToolButtonIconOnly);
      if (control_.showsCaptions())
        button->setText(caption.contains(' ') ? QString(caption).replace(' ', '\n') : two ? caption + "\n" : caption);
      else
        button->setToolTip(caption);
      const QStringList lines = control_.showsCaptions() ? caption.split(' ') : QStringList();
      int width = button->iconSize().width();
      for (const QString& line : lines) width = std::max(width, button->fontMetrics().horizontalAdvance(line));
      button->setMinimumWidth(width + kSpacing);
    }
  }

 private:
  QWidget* bar_;
};

}  // namespace

ViewPtr makePageView(Hands& hands, form::Control& control, QWidget& parent) {
  return std::make_unique<GroupView>(hands, control, parent, false);
}

ViewPtr makeHolderView(Hands& hands, form::Control& control, QWidget& parent) {
  if (control.kind() == form::Kind::group)
    return std::make_unique<GroupView>(hands, control, parent, !control.caption().empty());
  if (control.kind() == form::Kind::toolbar) return std::make_unique<ToolbarView>(hands, control, parent);
  return std::make_unique<RowView>(hands, control, parent);
}

}  // namespace quillon::desktop
