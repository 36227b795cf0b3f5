// Picks a date. Asked for with the value "date" (null: today); confirmed, its result has it too.
#include "form/App.h"
#include "form/Screen.h"
#include "shell/MakeScreens.h"
#include "shell/MonthNames.h"
#include "shell/Session.h"

namespace quillon::shell {
namespace {

using store::Value;

class TfrmCalendar final : public form::Screen {
 public:
  explicit TfrmCalendar(form::App& app);
  std::string title() override { return "Calendar"; }

 private:
  void build(form::Layout& layout) override;
  void shown(const form::Open& open) override;
  void btnPriorMonthClick() { date_.set(date().addMonths(-1)); }
  void btnNextMonthClick() { date_.set(date().addMonths(1)); }
  void btnTodayClick() { date_.set(app().today()); }
  void btnOKClick();
  void btnCancelClick() { setResult(false); }

  Date date() const { return date_.value.isNull() ? app().today() : date_.value.asDate(); }
  std::string monthText() const;

  form::Variable date_;
};

TfrmCalendar::TfrmCalendar(form::App& app) : Screen(app) {
  // A day always stands there.
  date_.change = [this](const Value& old) {
    if (date_.value.isNull()) date_.value = old;
  };
}

void TfrmCalendar::build(form::Layout& l) {
  l.row(l.button("btnPriorMonth", "<", &TfrmCalendar::btnPriorMonthClick).hint("Previous month").key("Ctrl+PgUp"),
        l.label("lblMonth", [this] { return monthText(); }),
        l.button("btnNextMonth", ">", &TfrmCalendar::btnNextMonthClick).hint("Next month").key("Ctrl+PgDn"));
  l.month("monDate", date_).opens([this] { btnOKClick(); });
  l.row(l.label("lblToday", [this] { return "Today: " + form::dateConverter(app().formats())->show(app().today()); }),
        l.button("btnToday", "&Today", &TfrmCalendar::btnTodayClick));
  l.row(l.button("btnOK", "&OK", &TfrmCalendar::btnOKClick).standard(),
        l.button("btnCancel", "&Cancel", &TfrmCalendar::btnCancelClick).abandons());
}

void TfrmCalendar::shown(const form::Open& open) {
  const auto given = open.values.find("date");
  date_.set(given == open.values.end() || given->second.isNull() ? Value(app().today()) : given->second);
}

std::string TfrmCalendar::monthText() const {
  return monthName(static_cast<int>(date().month())) + (", " + date().toIso().substr(0, 4));
}

void TfrmCalendar::btnOKClick() {
  result().values["date"] = date();
  setResult(true);
}

}  // namespace

ScreenPtr makeCalendar(Session& session) { return std::make_unique<TfrmCalendar>(session.app()); }

}  // namespace quillon::shell
