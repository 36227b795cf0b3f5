// Dates that are typed, or picked from the program's calendar.
#include "form/App.h"
#include "form/Binding.h"

namespace quillon::form {
namespace {

using store::Value;

class DateBinding final : public Binding {
 public:
  DateBinding(App& app, BindingPtr date) : app_(app), date_(std::move(date)) {}

  std::string text() override { return date_->text(); }
  std::string editText() override { return date_->editText(); }
  Value data() override { return date_->data(); }
  void begin() override { date_->begin(); }
  void take(std::string_view typed) override { date_->take(typed); }
  void put(const Value& value) override { date_->put(value); }
  store::Cursor* cursor() const override { return date_->cursor(); }
  std::string_view field() const override { return date_->field(); }
  int width() const override { return date_->width(); }

  bool hasPicker() const override { return !app_.calendar.empty(); }
  bool picksAsTyped() const override { return false; }
  bool pick(std::string_view /*begin*/, bool /*asItStands*/) override {
    Open open;
    open.values["date"] = data();
    const Result result = app_.runModal(app_.calendar, open);
    if (!result.confirmed) return false;
    put(result.values.at("date"));
    return true;
  }

 private:
  App& app_;
  BindingPtr date_;
};

}  // namespace

BindingPtr pickedDate(App& app, BindingPtr date) { return std::make_unique<DateBinding>(app, std::move(date)); }

}  // namespace quillon::form
