#include "desktop/ControlView.h"

#include <QFontMetrics>
#include <QLabel>
#include <QWidget>
#include <algorithm>

#include "desktop/Hands.h"
#include "desktop/Text.h"
#include "form/Screen.h"

namespace quillon::desktop {

const std::vector<ViewPtr>& ControlView::inside() const {
  static const std::vector<ViewPtr> kNone;
  return kNone;
}

void ControlView::syncLooks() {
  QWidget* widget = this->widget();
  const bool visible = control_.visible();
  if (widget->isHidden() == visible) widget->setVisible(visible);
  if (widget->isEnabled() != control_.enabled()) widget->setEnabled(control_.enabled());
  if (const QString hint = tip(control_.hint()); widget->toolTip() != hint) widget->setToolTip(hint);
  if (label == nullptr) return;
  if (label->isHidden() == visible) label->setVisible(visible);
  if (const QString caption = shown(control_.caption()); label->text() != caption) label->setText(caption);
}

int widthOf(const QWidget& widget, int characters) {
  // What is short is codes, amounts and dates, of which each character may be a wide one.
  constexpr int kShort = 14;
  const QFontMetrics font = widget.fontMetrics();
  return characters <= kShort ? font.horizontalAdvance('0') * characters + font.horizontalAdvance('M') / 2
                              : font.averageCharWidth() * characters;
}

int scaled(const QWidget& widget, int told) {
  constexpr int kToldDots = 96;
  return told * widget.logicalDpiX() / kToldDots;
}

ViewPtr makeView(Hands& hands, form::Control& control, QWidget& parent) {
  using form::Kind;
  const auto isMenu = [](const std::unique_ptr<form::Control>& child) { return child->kind() == Kind::menu; };
  if (!control.children().empty() && std::ranges::all_of(control.children(), isMenu)) return nullptr;
  ViewPtr view;
  switch (control.kind()) {
    case Kind::label:
    case Kind::mark:
    case Kind::separator:
      view = makeTextView(hands, control, parent);
      break;
    case Kind::edit:
      view = makeEditView(hands, control, parent);
      break;
    case Kind::memo:
      view = makeMemoView(hands, control, parent);
      break;
    case Kind::check:
      view = makeCheckView(hands, control, parent);
      break;
    case Kind::chooser:
      view = makeChooserView(hands, control, parent);
      break;
    case Kind::choice:
      view = makeChoiceView(hands, control, parent);
      break;
    case Kind::list:
      view = makeListView(hands, control, parent);
      break;
    case Kind::grid:
      view = makeGridView(hands, control, parent);
      break;
    case Kind::button:
      view = makeButtonView(hands, control, parent);
      break;
    case Kind::picture:
      view = makePictureView(hands, control, parent);
      break;
    case Kind::progress:
      view = makeProgressView(hands, control, parent);
      break;
    case Kind::month:
      view = makeMonthView(hands, control, parent);
      break;
    case Kind::pageview:
      view = makePageviewView(hands, control, parent);
      break;
    case Kind::pages:
    case Kind::steps:
    case Kind::splitter:
      view = makePagesView(hands, control, parent);
      break;
    case Kind::group:
    case Kind::row:
    case Kind::toolbar:
      view = makeHolderView(hands, control, parent);
      break;
    case Kind::menu:
    case Kind::entry:
    case Kind::column:
      return nullptr;
  }
  const std::string name = control.caption().empty() ? control.name() : form::plainCaption(control.caption());
  QWidget* reader = view->focusWidget() ? view->focusWidget() : view->widget();
  reader->setAccessibleName(shown(name));
  view->widget()->setObjectName(shown(control.name()));
  return view;
}

}  // namespace quillon::desktop
