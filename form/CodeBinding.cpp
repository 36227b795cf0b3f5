// Ids that are typed and shown as the code of the row they point to, and texts that may be such codes.
#include "base/Text.h"
#include "form/App.h"
#include "form/Binding.h"
#include "form/Place.h"
#include "store/Cursor.h"
#include "store/Query.h"

namespace quillon::form {
namespace {

using store::Value;

// The id that the person picks, beginning with that of `key`, or with the text; null for none.
std::optional<Value> picked(App& app, const CodeOf& code, const Value& key, std::string_view text) {
  Open open{.filter = code.filter, .title = code.title};
  open.values["key"] = key;
  open.values["text"] = Value(text);
  open.values["index"] = Value(code.index);
  open.values["level"] = code.level;
  const Result result = app.runModal(code.picker, open);
  if (!result.confirmed) return std::nullopt;
  app.lookUp(code.table).refresh();
  return result.values.at("key");
}

// `Target` is where the id is kept: a field or a variable.
class CodeBinding final : public Binding {
 public:
  CodeBinding(App& app, BindingPtr target, CodeOf code)
      : app_(app), target_(std::move(target)), code_(std::move(code)) {}

  std::string text() override { return shown("?"); }
  std::string editText() override { return shown(""); }
  Value data() override { return target_->data(); }
  void begin() override { target_->begin(); }
  void take(std::string_view typed) override {
    const std::string_view text = trim(typed);
    target_->put(text.empty() ? Value() : idOf(text));
  }
  void put(const Value& value) override { target_->put(value); }
  store::Cursor* cursor() const override { return target_->cursor(); }
  std::string_view field() const override { return target_->field(); }
  int width() const override { return app_.lookUp(code_.table)[code_.shownField].definition().size; }

  bool hasPicker() const override { return !code_.picker.empty(); }
  bool pick(std::string_view begin, bool asItStands) override {
    const std::optional<Value> id = picked(app_, code_, asItStands ? data() : Value(), begin);
    if (!id) return false;
    target_->put(*id);
    return true;
  }

 private:
  std::string shown(const char* lost) {
    const Value id = data();
    if (id.isNull()) return {};
    const std::vector<Value> found = app_.lookUp(code_.table).lookupAll(code_.idField, {id}, code_.shownField);
    return found.empty() ? lost : found.front().asText();
  }

  Value idOf(std::string_view text) {
    store::Cursor& rows = app_.lookUp(code_.table);
    Value exact = rows.lookup(code_.shownField, {Value(text)}, code_.idField);
    if (!exact.isNull()) return exact;
    store::Query folded(app_.database(), "SELECT " + code_.idField + " FROM " + code_.table + " WHERE UPPER(" +
                                             code_.shownField + ") = UPPER(:code)");
    folded.setParameter("code", Value(text));
    folded.open();
    if (folded.recordCount() != 1) throw Error(code_.unknown);
    return folded.field(0).value();
  }

  App& app_;
  BindingPtr target_;
  CodeOf code_;
};

ConverterPtr idConverter(const App& app) { return wholeConverter(app.formats(), INT32_MIN, INT32_MAX); }

}  // namespace

ConverterPtr rowsConverter(App& app, std::string table, std::string idField, std::string shownField,
                           std::string index) {
  return choicesConverter([&app, table = std::move(table), idField = std::move(idField),
                           shownField = std::move(shownField), index = std::move(index)] {
    Choices choices;
    choices.emplace_back(Value(), "");
    store::Cursor rows(app.database(), table);
    rows.setIndex(index);
    rows.open();
    for (rows.first(); !rows.eof(); rows.next()) choices.emplace_back(rows.value(idField), rows[shownField].asText());
    return choices;
  });
}

BindingPtr codeBinding(App& app, store::Cursor& cursor, std::string idField, CodeOf code) {
  auto target = fieldBinding(cursor, std::move(idField), idConverter(app));
  return std::make_unique<CodeBinding>(app, std::move(target), std::move(code));
}

BindingPtr codeBinding(App& app, Variable& variable, CodeOf code) {
  auto target = variableBinding(variable, idConverter(app));
  return std::make_unique<CodeBinding>(app, std::move(target), std::move(code));
}

BindingPtr pickedCode(App& app, BindingPtr text, CodeOf code) {
  return pickedBinding(std::move(text), [&app, code = std::move(code)](std::string_view typed, const Value& data) {
    const std::string begin = typed.empty() && !data.isNull() ? data.asText() : std::string(typed);
    const Value key = typed.empty() ? app.lookUp(code.table).lookup(code.shownField, {data}, code.idField) : Value();
    const std::optional<Value> id = picked(app, code, key, key.isNull() ? begin : "");
    return id ? std::optional(app.lookUp(code.table).lookup(code.idField, {*id}, code.shownField)) : std::nullopt;
  });
}

}  // namespace quillon::form
