// The chart of accounts, and by a chooser each of the three lists of subaccounts, in one grid.
//
// Keeps: an account or subaccount that anything refers to is not deleted.
#include <array>
#include <cmath>

#include "form/App.h"
#include "form/Grid.h"
#include "form/ListScreen.h"
#include "form/Transaction.h"
#include "form/UsedBy.h"
#include "ledger/Accounts.h"
#include "ledger/MakeScreens.h"
#include "shell/Session.h"
#include "store/Database.h"
#include "store/Query.h"

namespace quillon::ledger {
namespace {

using form::UsedBy;
using store::Value;

class TfrmGLAccounts final : public form::ListScreen {
 public:
  explicit TfrmGLAccounts(shell::Session& session);

 private:
  void build(form::Layout& layout) override;
  std::string title() override { return isMain() ? ListScreen::title() : "GL Accounts"; }
  void requireUnusedAccount();
  void requireUnusedSubaccount();
  void cboSubaccountChange();
  void mnuNewClick() override;
  void mnuEditClick() override;
  void mnuDeleteClick() override;
  void mnuFindClick() override;
  void mnuFilterClick() override;
  void mnuTotalsClick();
  void mnuHistoryClick();
  void mnuBudgetClick();
  void btnSubaccountsClick();
  void find(const std::string& typed) override;
  form::Table& rows() const override { return *tables()[static_cast<std::size_t>(level())]; }

  std::string keyField() const override { return isMain() ? "GLAccountID" : "SubAccountID"; }
  void shown(const form::Open& open) override;
  void closed() override;

  int level() const { return cboSubaccount.value.asInt(); }
  bool isMain() const { return level() == 0; }
  void sort(const char* main, const char* sub) { rows().setIndex(isMain() ? main : sub); }
  void mnuPrintClick();
  void later(const std::string& what);
  std::vector<std::unique_ptr<form::Control>> levelColumns(form::Layout& l);
  void refuseTotals(const std::string& field, const std::string& name, const std::string& kind);
  void removeEmptyTotals(const std::string& field);

