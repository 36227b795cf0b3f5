#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "form/Control.h"
#include "store/Field.h"

namespace quillon::form {

class Screen;

// Tells a screen's controls, in the order in which a person reads them, which is that of the Tab key. `&` marks the
// access key in a caption.
//
// A function makes a control that stands nowhere yet; row, group, page and the like put it in its place. What stands in
// none of them is put below the last. Names follow from the field where none is given: edit, chk, cbo or grd, and the
// field's name without "ID" at its end; a second code on one id is named after what it shows. A name stands once.
class Layout {
 public:
  explicit Layout(Screen& screen) : screen_(screen) {}

  // Fields.
  Control& field(std::string caption, const store::Field& field, ConverterPtr converter = nullptr);
  Control& date(std::string caption, const store::Field& field);
  Control& money(std::string caption, const store::Field& field, std::string_view picture = kMoneyPicture);
  Control& check(std::string caption, const store::Field& field);
  Control& chooser(std::string caption, const store::Field& field, ConverterPtr choices);
  Control& choice(std::string caption, const store::Field& field, ConverterPtr choices);
  Control& memo(std::string caption, const store::Field& field);
  Control& code(std::string caption, const store::Field& idField, CodeOf code);
  // The same, and beside it what that row has in another field.
  Control& codeAndName(std::string caption, const store::Field& idField, CodeOf code, std::string nameField);
  // A period and its year, of two digits, side by side.
  Control& period(std::string caption, const store::Field& period, const store::Field& year);

  // Values of the screen; named in full.
  Control& edit(std::string name, std::string caption, Variable& variable, ConverterPtr converter);
  Control& check(std::string name, std::string caption, Variable& variable);
  Control& chooser(std::string name, std::string caption, Variable& variable, ConverterPtr choices);
  Control& choice(std::string name, std::string caption, Variable& variable, ConverterPtr choices);
  Control& list(std::string name, std::string caption, Variable& variable, ConverterPtr choices);
  Control& code(std::string name, std::string caption, Variable& variable, CodeOf code);
  // editGLPeriod and editGLYear, side by side.
  Control& period(std::string caption, Variable& period, Variable& year);
  Control& date(std::string name, std::string caption, Variable& variable);
  Control& month(std::string name, Variable& date);
  // A value that is worked out and never typed.
  Control& shown(std::string name, std::string caption, std::function<store::Value()> value, ConverterPtr converter);

  // Texts.
  Control& label(std::string name, std::function<std::string()> text);
  Control& label(std::string text);
  Control& mark(std::string name, std::string text, std::function<bool()> condition);

  // Commands.
  Control& button(std::string name, std::string caption, std::function<void()> command);
  Control& entry(std::string name, std::string caption, std::function<void()> command);
  // The same with a handler of the screen: l.button("btnOK", "OK", &TfrmJV::btnOKClick).
  template <typename Derived>
  Control& button(std::string name, std::string caption, void (Derived::*handler)()) {
    return button(std::move(name), std::move(caption), commandOf(handler));
  }
  template <typename Derived>
  Control& entry(std::string name, std::string caption, void (Derived::*handler)()) {
    return entry(std::move(name), std::move(caption), commandOf(handler));
  }
  template <typename Derived>
  std::function<void()> commandOf(void (Derived::*handler)()) {
    return [&screen = static_cast<Derived&>(screen_), handler] { (screen.*handler)(); };
  }
  // Beside a field: opens its picker.
  Control& pickButton(std::string name, Control& field);
  Control& separator();
  Control& progress(std::string name);
  Control& picture(std::string name, std::function<store::Value()> image);
  Control& pageview(std::string name, PageView& view);

