// What single keys do: the same in a window and in a script.
#include <algorithm>
#include <array>

#include "base/Text.h"
#include "form/Grid.h"
#include "form/Input.h"
#include "store/Cursor.h"

namespace quillon::form {
namespace {

constexpr std::int64_t kRowsOfPage = 20;

// "Ctrl+F" of "ctrl + f", "Esc" of "Escape".
std::string keyName(std::string_view typed) {
  struct Name {
    const char *given, *name;
  };
  constexpr std::array<Name, 8> kNames = {{{"escape", "esc"},
                                           {"return", "enter"},
                                           {"del", "delete"},
                                           {"ins", "insert"},
                                           {"pageup", "pgup"},
                                           {"pagedown", "pgdn"},
                                           {"page up", "pgup"},
                                           {"page down", "pgdn"}}};
  if (typed == " ") return "space";
  std::string key = foldCase(trim(typed));
  if (key.size() > 1) std::erase(key, ' ');
  const std::size_t last = key.size() > 1 ? key.find_last_of('+', key.size() - 2) : std::string::npos;
  const std::size_t from = last == std::string::npos ? 0 : last + 1;
  for (const Name& name : kNames)
    if (std::string_view(key).substr(from) == name.given) key.replace(from, std::string::npos, name.name);
  return key;
}

// The letter behind the mark, folded; empty without one. A doubled mark is a character of the caption.
std::string accessKey(std::string_view caption) {
  std::size_t mark = caption.find('&');
  while (mark != std::string_view::npos && caption.substr(mark + 1).starts_with('&'))
    mark = caption.find('&', mark + 2);
  return mark == std::string_view::npos ? std::string() : foldCase(firstCharacters(caption.substr(mark + 1), 1));
}

template <typename Test>
Control* firstOf(Control& holder, const Test& test) {
  for (const auto& child : holder.children()) {
    if (test(*child)) return child.get();
    if (Control* found = firstOf(*child, test)) return found;
  }
  return nullptr;
}

bool canBeEntered(const Control& column) { return column.visible() && column.enabled() && !column.readOnly(); }

// To the next cell of the row that can be entered; false at its end.
bool moveCell(Grid& grid, int step) {
  const auto count = static_cast<int>(grid.columns().size());
  for (int column = grid.activeColumn() + step; column >= 0 && column < count; column += step) {
    if (!canBeEntered(*grid.columns()[static_cast<std::size_t>(column)])) continue;
    grid.setActiveColumn(column);
    return true;
  }
  return false;
}

void enterRow(Grid& grid) {
  grid.setActiveColumn(-1);
  if (!moveCell(grid, 1)) grid.setActiveColumn(0);
}

// Enter in a line: the next cell, then the next line, and behind the last a new one.
void moveOn(Grid& grid) {
  if (moveCell(grid, 1)) return;
  store::Cursor& lines = grid.cursor();
  if (grid.isNewRow() ? !lines.modified() : lines.next()) return enterRow(grid);
  if (!grid.mayChange()) return;
  grid.append();
  enterRow(grid);
}

void moveInList(store::Cursor& rows, std::string_view key) {
  if (key == "up") rows.prior();
  if (key == "down") rows.next();
  if (key == "pgup") rows.moveBy(-kRowsOfPage);
  if (key == "pgdn") rows.moveBy(kRowsOfPage);
  if (key == "home" || key == "ctrl+home") rows.first();
  if (key == "end" || key == "ctrl+end") rows.last();
}

bool moves(std::string_view key) {
  constexpr std::array<std::string_view, 8> kMoves = {"up",  "down", "pgup",      "pgdn",
                                                      "end", "home", "ctrl+home", "ctrl+end"};
  return std::ranges::find(kMoves, key) != kMoves.end();
}

// The day that a key leads to in a month; null for other keys.
std::optional<Date> dayBy(std::string_view key, Date day, Date today) {
  if (key == "left" || key == "right") return day.addDays(key == "left" ? -1 : 1);
  if (key == "up" || key == "down") return day.addDays(key == "up" ? -7 : 7);
  if (key == "pgup" || key == "pgdn") return day.addMonths(key == "pgup" ? -1 : 1);
  if (key == "home") return today;
  return std::nullopt;
}

// The choice that a key leads to; null for other keys, and where there is nothing to choose.
std::optional<store::Value> choiceBy(std::string_view key, Binding& binding) {
  const Choices choices = binding.choices();
  if ((key != "up" && key != "down") || choices.empty()) return std::nullopt;
  const auto found = std::ranges::find(choices, binding.data(), &Choices::value_type::first);
  const std::ptrdiff_t at = found == choices.end() ? -1 : found - choices.begin();
  const auto last = static_cast<std::ptrdiff_t>(choices.size()) - 1;
  return choices[static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(at + (key == "down" ? 1 : -1), 0, last))].first;
}

bool isChosen(const Control& control) {
  return control.kind() == Kind::chooser || control.kind() == Kind::choice || control.kind() == Kind::list;
}

}  // namespace

