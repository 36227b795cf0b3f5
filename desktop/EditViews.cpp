// Fields that are typed into: one line, several lines.
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>

#include "desktop/ControlView.h"
#include "desktop/Hands.h"
#include "desktop/Text.h"
#include "form/Screen.h"

namespace quillon::desktop {
namespace {

constexpr int kWidest = 50;  // characters

// What stands in a field: what is being typed, or what may be typed over, or what it shows.
std::string textOf(const Hands& hands, form::Control& control, bool readOnly) {
  const form::Screen& screen = hands.screen();
  const bool here = screen.focused() == &control;
  if (here && screen.typed()) return *screen.typed();
  return here && !readOnly ? control.binding()->editText() : control.binding()->text();
}

class Line final : public QLineEdit {
 public:
  Line(Hands& hands, form::Control& control, QWidget& parent) : QLineEdit(&parent), hands_(hands), control_(control) {
    QObject::connect(this, &QLineEdit::textEdited, [this](const QString& text) {
      hands_.act([&](form::Input& input) { input.type(hands_.screen(), typed(text)); });
    });
  }

 protected:
  void focusInEvent(QFocusEvent* event) override {
    QLineEdit::focusInEvent(event);
    if (!hands_.isSyncing() && hands_.screen().focused() != &control_)
      hands_.act([this](form::Input& input) { input.focus(hands_.screen(), control_); });
    if (hands_.screen().typed())
      end(false);
    else if (event->reason() != Qt::PopupFocusReason)
      selectAll();
  }
  // Of a find box: the arrows move in what it finds in.
  bool moves(const QKeyEvent& event) const {
    const int key = event.key();
    return control_.list() != nullptr &&
           (key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown);
  }
  // A character typed where nothing can be typed is answered by the program, which says why.
  void keyPressEvent(QKeyEvent* event) override {
    if (control_.isInColumn() && (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down))
      return hands_.key(keyName(*event));
    if (moves(*event)) return hands_.key(keyName(*event));
    const std::string key = isReadOnly() ? keyName(*event) : std::string();
    if (event->text().isEmpty() || key.empty() || key.size() > 4)
      QLineEdit::keyPressEvent(event);
    else
      hands_.act([&](form::Input& input) { input.keys(hands_.screen(), key); });
  }
  void mouseDoubleClickEvent(QMouseEvent* event) override {
    if (control_.binding()->hasPicker() && !control_.binding()->picksAsTyped())
      hands_.key("F2");
    else
      QLineEdit::mouseDoubleClickEvent(event);
  }

 private:
  Hands& hands_;
  form::Control& control_;
};

class EditView final : public ControlView {
 public:
  EditView(Hands& hands, form::Control& control, QWidget& parent)
      : ControlView(hands, control), line_(new Line(hands, control, parent)) {
    int characters = control.width();
    if (characters == 0) characters = kWidest / 2;
    line_->setFixedWidth(widthOf(*line_, std::min(characters, kWidest) + 3));
    if (control.binding()->alignsRight()) line_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    if (control.isSecret()) line_->setEchoMode(QLineEdit::Password);
  }
  QWidget* widget() const override { return line_; }
  QWidget* focusWidget() const override { return line_; }
  bool isLabelled() const override { return true; }
  void sync() override {
    syncLooks();
    const bool readOnly = control_.readOnly();
    line_->setReadOnly(readOnly);
    if (const QString text = shown(textOf(hands_, control_, readOnly)); line_->text() != text) {
      line_->setText(text);
      if (line_->hasFocus() && !hands_.screen().typed()) line_->selectAll();
    }
  }

 private:
  Line* line_;
};

class Lines final : public QPlainTextEdit {
 public:
  Lines(Hands& hands, form::Control& control, QWidget& parent)
      : QPlainTextEdit(&parent), hands_(hands), control_(control) {
    setTabChangesFocus(true);
    QObject::connect(this, &QPlainTextEdit::textChanged, [this] {
      hands_.act([&](form::Input& input) { input.type(hands_.screen(), typed(toPlainText())); });
    });
  }

 protected:
  void focusInEvent(QFocusEvent* event) override {
    QPlainTextEdit::focusInEvent(event);
    if (!hands_.isSyncing() && hands_.screen().focused() != &control_)
      hands_.act([this](form::Input& input) { input.focus(hands_.screen(), control_); });
  }

 private:
  Hands& hands_;
  form::Control& control_;
};

class MemoView final : public ControlView {
 public:
  MemoView(Hands& hands, form::Control& control, QWidget& parent)
      : ControlView(hands, control), lines_(new Lines(hands, control, parent)) {
    const int rows = control.height() > 0 ? control.height() : 6;
    lines_->setMinimumSize(widthOf(*lines_, kWidest), lines_->fontMetrics().lineSpacing() * rows + 12);
  }
  QWidget* widget() const override { return lines_; }
  QWidget* focusWidget() const override { return lines_; }
  bool isLabelled() const override { return true; }
  bool stretches() const override { return true; }
  void sync() override {
    syncLooks();
    lines_->setReadOnly(control_.readOnly());
    if (const QString text = shown(textOf(hands_, control_, control_.readOnly())); lines_->toPlainText() != text)
      lines_->setPlainText(text);
  }

 private:
  Lines* lines_;
};

}  // namespace

ViewPtr makeEditView(Hands& hands, form::Control& control, QWidget& parent) {
  return std::make_unique<EditView>(hands, control, parent);
}

ViewPtr makeMemoView(Hands& hands, form::Control& control, QWidget& parent) {
  return std::make_unique<MemoView>(hands, control, parent);
}

}  // namespace quillon::desktop
