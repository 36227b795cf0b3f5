#include "reports/LauncherScreen.h"

#include "form/Converter.h"
#include "form/Place.h"
#include "reports/Report.h"

namespace quillon::reports {

using form::refuse;
using store::Value;

namespace {

form::Choices namesOf(const std::vector<Launched>& reports) {
  form::Choices all;
  for (std::size_t i = 0; i < reports.size(); ++i) all.emplace_back(static_cast<int>(i), reports[i].name);
  return all;
}

}  // namespace

std::string periodWords(const Value& year, const Value& period) {
  if (period.isNull()) return "Period: All " + year.toText();
  return (period.asInt() < 10 ? "Period: 0" : "Period: ") + period.toText() + "/" + year.toText();
}

LauncherScreen::LauncherScreen(form::App& app, std::string caption, std::vector<Launched> reports)
    : Screen(app), caption_(std::move(caption)), reports_(std::move(reports)) {
  report_.value = Value(0);
}

const Launched& LauncherScreen::chosen() const {
  return reports_.at(report_.value.isNull() ? 0 : static_cast<std::size_t>(report_.value.asInt()));
}

form::Control& LauncherScreen::option(unsigned bit, form::Control& control) {
  const auto asked = [this, bit] { return asks(bit); };
  for (const auto& part : control.children()) part->visibleWhen(asked);
  options_.push_back(&control.visibleWhen(asked));
  return control;
}

void LauncherScreen::build(form::Layout& l) {
  form::Control& reports =
      l.group("Choose a report.", l.list("lboReports", "", report_, form::choicesConverter(namesOf(reports_)))
                                      .opens([this] { btnNextClick(); })
                                      .high(static_cast<int>(std::max<std::size_t>(reports_.size(), 6)))
                                      .wide(44));
  options_.push_back(&l.label("lblReportTitle", [this] { return std::string(chosen().name); }));
  option(kPeriod, l.row(l.edit("editGLPeriod", "Pe&riod:", period_,
                               form::wholeConverter(app().formats(), 1, 12, "Period must be between 1 and 12"))
                            .wide(2),
                        l.edit("editGLYear", "/", year_,
                               form::twoDigitYearConverter("Period invalid...\rEnter year as 2 digits"))
                            .wide(2)));
  option(kAsOf, l.date("editAsOfDate", "Report &As Of Date:", asOf_));
  option(kDates, l.row(l.date("editDateFrom", "Date &from:", dateFrom_), l.date("editDateTo", "to:", dateTo_)));
  buildOptions(l);
  form::Control& options = l.groupOf("", options_).named("PanelOptions");
  std::vector<form::Control*> pages = {&reports, &options};
  if (form::Control* between = buildBetween(l)) pages.push_back(between);
  steps_ = &l.stepsOf(pages);
  const auto next = [this] { return std::string(step() == kOptions ? "&Preview" : "&Next >"); };
  l.row(l.button("btnBack", "< &Back", [this] { btnBackClick(); }).enabledWhen([this] { return step() != kReports; }),
        l.button("btnNext", "", [this] { btnNextClick(); }).caption(next).standard(),
        l.button("btnClose", "Close", [this] { setResult(false); }).abandons());
}

void LauncherScreen::shown(const form::Open& /*open*/) {
  const Date today = app().today();
  if (year_.value.isNull()) year_.value = Value(today.year());
  for (form::Variable* date : {&asOf_, &dateTo_})
    if (date->value.isNull()) date->value = Value(today);
  turnTo(kReports);
}

void LauncherScreen::turnTo(Step step) {
  steps_->page = step;
  if (step == kOptions) reachOptions();
  if (step == kBetween) reachBetween();
  focusFirst();
  if (focused() == nullptr || focused()->kind() == form::Kind::button) setFocus(find("btnNext"));
}

void LauncherScreen::btnBackClick() { turnTo(step() == kOptions && hasBetween() ? kBetween : kReports); }

void LauncherScreen::btnNextClick() {
  switch (step()) {
    case kReports:
      return turnTo(hasBetween() ? kBetween : kOptions);
    case kBetween:
      leaveBetween();
      return turnTo(kOptions);
    case kOptions:
      return preview();
  }
}

void LauncherScreen::preview() {
  form::Open open;
  if (asks(kPeriod)) fillPeriod(open);
  if (asks(kAsOf | kDates)) fillDates(open);
  fill(open);
  app().preview(chosen().report, open);
}

void LauncherScreen::fillPeriod(form::Open& open) const {
  if (year_.value.isNull()) refuse("Period invalid...\rEnter year as 2 digits", form::focus("editGLYear"));
  if (needsPeriod() && period_.value.isNull()) refuse("Period must be between 1 and 12", form::focus("editGLPeriod"));
  open.values["year"] = year_.value;
  open.values["period"] = period_.value;
}

void LauncherScreen::fillDates(form::Open& open) const {
  if (asks(kAsOf)) {
    if (asOf_.value.isNull()) refuse("Report As Of Date must be entered", form::focus("editAsOfDate"));
    open.values["asOf"] = asOf_.value;
  }
  if (!asks(kDates)) return;
  if (!dateFrom_.value.isNull() && !dateTo_.value.isNull() && dateTo_.value.asDate() < dateFrom_.value.asDate())
    refuse("Date to is before date from", form::focus("editDateTo"));
  open.values["dateFrom"] = dateFrom_.value;
  open.values["dateTo"] = dateTo_.value;
}

}  // namespace quillon::reports