Ended Input::key(Screen& screen, std::string_view typed) {
  require(screen);
  const std::string key = keyName(typed);
  if (Control* control = firstOf(screen.root(), [&](const Control& some) { return keyName(some.shortcut()) == key; });
      control && !key.empty())
    return click(screen, *control);
  if (key.starts_with("alt+")) return accessKeyPressed(screen, key.substr(4));
  if (key == "esc") return escape(screen);
  if (key == "tab") return tab(screen, 1);
  if (key == "shift+tab") return tab(screen, -1);
  if (key == "f1") return openHelp(screen);
  if (key == "f2") return openPicker(screen);
  if (key == "f5") {
    Control* refresh = screen.find("mnuRefresh");
    if (refresh == nullptr) throw Error("'" + screen.name() + "' has nothing to refresh");
    return click(screen, *refresh);
  }
  if (key == "enter") return enter(screen);
  Control* focused = screen.focused();
  if (focused && focused->grid())
    if (const auto ended = keyInGrid(screen, *focused, key)) return *ended;
  if (focused)
    if (const auto ended = keyInField(screen, *focused, key)) return *ended;
  if (lengthInCharacters(typed) == 1) return keys(screen, typed);
  throw Error("The key '" + std::string(typed) + "' does nothing here");
}

Ended Input::accessKeyPressed(Screen& screen, const std::string& letter) {
  const auto holds = [&](const Control& some) {
    return !letter.empty() && accessKey(some.caption()) == letter && screen.isVisible(some);
  };
  Control* control = firstOf(screen.root(), holds);
  if (control == nullptr) throw Error("'" + screen.name() + "' has no access key '" + letter + "'");
  if (control->kind() == Kind::menu) throw Error("Menus do not drop down here: click their entries");
  if (control->command() && !control->grid()) return click(screen, *control);
  const std::vector<Control*> path = screen.pathTo(*control);
  if (path.size() > 1 && path[path.size() - 2]->kind() == Kind::pages) {
    const auto& pages = path[path.size() - 2]->children();
    const auto place = std::ranges::find(pages, control, &std::unique_ptr<Control>::get) - pages.begin();
    return turn(screen, *path[path.size() - 2], static_cast<int>(place));
  }
  // That of a label or group leads to the first field behind it.
  const std::vector<Control*> order = screen.tabOrder();
  bool behind = false;
  firstOf(screen.root(), [&](const Control& some) {
    if (&some == control) behind = true;
    if (!behind || std::ranges::find(order, &some) == order.end()) return false;
    control = order[static_cast<std::size_t>(std::ranges::find(order, &some) - order.begin())];
    return true;
  });
  return focus(screen, *control);
}

// Undoes the field, then the line, then asks about the screen.
Ended Input::escape(Screen& screen) {
  Control* focused = screen.focused();
  const std::string name = screen.name() + "." + (focused ? focused->name() : "");
  if (screen.typed()) return app_.run(screen, name, [&] { screen.dropTyped(); });
  if (focused && focused->grid() && focused->grid()->lines() && focused->grid()->cursor().isEditing())
    return app_.run(screen, name, [&] { focused->grid()->cursor().cancel(); });
  if (!screen.closesByEsc()) throw Error("The key 'Esc' does nothing here");
  return close(screen);
}

Ended Input::tab(Screen& screen, int step) {
  Control* focused = screen.focused();
  const std::vector<Control*> order = screen.tabOrder();
  if (order.empty()) throw Error("'" + screen.name() + "' has nothing that takes the focus");
  return app_.run(screen, screen.name() + "." + (focused ? focused->name() : ""), [&] {
    take(screen);
    if (focused && focused->grid() && focused->grid()->lines() && moveCell(*focused->grid(), step)) return;
    const auto count = static_cast<std::ptrdiff_t>(order.size());
    const auto found = std::ranges::find(order, focused);
    const std::ptrdiff_t at = found == order.end() ? (step > 0 ? -1 : 0) : found - order.begin();
    screen.setFocus(order[static_cast<std::size_t>((at + step + count) % count)]);
  });
}

