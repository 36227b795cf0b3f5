#include "desktop/Window.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPlainTextEdit>
#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <algorithm>
#include <cstdlib>

#include "desktop/Front.h"
#include "desktop/Icons.h"
#include "desktop/Text.h"

namespace quillon::desktop {

using form::Kind;

namespace {

constexpr int kLittleAir = 4;
constexpr int kAir = 24;  // around the words of a window without a frame

bool movesByArrows(const form::Control& control) {
  switch (control.kind()) {
    case Kind::grid:
    case Kind::list:
    case Kind::chooser:
    case Kind::choice:
    case Kind::month:
      return true;
    default:
      return control.list() != nullptr;
  }
}

bool isChosenFrom(Kind kind) {
  return kind == Kind::check || kind == Kind::chooser || kind == Kind::choice || kind == Kind::list ||
         kind == Kind::month;
}

// Those of a widget that somebody sees and works with. They may still come to one that is hidden.
bool isOnView(const QEvent& event) {
  const QEvent::Type type = event.type();
  return event.isInputEvent() || type == QEvent::FocusIn || type == QEvent::Shortcut || type == QEvent::Paint ||
         type == QEvent::Resize;
}

}  // namespace

Window::Window(Front& front, form::Screen& screen, Window* parent)
    : QWidget(parent, Qt::Window), hands_(front, front.input(), screen) {
  setWindowIcon(programIcon());
  setObjectName(shown(screen.name()));
  auto* layout = new QVBoxLayout(this);
  buildMenus(screen.root());
  if (menus_ != nullptr) layout->setMenuBar(menus_);
  root_ = makeHolderView(hands_, screen.root(), *this);
  layout->addWidget(root_->widget());
  const int told = scaled(*this, screen.root().told().width);
  // A bar of buttons is always as large as they are, with little air around them.
  if (told > 0 && !root_->stretches()) {
    layout->setContentsMargins(kLittleAir, kLittleAir, kLittleAir, kLittleAir);
    layout->setSizeConstraint(QLayout::SetFixedSize);
  }
  const QMargins air = layout->contentsMargins();
  if (told > 0 && !root_->stretches()) root_->widget()->setMinimumWidth(told - air.left() - air.right());
  addShortcuts(screen.root());
  for (QWidget* widget : findChildren<QWidget*>()) widget->installEventFilter(this);
}

// Menus.

void Window::buildMenus(form::Control& holder) {
  for (const auto& control : holder.children()) {
    if (control->kind() != Kind::menu) {
      buildMenus(*control);
      continue;
    }
    if (menus_ == nullptr) menus_ = new QMenuBar(this);
    QMenu* menu = menus_->addMenu(shown(control->caption()));
    dropDowns_.push_back({menu->menuAction(), control.get()});
    buildMenu(*menu, *control);
  }
}

void Window::buildMenu(QMenu& menu, form::Control& holder) {
  menu.setToolTipsVisible(true);
  for (const auto& control : holder.children()) {
    if (control->kind() == Kind::separator) {
      menu.addSeparator();
    } else if (control->kind() == Kind::menu) {
      QMenu* below = menu.addMenu(shown(control->caption()));
      dropDowns_.push_back({below->menuAction(), control.get()});
      buildMenu(*below, *control);
    } else {
      QAction* action = menu.addAction(shown(control->caption()));
      action->setObjectName(shown(control->name()));
      if (!control->shortcut().empty()) action->setShortcut(QKeySequence(shown(control->shortcut())));
      QObject::connect(action, &QAction::triggered, [this, entry = control.get()] {
        hands_.act([&](form::Input& input) { input.click(screen(), *entry); });
      });
      entries_.push_back({action, control.get()});
    }
  }
}

void Window::addShortcuts(form::Control& holder) {
  for (const auto& control : holder.children()) {
    if (control->kind() == Kind::button && !control->shortcut().empty()) {
      auto* shortcut = new QShortcut(QKeySequence(shown(control->shortcut())), this);
      QObject::connect(shortcut, &QShortcut::activated, [this, button = control.get()] {
        hands_.act([&](form::Input& input) { input.click(screen(), *button); });
      });
    }
    addShortcuts(*control);
  }
}

// In step.

void Window::sync() {
  setWindowTitle(shown(screen().title()));
  for (const Entry& entry : entries_) {
    entry.action->setText(shown(entry.control->caption()));
    entry.action->setVisible(entry.control->visible());
    entry.action->setEnabled(screen().isEnabled(*entry.control));
    entry.action->setCheckable(entry.control->checked());
    entry.action->setChecked(entry.control->checked());
    entry.action->setToolTip(tip(entry.control->hint()));
  }
  for (const Entry& menu : dropDowns_) menu.action->setEnabled(menu.control->enabled());
  root_->sync();
  if (!wasShown_) placeFirst();
  if (isMinimized() && !screen().minimised) setWindowState(windowState() & ~Qt::WindowMinimized);
  const form::Control* focused = screen().focused();
  ControlView* view = focused ? viewOf(*focused) : nullptr;
  if (view != nullptr && view->focusWidget() && focusWidget() != view->focusWidget()) view->focusWidget()->setFocus();
  // The program moves the focus, and the toolkit would not show it on buttons and boxes, as it does after a Tab.
  setAttribute(Qt::WA_KeyboardFocusChange);
}

void Window::placeFirst() {
  wasShown_ = true;
  choosesFrame();
  const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
  // The window manager tells how thick its frames are only once there is one.
  const QSize frame(scaled(*this, 4), scaled(*this, 30));
  resize(firstSize().boundedTo(room.size() - frame));
  if (screen().entry().lifetime == form::Lifetime::kept && screen().root().children().front()->kind() == Kind::menu)
    move(room.topLeft());
  else
    move(room.topLeft() +
         QPoint(room.width() - width() - frame.width(), room.height() - height() - frame.height()) / 2);
  QWidget::show();
}

// Only what can be made use of: a window that is waited for is not put aside, and one whose fields would not grow is
// not made as large as the desktop. One that nothing can be done in has none.
void Window::choosesFrame() {
  if (screen().tabOrder().empty() && menus_ == nullptr) {
    setWindowFlags(Qt::SplashScreen);
    layout()->setContentsMargins(kAir, kAir, kAir, kAir);
    return;
  }
  Qt::WindowFlags flags =
      Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;
  if (!isModal()) flags |= Qt::WindowMinimizeButtonHint;
  if (root_->stretches()) flags |= Qt::WindowMaximizeButtonHint;
  setWindowFlags(flags);
}

// What its contents need, and its title, and what is told.
QSize Window::firstSize() const {
  constexpr int kButtonsOfFrame = 110;
  const form::Size told = screen().root().told();
  QSize size = sizeHint().expandedTo({scaled(*this, told.width), scaled(*this, told.height)});
  if (told.width == 0 && !windowFlags().testFlag(Qt::SplashScreen)) {
    QFont bold = font();
    bold.setBold(true);
    size.setWidth(std::max(size.width(), QFontMetrics(bold).horizontalAdvance(windowTitle()) + kButtonsOfFrame));
  }
  return size;
}

void Window::paintEvent(QPaintEvent* event) {
  QWidget::paintEvent(event);
  if (!windowFlags().testFlag(Qt::SplashScreen)) return;
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void Window::makeModal() { setWindowModality(Qt::ApplicationModal); }

void Window::bringFront() {
  if (isActiveWindow() || isMinimized() || QApplication::activePopupWidget()) return;
  raise();
  activateWindow();
}

std::vector<ControlView*> Window::views() const {
  std::vector<ControlView*> all = {root_.get()};
  for (std::size_t i = 0; i < all.size(); ++i)
    for (const ViewPtr& view : all[i]->inside()) all.push_back(view.get());
  return all;
}

ControlView* Window::viewOf(const form::Control& control) const {
  for (ControlView* view : views())
    if (&view->control() == &control) return view;
  return nullptr;
}

bool Window::show(const form::Progress& progress) {
  return std::ranges::any_of(views(), [&](ControlView* view) { return view->show(progress); });
}

// Hands.

void Window::standAlone() {
  const bool onView = isVisible();
  const QPoint where = pos();
  setParent(nullptr, windowFlags());
  move(where);
  if (onView) QWidget::show();
}

// Not close(), which does nothing where the person is just closing it; then it would stay, and be painted.
void Window::leave() {
  leaving_ = true;
  hands_.letGo();
  hide();
}

void Window::closeEvent(QCloseEvent* event) {
  if (leaving_) return event->accept();
  event->ignore();
  hands_.act([this](form::Input& input) { input.close(screen()); });
}

void Window::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (leaving_) return;
  if (event->type() == QEvent::WindowStateChange) screen().minimised = isMinimized();
  if (event->type() == QEvent::PaletteChange && wasShown_) root_->sync();
  if (event->type() == QEvent::ActivationChange && isActiveWindow()) hands_.cameForward();
}

// To something that is chosen from, by the pointer; fields and grids say so themselves.
void Window::focusCame(const QObject& object) {
  if (hands_.isSyncing()) return;
  const auto& widget = static_cast<const QWidget&>(object);
  for (ControlView* view : views()) {
    form::Control& control = view->control();
    if (!isChosenFrom(control.kind()) || screen().focused() == &control) continue;
    if (view->widget() == &widget || view->widget()->isAncestorOf(&widget))
      return hands_.act([&](form::Input& input) { input.focus(screen(), control); });
  }
}

// The keys by which a person moves about, and the wheel, are the program's and not the widgets' own.
bool Window::eventFilter(QObject* watched, QEvent* event) {
  if (leaving_ && isOnView(*event)) return true;
  if (event->type() == QEvent::Wheel) {
    const int turned = static_cast<QWheelEvent*>(event)->angleDelta().y();
    const form::Control* focused = screen().focused();
    if (turned == 0 || QApplication::activePopupWidget() || (focused && focused->kind() == Kind::pageview))
      return QWidget::eventFilter(watched, event);
    wheel(turned);
    return true;
  }
  // At its access key the toolkit holds a button down for a tenth of a second; what a quick hand types meanwhile would
  // go astray.
  if (event->type() == QEvent::Shortcut && !static_cast<QShortcutEvent*>(event)->isAmbiguous())
    if (auto* button = qobject_cast<QAbstractButton*>(watched)) return button->click(), true;
  if (event->type() == QEvent::FocusIn) focusCame(*watched);
  if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  const auto& key = *static_cast<QKeyEvent*>(event);
  const bool lines = qobject_cast<QPlainTextEdit*>(watched) != nullptr;
  const form::Control* focused = screen().focused();
  const bool inMonth =
      focused != nullptr && focused->kind() == Kind::month && (key.modifiers() & ~Qt::KeypadModifier) == 0;
  switch (key.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (lines || (focused && focused->kind() == Kind::pageview)) return false;
      break;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
      if (!inMonth) return QWidget::eventFilter(watched, event);
      break;
    // Buttons would pass the focus on to each other, and a month mark another day, behind the program's back.
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Left:
    case Qt::Key_Right:
      if (!inMonth && !qobject_cast<QAbstractButton*>(watched)) return QWidget::eventFilter(watched, event);
      break;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Escape:
    case Qt::Key_F2:
      if (ControlView* view = focused ? viewOf(*focused) : nullptr; view && view->dropDown()) return true;
      break;
    case Qt::Key_F1:
    case Qt::Key_F5:
      break;
    default:
      return QWidget::eventFilter(watched, event);
  }
  if (qobject_cast<QMenu*>(watched) || qobject_cast<QMenuBar*>(watched)) return false;
  hands_.key(keyName(key));
  return true;
}

// As the Up and Down keys, wherever the focus is, one for each notch; nothing that only lies under the pointer turns.
void Window::wheel(int turned) {
  constexpr int kNotch = 120;
  if ((turned_ > 0) != (turned > 0)) turned_ = 0;
  turned_ += turned;
  for (; std::abs(turned_) >= kNotch; turned_ -= turned > 0 ? kNotch : -kNotch) {
    const form::Control* focused = screen().focused();
    if (focused == nullptr) return;
    if (focused->kind() == Kind::memo) {
      QKeyEvent key(QEvent::KeyPress, turned > 0 ? Qt::Key_Up : Qt::Key_Down, Qt::NoModifier);
      QApplication::sendEvent(focusWidget(), &key);
    } else if (movesByArrows(*focused)) {
      hands_.key(turned > 0 ? "Up" : "Down");
    }
  }
}

}  // namespace quillon::desktop
