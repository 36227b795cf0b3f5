#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "form/Converter.h"
#include "store/Value.h"

namespace quillon::store {
class Cursor;
}

namespace quillon::form {

class App;

// What a control or a column shows, and where what is typed into it goes.
class Binding {
 public:
  virtual ~Binding() = default;

  virtual std::string text() = 0;  // as shown
  virtual std::string editText() { return text(); }
  virtual store::Value data() = 0;  // behind the text: an id, a date, an exact amount
  // The first key that would change it: puts the cursor in edit, or raises why that cannot be.
  virtual void begin() {}
  // Converts and sets what was typed; the field's own checks and changes follow. Raises what is wrong with it.
  virtual void take(std::string_view typed) = 0;
  // Sets a value that needs no conversion: of a check box, a choice, a picker.
  virtual void put(const store::Value& value) = 0;

  virtual Choices choices() { return {}; }
  virtual bool alignsRight() const { return false; }
  virtual std::size_t decimals() const { return 0; }  // of its converter
  virtual store::Cursor* cursor() const { return nullptr; }
  virtual std::string_view field() const { return {}; }
  virtual int width() const { return 0; }  // in characters, of what may be typed; 0: not known
  // Yes or no, turned over by a click or Space and saved at once.
  virtual bool ticks() const { return false; }

  // Fields that are typed as a code: opens the picker, which begins with the text; true when it was put in.
  // `asItStands` begins it with what the field holds. Dates have one too, which opens only when it is asked for, and on
  // what the field holds where the text is no date.
  virtual bool hasPicker() const { return false; }
  virtual bool picksAsTyped() const { return hasPicker(); }
  virtual bool pick(std::string_view /*begin*/, bool /*asItStands*/) { return false; }
};
using BindingPtr = std::unique_ptr<Binding>;

// A field of a cursor's row.
BindingPtr fieldBinding(store::Cursor& cursor, std::string field, ConverterPtr converter);

// A tick: a yes/no field of a cursor's row, whose record is locked, saved and let go by a single put.
BindingPtr tickBinding(store::Cursor& cursor, std::string field);

// Lets what is typed be picked, too, on a screen that opens only when it is asked for. `Pick` gets what is typed and
// not yet taken, and what stands there; null picks nothing.
using Pick = std::function<std::optional<store::Value>(std::string_view typed, const store::Value& data)>;
BindingPtr pickedBinding(BindingPtr typed, Pick pick);
// From the program's calendar.
BindingPtr pickedDate(App& app, BindingPtr date);

// A value of a screen that no table keeps: a condition of a filter, an option of a launcher. Validate may raise.
struct Variable {
  store::Value value;
  std::function<void(const store::Value& next)> validate = {};
  std::function<void(const store::Value& old)> change = {};

  void set(const store::Value& next);
  void reset() { set({}); }
};
BindingPtr variableBinding(Variable& variable, ConverterPtr converter);

// A text that is worked out and never typed.
BindingPtr shownBinding(std::function<std::string()> text);
BindingPtr shownBinding(std::function<store::Value()> value, ConverterPtr converter);

// How an id is typed and shown: as the code, or the name, of the row of another table that it points to. An exact code
// comes before one that differs in case; empty is null; an id that points nowhere shows "?".
struct CodeOf {
  std::string table, idField, shownField;
  std::string unknown;      // the refusal of a code that no row has
  std::string picker = {};  // class of the picker screen; empty: none
  std::string title = {};   // of the picker
  std::string index = {};   // that the picker begins with
  std::string filter = {};  // of the picker
  store::Value level = {};  // for a picker that serves several tables
};
// The rows of a table, by a text that is unique among them and in its order, behind none at all.
ConverterPtr rowsConverter(App& app, std::string table, std::string idField, std::string shownField, std::string index);
BindingPtr codeBinding(App& app, store::Cursor& cursor, std::string idField, CodeOf code);
BindingPtr codeBinding(App& app, Variable& variable, CodeOf code);
// A text that may be such a code, and any other as well: the end of a range.
BindingPtr pickedCode(App& app, BindingPtr text, CodeOf code);

}  // namespace quillon::form