Ended Input::enter(Screen& screen) {
  Control* focused = screen.focused();
  if (focused && focused->kind() == Kind::button) return click(screen, *focused);
  if (focused && focused->grid() && focused->grid()->lines())
    return app_.run(screen, screen.name() + "." + focused->name(), [&] {
      take(screen);
      moveOn(*focused->grid());
    });
  if (focused && focused->grid() && focused->command()) return click(screen, *focused);
  if (focused && focused->kind() == Kind::memo) return keys(screen, "\r");
  Control* standard = firstOf(screen.root(), [&](const Control& some) {
    return some.isDefault() && screen.isVisible(some) && screen.isEnabled(some);
  });
  if (standard == nullptr) throw Error("'" + screen.name() + "' has no default button");
  return click(screen, *standard);
}

Ended Input::openPicker(Screen& screen) {
  Control* target = screen.target();
  if (target == nullptr || !target->binding() || !target->binding()->hasPicker())
    throw Error("There is nothing to pick from here");
  return app_.run(screen, screen.name() + "." + screen.focused()->name(), [&] {
    const std::optional<std::string> typed = screen.typed();
    begin(screen);
    // Nobody loses what they typed by looking.
    if (target->binding()->pick(typed.value_or(""), !typed)) screen.dropTyped();
  });
}

// What is typed stays as it is.
Ended Input::openHelp(Screen& screen) {
  return app_.run(screen, screen.name(), [&] {
    if (!app_.help) throw Error("There is no manual");
    app_.help(screen.entry().help);
  });
}

std::optional<Ended> Input::keyInGrid(Screen& screen, Control& control, const std::string& key) {
  Grid& grid = *control.grid();
  if (grid.lines() && (key == "insert" || key == "delete") && !screen.typed()) return this->grid(screen, control, key);
  if (key == "space" && grid.tick() && (!grid.lines() || screen.target() == grid.tick())) return tick(screen, control);
  const bool sideways = key == "left" || key == "right" || key == "home" || key == "end";
  if (sideways && screen.typed()) return std::nullopt;
  if (!moves(key) && !sideways) return std::nullopt;
  return app_.run(screen, screen.name() + "." + control.name(), [&] {
    take(screen);
    if (!grid.lines() || !sideways) return moveInList(grid.cursor(), key);
    if (key == "left" || key == "right") {
      moveCell(grid, key == "right" ? 1 : -1);
      return;
    }
    while (moveCell(grid, key == "end" ? 1 : -1)) {
    }
  });
}

// Up and Down from a field to the next one of its column; at its ends nowhere.
Ended Input::moveInColumn(Screen& screen, Control& control, int step) {
  std::vector<Control*> column = screen.tabOrder();
  std::erase_if(column, [](const Control* some) { return !some->isInColumn(); });
  const std::ptrdiff_t to = std::ranges::find(column, &control) - column.begin() + step;
  const bool there = to >= 0 && to < static_cast<std::ptrdiff_t>(column.size());
  return focus(screen, there ? *column[static_cast<std::size_t>(to)] : control);
}

// Space, Backspace, and the arrows in a column of fields, in a month, in a list of choices, and in a box
// that finds in a list.
std::optional<Ended> Input::keyInField(Screen& screen, Control& control, const std::string& key) {
  if (control.kind() == Kind::button && key == "space") return click(screen, control);
  if (control.isInColumn() && (key == "up" || key == "down"))
    return moveInColumn(screen, control, key == "down" ? 1 : -1);
  if (control.kind() == Kind::month) {
    const store::Value now = control.binding()->data();
    const Date today = app_.today();
    const std::optional<Date> day = dayBy(key, now.isNull() ? today : now.asDate(), today);
    return day ? std::optional(choose(screen, control, *day)) : std::nullopt;
  }
  if (control.kind() == Kind::check && key == "space")
    return choose(screen, control, !control.binding()->data().asBool());
  if (control.list() && control.list()->grid()) {
    const bool moves = key == "up" || key == "down" || key == "pgup" || key == "pgdn";
    if (moves)
      return app_.run(screen, screen.name() + "." + control.name(),
                      [&] { moveInList(control.list()->grid()->cursor(), key); });
  } else if (control.list() || isChosen(control)) {
    Control& list = isChosen(control) ? control : *control.list();
    const std::optional<store::Value> next = choiceBy(key, *list.binding());
    if (next && isChosen(control)) return choose(screen, list, *next);
    if (next) return app_.run(screen, screen.name() + "." + control.name(), [&] { list.binding()->put(*next); });
  }
  const Control* target = screen.target();
  if (key == "backspace" && target->binding()) {
    const std::string text = screen.typed() ? *screen.typed() : target->binding()->editText();
    const std::size_t length = lengthInCharacters(text);
    return type(screen, firstCharacters(text, length > 0 ? length - 1 : 0));
  }
  if (key == "space") return keys(screen, " ");
  return std::nullopt;
}

}  // namespace quillon::form
