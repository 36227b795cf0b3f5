#pragma once

#include <QWidget>
#include <vector>

#include "desktop/ControlView.h"
#include "desktop/Hands.h"

class QAction;
class QMenu;
class QMenuBar;

namespace quillon::desktop {

class Front;

// A screen as a window of the desktop.
class Window final : public QWidget {
 public:
  // `parent`: the modal screen's window that it was opened from; null for most.
  Window(Front& front, form::Screen& screen, Window* parent);

  form::Screen& screen() const { return hands_.screen(); }
  // Shows what the screen is now, and the window itself, once it is new.
  void sync();
  // Nothing else can be used while it is there. Before it is shown.
  void makeModal();
  void bringFront();
  // Work is shown in its own progress bar; false when it has none on view.
  bool show(const form::Progress& progress);
  // No longer belongs to the window that it was opened from.
  void standAlone();
  // The screen is closed; the window goes without a question.
  void leave();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Entry {
    QAction* action;
    form::Control* control;
  };

  void buildMenus(form::Control& holder);
  void buildMenu(QMenu& menu, form::Control& control);
  void addShortcuts(form::Control& holder);
  void wheel(int turned);
  void focusCame(const QObject& object);
  std::vector<ControlView*> views() const;  // all, from the outside in
  ControlView* viewOf(const form::Control& control) const;
  void choosesFrame();
  QSize firstSize() const;
  void placeFirst();

  Hands hands_;
  QMenuBar* menus_ = nullptr;
  std::vector<Entry> entries_;
  std::vector<Entry> dropDowns_;
  ViewPtr root_;
  int turned_ = 0;  // the wheel, since it last moved something
  bool leaving_ = false, wasShown_ = false;
};

}  // namespace quillon::desktop
