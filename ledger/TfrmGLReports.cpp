// The ledger's standing reports and financial statements. A statement of the company's own is chosen, made and edited
// on a page of its own before the period is asked for.
#include <map>

#include "form/Converter.h"
#include "form/Grid.h"
#include "form/Place.h"
#include "form/Table.h"
#include "form/Transaction.h"
#include "ledger/Accounts.h"
#include "ledger/CheckStatement.h"
#include "ledger/MakeScreens.h"
#include "ledger/RestatedLedger.h"
#include "ledger/StatementDefinition.h"
#include "reports/LauncherScreen.h"
#include "shell/Periods.h"
#include "shell/Session.h"
#include "store/Query.h"

namespace quillon::ledger {
namespace {

using form::refuse;
using store::Value;

class TfrmGLReports final : public reports::LauncherScreen {
 public:
  explicit TfrmGLReports(shell::Session& session);

 private:
  static constexpr unsigned kStyle = kOwn, kRange = 2 * kOwn, kSubaccounts = 4 * kOwn, kForex = 8 * kOwn,
                            kOwnStatement = 16 * kOwn;

  void buildOptions(form::Layout& layout) override;
  form::Control* buildBetween(form::Layout& layout) override;
  bool hasBetween() const override { return asks(kOwnStatement); }
  void reachBetween() override { tblFStmt.refresh(); }  // others may have made or deleted some
  void leaveBetween() override;
  void reachOptions() override;
  void fill(form::Open& open) override;
  bool needsPeriod() const override { return asks(kForex); }
  void shown(const form::Open& open) override;
  void validate();
  std::string format();
  form::Choices styles() const;
  void btnNewClick() { app().open("TfrmFinancialStmt", {.newRow = true}); }
  void btnEditClick();
  void btnDeleteClick();
  void requireStatement();
  void rereadStatement();

