#include "apps/drive/Names.h"

#include <charconv>

#include "form/Grid.h"

namespace quillon::apps {
namespace {

std::string quoted(std::string_view name) { return "'" + std::string(name) + "'"; }

// The "[1].GLAccount" behind the name of a grid.
void readCell(Target& target, std::string_view name, std::string_view cell) {
  const std::size_t end = cell.find(']');
  std::uint64_t row = 0;
  const std::string_view number = cell.substr(1, end == std::string_view::npos ? end : end - 1);
  const auto [stop, error] = std::from_chars(number.data(), number.data() + number.size(), row);
  const bool readable = end != std::string_view::npos && error == std::errc() && stop == number.data() + number.size();
  if (!readable || (end + 1 < cell.size() && cell[end + 1] != '.'))
    throw RequestRefused(quoted(name) + " is no cell: that is frmJV.grdJVDet[1].GLAccount");
  form::Grid* grid = target.control->grid();
  if (grid == nullptr) throw RequestRefused(quoted(target.control->name()) + " is no grid");
  target.row = row;
  if (end + 1 >= cell.size()) return;
  const form::Control* column = grid->column(cell.substr(end + 2));
  if (column != nullptr) {
    target.column = column->name();
    return;
  }
  std::vector<std::string> columns;
  for (const auto& some : grid->columns()) columns.push_back(some->name());
  throw RequestRefused(quoted(target.control->name()) + " has no column " + quoted(cell.substr(end + 2)), columns);
}

}  // namespace

void eachMenuEntry(const form::Control& holder,
                   const std::function<void(const std::string& path, form::Control& entry)>& call,
                   const std::string& path) {
  for (const auto& child : holder.children()) {
    const std::string mine = path + child->caption();
    if (child->kind() == form::Kind::entry) call(mine, *child);
    eachMenuEntry(*child, call, child->kind() == form::Kind::menu ? mine + " > " : path);
  }
}

void eachControl(form::Control& holder, const std::function<void(form::Control&)>& call) {
  for (const auto& child : holder.children()) {
    call(*child);
    eachControl(*child, call);
  }
}

form::Screen& screenNamed(const form::App& app, std::string_view name) {
  form::Screen* screen = app.find(name);
  if (screen != nullptr && screen->visible()) return *screen;
  std::vector<std::string> open;
  for (const auto& some : app.screens())
    if (some->visible()) open.push_back(some->name());
  throw RequestRefused("No screen " + quoted(name) + " is open", open);
}

Target targetNamed(const form::App& app, std::string_view name, const std::function<bool(const form::Control&)>& fits) {
  const std::size_t dot = name.find('.');
  Target target{.screen = &screenNamed(app, name.substr(0, dot))};
  const std::string_view rest = dot == std::string_view::npos ? std::string_view() : name.substr(dot + 1);
  const std::size_t cell = std::min(rest.find('['), rest.size());
  target.control = target.screen->find(rest.substr(0, cell));
  if (target.control == nullptr) {
    std::vector<std::string> names;
    eachControl(target.screen->root(), [&](const form::Control& some) {
      if (!some.name().empty() && fits(some)) names.push_back(target.screen->name() + "." + some.name());
    });
    throw RequestRefused(quoted(target.screen->name()) + " has no control " + quoted(rest.substr(0, cell)), names);
  }
  if (cell < rest.size()) readCell(target, name, rest.substr(cell));
  return target;
}

std::string focusOf(const form::Screen& screen) {
  const form::Control* focused = screen.focused();
  if (focused == nullptr) return {};
  std::string name = screen.name() + "." + focused->name();
  if (focused->grid() == nullptr) return name;
  if (const auto row = focused->grid()->activeRow()) name += "[" + std::to_string(*row) + "]";
  if (const form::Control* column = screen.target(); column != nullptr && column != focused)
    name += "." + column->name();
  return name;
}

}  // namespace quillon::apps
