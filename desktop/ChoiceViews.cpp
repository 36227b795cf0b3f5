// Fields whose value is chosen: yes or no, one of a few, one of a list, a day.
#include <QAbstractItemView>
#include <QButtonGroup>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QListWidget>
#include <QRadioButton>
#include <QTextCharFormat>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/ControlView.h"
#include "desktop/Hands.h"
#include "desktop/Text.h"
#include "form/Screen.h"

namespace quillon::desktop {
namespace {

void choose(Hands& hands, form::Control& control, const store::Value& value) {
  hands.act([&](form::Input& input) { input.choose(hands.screen(), control, value); });
}

// Where the value stands among the choices; -1 for none.
int placeOf(const form::Choices& choices, const store::Value& value) {
  const auto found = std::ranges::find(choices, value, &form::Choices::value_type::first);
  return found == choices.end() ? -1 : static_cast<int>(found - choices.begin());
}

class CheckView final : public ControlView {
 public:
  CheckView(Hands& hands, form::Control& control, QWidget& parent)
      : ControlView(hands, control), box_(new QCheckBox(&parent)) {
    QObject::connect(box_, &QCheckBox::clicked, [this](bool on) { choose(hands_, control_, store::Value(on)); });
  }
  QWidget* widget() const override { return box_; }
  QWidget* focusWidget() const override { return box_; }
  void sync() override {
    syncLooks();
    if (const QString caption = shown(control_.caption()); box_->text() != caption) box_->setText(caption);
    const store::Value value = control_.binding()->data();
    box_->setChecked(!value.isNull() && value.asBool());
  }

 private:
  QCheckBox* box_;
};

class ChooserView final : public ControlView {
 public:
  ChooserView(Hands& hands, form::Control& control, QWidget& parent)
      : ControlView(hands, control), box_(new QComboBox(&parent)) {
    constexpr int kLeastCharacters = 10;  // a list may have nothing in it yet
    box_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    box_->setMinimumWidth(widthOf(*box_, kLeastCharacters) + box_->sizeHint().height());
    QObject::connect(box_, &QComboBox::activated, [this](int place) {
      if (place >= 0 && place < static_cast<int>(choices_.size()))
        choose(hands_, control_, choices_[static_cast<std::size_t>(place)].first);
    });
  }
  QWidget* widget() const override { return box_; }
  QWidget* focusWidget() const override { return box_; }
  bool isLabelled() const override { return true; }
  void sync() override {
    syncLooks();
    if (form::Choices choices = control_.binding()->choices(); choices != choices_) {
      choices_ = std::move(choices);
      box_->clear();
      for (const auto& [value, text] : choices_) box_->addItem(shown(text));
    }
    box_->setCurrentIndex(placeOf(choices_, control_.binding()->data()));
  }

 private:
  QComboBox* box_;
  form::Choices choices_;
};

class ChoiceView final : public ControlView {
 public:
  ChoiceView(Hands& hands, form::Control& control, QWidget& parent)
      : ControlView(hands, control),
        frame_(control.caption().empty() ? nullptr : new QGroupBox(&parent)),
        box_(frame_ ? frame_ : new QWidget(&parent)),
        group_(box_),
        choices_(control.binding()->choices()) {
    auto* layout = new QVBoxLayout(box_);
    if (frame_ == nullptr) layout->setContentsMargins(0, 0, 0, 0);
    for (std::size_t i = 0; i < choices_.size(); ++i) {
      auto* button = new QRadioButton(shown(choices_[i].second), box_);
      group_.addButton(button, static_cast<int>(i));
      layout->addWidget(button);
    }
    QObject::connect(&group_, &QButtonGroup::idClicked,
                     [this](int place) { choose(hands_, control_, choices_[static_cast<std::size_t>(place)].first); });
  }
  QWidget* widget() const override { return box_; }
  QWidget* focusWidget() const override {
    QAbstractButton* checked = group_.checkedButton();
    return checked ? checked : group_.button(0);
  }
  void sync() override {
    syncLooks();
    if (frame_ != nullptr) frame_->setTitle(shown(control_.caption()));
    const int place = placeOf(choices_, control_.binding()->data());
    group_.setExclusive(false);
    for (QAbstractButton* button : group_.buttons()) button->setChecked(group_.id(button) == place);
    group_.setExclusive(true);
  }

