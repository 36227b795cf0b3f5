// A list of all accounts, beside the toolkit's own table on a query of theirs.
#include <unistd.h>

#include <QKeyEvent>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

#include "base/Errors.h"
#include "bench/Timing.h"
#include "bench/desktop/Frames.h"
#include "bench/desktop/TheirTable.h"
#include "bench/desktop/Windows.h"
#include "desktop/Front.h"
#include "desktop/QtPerson.h"
#include "desktop/Window.h"
#include "form/Grid.h"
#include "form/Table.h"
#include "ledger/Screens.h"
#include "shell/Session.h"
#include "store/vfs/DiskFileSystem.h"
#include "support/SimDesktop.h"

namespace quillon::bench {
namespace {

constexpr int kRounds = 21;
const char* const kList = "frmGLAccounts";
const char* const kPicker = "frmGLAccountSearch";
const char* const kTheirs = "theirs";

void press(QWidget& widget, int key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {}) {
  for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent event(type, key, modifiers, text);
    QApplication::sendEvent(&widget, &event);
  }
}

// Does it, and waits until the window's rows are painted.
void timed(Stopwatch& watch, const char* window, const std::function<void()>& action) {
  QApplication::processEvents();
  Frames frames(window, Frames::Of::rows);
  watch.start();
  action();
  if (frames.count() == 0) frames.awaitOne();
  watch.stop();
}

class Desk {
 public:
  Desk(const std::string& folder, std::int64_t rows, Report& report)
      : session_({disk_, store::systemClock(), "bench", "local", ::getpid()}, person_, desktop_),
        theirs_(folder + "/theirs.db"),
        rows_(rows),
        report_(report) {
    fillTheirAccounts(theirs_, folder);
    shell::registerScreens(session_);
    ledger::registerScreens(session_);
    session_.attach(folder);
    front_ = std::make_unique<desktop::Front>(session_.app());
    person_.sitBefore(*front_, desktop_);
    session_.app().open("TfrmQuillon");
    front_->sync();
  }
  ~Desk() {
    session_.detach();
    session_.app().dismiss(*session_.app().find("frmQuillon"));
    QApplication::processEvents();
  }

  void measureAll();

 private:
  desktop::Window& window(const char* name) { return *front_->windowOf(*session_.app().find(name)); }
  QWidget& typing(const char* name) {
    QWidget* focused = window(name).focusWidget();
    return focused != nullptr ? *focused : window(name);
  }
  std::int64_t ourRow() {
    form::Screen& list = *session_.app().find(kList);
    return static_cast<std::int64_t>(list.gridOf(*list.tables().front())->grid()->activeRow().value());
  }
  std::int64_t theirRow() const { return their_->currentIndex().row(); }

  void openOurs() {
    session_.app().open("TfrmGLAccounts");
    front_->sync();
  }
  void closeOurs() {
    session_.app().dismiss(*session_.app().find(kList));
    front_->sync();
  }
  void openTheirs() {
    their_ = std::make_unique<TheirTable>(theirs_);
    their_->setObjectName(kTheirs);
    their_->resize(window_);
    their_->show();
    their_->activateWindow();
  }
  void measure(const std::string& name, const Round& ours, const Round& theirs, std::int64_t operations = 1);
  void measureKey(const std::string& name, int key, Qt::KeyboardModifiers modifiers);
  void measureThumb();
  void measureTyping();
  std::int64_t typeOurs(const std::string& number, Stopwatch& watch);
  // What is typed is undone first, then the picker goes.
  void leavePicker() {
    while (session_.app().modal() != nullptr && session_.app().modal()->visible())
      press(typing(kPicker), Qt::Key_Escape);
  }

