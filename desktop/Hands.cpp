#include "desktop/Hands.h"

#include <QApplication>
#include <QKeyEvent>

#include "base/Errors.h"
#include "desktop/Front.h"
#include "desktop/Text.h"

namespace quillon::desktop {

bool Hands::isSyncing() const { return front_.isSyncing(); }

void Hands::cameForward() {
  if (!gone_ && !isSyncing() && front_.app().accepts(screen_)) front_.app().bring(screen_);
}

void Hands::act(const std::function<void(form::Input&)>& action) {
  if (gone_ || isSyncing()) return;
  Front& front = front_;
  // Whoever works in a window has it in front, whichever was opened last.
  if (front.app().accepts(screen_)) front.app().bring(screen_);
  {
    const Front::Busy busy(front);
    try {
      action(input_);
    } catch (const Error&) {
      QApplication::beep();
    }
  }
  front.sync();
}

void Hands::key(const std::string& name) {
  act([&](form::Input& input) { input.key(screen_, name); });
}

std::string keyName(const QKeyEvent& event) {
  struct Name {
    int key;
    const char* name;
  };
  static constexpr Name kNames[] = {{Qt::Key_Tab, "Tab"},
                                    {Qt::Key_Backtab, "Tab"},
                                    {Qt::Key_Return, "Enter"},
                                    {Qt::Key_Enter, "Enter"},
                                    {Qt::Key_Escape, "Esc"},
                                    {Qt::Key_Insert, "Insert"},
                                    {Qt::Key_Delete, "Delete"},
                                    {Qt::Key_Up, "Up"},
                                    {Qt::Key_Down, "Down"},
                                    {Qt::Key_Left, "Left"},
                                    {Qt::Key_Right, "Right"},
                                    {Qt::Key_PageUp, "PgUp"},
                                    {Qt::Key_PageDown, "PgDn"},
                                    {Qt::Key_Home, "Home"},
                                    {Qt::Key_End, "End"},
                                    {Qt::Key_Space, "Space"},
                                    {Qt::Key_Backspace, "Backspace"}};
  std::string name;
  for (const Name& some : kNames)
    if (some.key == event.key()) name = some.name;
  if (event.key() >= Qt::Key_F1 && event.key() <= Qt::Key_F12)
    name = "F" + std::to_string(event.key() - Qt::Key_F1 + 1);
  if (name.empty()) {
    const bool plain = !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    return plain && !event.text().isEmpty() && event.text().at(0).isPrint() ? typed(event.text()) : std::string();
  }
  if (event.modifiers() & Qt::ShiftModifier && name == "Tab") name = "Shift+" + name;
  if (event.modifiers() & Qt::ControlModifier) name = "Ctrl+" + name;
  return name;
}

}  // namespace quillon::desktop