  // Grids. Columns are made by the functions below.
  Control& grid(store::Cursor& cursor, std::vector<std::unique_ptr<Control>> columns);  // a list
  // A list whose cursor may be closed yet, of columns that are worked out.
  Control& grid(std::string name, store::Cursor& cursor, std::vector<std::unique_ptr<Control>> columns);
  Control& lines(store::Cursor& cursor, std::vector<std::unique_ptr<Control>> columns);  // typed into
  std::unique_ptr<Control> column(std::string caption, const store::Field& field, ConverterPtr converter = nullptr);
  // Ticked by a click or Space, in a list as well; each tick is saved at once.
  std::unique_ptr<Control> tickColumn(std::string caption, const store::Field& field);
  std::unique_ptr<Control> codeColumn(std::string caption, const store::Field& idField, CodeOf code);
  // Of a text that may be such a code: typed as it is, and picked where the picker is asked for.
  std::unique_ptr<Control> pickedColumn(std::string caption, const store::Field& field, CodeOf code);
  std::unique_ptr<Control> shownColumn(std::string name, std::string caption, std::function<std::string()> text,
                                       int width);
  std::unique_ptr<Control> shownColumn(std::string name, std::string caption, std::function<store::Value()> value,
                                       ConverterPtr converter, int width);
  template <typename... Columns>
  static std::vector<std::unique_ptr<Control>> columns(Columns... some) {
    std::vector<std::unique_ptr<Control>> all;
    (all.push_back(std::move(some)), ...);
    return all;
  }

  // Places.
  template <typename... Controls>
  Control& row(Controls&... controls) {
    return place(Kind::row, "", {&controls...});
  }
  Control& rowOf(const std::vector<Control*>& controls) { return place(Kind::row, "", controls); }
  template <typename... Controls>
  Control& group(const std::string& caption, Controls&... controls) {
    return place(Kind::group, caption, {&controls...});
  }
  Control& groupOf(std::string caption, const std::vector<Control*>& controls) {
    return place(Kind::group, std::move(caption), controls);
  }
  template <typename... Controls>
  Control& pages(Controls&... controls) {
    return place(Kind::pages, "", {&controls...}).named("pagPages");
  }
  Control& pagesOf(const std::vector<Control*>& controls) { return place(Kind::pages, "", controls); }
  template <typename... Controls>
  Control& steps(Controls&... controls) {
    return place(Kind::steps, "", {&controls...}).named("pagSteps");
  }
  // What stands on its two sides shares the width as the person draws it.
  Control& splitter(Control& left, Control& right) { return place(Kind::splitter, "", {&left, &right}); }
  Control& stepsOf(const std::vector<Control*>& groups) { return place(Kind::steps, "", groups).named("pagSteps"); }
  template <typename... Controls>
  Control& menu(const std::string& caption, Controls&... controls) {
    return place(Kind::menu, caption, {&controls...});
  }
  Control& menuOf(std::string caption, const std::vector<Control*>& controls) {
    return place(Kind::menu, std::move(caption), controls);
  }
  template <typename... Controls>
  Control& toolbar(Controls&... controls) {
    return place(Kind::toolbar, "", {&controls...});
  }
  Control& toolbarOf(const std::vector<Control*>& controls) { return place(Kind::toolbar, "", controls); }

  // Of the screen's window, without its frame; it is as large as its contents need where that is more.
  void size(Size told) { size_ = told; }

  // For the screen: what was told, in one group. Error when a name stands there twice.
  std::unique_ptr<Control> finish();

 private:
  Control& make(Kind kind, std::string name, std::string caption);
  bool isNamed(std::string_view name) const;
  Control& bound(Kind kind, const std::string& prefix, std::string caption, const store::Field& field,
                 ConverterPtr converter);
  Control& variable(Kind kind, std::string name, std::string caption, Variable& variable, ConverterPtr converter);
  Control& place(Kind kind, std::string caption, const std::vector<Control*>& controls);
  std::unique_ptr<Control> makeColumn(std::string caption, std::string name, BindingPtr binding);

  Screen& screen_;
  Size size_;
  std::vector<std::unique_ptr<Control>> loose_;  // standing nowhere yet
};

// "GLAccount" of "GLAccountID": a control's name without its prefix.
std::string controlNameOf(std::string_view field);

}  // namespace quillon::form
