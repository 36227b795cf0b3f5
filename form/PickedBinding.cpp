// What is typed, or picked on a screen that opens when it is asked for.
#include "base/Errors.h"
#include "form/App.h"
#include "form/Binding.h"

namespace quillon::form {
namespace {

using store::Value;

class PickedBinding final : public Binding {
 public:
  PickedBinding(BindingPtr typed, Pick pick) : typed_(std::move(typed)), pick_(std::move(pick)) {}

  std::string text() override { return typed_->text(); }
  std::string editText() override { return typed_->editText(); }
  Value data() override { return typed_->data(); }
  void begin() override { typed_->begin(); }
  void take(std::string_view typed) override { typed_->take(typed); }
  void put(const Value& value) override { typed_->put(value); }
  store::Cursor* cursor() const override { return typed_->cursor(); }
  std::string_view field() const override { return typed_->field(); }
  int width() const override { return typed_->width(); }

  bool hasPicker() const override { return true; }
  bool picksAsTyped() const override { return false; }
  bool pick(std::string_view begin, bool /*asItStands*/) override {
    const std::optional<Value> picked = pick_(begin, data());
    if (picked) put(*picked);
    return picked.has_value();
  }

 private:
  BindingPtr typed_;
  Pick pick_;
};

// What is typed, where it is a date already; else what the field holds.
Value dayOf(App& app, std::string_view typed, const Value& held) {
  try {
    const Value day = dateConverter(app.formats())->read(typed);
    return day.isNull() ? held : day;
  } catch (const Error&) {
    return held;
  }
}

}  // namespace

BindingPtr pickedBinding(BindingPtr typed, Pick pick) {
  return std::make_unique<PickedBinding>(std::move(typed), std::move(pick));
}

BindingPtr pickedDate(App& app, BindingPtr date) {
  if (app.calendar.empty()) return date;
  return pickedBinding(std::move(date), [&app](std::string_view typed, const Value& day) -> std::optional<Value> {
    const Result result = app.runModal(app.calendar, {.values = {{"date", dayOf(app, typed, day)}}});
    return result.confirmed ? std::optional(result.values.at("date")) : std::nullopt;
  });
}

}  // namespace quillon::form