  form::Table tblGLAccnt{*this, "GLAccnt"};
  form::Table tblGLAcSub1{*this, "GLAcSub1"};
  form::Table tblGLAcSub2{*this, "GLAcSub2"};
  form::Table tblGLAcSub3{*this, "GLAcSub3"};
  form::Variable cboSubaccount{.value = Value(0)};
  int askedLevel_ = 0;
  form::Control* grid_ = nullptr;
};

// In the order in which they are asked.
const std::array<UsedBy, 16> kAccountUsers = {{
    {"GLBudget", "GLAccountID", "Budget data exists for this account"},
    {"GLHist", "GLAccountID", "GL History exists for this account"},
    {"JVDet", "GLAccountID", "JV(s) exist for this account"},
    {"APInvDet", "GLAccountID", "AP Invoice(s) exist for this account"},
    {"ARInvPmt", "WriteOffGLAccountID", "AR Payment(s) exist for this account"},
    {"Item", "SalesGLAccountID", "Item(s) exist for this account"},
    {"Item", "COGSGLAccountID", "Item(s) exist for this account"},
    {"Item", "InventoryGLAccountID", "Item(s) exist for this account"},
    {"Tax", "TaxGLAccountID", "Tax(s) exist for this account"},
    {"Currency", "DfltWriteOffGLAccountID", "Currency(s) exist for this account"},
    {"Currency", "APGLAccountID", "Currency(s) exist for this account"},
    {"Currency", "GainLossExchangeGLAccntID", "Currency(s) exist for this account"},
    {"Currency", "APDiscGLAccountID", "Currency(s) exist for this account"},
    {"Currency", "ARGLAccountID", "Currency(s) exist for this account"},
    {"Currency", "ARDiscGLAccountID", "Currency(s) exist for this account"},
    {"Bank", "BankGLAccountID", "Bank(s) exist for this account"},
}};

const std::array<UsedBy, 3> kCompanyAccounts = {{
    {"Company", "DfltSalesGLAccountID", "Your Company uses this account (Default Sales GL Account)"},
    {"Company", "DfltCOGSGLAccountID", "Your Company uses this account (Default Cost of Goods Sold GL Account)"},
    {"Company", "DfltInventoryGLAccountID", "Your Company uses this account (Default Inventory GL Account)"},
}};

std::vector<UsedBy> subaccountUsers(int level) {
  const std::string sub = "SubAccount" + std::to_string(level) + "ID";
  return {{"GLBudget", sub, "Budget data exists for this subaccount"},
          {"GLHist", sub, "GL History exists for this subaccount"},
          {"JVDet", sub, "JV(s) exist for this subaccount"},
          {"APInvDet", sub, "AP Invoice(s) exist for this subaccount"},
          {"ARInvPmt", "WriteOff" + sub, "AR Payment(s) exist for this subaccount"},
          {"Item", "Inventory" + sub, "Item(s) exist for this subaccount"},
          {"Item", "COGS" + sub, "Item(s) exist for this subaccount"},
          {"Item", "Sales" + sub, "Item(s) exist for this subaccount"}};
}

// The year's total of a row of GLActual.
std::string yearTotal() {
  std::string sum = "COALESCE(OpeningBal, 0)";
  for (int period = 1; period <= 12; ++period) sum += " + COALESCE(Amount" + std::to_string(period) + ", 0)";
  return "(" + sum + ")";
}

TfrmGLAccounts::TfrmGLAccounts(shell::Session& session)
    : ListScreen(session.app(), {.title = "GL Accounts",
                                 .record = "TfrmGLAccount",
                                 .key = "GLAccountID",
                                 .filterScreen = "TfrmGLAccountsFilter",
                                 .find = "TfrmGLAccountSearch"}) {
  cboSubaccount.change = [this](const Value&) { cboSubaccountChange(); };
}

void TfrmGLAccounts::build(form::Layout& l) {
  tblGLAccnt.setIndex("GLAccount");
  for (form::Table* table : {&tblGLAcSub1, &tblGLAcSub2, &tblGLAcSub3}) table->setIndex("SubAccount");
  form::Control& edit = editMenu(l);
  form::Control& print = l.entry("mnuPrint", "&Print...", &TfrmGLAccounts::mnuPrintClick);
  form::Control& totals = l.entry("mnuTotals", "&Totals", &TfrmGLAccounts::mnuTotalsClick);
  form::Control& history = l.entry("mnuHistory", "&History", &TfrmGLAccounts::mnuHistoryClick);
  form::Control& budget = l.entry("mnuBudget", "&Budget", &TfrmGLAccounts::mnuBudgetClick);
  form::Control& byNo =
      l.entry("mnuSortAccountNo", "Account &no.", [this] { sort("GLAccount", "SubAccount"); }).checkedWhen([this] {
        return rows().indexName() == (isMain() ? "GLAccount" : "SubAccount");
      });
  form::Control& byName =
      l.entry("mnuSortName", "&Name", [this] { sort("AccountName1", "SubAccountName1"); }).checkedWhen([this] {
        return rows().indexName() == (isMain() ? "AccountName1" : "SubAccountName1");
      });
  l.row(edit, l.menu("&View", totals, history, budget, print), l.menu("&Sort by", byNo, byName));
  form::Control& level = l.chooser(
      "cboSubaccount", "", cboSubaccount,
      form::choicesConverter(
          {{Value(0), "Main"}, {Value(1), "Subaccount 1"}, {Value(2), "Subaccount 2"}, {Value(3), "Subaccount 3"}}));
  l.row(level, l.button("btnSubaccounts", "...", &TfrmGLAccounts::btnSubaccountsClick));
  grid_ = &listGrid(l, levelColumns(l));
}

std::vector<std::unique_ptr<form::Control>> TfrmGLAccounts::levelColumns(form::Layout& l) {
  if (!isMain())
    return l.columns(l.column("Account no.", rows()["SubAccount"]), l.column("Name", rows()["SubAccountName"]));
  return l.columns(l.column("Account no.", rows()["GLAccount"]), l.column("Name", rows()["AccountName"]),
                   l.column("Type", rows()["AccountType"], accountTypes()));
}

void TfrmGLAccounts::mnuPrintClick() {
  if (!isMain()) return later("Subaccounts Print");
  app().preview("TrptGLAccounts", asShown());
}

// What subaccounts do not have yet says so.
void TfrmGLAccounts::later(const std::string& what) {
  app().person().show(form::Tone::information, "\"" + what + "\" may be added in a future version.");
}

void TfrmGLAccounts::cboSubaccountChange() {
  if (cboSubaccount.value.isNull()) cboSubaccount.value = Value(0);
  form::Layout layout(*this);
  rows().refresh();
  grid_->grid()->show(rows(), levelColumns(layout));
}

void TfrmGLAccounts::btnSubaccountsClick() { later("Customizable subaccount titles"); }

void TfrmGLAccounts::shown(const form::Open& open) {
  if (const auto wanted = open.values.find("level"); wanted != open.values.end()) cboSubaccount.set(wanted->second);
  askedLevel_ = level();
  ListScreen::shown(open);
}

// A row of another level than was asked for says nothing to a picker.
void TfrmGLAccounts::closed() {
  if (level() == askedLevel_) ListScreen::closed();
}

void TfrmGLAccounts::mnuNewClick() {
  if (isMain()) return ListScreen::mnuNewClick();
  app().open("TfrmGLAccountSub", {.newRow = true, .values = {{"level", Value(level())}}});
}

void TfrmGLAccounts::mnuEditClick() {
  if (isMain()) return ListScreen::mnuEditClick();
  requireRow();
  app().open("TfrmGLAccountSub",
             {.locate = {{keyField(), rows().value(keyField())}}, .values = {{"level", Value(level())}}});
}

void TfrmGLAccounts::mnuFindClick() { isMain() ? find("") : later("Subaccounts Find"); }
void TfrmGLAccounts::mnuFilterClick() { isMain() ? ListScreen::mnuFilterClick() : later("Subaccounts Filter"); }

void TfrmGLAccounts::mnuTotalsClick() {
  if (!isMain()) return later("GL Totals filtered by selected subaccount");
  requireRow();
  app().open("TfrmGLBalances", {.filter = totalsClause(rows().value("GLAccountID"))});
}

void TfrmGLAccounts::mnuBudgetClick() {
  if (!isMain()) return later("GL Budget filtered by selected subaccount");
  requireRow();
  app().open("TfrmGLBudget", {.filter = totalsClause(rows().value("GLAccountID"))});
}

void TfrmGLAccounts::mnuHistoryClick() {
  if (!isMain()) return later("GL History filtered by selected subaccount");
  requireRow();
  app().open("TfrmGLHistory", {.filter = accountClause(rows().value("GLAccountID"))});
}

void TfrmGLAccounts::find(const std::string& typed) {
  if (!isMain()) return later("Subaccounts Find");
  form::Open open{.title = "Find Account"};
  open.values["text"] = Value(typed);
  open.values["index"] = Value(rows().indexName());
  open.values["key"] = rows().isEmpty() ? Value() : rows().value("GLAccountID");
  const form::Result found = app().runModal("TfrmGLAccountSearch", open);
  if (!found.confirmed) return;
  if (!isMain()) cboSubaccount.set(Value(0));  // turned in the list that the picker led to
  const Value id = found.values.at("key");
  if (rows().locate("GLAccountID", {id})) return;
  form::refuse("'" + app().lookUp("GLAccnt").lookup("GLAccountID", {id}, "GLAccount").asText() + "' not found in list");
}

void TfrmGLAccounts::refuseTotals(const std::string& field, const std::string& name, const std::string& kind) {
  const std::string total = yearTotal();
  store::Query qryGLActual(database(), "SELECT GLAccountID FROM GLActual WHERE " + field + " = :id AND (" + total +
                                           " < -0.0000001 OR " + total + " > 0.0000001) TOP 1");
  qryGLActual.setParameter("id", rows().value(keyField()));
  qryGLActual.open();
  if (!qryGLActual.isEmpty()) form::refuseDelete(name, "GL Totals data exists for this " + kind);
}

// Rows of totals that come to nothing do not keep an account: they go with it, or neither goes.
void TfrmGLAccounts::mnuDeleteClick() {
  requireRow();
  isMain() ? requireUnusedAccount() : requireUnusedSubaccount();
  // Whoever edits the row is met here, where nobody waits for the tables.
  rows().edit();
  rows().cancel();
  form::transact(database(), {rows().definition().name, "GLActual"}, [this] {
    removeEmptyTotals(isMain() ? "GLAccountID" : subaccountField(level()));
    rows().remove();
  });
}

void TfrmGLAccounts::removeEmptyTotals(const std::string& field) {
  const std::string total = yearTotal();
  store::Query qryGLActualDel(database(), "DELETE FROM GLActual WHERE " + field + " = :id AND " + total +
                                              " > -0.0000001 AND " + total + " < 0.0000001");
  qryGLActualDel.setParameter("id", rows().value(keyField()));
  qryGLActualDel.execute();
}

void TfrmGLAccounts::requireUnusedAccount() {
  const std::string name = tblGLAccnt["GLAccount"].asText() + ": " + tblGLAccnt["AccountName"].asText();
  if (!app().person().confirm("Delete '" + name + "'?")) form::abort();
  const Value id = tblGLAccnt.value("GLAccountID");
  refuseTotals("GLAccountID", name, "account");
  form::refuseIfUsed(database(), kAccountUsers, id, name);
  form::refuseIfUsed(database(), kCompanyAccounts, id, name);
}

void TfrmGLAccounts::requireUnusedSubaccount() {
  const std::string name = rows()["SubAccount"].asText() + ": " + rows()["SubAccountName"].asText();
  if (!app().person().confirm("Delete '" + name + "'?")) form::abort();
  refuseTotals(subaccountField(level()), name, "subaccount");
  form::refuseIfUsed(database(), subaccountUsers(level()), rows().value("SubAccountID"), name);
}

}  // namespace

ScreenPtr makeGLAccounts(shell::Session& session) { return std::make_unique<TfrmGLAccounts>(session); }

}  // namespace quillon::ledger