  shell::Session& session_;
  form::Table tblFStmt{*this, "FStmt"};
  form::Variable style_, upper_, forex_, validates_;
  std::map<std::string_view, Value> chosenStyles_;  // by report
  Value statement_;                                 // the id of the one that was chosen
  std::array<form::Variable, kSubaccountLevels> subaccounts_;
};

TfrmGLReports::TfrmGLReports(shell::Session& session)
    : LauncherScreen(session.app(), "GL Reports",
                     {{"General Ledger", "TrptGeneralLedger", kPeriod},
                      {"General Ledger Summary", "TrptGeneralLedgerSummary", kPeriod},
                      {"Trial Balance", "TrptTrialBalance", kPeriod},
                      {"Balance Sheet", "TrptFinancialStmt", kPeriod | kStyle | kSubaccounts | kForex},
                      {"Income Statement", "TrptFinancialStmt", kPeriod | kStyle | kRange | kSubaccounts | kForex},
                      {"Custom Financial Statements", "TrptFinancialStmt",
                       kPeriod | kRange | kSubaccounts | kForex | kOwnStatement}}),
      session_(session) {
  forex_.value = validates_.value = Value(false);
}

void TfrmGLReports::buildOptions(form::Layout& l) {
  option(kRange, l.edit("editGLPeriodTo", "&To period:", upper_,
                        form::wholeConverter(app().formats(), 1, 12, "Period must be between 1 and 12"))
                     .wide(2))
      .visibleWhen([this] { return asks(kRange) && showsChanges(format()); });
  style_.change = [this](const Value&) { chosenStyles_[chosen().name] = style_.value; };
  option(kStyle, l.chooser("cboStyle", "&Style:", style_, form::choicesConverter([this] { return styles(); })));
  for (int level = 1; level <= kSubaccountLevels; ++level) {
    const std::string n = std::to_string(level);
    option(kSubaccounts, l.code("editSubAccount" + n, "Subaccount &" + n + ":",
                                subaccounts_[static_cast<std::size_t>(level - 1)], subaccountCode(level)));
  }
  forex_.validate = [this](const Value& next) {
    if (next.asBool() && session_.sampleDataOpen) refuse(kSampleNotRestated, form::focus("chkAutoForex"));
  };
  option(kForex, l.check("chkAutoForex", "&AutoForex", forex_)
                     .hint("Show accounts in foreign currency in domestic currency, at the rates of the periods"));
  option(kOwnStatement, l.check("chkValidate", "&Validate", validates_)
                            .hint("Tell accounts that are missing or occur more than once before it prints"));
}

form::Control* TfrmGLReports::buildBetween(form::Layout& l) {
  tblFStmt.setIndex("StmtTitle1");
  form::Control& grid = l.grid(tblFStmt, l.columns(l.column("Title", tblFStmt["StmtTitle"]),
                                                   l.column("Format", tblFStmt["ColumnFormat"])))
                            .opens([this] { btnEditClick(); });
  return &l.group("Choose a statement.", grid,
                  l.row(l.button("btnNew", "Ne&w...", &TfrmGLReports::btnNewClick).key("Ctrl+N"),
                        l.button("btnEdit", "&Edit...", &TfrmGLReports::btnEditClick),
                        l.button("btnDelete", "&Delete", &TfrmGLReports::btnDeleteClick),
                        l.button("btnRefresh", "&Refresh", [this] { tblFStmt.refresh(); }).key("F5")));
}

void TfrmGLReports::shown(const form::Open& open) {
  const Period period = shell::defaultPeriod(session_);
  if (year_.value.isNull()) year_.value = Value(period.year);
  if (period_.value.isNull()) period_.value = Value(period.number);
  LauncherScreen::shown(open);
}

form::Choices TfrmGLReports::styles() const {
  const bool changes = std::string_view(chosen().name) == "Income Statement";
  form::Choices all;
  for (const std::string_view format : kColumnFormats)
    if (showsChanges(format) == changes) all.emplace_back(Value(format), std::string(format));
  return all;
}

std::string TfrmGLReports::format() {
  if (asks(kOwnStatement)) return tblFStmt.isOpen() && !tblFStmt.isEmpty() ? tblFStmt["ColumnFormat"].asText() : "";
  return style_.value.isNull() ? "" : style_.value.asText();
}

void TfrmGLReports::reachOptions() {
  if (!asks(kStyle)) return;
  const auto before = chosenStyles_.find(chosen().name);
  style_.value = before == chosenStyles_.end() ? styles().front().first : before->second;
}

// The page of statements.

void TfrmGLReports::leaveBetween() {
  if (tblFStmt.isEmpty()) refuse("A statement must be chosen", form::grid(tblFStmt));
  statement_ = tblFStmt.value("StmtID");
}

// As it is now; others may have changed it since it was chosen.
void TfrmGLReports::rereadStatement() {
  tblFStmt.refresh();
  if (!tblFStmt.locate("StmtID", {statement_})) refuse("This statement has been deleted by another user");
}

// As in every list, commands on a row do nothing where there is none.
void TfrmGLReports::requireStatement() {
  if (tblFStmt.isEmpty()) form::abort();
}

void TfrmGLReports::btnEditClick() {
  requireStatement();
  app().open("TfrmFinancialStmt", {.locate = {{"StmtID", tblFStmt.value("StmtID")}}});
}

// The definition goes with its lines, or not at all.
void TfrmGLReports::btnDeleteClick() {
  requireStatement();
  if (!app().person().confirm("Delete '" + tblFStmt["StmtTitle"].asText() + "'?")) form::abort();
  // Under the lock the row is as it is now, and nobody has it open.
  tblFStmt.edit();
  tblFStmt.cancel();
  form::transact(database(), {"FStmt", "FStmtLin", "FStmtLAc", "FStmtLTo"}, [this] {
    for (const char* table : {"FStmtLTo", "FStmtLAc", "FStmtLin"}) {
      store::Query lines(database(), std::string("DELETE FROM ") + table + " WHERE StmtID = :id");
      lines.setParameter("id", tblFStmt.value("StmtID"));
      lines.execute();
    }
    tblFStmt.remove();
  });
}

// What the report gets.

void TfrmGLReports::fill(form::Open& open) {
  if (!asks(kForex)) return;
  if (asks(kOwnStatement)) rereadStatement();
  if (upper_.value.isNull() || !showsChanges(format())) {
    open.values["upperPeriod"] = Value(0);
  } else {
    if (upper_.value.asInt() < period_.value.asInt())
      refuse("To period is before the period", form::focus("editGLPeriodTo"));
    open.values["upperPeriod"] = upper_.value;
  }
  for (int level = 1; level <= kSubaccountLevels; ++level)
    open.values[subaccountField(level)] = subaccounts_[static_cast<std::size_t>(level - 1)].value;
  open.values["autoForex"] = forex_.value;
  open.values["format"] = Value(format());
  open.values["statement"] = Value(std::string(chosen().name));
  if (!asks(kOwnStatement)) return;
  open.values["StmtID"] = statement_;
  if (validates_.value.asBool()) validate();
}

void TfrmGLReports::validate() {
  if (!mayPrintStatement(app(), tblFStmt["StmtID"].asInt())) form::abort();
}

}  // namespace

ScreenPtr makeGLReports(shell::Session& session) { return std::make_unique<TfrmGLReports>(session); }

}  // namespace quillon::ledger
