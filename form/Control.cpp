#include "form/Control.h"

#include <array>

#include "form/Grid.h"

namespace quillon::form {

std::string_view nameOf(Kind kind) {
  constexpr std::array<std::string_view, 23> kNames = {
      "label",    "mark",   "edit",   "memo",  "check", "chooser",   "choice",  "list",
      "grid",     "column", "button", "menu",  "entry", "separator", "toolbar", "picture",
      "progress", "pages",  "steps",  "group", "row",   "splitter",  "month"};
  const auto position = static_cast<std::size_t>(kind);
  return position < kNames.size() ? kNames[position] : "pageview";
}

bool takesFocus(Kind kind) {
  switch (kind) {
    case Kind::edit:
    case Kind::memo:
    case Kind::check:
    case Kind::chooser:
    case Kind::choice:
    case Kind::list:
    case Kind::grid:
    case Kind::month:
    case Kind::button:
    case Kind::pageview:
      return true;
    default:
      return false;
  }
}

Control::Control(Kind kind, std::string name) : kind_(kind), name_(std::move(name)) {}
Control::~Control() = default;

void Control::setGrid(std::unique_ptr<Grid> grid) { grid_ = std::move(grid); }

int Control::width() const {
  if (width_ > 0 || binding_ == nullptr) return width_;
  return binding_->width();
}

}  // namespace quillon::form
