#pragma once

#include <functional>
#include <string>

#include "form/Input.h"

class QKeyEvent;

namespace quillon::desktop {

class Front;

// What a person does in one window, passed on as the calls that every front end makes. Afterwards all windows show what
// has become of it.
class Hands {
 public:
  Hands(Front& front, form::Input& input, form::Screen& screen) : front_(front), input_(input), screen_(screen) {}

  form::Screen& screen() const { return screen_; }
  // Nothing that the widgets report while they are brought in step is a person's doing.
  bool isSyncing() const;
  // The person turned to this window: its screen is the one in front from now on.
  void cameForward();
  // The screen is gone: nothing is passed on any more.
  void letGo() { gone_ = true; }
  // A refused call, such as a key that does nothing, only sounds.
  void act(const std::function<void(form::Input&)>& action);
  void key(const std::string& name);

 private:
  Front& front_;
  form::Input& input_;
  form::Screen& screen_;
  bool gone_ = false;
};

// "Ctrl+F", "Shift+Tab", "Enter", "F2", or a character; empty for keys that the program does not know.
std::string keyName(const QKeyEvent& event);

}  // namespace quillon::desktop
