// Prepared pages, as a preview shows them: the text of one page after the other.
#include <QPlainTextEdit>

#include "desktop/ControlView.h"
#include "desktop/Hands.h"
#include "desktop/Text.h"
#include "form/Screen.h"

namespace quillon::desktop {
namespace {

class PageviewView final : public ControlView {
 public:
  PageviewView(Hands& hands, form::Control& control, QWidget& parent)
      : ControlView(hands, control), text_(new QPlainTextEdit(&parent)) {
    text_->setReadOnly(true);
  }
  QWidget* widget() const override { return text_; }
  QWidget* focusWidget() const override { return text_; }
  bool stretches() const override { return true; }
  void sync() override {
    syncLooks();
    std::string all;
    for (int page = 1; page <= control_.pages()->pageCount(); ++page) all += control_.pages()->pageText(page) + "\r\r";
    if (const QString text = shown(all); text_->toPlainText() != text) text_->setPlainText(text);
  }

 private:
  QPlainTextEdit* text_;
};

}  // namespace

ViewPtr makePageviewView(Hands& hands, form::Control& control, QWidget& parent) {
  return std::make_unique<PageviewView>(hands, control, parent);
}

}  // namespace quillon::desktop
