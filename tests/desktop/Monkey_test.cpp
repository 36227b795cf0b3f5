// Somebody who presses and clicks whatever there is: nothing crashes or hangs, and the company stays sound.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QMenu>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <filesystem>
#include <iostream>

#include "desktop/Text.h"
#include "desktop/Window.h"
#include "support/SeededRandom.h"
#include "support/TempFolder.h"
#include "support/Trials.h"
#include "tests_desktop/DeskWork.h"

namespace quillon::desktop {
namespace {

constexpr Qt::Key kKeys[] = {Qt::Key_Tab,  Qt::Key_Backtab, Qt::Key_Return, Qt::Key_Escape,   Qt::Key_F1,
                             Qt::Key_F2,   Qt::Key_F5,      Qt::Key_Insert, Qt::Key_Delete,   Qt::Key_Up,
                             Qt::Key_Down, Qt::Key_Left,    Qt::Key_Right,  Qt::Key_PageUp,   Qt::Key_PageDown,
                             Qt::Key_Home, Qt::Key_End,     Qt::Key_Space,  Qt::Key_Backspace};
constexpr char kCharacters[] = "0123456789.-/ abcRent";

class Monkey {
 public:
  Monkey(sim::DeskWork& work, std::uint64_t seed) : work_(work), random_(seed) {}

  void play(std::int64_t milliseconds) {
    clock_.start();
    end_ = milliseconds;
    QTimer::singleShot(0, qApp, [this] { act(); });
    while (!over_) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  long acts() const { return acts_; }

 private:
  bool chance(std::size_t in) { return random_.oneIn(in); }

  // The next one comes even when this one waits in a modal loop.
  void act() {
    ++acts_;
    const bool ends = clock_.elapsed() >= end_;
    over_ = ends && work_.app().modal() == nullptr && QApplication::activeModalWidget() == nullptr;
    if (over_) return;
    QTimer::singleShot(0, qApp, [this] { act(); });
    if (QWidget* popup = QApplication::activePopupWidget()) {
      if (ends || chance(4))
        popup->close();
      else
        QTest::keyClick(popup, chance(3) ? Qt::Key_Return : Qt::Key_Down);
    } else if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
      const auto buttons = box->buttons();
      buttons[static_cast<qsizetype>(random_.below(static_cast<std::uint64_t>(buttons.size())))]->click();
    } else if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
      dialog->reject();
    } else if (ends && work_.app().modal()) {
      work_.app().dismiss(*work_.app().modal());
    } else if (!ends) {
      touch();
    }
  }

  void touch() {
    if (work_.app().find("frmQuillon") == nullptr || !work_.app().find("frmQuillon")->visible())
      work_.open("TfrmQuillon");
    // Most work is in the ledger; the menus lead everywhere else.
    if (work_.app().modal() == nullptr && chance(60)) work_.open(chance(2) ? "TfrmJVs" : "TfrmGLAccounts");
    Window* window = work_.front().active();
    if (window == nullptr || !window->isVisible()) return;
    QWidget* focused = window->focusWidget() ? window->focusWidget() : window;
    if (chance(3))
      click(*window);
    else if (chance(2))
      QTest::keyClick(focused, kKeys[random_.below(std::size(kKeys))]);
    else if (chance(12))
      QTest::keyClick(focused, chance(2) ? Qt::Key_N : Qt::Key_F, Qt::ControlModifier);
    else
      QTest::keyClick(focused, kCharacters[random_.below(std::size(kCharacters) - 1)]);
  }

  void click(Window& window) {
    std::vector<QWidget*> all;
    for (QWidget* widget : window.findChildren<QWidget*>())
      if (widget->isVisible() && widget->isEnabled() && widget->width() > 0 && widget->height() > 0)
        all.push_back(widget);
    if (all.empty()) return;
    QWidget* some = all[random_.below(all.size())];
    const QPoint where(static_cast<int>(random_.below(static_cast<std::uint64_t>(some->width()))),
                       static_cast<int>(random_.below(static_cast<std::uint64_t>(some->height()))));
    if (chance(6))
      QTest::mouseDClick(some, Qt::LeftButton, {}, where);
    else
      QTest::mouseClick(some, Qt::LeftButton, {}, where);
  }

  sim::DeskWork& work_;
  sim::SeededRandom random_;
  QElapsedTimer clock_;
  std::int64_t end_ = 0;
  long acts_ = 0;
  bool over_ = false;
};

TEST(MonkeyTest, WhateverIsPressedAndClicked) {
  const sim::TempFolder here;  // for folders that are named at random
  std::filesystem::current_path(here.path());
  const sim::Trials trials = sim::Trials::fromEnvironment();
  const std::uint64_t seed = trials.seed.value_or(20261121);
  sim::DeskWork work;
  Monkey monkey(work, seed);
  monkey.play(static_cast<std::int64_t>(trials.aim(8'000, 1'800'000)));
  std::cout << monkey.acts() << " keys and clicks, seed " << seed << '\n';
  EXPECT_EQ(work.faultsAtTheEnd(), "");
  std::filesystem::current_path("/");
}

}  // namespace
}  // namespace quillon::desktop
