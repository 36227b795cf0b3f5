// GL totals: of each account, and of each combination of subaccounts that was posted to, the opening balance and the
// change in each period of a year. An account without any has a row, too.
//
// The list itself holds only which rows there are, and in which order: names and amounts are looked up for the rows
// that are shown or saved, so that years of totals open at once.
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
constexpr const char* kKey = "GLAccountID;SubAccount1ID;SubAccount2ID;SubAccount3ID;GLYear";
constexpr const char* kByName = "g.AccountName, s1.SubAccountName, s2.SubAccountName, s3.SubAccountName, a.GLYear";

class TfrmGLBalances final : public form::QueryListScreen {
 public:
  explicit TfrmGLBalances(shell::Session& session);

 private:
  void build(form::Layout& layout) override;
  std::string statement(const std::string& condition) const override;
  void find(const std::string& typed) override;
  void lookUpRow();
  void mnuHistoryClick();
  void mnuExportClick();
  std::vector<std::unique_ptr<form::Control>> columns(form::Layout& l);
  form::Control& sortBy(form::Layout& l, std::string name, std::string caption, const char* order);
  std::string names() const;
  Money totalChange() const;

  const char* order_ = kByNumber;
};

std::string periodField(int period) { return "Period" + std::to_string(period); }
std::string subField(int level) { return "Sub" + std::to_string(level); }

TfrmGLBalances::TfrmGLBalances(shell::Session& session)
    : QueryListScreen(session.app(), {.title = "GL Totals",
                                      .record = {},
                                      .key = kKey,
                                      .filterScreen = "TfrmGLBalancesFilter",
                                      .find = "TfrmGLAccountSearch"}) {
  using store::FieldType;
  rows().addCalculated({.name = "GLAccount"});
  rows().addCalculated({.name = "AccountName"});
  rows().addCalculated({.name = "AccountType", .type = FieldType::smallint});
  for (int level = 1; level <= kSubaccountLevels; ++level) {
    rows().addCalculated({.name = subField(level)});
    rows().addCalculated({.name = subField(level) + "Name"});
  }
  rows().addCalculated({.name = "OpeningBal", .type = FieldType::currency});
  for (int period = 1; period <= kPeriods; ++period)
    rows().addCalculated({.name = periodField(period), .type = FieldType::currency});
  rows().events.onCalculate = [this] { lookUpRow(); };
}

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
    all.push_back(l.shownColumn("Amount" + number, "Period " + number, field(periodField(period)), money, 14));
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
  std::string text = "SELECT g.GLAccountID, a.GLYear";
  std::string joins = " FROM GLAccnt g LEFT OUTER JOIN GLActual a ON a.GLAccountID = g.GLAccountID";
  for (int level = 1; level <= kSubaccountLevels; ++level) {
    const std::string s = "s" + std::to_string(level), id = "a." + subaccountField(level);
    text += ", " + id;
    joins += " LEFT OUTER JOIN " + subaccountTable(level) + " " + s + " ON " + s + ".SubAccountID = " + id;
  }
  return text + joins + (condition.empty() ? "" : " WHERE " + condition) + " ORDER BY " + order_;
}

void TfrmGLBalances::lookUpRow() {
  const auto take = [this](const std::string& table, const char* key, const std::vector<Value>& values,
                           const std::vector<std::pair<std::string, std::string>>& fields) {
    if (values.back().isNull()) return;
    std::string names;
    for (const auto& [from, to] : fields) names += (names.empty() ? "" : ";") + from;
    const std::vector<Value> row = app().lookUp(table).lookupAll(key, values, names);
    for (std::size_t i = 0; i < row.size(); ++i) rows().setCalculated(fields[i].second, row[i]);
  };
  const Value account = value("GLAccountID");
  take("GLAccnt", "GLAccountID", {account},
       {{"GLAccount", "GLAccount"}, {"AccountName", "AccountName"}, {"AccountType", "AccountType"}});
  std::vector<Value> key = {account};
  for (int level = 1; level <= kSubaccountLevels; ++level) {
    key.push_back(rows().value(subaccountField(level)));
    take(subaccountTable(level), "SubAccountID", {key.back()},
         {{"SubAccount", subField(level)}, {"SubAccountName", subField(level) + "Name"}});
  }
  key.push_back(value("GLYear"));
  std::vector<std::pair<std::string, std::string>> amounts = {{"OpeningBal", "OpeningBal"}};
  for (int period = 1; period <= kPeriods; ++period)
    amounts.emplace_back("Amount" + std::to_string(period), periodField(period));
  take("GLActual", kKey, key, amounts);
}

std::string TfrmGLBalances::names() const {
  std::string all;
  for (const char* field : {"AccountName", "Sub1Name", "Sub2Name", "Sub3Name"})
    if (const Value name = value(field); !name.isNull()) all += (all.empty() ? "" : " - ") + name.asText();
  return all;
}

Money TfrmGLBalances::totalChange() const {
  Money sum;
  for (int period = 1; period <= kPeriods; ++period) sum += value(periodField(period).c_str()).asMoney();
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
