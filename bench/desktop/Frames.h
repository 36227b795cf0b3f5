#pragma once

#include <QAbstractScrollArea>
#include <QApplication>
#include <QEvent>
#include <QObject>
#include <QWidget>

namespace quillon::bench {

// Counts what is painted in the window of a name, for as long as it lives: its rows, or anything in it.
class Frames final : public QObject {
 public:
  enum class Of { rows, anything };
  Frames(const char* window, Of what) : window_(window), what_(what) { qApp->installEventFilter(this); }

  int count() const { return count_; }
  // Lets the window go on until it has painted; what the painting shows is on the display then.
  void awaitOne() {
    for (const int before = count_; count_ == before;) QApplication::processEvents();
  }

 private:
  bool eventFilter(QObject* watched, QEvent* event) override {
    const auto* widget = event->type() == QEvent::Paint ? qobject_cast<QWidget*>(watched) : nullptr;
    if (widget != nullptr && widget->window()->objectName() == window_)
      count_ += what_ == Of::anything || qobject_cast<QAbstractScrollArea*>(widget->parentWidget()) ? 1 : 0;
    return false;
  }

  QString window_;
  Of what_;
  int count_ = 0;
};

}  // namespace quillon::bench
