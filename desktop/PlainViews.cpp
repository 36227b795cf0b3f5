// What is only looked at or pressed: texts, marks, lines, buttons, pictures, progress.
#include <QFrame>
#include <QIcon>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QToolButton>
#include <algorithm>
#include <optional>

#include "desktop/ControlView.h"
#include "desktop/Hands.h"
#include "desktop/Icons.h"
#include "desktop/Text.h"
#include "form/Person.h"
#include "form/Screen.h"

namespace quillon::desktop {
namespace {

constexpr double kHeading = 1.25, kSmall = 0.8;  // of the font's size

class TextView final : public ControlView {
 public:
  TextView(Hands& hands, form::Control& control, QWidget& parent)
      : ControlView(hands, control), label_(new QLabel(&parent)) {
    label_->setTextFormat(Qt::PlainText);
    if (control.told().height > 0) label_->setFixedHeight(scaled(*label_, control.told().height));
    if (control.kind() != form::Kind::mark && !control.isHeading()) return;
    QFont font = label_->font();
    font.setBold(true);
    if (control.isHeading()) font.setPointSizeF(font.pointSizeF() * kHeading);
    label_->setFont(font);
  }
  QWidget* widget() const override { return label_; }
  void sync() override {
    syncLooks();
    if (control_.kind() == form::Kind::mark) ink();
    const QString text = shown(control_.caption());
    if (label_->text() == text) return;
    constexpr int kWidest = 70;  // characters, before it goes on below where nothing else is said
    const int widest = control_.width() > 0 ? control_.width() : kWidest;
    const bool isLong = text.size() > widest && !text.contains('\n');
    label_->setWordWrap(isLong);
    label_->setMinimumWidth(isLong ? widthOf(*label_, widest) : 0);
    label_->setText(text);
  }

 private:
  // Red, and light enough to be read on dark paper.
  void ink() {
    QPalette palette = label_->palette();
    const QColor red = palette.color(QPalette::Window).lightness() < 128 ? QColor(0xff6b68) : QColor(0xc62828);
    if (palette.color(QPalette::WindowText) == red) return;
    palette.setColor(QPalette::WindowText, red);
    label_->setPalette(palette);
  }

  QLabel* label_;
};

class LineView final : public ControlView {
 public:
  LineView(Hands& hands, form::Control& control, QWidget& parent)
      : ControlView(hands, control), line_(new QFrame(&parent)) {
    line_->setFrameShape(QFrame::HLine);
    line_->setFrameShadow(QFrame::Sunken);
  }
  QWidget* widget() const override { return line_; }
  void sync() override { syncLooks(); }

 private:
  QFrame* line_;
};

// In a toolbar the icon stands above the caption, which the toolbar sets; elsewhere a button is its caption.
class ButtonView final : public ControlView {
 public:
  ButtonView(Hands& hands, form::Control& control, QWidget& parent) : ControlView(hands, control) {
    const QIcon icon = iconNamed(control.name());
    if (icon.isNull()) {
      auto* button = new QPushButton(&parent);
      button->setAutoDefault(false);
      button->setDefault(control.isDefault());
      const std::string caption = control.caption();
      if (caption == "..." || caption.size() == 1) button->setFixedWidth(widthOf(*button, 5));
      button_ = button;
    } else {
      auto* button = new QToolButton(&parent);
      QFont font = button->font();
      font.setPointSizeF(font.pointSizeF() * kSmall);
      button->setFont(font);
      button->setIconSize(QSize(24, 24));
      button->setAutoRaise(true);
      button_ = button;
    }
    // A click leaves the focus where it is: what is typed there may be meant to be abandoned.
    button_->setFocusPolicy(Qt::TabFocus);
    QObject::connect(button_, &QAbstractButton::clicked,
                     [this] { hands_.act([this](form::Input& input) { input.click(hands_.screen(), control_); }); });
  }
  QWidget* widget() const override { return button_; }
  QWidget* focusWidget() const override { return button_; }
  void sync() override {
    syncLooks();
    if (qobject_cast<QToolButton*>(button_)) return ink();
    if (const QString caption = shown(control_.caption()); button_->text() != caption) button_->setText(caption);
  }

 private:
  void ink() {
    const QRgb now = button_->palette().color(QPalette::ButtonText).rgb();
    if (ink_ == now) return;
    ink_ = now;
    button_->setIcon(iconNamed(control_.name()));
  }

  QAbstractButton* button_ = nullptr;
  std::optional<QRgb> ink_;  // that the icon was drawn in
};

class PictureView final : public ControlView {
 public:
  PictureView(Hands& hands, form::Control& control, QWidget& parent)
      : ControlView(hands, control), label_(new QLabel(&parent)) {
    label_->setFixedSize(320, 160);
    label_->setFrameShape(QFrame::StyledPanel);
    label_->setAlignment(Qt::AlignCenter);
  }
  QWidget* widget() const override { return label_; }
  void sync() override {
    syncLooks();
    const store::Value value = control_.binding()->data();
    const std::string bytes = value.isNull() ? std::string() : value.asBlob().bytes;
    if (bytes == bytes_) return;
    bytes_ = bytes;
    QPixmap picture;
    picture.loadFromData(reinterpret_cast<const uchar*>(bytes.data()), static_cast<uint>(bytes.size()));
    label_->setPixmap(picture.isNull() ? picture
                                       : picture.scaled(label_->size(), Qt::KeepAspectRatio, Qt::SmoothTransformation));
  }

 private:
  QLabel* label_;
  std::string bytes_;
};

class ProgressView final : public ControlView {
 public:
  ProgressView(Hands& hands, form::Control& control, QWidget& parent)
      : ControlView(hands, control), bar_(new QProgressBar(&parent)) {
    bar_->setTextVisible(false);
    QSizePolicy keepsRoom = bar_->sizePolicy();
    keepsRoom.setRetainSizeWhenHidden(true);
    bar_->setSizePolicy(keepsRoom);
    bar_->hide();
  }
  QWidget* widget() const override { return bar_; }
  // Shows while there is work, in room of its own.
  void sync() override { bar_->hide(); }
  bool show(const form::Progress& progress) override {
    if (bar_->isHidden() && control_.visible()) bar_->show();
    bar_->setMaximum(static_cast<int>(progress.total));
    bar_->setValue(static_cast<int>(progress.done));
    return true;
  }

 private:
  QProgressBar* bar_;
};

}  // namespace

ViewPtr makeTextView(Hands& hands, form::Control& control, QWidget& parent) {
  if (control.kind() == form::Kind::separator) return std::make_unique<LineView>(hands, control, parent);
  return std::make_unique<TextView>(hands, control, parent);
}
ViewPtr makeButtonView(Hands& hands, form::Control& control, QWidget& parent) {
  return std::make_unique<ButtonView>(hands, control, parent);
}
ViewPtr makePictureView(Hands& hands, form::Control& control, QWidget& parent) {
  return std::make_unique<PictureView>(hands, control, parent);
}
ViewPtr makeProgressView(Hands& hands, form::Control& control, QWidget& parent) {
  return std::make_unique<ProgressView>(hands, control, parent);
}

}  // namespace quillon::desktop
