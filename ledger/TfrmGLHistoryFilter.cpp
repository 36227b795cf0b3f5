// The conditions of the list of GL history.
#include "form/App.h"
#include "form/FilterScreen.h"
#include "ledger/AccountRange.h"
#include "ledger/Accounts.h"
#include "ledger/MakeScreens.h"
#include "ledger/Sources.h"
#include "shell/Session.h"
#include "store/Query.h"

namespace quillon::ledger {
namespace {

using form::focus;
using store::Value;

class TfrmGLHistoryFilter final : public form::FilterScreen {
 public:
  explicit TfrmGLHistoryFilter(shell::Session& session) : FilterScreen(session.app(), "TfrmGLHistory") {
    for (form::Variable* variable : {&accounts_.from, &accounts_.to, &from_.period, &from_.year, &to_.period, &to_.year,
                                     &dateFrom_, &dateTo_, &source_})
      clears(*variable);
  }
  std::string title() override { return "GL History Filter"; }

 private:
  struct Bound {
    const char* end;
    form::Variable period = {}, year = {};
  };

  void build(form::Layout& l) override;
  std::string expression() const override;
  std::string accounts() const;
  form::Control& told(form::Layout& l, std::string caption, Bound& bound);
  static std::string condition(const Bound& bound, const char* comparison);
  static std::string condition(const form::Variable& date, const char* comparison);

  AccountRange accounts_;
  Bound from_{"From"}, to_{"To"};
  form::Variable dateFrom_, dateTo_, source_;
};

void TfrmGLHistoryFilter::build(form::Layout& l) {
  accounts_.told(l);
  form::Control& first = told(l, "&Period from:", from_);
  l.row(first, told(l, "to:", to_));
  form::Control& from = l.date("editDateFrom", "&Date from:", dateFrom_);
  l.row(from, l.date("editDateTo", "to:", dateTo_));
  l.chooser("cboSource", "&Source:", source_, sourceConditions());
  buttons(l);
}

form::Control& TfrmGLHistoryFilter::told(form::Layout& l, std::string caption, Bound& bound) {
  form::Control& period = l.edit(std::string("editPeriod") + bound.end, std::move(caption), bound.period,
                                 form::wholeConverter(app().formats(), 1, 12, "Period must be between 1 and 12"));
  form::Control& year = l.edit(std::string("editYear") + bound.end, "/", bound.year, form::twoDigitYearConverter());
  return l.row(period.wide(2), year.wide(2));
}

std::string TfrmGLHistoryFilter::expression() const {
  return form::allOf({accounts(), condition(from_, ">"), condition(to_, "<"), condition(dateFrom_, ">="),
                      condition(dateTo_, "<="), source_.value.isNull() ? "" : source_.value.asText()});
}

// History knows accounts by their ids.
std::string TfrmGLHistoryFilter::accounts() const {
  const std::string range = accounts_.condition("GLAccount");
  if (range.empty()) return {};
  store::Query accounts(database(), "SELECT GLAccountID FROM GLAccnt WHERE " + range);
  accounts.open();
  if (accounts.recordCount() == 1) return accountClause(accounts.value("GLAccountID"));
  std::string ids;
  for (accounts.first(); !accounts.eof(); accounts.next())
    ids += (ids.empty() ? "" : ", ") + accounts.value("GLAccountID").toText();
  return ids.empty() ? "(GLAccountID IS NULL)" : "(GLAccountID IN (" + ids + "))";
}

std::string TfrmGLHistoryFilter::condition(const Bound& bound, const char* comparison) {
  const Value &period = bound.period.value, &year = bound.year.value;
  if (period.isNull() != year.isNull())
    form::refuse("Period invalid...\rEnter period and year",
                 focus(std::string(period.isNull() ? "editPeriod" : "editYear") + bound.end));
  if (period.isNull()) return {};
  const std::string years = year.toText();
  return "((GLYear " + std::string(comparison) + " " + years + ") OR ((GLYear = " + years + ") AND (GLPeriod " +
         comparison + "= " + period.toText() + ")))";
}

std::string TfrmGLHistoryFilter::condition(const form::Variable& date, const char* comparison) {
  if (date.value.isNull()) return {};
  return std::string("(TransDate ") + comparison + " '" + date.value.toText() + "')";
}

}  // namespace

ScreenPtr makeGLHistoryFilter(shell::Session& session) { return std::make_unique<TfrmGLHistoryFilter>(session); }

}  // namespace quillon::ledger
