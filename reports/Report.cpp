#include "reports/Report.h"

#include <algorithm>
#include <charconv>

#include "base/Errors.h"
#include "form/App.h"
#include "form/Screen.h"
#include "shell/MonthNames.h"
#include "shell/Session.h"

namespace quillon::reports {

Report::Report(shell::Session& session) : session_(session), qryMain_(session.app().database(), {}, "qryMain") {}
Report::~Report() = default;

form::App& Report::app() const { return session_.app(); }
store::Database& Report::database() const { return session_.app().database(); }

bool Report::first() {
  qryMain_.open();
  return !qryMain_.isEmpty();
}

bool Report::next() { return qryMain_.next(); }

store::Value Report::value(std::string_view field) { return qryMain_.value(field); }
int Report::positionOf(std::string_view field) { return qryMain_.fieldPosition(field); }
store::Value Report::value(int position) { return qryMain_.field(position).value(); }

void Report::refuseUnasked(const form::Open& open) const {
  const auto found =
      std::ranges::find_if(open.values, [this](const auto& value) { return !asked_.contains(value.first); });
  if (found == open.values.end()) return;
  std::string names = "filter";
  for (const std::string& name : asked_) names += ", " + name;
  throw Error("The report has no '" + found->first + "'; it can be asked for " + names);
}

std::string Report::whereOf(const form::Open& open) { return open.filter.empty() ? "" : " WHERE " + open.filter; }

std::string Report::orderOf(const form::Open& open, const std::string& order) {
  const std::string asked = wordOf(open, "order");
  return " ORDER BY " + (asked.empty() ? order : asked);
}

std::string Report::wordOf(const form::Open& open, const std::string& name) {
  asked_.insert(name);
  const auto found = open.values.find(name);
  return found == open.values.end() || found->second.isNull() ? std::string() : found->second.toText();
}

int Report::numberOf(const form::Open& open, const std::string& name) {
  const std::string text = wordOf(open, name);
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (!text.empty() && (error != std::errc() || end != text.data() + text.size()))
    throw Error("'" + text + "' is not a whole number");
  return number;
}

int Report::periodOf(const form::Open& open) {
  constexpr int kPeriods = 12;
  const int period = numberOf(open, "period");
  if (period < 0 || period > kPeriods) throw Error("Period must be between 1 and " + std::to_string(kPeriods));
  return period;
}

int Report::yearOf(const form::Open& open) {
  return wordOf(open, "year").empty() ? app().today().year() : numberOf(open, "year");
}

std::string longDate(const form::App& app, Date date) {
  const std::string month = std::string(shell::monthName(static_cast<int>(date.month()))).substr(0, 3);
  const std::string day = std::to_string(date.day()), year = std::to_string(date.year());
  if (app.formats().date.order() == DateOrder::monthDayYear) return month + " " + day + ", " + year;
  return (day.size() < 2 ? "0" : "") + day + " " + month + " " + year;
}

}  // namespace quillon::reports