 private:
  QGroupBox* frame_;  // null without a caption
  QWidget* box_;
  QButtonGroup group_;
  form::Choices choices_;
};

class ListView final : public ControlView {
 public:
  ListView(Hands& hands, form::Control& control, QWidget& parent)
      : ControlView(hands, control), list_(new QListWidget(&parent)) {
    list_->setMinimumWidth(widthOf(*list_, 40));
    QObject::connect(list_, &QListWidget::currentRowChanged, [this](int place) {
      if (place >= 0 && !hands_.isSyncing()) choose(hands_, control_, choices_[static_cast<std::size_t>(place)].first);
    });
    QObject::connect(list_, &QListWidget::itemActivated, [this] {
      if (control_.command()) hands_.act([this](form::Input& input) { input.click(hands_.screen(), control_); });
    });
  }
  QWidget* widget() const override { return list_; }
  QWidget* focusWidget() const override { return list_; }
  bool isLabelled() const override { return true; }
  bool stretches() const override { return true; }
  void sync() override {
    syncLooks();
    if (form::Choices choices = control_.binding()->choices(); choices != choices_) {
      choices_ = std::move(choices);
      list_->clear();
      for (const auto& [value, text] : choices_) list_->addItem(shown(text));
    }
    list_->setCurrentRow(placeOf(choices_, control_.binding()->data()));
  }

 private:
  QListWidget* list_;
  form::Choices choices_;
};

QDate dateOf(const store::Value& value) {
  return value.isNull() ? QDate::currentDate() : QDate::fromString(shown(value.asDate().toIso()), Qt::ISODate);
}

class MonthView final : public ControlView {
 public:
  MonthView(Hands& hands, form::Control& control, QWidget& parent)
      : ControlView(hands, control), month_(new QCalendarWidget(&parent)) {
    month_->setNavigationBarVisible(false);
    month_->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    constexpr int kLines = 7;  // six weeks, under the names of their days
    month_->setMinimumHeight((month_->fontMetrics().height() + 6) * kLines);
    // Red is for what calls for attention; the end of a week does not.
    for (const Qt::DayOfWeek day : {Qt::Saturday, Qt::Sunday}) month_->setWeekdayTextFormat(day, QTextCharFormat());
    QObject::connect(month_, &QCalendarWidget::clicked, [this](QDate day) {
      if (const auto date = Date::parseIso(typed(day.toString(Qt::ISODate)))) choose(hands_, control_, *date);
    });
    QObject::connect(month_, &QCalendarWidget::activated, [this] {
      if (control_.command()) hands_.act([this](form::Input& input) { input.click(hands_.screen(), control_); });
    });
  }
  QWidget* widget() const override { return month_; }
  QWidget* focusWidget() const override { return month_; }
  void sync() override {
    syncLooks();
    month_->setSelectedDate(dateOf(control_.binding()->data()));
  }

 private:
  QCalendarWidget* month_;
};

}  // namespace

ViewPtr makeCheckView(Hands& hands, form::Control& control, QWidget& parent) {
  return std::make_unique<CheckView>(hands, control, parent);
}
ViewPtr makeChooserView(Hands& hands, form::Control& control, QWidget& parent) {
  return std::make_unique<ChooserView>(hands, control, parent);
}
ViewPtr makeChoiceView(Hands& hands, form::Control& control, QWidget& parent) {
  return std::make_unique<ChoiceView>(hands, control, parent);
}
ViewPtr makeListView(Hands& hands, form::Control& control, QWidget& parent) {
  return std::make_unique<ListView>(hands, control, parent);
}
ViewPtr makeMonthView(Hands& hands, form::Control& control, QWidget& parent) {
  return std::make_unique<MonthView>(hands, control, parent);
}

}  // namespace quillon::desktop
