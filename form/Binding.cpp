#include "form/Binding.h"

#include "base/Errors.h"
#include "store/Cursor.h"

namespace quillon::form {
namespace {

using store::Value;

class FieldBinding final : public Binding {
 public:
  FieldBinding(store::Cursor& cursor, std::string field, ConverterPtr converter)
      : cursor_(cursor), field_(std::move(field)), converter_(std::move(converter)) {}

  std::string text() override { return converter_->show(data()); }
  std::string editText() override { return converter_->edit(data()); }
  Value data() override { return cursor_.isOpen() ? cursor_.value(field_) : Value(); }
  void begin() override { cursor_.edit(); }
  void take(std::string_view typed) override { put(converter_->read(typed)); }
  void put(const Value& value) override {
    if (!cursor_.isEditing()) cursor_.edit();
    // The record is locked now, unless whoever was asked about it gave up.
    if (cursor_.isEditing()) cursor_[field_] = value;
  }
  Choices choices() override { return converter_->choices(); }
  bool alignsRight() const override { return converter_->alignsRight(); }
  std::size_t decimals() const override { return converter_->decimals(); }
  store::Cursor* cursor() const override { return &cursor_; }
  std::string_view field() const override { return field_; }
  int width() const override {
    using store::FieldType;
    if (converter_->width() > 0) return converter_->width();
    switch (const store::FieldDef& definition = cursor_[field_].definition(); definition.type) {
      case FieldType::smallint:
        return 6;
      case FieldType::integer:
      case FieldType::autoInc:
        return 8;
      case FieldType::floating:
        return 12;
      case FieldType::currency:
        return 14;
      case FieldType::date:
        return 10;
      case FieldType::boolean:
        return 3;
      default:
        return definition.size;
    }
  }

 private:
  store::Cursor& cursor_;
  std::string field_;
  ConverterPtr converter_;
};

class TickBinding final : public Binding {
 public:
  TickBinding(store::Cursor& cursor, std::string field) : cursor_(cursor), field_(std::move(field)) {}

  std::string text() override { return converter_->show(data()); }
  Value data() override { return cursor_.isOpen() ? cursor_.value(field_) : Value(); }
  void take(std::string_view typed) override { put(converter_->read(typed)); }
  void put(const Value& value) override {
    if (cursor_.isEmpty() || data().asBool() == value.asBool()) return;
    cursor_.edit();
    try {
      cursor_[field_] = value.asBool();
      cursor_.post();
    } catch (...) {
      cursor_.cancel();
      throw;
    }
  }
  std::string_view field() const override { return field_; }
  int width() const override { return 3; }
  bool ticks() const override { return true; }

 private:
  store::Cursor& cursor_;
  std::string field_;
  ConverterPtr converter_ = yesNoConverter();
};

class VariableBinding final : public Binding {
 public:
  VariableBinding(Variable& variable, ConverterPtr converter) : variable_(variable), converter_(std::move(converter)) {}

  std::string text() override { return converter_->show(variable_.value); }
  std::string editText() override { return converter_->edit(variable_.value); }
  Value data() override { return variable_.value; }
  void take(std::string_view typed) override { put(converter_->read(typed)); }
  void put(const Value& value) override { variable_.set(value); }
  Choices choices() override { return converter_->choices(); }
  bool alignsRight() const override { return converter_->alignsRight(); }
  std::size_t decimals() const override { return converter_->decimals(); }
  int width() const override { return converter_->width(); }

 private:
  Variable& variable_;
  ConverterPtr converter_;
};

class ShownBinding final : public Binding {
 public:
  ShownBinding(std::function<std::string()> text, std::function<Value()> value, ConverterPtr converter)
      : text_(std::move(text)), value_(std::move(value)), converter_(std::move(converter)) {}
  std::string text() override { return converter_ ? converter_->show(value_()) : text_(); }
  Value data() override { return value_ ? value_() : Value(text_()); }
  void take(std::string_view /*typed*/) override { put({}); }
  void put(const Value& /*value*/) override { throw Error("This is worked out and cannot be typed"); }
  bool alignsRight() const override { return converter_ && converter_->alignsRight(); }
  std::size_t decimals() const override { return converter_ ? converter_->decimals() : 0; }

 private:
  std::function<std::string()> text_;
  std::function<Value()> value_;
  ConverterPtr converter_;  // of the value; null where only a text is shown
};

}  // namespace

void Variable::set(const Value& next) {
  if (validate) validate(next);
  const Value old = std::exchange(value, next);
  if (change) change(old);
}

BindingPtr fieldBinding(store::Cursor& cursor, std::string field, ConverterPtr converter) {
  return std::make_unique<FieldBinding>(cursor, std::move(field), std::move(converter));
}

BindingPtr tickBinding(store::Cursor& cursor, std::string field) {
  return std::make_unique<TickBinding>(cursor, std::move(field));
}

BindingPtr variableBinding(Variable& variable, ConverterPtr converter) {
  return std::make_unique<VariableBinding>(variable, std::move(converter));
}

BindingPtr shownBinding(std::function<std::string()> text) {
  return std::make_unique<ShownBinding>(std::move(text), nullptr, nullptr);
}

BindingPtr shownBinding(std::function<Value()> value, ConverterPtr converter) {
  return std::make_unique<ShownBinding>(nullptr, std::move(value), std::move(converter));
}

}  // namespace quillon::form
