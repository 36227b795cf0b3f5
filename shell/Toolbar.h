#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>

#include "form/Converter.h"

namespace quillon::shell {

// A button of the main window's toolbar, which shows with the modules that have a screen for it.
struct ToolbarButton {
  const char* name;
  const char* caption;
  struct Use {
    const char* system = nullptr;
    const char* screen = nullptr;  // class
  };
  std::array<Use, 8> uses;

  std::string screenOf(std::string_view system) const;  // empty: it does not show
};

std::span<const ToolbarButton> toolbarButtons();
// The modules, to choose from.
form::ConverterPtr systemChoices();
// A module as it is written here, or the one that a new user gets.
store::Value systemNamed(std::string_view name);

}  // namespace quillon::shell
