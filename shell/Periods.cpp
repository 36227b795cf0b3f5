#include "shell/Periods.h"

#include "form/App.h"
#include "form/Converter.h"
#include "shell/Session.h"
#include "store/Cursor.h"

namespace quillon::shell {
namespace {

struct Limits {
  int from, to;
  bool holds(Period period) const { return period.key() >= from && (to < 1 || period.key() <= to); }
};

Limits limitsOf(store::Cursor& company, const std::string& kind) {
  const auto limit = [&](const char* end) {
    return company[kind + "Period" + end + "YYYY"].asInt() * 100 + company[kind + "Period" + end + "PP"].asInt();
  };
  return {limit("From"), limit("To")};
}

}  // namespace

std::string periodText(Period period) {
  return std::to_string(period.number) + "/" + form::twoDigitYearConverter()->show(store::Value(period.year));
}

Period defaultPeriod(Session& session) {
  store::Cursor& company = session.tblCompany();
  company.refresh();
  const Date today = session.app().today();
  const int number = company["DefaultPeriodPP"].asInt(), year = company["DefaultPeriodYYYY"].asInt();
  return {year > 0 ? year : today.year(), number > 0 ? number : static_cast<int>(today.month())};
}

void requireOpenPeriod(Session& session, Period period, const form::Place& place) {
  store::Cursor& company = session.tblCompany();
  company.refresh();
  const int fiscalYear = company["FiscalYear"].asInt();
  if (fiscalYear == 0) form::refuse("Current fiscal year is not yet defined...\rSee \"Your Company\"", place);
  if (period.year < fiscalYear)
    form::refuse("GL Period is prior to current fiscal year \ras defined by \"Your Company\"", place);
  if (!limitsOf(company, "E").holds(period))
    form::refuse("GL Period is not within allowed range \ras defined by \"Your Company\"", place);
  if (limitsOf(company, "W").holds(period)) return;
  const form::Button answer =
      session.app().person().ask({.tone = form::Tone::warning,
                                  .text = "GL Period is not within expected range \ras defined by \"Your Company\".",
                                  .buttons = {form::Button::ok, form::Button::cancel},
                                  .standard = form::Button::cancel,
                                  .caption = "Warning"});
  if (answer != form::Button::ok) form::abort(place);
}

}  // namespace quillon::shell
