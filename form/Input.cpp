#include "form/Input.h"

#include "base/Text.h"
#include "form/Grid.h"
#include "form/PageView.h"
#include "form/Table.h"

namespace quillon::form {
namespace {

std::string commandName(const Screen& screen, const Control& control) { return screen.name() + "." + control.name(); }

// The line that the grid has open for editing is posted, or dropped where nothing was typed.
void postLine(Grid& grid) {
  store::Cursor& cursor = grid.cursor();
  if (!cursor.isEditing()) return;
  if (cursor.modified())
    cursor.post();
  else
    cursor.cancel();
}

void postLines(Control& control) {
  if (control.grid() && control.grid()->lines()) postLine(*control.grid());
  for (const auto& child : control.children()) postLines(*child);
}

}  // namespace

void Input::require(Screen& screen) const {
  if (!app_.accepts(screen)) {
    const Screen* modal = app_.modal();
    throw Error("'" + screen.name() + "' cannot be used now" +
                (modal ? ": '" + modal->name() + "' has to be closed first" : ""));
  }
}

void Input::requireUsable(Screen& screen, const Control& control) const {
  require(screen);
  if (!screen.isVisible(control)) throw Error("'" + commandName(screen, control) + "' is not visible");
  if (!screen.isEnabled(control)) throw Error("'" + commandName(screen, control) + "' is disabled");
}

// What is typed where the focus was is taken before it goes on.
void Input::take(Screen& screen) { screen.takeTyped(); }

void Input::begin(Screen& screen) {
  Control* target = screen.target();
  if (target == nullptr || target->binding() == nullptr) throw Error("Nothing can be typed here");
  const Grid* grid = screen.focused()->grid();
  const bool ticks = target->binding()->ticks();
  if (grid && !grid->lines() && !ticks) throw Error("Nothing can be typed into this list");
  if (target->readOnly() || (grid && screen.focused()->readOnly())) {
    std::string why = target->explanation();
    if (why.empty()) why = screen.focused()->explanation();
    if (!why.empty()) app_.person().show(Tone::information, why);
    throw Abort();
  }
  if (screen.typed()) return;
  target->binding()->begin();
  if (store::Cursor* cursor = target->binding()->cursor(); cursor && !cursor->isEditing()) throw Abort();
}

Ended Input::focus(Screen& screen, Control& control) {
  requireUsable(screen, control);
  if (!takesFocus(control.kind())) throw Error("'" + commandName(screen, control) + "' takes no focus");
  if (screen.focused() == &control) return {.command = commandName(screen, control)};
  return app_.run(screen, commandName(screen, control), [&] {
    take(screen);
    screen.setFocus(&control);
  });
}

Grid* Input::usableGrid(Screen& screen, Control& control) const {
  requireUsable(screen, control);
  if (!control.grid()) throw Error("'" + commandName(screen, control) + "' is no grid");
  return control.grid();
}

Ended Input::cell(Screen& screen, Control& control, std::uint64_t row, std::string_view column) {
  Grid* grid = usableGrid(screen, control);
  int position = grid->activeColumn();
  if (!column.empty()) {
    Control* wanted = grid->column(column);
    if (wanted == nullptr)
      throw Error("'" + commandName(screen, control) + "' has no column '" + std::string(column) + "'");
    for (std::size_t i = 0; i < grid->columns().size(); ++i)
      if (grid->columns()[i].get() == wanted) position = static_cast<int>(i);
  }
  // What is typed there stays there: it may be a text that was refused.
  if (screen.focused() == &control && position == grid->activeColumn() && grid->activeRow() == row)
    return {.command = commandName(screen, control)};
  return app_.run(screen, commandName(screen, control), [&] {
    take(screen);
    screen.setFocus(&control);
    if (!grid->goTo(row)) throw Error("Row " + std::to_string(row) + " does not exist");
    grid->setActiveColumn(position);
  });
}

Ended Input::type(Screen& screen, std::string_view text) {
  require(screen);
  if (screen.focused() == nullptr) throw Error("Nothing has the focus");
  if (const Control* target = screen.target(); target && target->binding() && target->binding()->ticks())
    throw Error("This is ticked by Space");
  return app_.run(screen, commandName(screen, *screen.focused()), [&] {
    begin(screen);
    screen.setTyped(std::string(text));
    if (const auto& hear = screen.target()->typing()) hear(std::string(text));
  });
}

Ended Input::keys(Screen& screen, std::string_view characters) {
  require(screen);
  Control* focused = screen.focused();
  if (focused == nullptr) throw Error("Nothing has the focus");
  Grid* grid = focused->grid();
  if (grid && !grid->lines() && grid->search)
    return app_.run(screen, commandName(screen, *focused), [&] { grid->search(std::string(characters)); });
  Control* target = screen.target();
  const bool picks = grid && target && target->binding() && target->binding()->picksAsTyped();
  if (picks && !screen.typed())
    return app_.run(screen, commandName(screen, *focused), [&] {
      begin(screen);
      target->binding()->pick(characters, false);
    });
  Ended ended;
  for (std::size_t at = 0; at < characters.size();) {
    const std::string_view one = firstCharacters(characters.substr(at), 1);
    ended = type(screen, screen.typed().value_or("").append(one));
    if (!ended.ok) break;
    at += one.size();
  }
  return ended;
}

Ended Input::set(Screen& screen, Control& control, std::string_view text) {
  requireUsable(screen, control);
  if (!control.binding() && !control.grid())
    throw Error("Nothing can be typed into '" + commandName(screen, control) + "'");
  return app_.run(screen, commandName(screen, control), [&] {
    if (screen.focused() != &control) {
      take(screen);
      screen.setFocus(&control);
    }
    begin(screen);
    screen.setTyped(std::string(text));
    if (const auto& hear = control.typing()) hear(std::string(text));
    screen.takeTyped();
  });
}

Ended Input::setCell(Screen& screen, Control& grid, std::uint64_t row, std::string_view column, std::string_view text) {
  Ended moved = cell(screen, grid, row, column);
  if (!moved.ok) return moved;
  return app_.run(screen, commandName(screen, grid) + "." + std::string(column), [&] {
    begin(screen);
    screen.setTyped(std::string(text));
    screen.takeTyped();
  });
}

Ended Input::tick(Screen& screen, Control& control) {
  Grid* grid = usableGrid(screen, control);
  Control* column = grid->tick();
  if (column == nullptr) throw Error("'" + commandName(screen, control) + "' has nothing to tick");
  return app_.run(screen, commandName(screen, control), [&] {
    take(screen);
    screen.setFocus(&control);
    column->binding()->put(!column->binding()->data().asBool());
  });
}

Ended Input::choose(Screen& screen, Control& control, const store::Value& value) {
  requireUsable(screen, control);
  if (!control.binding()) throw Error("Nothing can be chosen in '" + commandName(screen, control) + "'");
  return app_.run(screen, commandName(screen, control), [&] {
    if (screen.focused() != &control) {
      take(screen);
      screen.setFocus(&control);
    }
    begin(screen);
    control.binding()->put(value);
    screen.dropTyped();
  });
}

Ended Input::click(Screen& screen, Control& control) {
  requireUsable(screen, control);
  if (!control.command()) throw Error("'" + commandName(screen, control) + "' cannot be clicked");
  return app_.run(screen, commandName(screen, control), [&] {
    if (control.pending() == Pending::abandons)
      screen.dropTyped();
    else
      take(screen);
    if (control.pending() == Pending::saves) postLines(screen.root());
    control.command()();
  });
}

Ended Input::grid(Screen& screen, Control& control, std::string_view action) {
  Grid* grid = usableGrid(screen, control);
  return app_.run(screen, commandName(screen, control), [&] {
    take(screen);
    screen.setFocus(&control);
    if (action == "up" || action == "down") {
      store::Cursor& cursor = grid->cursor();
      action == "up" ? cursor.prior() : cursor.next();
      return;
    }
    if (!grid->mayChange()) throw Error("'" + commandName(screen, control) + "' cannot be changed");
    if (action == "append")
      grid->append();
    else if (action == "insert")
      grid->insert();
    else if (action == "delete")
      grid->remove();
    else
      throw Error("A grid cannot '" + std::string(action) + "'");
  });
}

Ended Input::scroll(Screen& screen, Control& control, double depth) {
  Grid* grid = usableGrid(screen, control);
  return app_.run(screen, commandName(screen, control), [&] {
    take(screen);
    screen.setFocus(&control);
    grid->goToDepth(depth);
  });
}

Ended Input::locate(Screen& screen, Control& control, const std::string& fields,
                    const std::vector<store::Value>& values) {
  Grid* grid = usableGrid(screen, control);
  return app_.run(screen, commandName(screen, control), [&] {
    take(screen);
    screen.setFocus(&control);
    if (!grid->cursor().locate(fields, values)) throw Error("No row of '" + control.name() + "' has these values");
  });
}

Ended Input::turn(Screen& screen, Control& control, int page) {
  requireUsable(screen, control);
  if (control.kind() != Kind::pages) throw Error("'" + commandName(screen, control) + "' has no pages to turn");
  if (page < 0 || page >= static_cast<int>(control.children().size()))
    throw Error("'" + commandName(screen, control) + "' has no page " + std::to_string(page));
  return app_.run(screen, commandName(screen, control), [&] {
    take(screen);
    control.page = page;
  });
}

Ended Input::follow(Screen& screen, Control& control, int page, std::size_t link) {
  requireUsable(screen, control);
  const PageView* view = control.pageView();
  if (view == nullptr || !view->pages || page < 1 || page > view->pages->pageCount() ||
      link >= view->pages->links(page).size())
    throw Error("'" + commandName(screen, control) + "' leads nowhere from there");
  return app_.run(screen, commandName(screen, control), [&, pages = view->pages] { pages->follow(app_, page, link); });
}

Ended Input::close(Screen& screen) {
  require(screen);
  return app_.run(screen, screen.name(), [&] {
    if (!app_.close(screen)) throw Abort();
  });
}

Ended Input::menu(Screen& main, const MenuRow& row) {
  require(main);
  Control* entry = main.find(row.name);
  if (entry != nullptr && entry->command()) return click(main, *entry);
  return app_.run(main, main.name() + "." + row.name,
                  [&] { throw Error("This version does not have '" + plainCaption(row.path) + "' yet"); });
}

Ended Input::open(Screen& main, const ScreenEntry& entry) {
  require(main);
  const Control *disabled = nullptr, *way = nullptr;
  for (const MenuRow& row : app_.registry().menu()) {
    const Control* some = row.screen == entry.className ? main.find(row.name) : nullptr;
    if (some == nullptr || !some->command()) continue;
    (main.isEnabled(*some) ? way : disabled) = some;
  }
  if (way == nullptr && disabled != nullptr)
    throw Error("'" + entry.className + "' cannot be opened now: '" + commandName(main, *disabled) + "' is disabled");
  return app_.run(main, entry.className, [&] { way ? way->command()() : (void)app_.openFromMenu(entry.className); });
}

}  // namespace quillon::form
