#pragma once

#include <string>

#include "base/Errors.h"

namespace quillon::store {
class Cursor;
}

namespace quillon::form {

// A place of the screen where the focus goes after a refusal: a control, or a cell of a grid, which may first get a new
// row. Controls are named by their own name or by that of the field they show.
struct Place {
  std::string control = {};
  const store::Cursor* lines = nullptr;  // the grid of this cursor
  std::string column = {};               // of a grid; empty: the one it is in
  bool newRow = false;

  bool none() const { return control.empty() && lines == nullptr; }
  Place at(std::string name) const {
    Place place = *this;
    place.column = std::move(name);
    return place;
  }
  Place append() const {
    Place place = *this;
    place.newRow = true;
    return place;
  }
};

inline Place focus(std::string control) { return {.control = std::move(control)}; }
inline Place grid(const store::Cursor& lines) { return {.lines = &lines}; }

// A refusal: the text is shown, then the focus stands at the place.
class Refusal final : public Error {
 public:
  Refusal(const std::string& text, Place place) : Error(text), place_(std::move(place)) {}
  const Place& place() const { return place_; }

 private:
  Place place_;
};

// A silent stop that names a place.
class SilentStop final : public Abort {
 public:
  explicit SilentStop(Place place) : place_(std::move(place)) {}
  const Place& place() const { return place_; }

 private:
  Place place_;
};

[[noreturn]] inline void refuse(const std::string& text, Place place = {}) { throw Refusal(text, std::move(place)); }
[[noreturn]] inline void abort(Place place = {}) { throw SilentStop(std::move(place)); }

}  // namespace quillon::form
