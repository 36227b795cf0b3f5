#include "form/Layout.h"

#include <algorithm>
#include <set>

#include "base/Text.h"
#include "form/App.h"
#include "form/Grid.h"
#include "store/Cursor.h"

namespace quillon::form {
namespace {

// Raises a name that stands there twice.
void requireNames(const Control& control, std::set<std::string>& names) {
  if (!control.name().empty() && !names.insert(foldCase(control.name())).second)
    throw Error("Two controls are named '" + control.name() + "'");
  for (const auto& child : control.children()) requireNames(*child, names);
}

bool holds(const Control& control, std::string_view name) {
  return equalFolded(control.name(), name) ||
         std::ranges::any_of(control.children(), [&](const auto& child) { return holds(*child, name); });
}

std::string fieldName(const store::Field& field) { return field.definition().name; }

// "SortByName" of "Sort by name...".
std::string wordsOf(std::string_view caption) {
  std::string words;
  bool start = true;
  for (const char c : plainCaption(caption)) {
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    if (letter) words += start && c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    start = !letter;
  }
  return words;
}

BindingPtr bindingOf(App& app, const store::Field& field, ConverterPtr converter) {
  const store::FieldDef& definition = field.definition();
  if (!converter) converter = converterFor(definition, app.formats());
  BindingPtr binding = fieldBinding(field.cursor(), definition.name, std::move(converter));
  return definition.type == store::FieldType::date ? pickedDate(app, std::move(binding)) : std::move(binding);
}

}  // namespace

std::string controlNameOf(std::string_view field) {
  if (field.size() > 2 && field.ends_with("ID")) field.remove_suffix(2);
  return std::string(field);
}

bool Layout::isNamed(std::string_view name) const {
  return std::ranges::any_of(loose_, [&](const auto& control) { return holds(*control, name); });
}

Control& Layout::make(Kind kind, std::string name, std::string caption) {
  loose_.push_back(std::make_unique<Control>(kind, std::move(name)));
  return loose_.back()->caption(std::move(caption));
}

Control& Layout::bound(Kind kind, const std::string& prefix, std::string caption, const store::Field& field,
                       ConverterPtr converter) {
  Control& control = make(kind, prefix + controlNameOf(fieldName(field)), std::move(caption));
  control.bind(bindingOf(screen_.app(), field, std::move(converter)));
  return control;
}

Control& Layout::field(std::string caption, const store::Field& field, ConverterPtr converter) {
  return bound(Kind::edit, "edit", std::move(caption), field, std::move(converter));
}

Control& Layout::date(std::string caption, const store::Field& field) {
  return bound(Kind::edit, "edit", std::move(caption), field, nullptr);
}

Control& Layout::money(std::string caption, const store::Field& field, std::string_view picture) {
  return bound(Kind::edit, "edit", std::move(caption), field, moneyConverter(screen_.app().formats(), picture));
}

Control& Layout::check(std::string caption, const store::Field& field) {
  return bound(Kind::check, "chk", std::move(caption), field, yesNoConverter());
}

Control& Layout::chooser(std::string caption, const store::Field& field, ConverterPtr choices) {
  return bound(Kind::chooser, "cbo", std::move(caption), field, std::move(choices));
}

Control& Layout::choice(std::string caption, const store::Field& field, ConverterPtr choices) {
  return bound(Kind::choice, "rad", std::move(caption), field, std::move(choices));
}

Control& Layout::memo(std::string caption, const store::Field& field) {
  return bound(Kind::memo, "memo", std::move(caption), field, textConverter(0));
}

Control& Layout::code(std::string caption, const store::Field& idField, CodeOf code) {
  const std::string name = fieldName(idField);
  const std::string shown = "edit" + controlNameOf(name);
  Control& control = make(Kind::edit, isNamed(shown) ? "edit" + code.shownField : shown, std::move(caption));
  control.bind(codeBinding(screen_.app(), idField.cursor(), name, std::move(code)));
  return control;
}

Control& Layout::codeAndName(std::string caption, const store::Field& idField, CodeOf code, std::string nameField) {
  const auto name = [&app = screen_.app(), &cursor = idField.cursor(), field = fieldName(idField), table = code.table,
                     id = code.idField, nameField = std::move(nameField)] {
    const store::Value wanted = cursor.isOpen() ? cursor.value(field) : store::Value();
    if (wanted.isNull()) return std::string();
    return app.lookUp(table).lookup(id, {wanted}, nameField).asText();
  };
  Control& number = this->code(std::move(caption), idField, std::move(code));
  return row(number, label("lbl" + number.name().substr(4), name));
}

Control& Layout::shown(std::string name, std::string caption, std::function<store::Value()> value,
                       ConverterPtr converter) {
  Control& control = make(Kind::edit, std::move(name), std::move(caption));
  control.bind(shownBinding(std::move(value), std::move(converter)));
  return control.readOnlyAlways();
}

Control& Layout::period(std::string caption, const store::Field& period, const store::Field& year) {
  Control& number = bound(Kind::edit, "edit", std::move(caption), period,
                          wholeConverter(screen_.app().formats(), 1, 12, "Period must be between 1 and 12"));
  Control& years = bound(Kind::edit, "edit", "/", year, twoDigitYearConverter());
  return row(number.wide(2), years.wide(2));
}

Control& Layout::variable(Kind kind, std::string name, std::string caption, Variable& variable,
                          ConverterPtr converter) {
  Control& control = make(kind, std::move(name), std::move(caption));
  control.bind(variableBinding(variable, std::move(converter)));
  return control;
}

Control& Layout::edit(std::string name, std::string caption, Variable& value, ConverterPtr converter) {
  return variable(Kind::edit, std::move(name), std::move(caption), value, std::move(converter));
}

Control& Layout::check(std::string name, std::string caption, Variable& value) {
  return variable(Kind::check, std::move(name), std::move(caption), value, yesNoConverter());
}

Control& Layout::chooser(std::string name, std::string caption, Variable& value, ConverterPtr choices) {
  return variable(Kind::chooser, std::move(name), std::move(caption), value, std::move(choices));
}

Control& Layout::choice(std::string name, std::string caption, Variable& value, ConverterPtr choices) {
  return variable(Kind::choice, std::move(name), std::move(caption), value, std::move(choices));
}

Control& Layout::list(std::string name, std::string caption, Variable& value, ConverterPtr choices) {
  return variable(Kind::list, std::move(name), std::move(caption), value, std::move(choices));
}

Control& Layout::code(std::string name, std::string caption, Variable& value, CodeOf code) {
  Control& control = make(Kind::edit, std::move(name), std::move(caption));
  control.bind(codeBinding(screen_.app(), value, std::move(code)));
  return control;
}

Control& Layout::period(std::string caption, Variable& period, Variable& year) {
  Control& number = edit("editGLPeriod", std::move(caption), period,
                         wholeConverter(screen_.app().formats(), 1, 12, "Period must be between 1 and 12"));
  Control& years = edit("editGLYear", "/", year, twoDigitYearConverter());
  return row(number.wide(2), years.wide(2));
}

Control& Layout::date(std::string name, std::string caption, Variable& value) {
  Control& control = make(Kind::edit, std::move(name), std::move(caption));
  control.bind(pickedDate(screen_.app(), variableBinding(value, dateConverter(screen_.app().formats()))));
  return control;
}

Control& Layout::month(std::string name, Variable& date) {
  return variable(Kind::month, std::move(name), {}, date, dateConverter(screen_.app().formats()));
}

Control& Layout::label(std::string name, std::function<std::string()> text) {
  Control& control = make(Kind::label, std::move(name), {});
  return control.caption(std::move(text));
}

Control& Layout::label(std::string text) {
  const std::string name = "lbl" + wordsOf(text);
  return make(Kind::label, name, std::move(text));
}

Control& Layout::mark(std::string name, std::string text, std::function<bool()> condition) {
  return make(Kind::mark, std::move(name), std::move(text)).visibleWhen(std::move(condition));
}

Control& Layout::button(std::string name, std::string caption, std::function<void()> command) {
  Control& control = make(Kind::button, std::move(name), std::move(caption));
  control.runs(std::move(command));
  return control;
}

Control& Layout::entry(std::string name, std::string caption, std::function<void()> command) {
  if (name.empty()) name = "mnu" + wordsOf(caption);
  Control& control = make(Kind::entry, std::move(name), std::move(caption));
  control.runs(std::move(command));
  return control;
}

Control& Layout::pickButton(std::string name, Control& field) {
  const auto pick = [&screen = screen_, &field] {
    screen.goTo(focus(field.name()));
    field.binding()->begin();
    field.binding()->pick("", true);
  };
  return button(std::move(name), "...", pick).enabledWhen([&field] { return field.enabled() && !field.readOnly(); });
}

Control& Layout::separator() { return make(Kind::separator, {}, {}); }
Control& Layout::progress(std::string name) { return make(Kind::progress, std::move(name), {}); }

Control& Layout::picture(std::string name, std::function<store::Value()> image) {
  Control& control = make(Kind::picture, std::move(name), {});
  control.bind(shownBinding(std::move(image), textConverter(0)));
  return control;
}

Control& Layout::pageview(std::string name, PageView& view) {
  Control& control = make(Kind::pageview, std::move(name), {});
  control.show(view);
  return control;
}

Control& Layout::grid(store::Cursor& cursor, std::vector<std::unique_ptr<Control>> columns) {
  return grid("grd" + cursor.definition().name, cursor, std::move(columns));
}

Control& Layout::grid(std::string name, store::Cursor& cursor, std::vector<std::unique_ptr<Control>> columns) {
  Control& control = make(Kind::grid, std::move(name), {});
  control.setGrid(std::make_unique<Grid>(cursor, false));
  control.grid()->setColumns(std::move(columns));
  return control;
}

Control& Layout::lines(store::Cursor& cursor, std::vector<std::unique_ptr<Control>> columns) {
  Control& control = make(Kind::grid, "grd" + cursor.definition().name, {});
  control.setGrid(std::make_unique<Grid>(cursor, true));
  control.grid()->setColumns(std::move(columns));
  return control;
}

std::unique_ptr<Control> Layout::makeColumn(std::string caption, std::string name, BindingPtr binding) {
  auto column = std::make_unique<Control>(Kind::column, std::move(name));
  column->caption(std::move(caption));
  column->bind(std::move(binding));
  return column;
}

std::unique_ptr<Control> Layout::column(std::string caption, const store::Field& field, ConverterPtr converter) {
  return makeColumn(std::move(caption), controlNameOf(fieldName(field)),
                    bindingOf(screen_.app(), field, std::move(converter)));
}

std::unique_ptr<Control> Layout::tickColumn(std::string caption, const store::Field& field) {
  const std::string name = fieldName(field);
  return makeColumn(std::move(caption), controlNameOf(name), tickBinding(field.cursor(), name));
}

std::unique_ptr<Control> Layout::codeColumn(std::string caption, const store::Field& idField, CodeOf code) {
  const std::string name = fieldName(idField);
  return makeColumn(std::move(caption), controlNameOf(name),
                    codeBinding(screen_.app(), idField.cursor(), name, std::move(code)));
}

std::unique_ptr<Control> Layout::pickedColumn(std::string caption, const store::Field& field, CodeOf code) {
  BindingPtr text = bindingOf(screen_.app(), field, nullptr);
  return makeColumn(std::move(caption), controlNameOf(fieldName(field)),
                    pickedCode(screen_.app(), std::move(text), std::move(code)));
}

std::unique_ptr<Control> Layout::shownColumn(std::string name, std::string caption, std::function<store::Value()> value,
                                             ConverterPtr converter, int width) {
  auto column = makeColumn(std::move(caption), std::move(name), shownBinding(std::move(value), std::move(converter)));
  column->readOnlyAlways().wide(width);
  return column;
}

std::unique_ptr<Control> Layout::shownColumn(std::string name, std::string caption, std::function<std::string()> text,
                                             int width) {
  auto column = makeColumn(std::move(caption), std::move(name), shownBinding(std::move(text)));
  column->readOnlyAlways().wide(width);
  return column;
}

Control& Layout::place(Kind kind, std::string caption, const std::vector<Control*>& controls) {
  auto holder = std::make_unique<Control>(kind, std::string());
  holder->caption(std::move(caption));
  for (const Control* control : controls) {
    const auto found = std::ranges::find(loose_, control, &std::unique_ptr<Control>::get);
    if (found == loose_.end()) throw Error("Control '" + control->name() + "' is placed twice");
    holder->adopt(std::move(*found));
    loose_.erase(found);
  }
  loose_.push_back(std::move(holder));
  return *loose_.back();
}

std::unique_ptr<Control> Layout::finish() {
  auto root = std::make_unique<Control>(Kind::group, std::string());
  for (std::unique_ptr<Control>& control : loose_) root->adopt(std::move(control));
  loose_.clear();
  root->sized(size_);
  std::set<std::string> names;
  requireNames(*root, names);
  return root;
}

}  // namespace quillon::form