  store::DiskFileSystem disk_;
  desktop::QtPerson person_;
  sim::SimDesktop desktop_;
  shell::Session session_;
  std::unique_ptr<desktop::Front> front_;
  Theirs theirs_;
  std::unique_ptr<TheirTable> their_;
  std::int64_t rows_;
  QSize window_;
  Report& report_;
};

void Desk::measure(const std::string& name, const Round& ours, const Round& theirs, std::int64_t operations) {
  double worst = 0;
  const Round watched = [&](int round, Stopwatch& watch) {
    const std::int64_t row = ours(round, watch);
    if (round >= 0) worst = std::max(worst, watch.seconds() * 1000 / static_cast<double>(operations));
    return row;
  };
  const Pair pair = alternate(kRounds, operations, watched, theirs);
  char note[48];
  std::snprintf(note, sizeof note, "our worst of %d %.1f", kRounds, worst);
  report_.add({.name = name, .ours = pair.ours / 1000, .theirs = pair.theirs / 1000, .unit = "ms", .note = note});
}

// From where a key leads after the list's first row; both sides are there again afterwards.
void Desk::measureKey(const std::string& name, int key, Qt::KeyboardModifiers modifiers) {
  const auto both = [&](QWidget& widget, const char* in, Stopwatch& watch) {
    timed(watch, in, [&] { press(widget, key, modifiers); });
  };
  const auto home = [](QWidget& widget) { press(widget, Qt::Key_Home, Qt::ControlModifier); };
  const bool same = key == Qt::Key_End;  // a page of theirs is as long as the window
  measure(
      name,
      [&](int, Stopwatch& watch) {
        both(typing(kList), kList, watch);
        const std::int64_t row = ourRow();
        home(typing(kList));
        return same ? row : 0;
      },
      [&](int, Stopwatch& watch) {
        both(*their_, kTheirs, watch);
        const std::int64_t row = theirRow();
        home(*their_);
        return same ? row : 0;
      });
}

// The thumb is drawn to another place each time.
void Desk::measureThumb() {
  const auto draw = [](QAbstractScrollArea& area, const char* in, int round, Stopwatch& watch) {
    QScrollBar& bar = *area.verticalScrollBar();
    timed(watch, in, [&] { bar.setValue(bar.maximum() / (kRounds + 2) * (round + 2)); });
    return std::int64_t{0};
  };
  auto& ours = *window(kList).findChild<QAbstractScrollArea*>();
  measure(
      "thumb", [&](int round, Stopwatch& watch) { return draw(ours, kList, round, watch); },
      [&](int round, Stopwatch& watch) { return draw(*their_, kTheirs, round, watch); });
  press(typing(kList), Qt::Key_Home, Qt::ControlModifier);
  press(*their_, Qt::Key_Home, Qt::ControlModifier);
}

// The first digit opens the picker, which each of the others moves.
std::int64_t Desk::typeOurs(const std::string& number, Stopwatch& watch) {
  std::int64_t found = -1;
  QTimer::singleShot(0, qApp, [&] {
    const auto type = [&](char digit) { press(typing(kPicker), Qt::Key_0 + (digit - '0'), {}, QString(QChar(digit))); };
    for (const char digit : number.substr(1)) timed(watch, kPicker, [&] { type(digit); });
    form::Screen& picker = *session_.app().find(kPicker);
    found = static_cast<std::int64_t>(picker.gridOf(*picker.tables().front())->grid()->activeRow().value());
    leavePicker();
  });
  press(typing(kList), Qt::Key_0 + (number[0] - '0'), {}, QString(QChar(number[0])));
  return found;
}

void Desk::measureTyping() {
  const auto numberOf = [&](int round) {
    return std::to_string(100'000'000 + rows_ / (kRounds + 2) * (round + 2)).substr(1);
  };
  measure(
      "key", [&](int round, Stopwatch& watch) { return typeOurs(numberOf(round), watch); },
      [&](int round, Stopwatch& watch) {
        const std::string number = numberOf(round);
        for (std::size_t length = 2; length <= number.size(); ++length)
          timed(watch, kTheirs, [&] {
            their_->find(number.substr(0, length));
            their_->viewport()->update();
          });
        return theirRow();
      },
      7);
  std::vector<double> times;
  for (int round = -1; round < kRounds; ++round) {
    Stopwatch watch;
    QTimer::singleShot(0, qApp, [&] {
      Frames frames(kPicker, Frames::Of::rows);
      frames.awaitOne();
      watch.stop();
      leavePicker();
    });
    watch.start();
    press(typing(kList), Qt::Key_0, {}, "0");
    if (round >= 0) times.push_back(watch.seconds() * 1000);
  }
  std::sort(times.begin(), times.end());
  report_.add({.name = "first-key", .ours = times[times.size() / 2], .unit = "ms", .note = "opens the picker"});
}

void Desk::measureAll() {
  openOurs();
  window_ = window(kList).size();
  closeOurs();
  measure(
      "open",
      [&](int, Stopwatch& watch) {
        timed(watch, kList, [&] { openOurs(); });
        const std::int64_t row = ourRow();
        closeOurs();
        return row;
      },
      [&](int, Stopwatch& watch) {
        timed(watch, kTheirs, [&] { openTheirs(); });
        const std::int64_t row = theirRow();
        their_.reset();
        return row;
      });
  openTheirs();
  openOurs();
  measureKey("page", Qt::Key_PageDown, {});
  measureKey("end", Qt::Key_End, Qt::ControlModifier);
  measureThumb();
  measureTyping();
}

}  // namespace

void lists(const std::string& folder, std::int64_t rows, Report& report) { Desk(folder, rows, report).measureAll(); }

}  // namespace quillon::bench
