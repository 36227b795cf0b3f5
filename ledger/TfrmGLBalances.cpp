// GL totals: of each account, and of each combination of subaccounts that was posted to, the opening balance and the
// change in each period of a year. An account without any has a row, too.
#include "form/Grid.h"
#include "form/QueryListScreen.h"
#include "ledger/Accounts.h"
#include "ledger/MakeScreens.h"
#include "ledger/TotalsFile.h"
#include "shell/Session.h"

namespace quillon::ledger {
namespace {

using store::Value;

constexpr const char* kByNumber = "g.GLAccount, s1.SubAccount, s2.SubAccount, s3.SubAccount, a.GLYear";
constexpr const char* kByName = "g.AccountName, s1.SubAccountName, s2.SubAccountName, s3.SubAccountName, a.GLYear";

class TfrmGLBalances final : public form::QueryListScreen {
 public:
  explicit TfrmGLBalances(shell::Session& session)
      : QueryListScreen(session.app(), {.title = "GL Totals",
                                        .record = {},
                                        .key = "GLAccountID;SubAccount1ID;SubAccount2ID;SubAccount3ID;GLYear",
                                        .filterScreen = "TfrmGLBalancesFilter",
                                        .find = "TfrmGLAccountSearch"}) {}

 private:
  void build(form::Layout& layout) override;
  std::string statement(const std::string& condition) const override;
  void find(const std::string& typed) override;
  void mnuHistoryClick();
  void mnuExportClick();
  std::vector<std::unique_ptr<form::Control>> columns(form::Layout& l);
  form::Control& sortBy(form::Layout& l, std::string name, std::string caption, const char* order);
  std::string names() const;
  Money totalChange() const;

  const char* order_ = kByNumber;
};

void TfrmGLBalances::build(form::Layout& l) {
  form::Control& edit = editMenu(l);
  form::Control& history = l.entry("mnuHistory", "&History", &TfrmGLBalances::mnuHistoryClick);
  form::Control& budget = l.entry("mnuBudget", "&Budget", [] {}).disabled();
  form::Control& print = l.entry("mnuPrint", "&Print...", [] {}).disabled();
  form::Control& save = l.entry("mnuExport", "&Export...", &TfrmGLBalances::mnuExportClick);
  l.row(edit, l.menu("&View", history, budget, print, save),
        l.menu("&Sort by", sortBy(l, "mnuSortAccountNo", "Account &no.", kByNumber),
               sortBy(l, "mnuSortName", "&Name", kByName)));
  form::Control& grid = l.grid("grdGLActual", rows(), columns(l)).opens([this] { mnuHistoryClick(); });
  grid.grid()->search = [this](const std::string& typed) { find(typed); };
}

std::vector<std::unique_ptr<form::Control>> TfrmGLBalances::columns(form::Layout& l) {
  const form::ConverterPtr money = form::moneyConverter(app().formats());
  const auto field = [this](std::string name) {
    return std::function<Value()>([this, name = std::move(name)] { return value(name.c_str()); });
  };
  auto all =
      l.columns(l.shownColumn("GLAccount", "Account no.", field("GLAccount"), form::textConverter(0), 10),
                l.shownColumn(
                    "Name", "Name", [this] { return names(); }, 40),
                l.shownColumn("GLYear", "Year", field("GLYear"), form::wholeConverter(app().formats(), 0, 9999), 5),
                l.shownColumn("OpeningBal", "Opening Balance", field("OpeningBal"), money, 15));
  for (int period = 1; period <= kPeriods; ++period) {
    const std::string number = std::to_string(period);
    all.push_back(l.shownColumn("Amount" + number, "Period " + number, field("Period" + number), money, 14));
  }
  all.push_back(l.shownColumn(
      "TotalChange", "Total Change", [this] { return Value(totalChange()); }, money, 15));
  return all;
}

form::Control& TfrmGLBalances::sortBy(form::Layout& l, std::string name, std::string caption, const char* order) {
  const auto sort = [this, order] {
    order_ = order;
    reread();
  };
  return l.entry(std::move(name), std::move(caption), sort).checkedWhen([this, order] { return order_ == order; });
}

std::string TfrmGLBalances::statement(const std::string& condition) const {
  std::string text = "SELECT g.GLAccountID, g.GLAccount, g.AccountName, g.AccountType, a.GLYear, a.OpeningBal";
  for (int period = 1; period <= kPeriods; ++period) {
    const std::string number = std::to_string(period);
    text += ", a.Amount" + number + " AS Period" + number;
  }
  std::string joins = " FROM GLAccnt g LEFT OUTER JOIN GLActual a ON a.GLAccountID = g.GLAccountID";
  for (int level = 1; level <= kSubaccountLevels; ++level) {
    const std::string n = std::to_string(level), s = "s" + n, id = "a." + subaccountField(level);
    text += ", " + id + ", " + s + ".SubAccount AS Sub" + n + ", " + s + ".SubAccountName AS Sub" + n + "Name";
    joins += " LEFT OUTER JOIN " + subaccountTable(level) + " " + s + " ON " + s + ".SubAccountID = " + id;
  }
  return text + joins + (condition.empty() ? "" : " WHERE " + condition) + " ORDER BY " + order_;
}

std::string TfrmGLBalances::names() const {
  std::string all;
  for (const char* field : {"AccountName", "Sub1Name", "Sub2Name", "Sub3Name"})
    if (const Value name = value(field); !name.isNull()) all += (all.empty() ? "" : " - ") + name.asText();
  return all;
}

Money TfrmGLBalances::totalChange() const {
  Money sum;
  for (int period = 1; period <= kPeriods; ++period)
    sum += value(("Period" + std::to_string(period)).c_str()).asMoney();
  return sum;
}

// Commands.

void TfrmGLBalances::find(const std::string& typed) {
  form::Open open{.title = "Find Account"};
  open.values["text"] = Value(typed);
  open.values["index"] = Value(order_ == kByNumber ? "GLAccount" : "AccountName1");
  open.values["key"] = value("GLAccountID");
  const form::Result found = app().runModal("TfrmGLAccountSearch", open);
  if (!found.confirmed) return;
  const Value id = found.values.at("key");
  if (rows().locate("GLAccountID", {id})) return;
  form::refuse("'" + app().lookUp("GLAccnt").lookup("GLAccountID", {id}, "GLAccount").asText() + "' not found in list");
}

void TfrmGLBalances::mnuHistoryClick() {
  requireRow();
  app().open("TfrmGLHistory", {.filter = accountClause(value("GLAccountID"))});
}

void TfrmGLBalances::mnuExportClick() {
  const std::optional<std::string> path = app().person().chooseFile({.title = "Export",
                                                                     .filter = "Text files (*.txt)|*.txt",
                                                                     .name = "GLTotals",
                                                                     .extension = "txt",
                                                                     .saving = true});
  if (!path) form::abort();
  writeTotalsFile(rows(), *path);
}

}  // namespace

ScreenPtr makeGLBalances(shell::Session& session) { return std::make_unique<TfrmGLBalances>(session); }

}  // namespace quillon::ledger
