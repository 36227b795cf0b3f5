#include "desktop/Desk.h"

#include <QApplication>
#include <QEventLoop>
#include <QTimer>

#include "desktop/Front.h"
#include "desktop/QtPerson.h"

namespace quillon::desktop {

struct Desk::Parts {
  Parts(int& count, char** words) : application(count, words) {}
  QApplication application;
  QtPerson person;
};

Desk::Desk(int& count, char** words) : parts_(std::make_unique<Parts>(count, words)) {
  QApplication::setApplicationName("quillon");
  QApplication::setQuitOnLastWindowClosed(false);
}

Desk::~Desk() = default;

form::Person& Desk::person() { return parts_->person; }

void Desk::run(form::App& app, platform::Desktop& desktop, const std::function<void()>& start,
               const std::function<bool()>& isOver) {
  Front front(app);
  parts_->person.sitBefore(front, desktop);
  front.sync();
  QTimer::singleShot(0, [&] {
    start();
    front.sync();
  });
  QEventLoop loop;
  while (!isOver()) loop.processEvents(QEventLoop::WaitForMoreEvents);
}

}  // namespace quillon::desktop
