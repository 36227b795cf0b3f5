#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "form/App.h"

namespace quillon::form {

// What a person's hands do to a screen. A window and the driver make the same calls; each runs under the guard and says
// how it ended. Error, before anything happens, for a control that is invisible, disabled or cannot do what is asked,
// and for a screen behind a modal one.
class Input {
 public:
  explicit Input(App& app) : app_(app) {}

  // Moves the focus, which takes what was typed where it was.
  Ended focus(Screen& screen, Control& control);
  Ended cell(Screen& screen, Control& grid, std::uint64_t row, std::string_view column);
  // Types in place of what stands in the focused control or cell; a key at a time for those that hear every key.
  Ended type(Screen& screen, std::string_view text);
  // One more character behind what is typed; in a list it searches, in a column with a picker it opens it.
  Ended keys(Screen& screen, std::string_view characters);
  // Moves the focus there, types, and leaves.
  Ended set(Screen& screen, Control& control, std::string_view text);
  Ended setCell(Screen& screen, Control& grid, std::uint64_t row, std::string_view column, std::string_view text);
  Ended click(Screen& screen, Control& control);
  Ended choose(Screen& screen, Control& control, const store::Value& value);  // check boxes, choosers, months
  Ended tick(Screen& screen, Control& grid);  // turns over what is ticked in the active row
  // The screen's shortcuts ("Ctrl+F"), access keys ("Alt+N"), "Enter", "Esc", "Tab", "Shift+Tab", "F1", "F2", "F5",
  // "Insert", "Delete", "Up", "Down", "Left", "Right", "PgUp", "PgDn", "Home", "End", "Ctrl+Home", "Ctrl+End", "Space",
  // "Backspace", or a character. Error for a key that does nothing where the focus is.
  Ended key(Screen& screen, std::string_view key);
  Ended grid(Screen& screen, Control& grid, std::string_view action);  // append, insert, delete, up, down
  // To the row that stands so far down, 0 to 1: the thumb of a scroll bar whose rows are not counted.
  Ended scroll(Screen& screen, Control& grid, double depth);
  // Stands on the first row in which the fields (joined by ';') hold the values.
  Ended locate(Screen& screen, Control& grid, const std::string& fields, const std::vector<store::Value>& values);
  Ended turn(Screen& screen, Control& pages, int page);  // 0 is the first
  // Opens what a figure on a page is made of; `page` 1 is the first, `link` 0 the first on it.
  Ended follow(Screen& screen, Control& pageView, int page, std::size_t link);
  Ended close(Screen& screen);
  // What the main window's menu does; `main` is that window. A screen that stands in its menus is refused while none of
  // its entries is enabled.
  Ended menu(Screen& main, const MenuRow& row);
  Ended open(Screen& main, const ScreenEntry& entry);

 private:
  void require(Screen& screen) const;
  void requireUsable(Screen& screen, const Control& control) const;
  Grid* usableGrid(Screen& screen, Control& control) const;
  void begin(Screen& screen);
  void take(Screen& screen);
  Ended accessKeyPressed(Screen& screen, const std::string& letter);
  Ended escape(Screen& screen);
  Ended tab(Screen& screen, int step);
  Ended enter(Screen& screen);
  Ended openPicker(Screen& screen);
  Ended openHelp(Screen& screen);
  std::optional<Ended> keyInGrid(Screen& screen, Control& control, const std::string& key);
  Ended moveInColumn(Screen& screen, Control& control, int step);
  std::optional<Ended> keyInField(Screen& screen, Control& control, const std::string& key);

  App& app_;
};

}  // namespace quillon::form
