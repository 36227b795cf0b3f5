#include "form/Person.h"

#include <algorithm>
#include <array>

#include "form/Screen.h"

namespace quillon::form {

std::string_view nameOf(Button button) {
  constexpr std::array<std::string_view, 5> kNames = {"OK", "Cancel", "Yes", "No", "Retry"};
  return kNames[static_cast<std::size_t>(button)];
}

std::string_view nameOf(Tone tone) {
  constexpr std::array<std::string_view, 5> kNames = {"information", "warning", "error", "confirmation", "stop"};
  return kNames[static_cast<std::size_t>(tone)];
}

std::string Dialog::title() const {
  constexpr std::array<const char*, 5> kCaptions = {"Information", "Warning", "Error", "Confirm", "Stop"};
  return caption.empty() ? kCaptions[static_cast<std::size_t>(tone)] : caption;
}

Button Dialog::dismissal() const {
  for (const Button button : {Button::cancel, Button::no, Button::ok})
    if (std::ranges::find(buttons, button) != buttons.end()) return button;
  return standard;
}

void Person::work(Screen& screen, const std::function<bool()>& step) {
  while (screen.visible() && step()) {
  }
}

void Person::show(Tone tone, const std::string& text, const std::string& caption) {
  ask({.tone = tone, .text = text, .buttons = {Button::ok}, .standard = Button::ok, .caption = caption});
}

bool Person::confirm(const std::string& text, Tone tone, Button standard) {
  return ask({.tone = tone, .text = text, .buttons = {Button::yes, Button::no}, .standard = standard}) == Button::yes;
}

}  // namespace quillon::form
