// Somebody who presses and clicks whatever there is: nothing crashes or hangs, and the company stays sound.
#include <gtest/gtest.h>
#include <unistd.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>
#include <array>
#include <filesystem>
#include <iostream>
#include <map>

#include "desktop/Text.h"
#include "desktop/Window.h"
#include "form/Registry.h"
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
constexpr char kCharacters[] = "0123456789.- abcRent%'&";
constexpr const char* kWords[] = {"1000", "5000", "3", "26", "250.5", "-250.5", "031526", "3/31/26", "Rent", "2,000"};

// Looks out for what is in front of it and does something to that, most often what leads on.
class Monkey {
 public:
  Monkey(sim::DeskWork& work, std::uint64_t seed) : work_(work), random_(seed) {}

  void play(std::int64_t milliseconds) {
    clock_.start();
    end_ = milliseconds;
    QTimer::singleShot(0, qApp, [this] { act(); });
    while (!over_) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    ::alarm(0);
  }
  long acts() const { return acts_; }
  const std::map<std::string, long>& seen() const { return seen_; }  // screens, and how often each was touched

 private:
  static constexpr unsigned kHang = 240;  // seconds
  static constexpr int kDeep = 4;         // modal screens over each other
  static constexpr long kBored = 25;      // touches of one screen

  bool chance(std::size_t in) { return random_.oneIn(in); }
  template <typename List>
  auto oneOf(const List& list) {
    return list[static_cast<decltype(list.size())>(random_.below(static_cast<std::size_t>(list.size())))];
  }
  int within(int length) { return static_cast<int>(random_.below(static_cast<std::size_t>(std::max(length, 1)))); }

  // The next one comes even when this one waits in a modal loop.
  void act() {
    ++acts_;
    ::alarm(kHang);
    const bool ends = clock_.elapsed() >= end_;
    over_ = ends && work_.app().modal() == nullptr && QApplication::activeModalWidget() == nullptr;
    if (over_) return;
    QTimer::singleShot(0, qApp, [this] { act(); });
    if (QWidget* popup = QApplication::activePopupWidget()) {
      if (ends || chance(6))
        popup->close();
      else if (chance(3))
        QTest::mouseClick(popup, Qt::LeftButton, {}, QPoint(within(popup->width()), within(popup->height())));
      else
        QTest::keyClick(popup, std::array{Qt::Key_Return, Qt::Key_Down, Qt::Key_Down, Qt::Key_Right}[random_.below(4)]);
    } else if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
      oneOf(box->buttons())->click();
    } else if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
      answer(*dialog, ends);
    } else if (ends && work_.app().modal()) {
      work_.app().dismiss(*work_.app().modal());
    } else if (!ends) {
      touch();
    }
  }

  // A question for a text or a file.
  void answer(QDialog& dialog, bool ends) {
    const auto lines = dialog.findChildren<QLineEdit*>();
    if (ends || chance(3)) return dialog.reject();
    if (!lines.empty() && chance(2))
      lines.front()->setText(QString("%1").arg(random_.below(20)));
    else
      QTest::keyClick(&dialog, Qt::Key_Return);
  }

  void touch() {
    form::Screen* main = work_.app().find("frmQuillon");
    const bool gone = main == nullptr || !main->visible();
    if (work_.app().modal() == nullptr && (gone || !work_.isIn() || chance(2000))) work_.enter();
    Window* window = work_.front().active();
    if (window == nullptr || !window->isVisible()) return;
    if (chance(15)) window = otherThan(*window);
    const std::string& name = window->screen().entry().className;
    // Modal screens lead to others without end; nobody goes that deep.
    const bool deep = window->screen().layer > kDeep;
    ++seen_[name];
    stays_ = name == where_ ? stays_ + 1 : 0;
    where_ = name;
    if ((deep || stays_ > kBored) && chance(4))
      window->close();
    else if (chance(20))
      choose(*window);
    else if (chance(80))
      shake(*window);
    else if (chance(3))
      click(*window);
    else if (chance(4))
      type(*window, kWords[random_.below(std::size(kWords))]);
    else if (chance(2))
      QTest::keyClick(focusOf(*window), kKeys[random_.below(std::size(kKeys))]);
    else if (chance(6))
      QTest::keyClick(focusOf(*window), static_cast<Qt::Key>(Qt::Key_A + within(26)),
                      chance(2) ? Qt::AltModifier : Qt::ControlModifier);
    else
      type(*window, std::string(1, kCharacters[random_.below(std::size(kCharacters) - 1)]));
  }

  static QWidget* focusOf(Window& window) { return window.focusWidget() ? window.focusWidget() : &window; }

  // One of those that can be used now, brought forward.
  Window* otherThan(Window& window) {
    std::vector<Window*> all;
    for (const auto& screen : work_.app().screens())
      if (Window* some = work_.front().windowOf(*screen); some && work_.app().accepts(*screen)) all.push_back(some);
    if (all.empty()) return &window;
    Window* some = oneOf(all);
    some->activateWindow();
    return some;
  }

  // A word goes where each of its characters leads, which may be a screen that it opens.
  void type(Window& window, const std::string& word) {
    const QString field = focusOf(window)->objectName();
    const bool path = field.contains("Folder") || field.contains("File") || field.contains("Database");
    for (const char character : word)
      if (Window* now = work_.front().active(); now != nullptr && !(path && character == '/'))
        QTest::keyClick(focusOf(*now), character);
  }

  void choose(Window& window) {
    std::vector<QAction*> all;
    for (QAction* action : window.findChildren<QAction*>())
      if (action->isEnabled() && action->isVisible() && !action->objectName().isEmpty()) all.push_back(action);
    if (!all.empty()) oneOf(all)->trigger();
  }

  void shake(Window& window) {
    switch (random_.below(4)) {
      case 0:
        window.resize(100 + within(1200), 80 + within(800));
        break;
      case 1:
        chance(2) ? window.showMinimized() : window.showMaximized();
        break;
      case 2:
        window.close();
        break;
      default:
        QWidget* under = focusOf(window);
        const QPointF middle = under->rect().center();
        QWheelEvent wheel(middle, under->mapToGlobal(middle), {}, {0, chance(2) ? 120 : -120}, {}, {},
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(under, &wheel);
    }
  }

  void click(Window& window) {
    std::vector<QWidget*> all;
    for (QWidget* widget : window.findChildren<QWidget*>())
      if (widget->isVisible() && widget->isEnabled() && widget->width() > 0 && widget->height() > 0)
        all.push_back(widget);
    if (all.empty()) return;
    QWidget* some = oneOf(all);
    const QPoint where(within(some->width()), within(some->height()));
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
  std::map<std::string, long> seen_;
  std::string where_;  // the screen that was touched last
  long stays_ = 0;     // and how often in a row
};

TEST(MonkeyTest, WhateverIsPressedAndClicked) {
  const sim::TempFolder here;  // for folders that are named at random
  std::filesystem::current_path(here.path());
  const sim::Trials trials = sim::Trials::fromEnvironment();
  const std::uint64_t seed = trials.seed.value_or(20261121);
  sim::DeskWork work(sim::Books::sample);
  Monkey monkey(work, seed);
  monkey.play(static_cast<std::int64_t>(trials.aim(8'000, 1'800'000)));
  std::cout << monkey.acts() << " keys and clicks, seed " << seed << ":";
  for (const auto& [screen, times] : monkey.seen()) std::cout << ' ' << screen << ' ' << times;
  std::cout << std::endl;
  EXPECT_EQ(work.faultsAtTheEnd({here.path()}), "");
  std::filesystem::current_path("/");
}

}  // namespace
}  // namespace quillon::desktop
