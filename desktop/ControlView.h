#pragma once

#include <memory>
#include <string>
#include <vector>

#include "form/Control.h"

class QBoxLayout;
class QLabel;
class QWidget;

namespace quillon::form {
struct Progress;
}

namespace quillon::desktop {

class Hands;

// A control as widgets. They belong to the window; the view brings them in step and passes on what a person does.
class ControlView {
 public:
  ControlView(Hands& hands, form::Control& control) : hands_(hands), control_(control) {}
  virtual ~ControlView() = default;
  ControlView(const ControlView&) = delete;
  ControlView& operator=(const ControlView&) = delete;

  form::Control& control() const { return control_; }
  virtual QWidget* widget() const = 0;
  // The one that takes the focus; null when none does.
  virtual QWidget* focusWidget() const { return nullptr; }
  virtual void sync() = 0;
  // Whether its caption stands beside it, in a label of its own.
  virtual bool isLabelled() const { return false; }
  virtual bool stretches() const { return false; }  // takes the room that is left
  virtual bool dropDown() { return false; }         // shows what may be chosen in it, where that is not in sight
  // How far work has come; false where it is not the one that shows it.
  virtual bool show(const form::Progress& /*progress*/) { return false; }
  QLabel* label = nullptr;
  // Those inside of it, for whoever looks for one.
  virtual const std::vector<std::unique_ptr<ControlView>>& inside() const;

 protected:
  // Enabled, visible, hint and the label's caption; what all have.
  void syncLooks();

  Hands& hands_;
  form::Control& control_;
};
using ViewPtr = std::unique_ptr<ControlView>;

// The view of a control with all inside of it. Menus and their entries stand in the window's menu bar and have none.
ViewPtr makeView(Hands& hands, form::Control& control, QWidget& parent);

// By kind; for makeView.
ViewPtr makeEditView(Hands& hands, form::Control& control, QWidget& parent);
ViewPtr makeMemoView(Hands& hands, form::Control& control, QWidget& parent);
ViewPtr makeCheckView(Hands& hands, form::Control& control, QWidget& parent);
ViewPtr makeChooserView(Hands& hands, form::Control& control, QWidget& parent);
ViewPtr makeChoiceView(Hands& hands, form::Control& control, QWidget& parent);
ViewPtr makeListView(Hands& hands, form::Control& control, QWidget& parent);
ViewPtr makeMonthView(Hands& hands, form::Control& control, QWidget& parent);
ViewPtr makeGridView(Hands& hands, form::Control& control, QWidget& parent);
ViewPtr makeButtonView(Hands& hands, form::Control& control, QWidget& parent);
ViewPtr makeTextView(Hands& hands, form::Control& control, QWidget& parent);
ViewPtr makePictureView(Hands& hands, form::Control& control, QWidget& parent);
ViewPtr makeProgressView(Hands& hands, form::Control& control, QWidget& parent);
ViewPtr makePageviewView(Hands& hands, form::Control& control, QWidget& parent);
ViewPtr makeHolderView(Hands& hands, form::Control& control, QWidget& parent);  // group, row, toolbar
ViewPtr makePagesView(Hands& hands, form::Control& control, QWidget& parent);   // pages, steps, splitter

// The width of that many characters of ordinary text in a widget's font.
int widthOf(const QWidget& widget, int characters);
// A size that is told in 1/96 inch, on the widget's screen.
int scaled(const QWidget& widget, int told);

}  // namespace quillon::desktop
