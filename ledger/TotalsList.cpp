#include "ledger/TotalsList.h"

#include "form/Grid.h"
#include "ledger/Accounts.h"
#include "ledger/Totals.h"
#include "ledger/TotalsFile.h"
#include "reports/TableFile.h"
#include "shell/Session.h"

namespace quillon::ledger {

using store::Value;

namespace {

form::ListPlan withKey(form::ListPlan plan) {
  plan.key = kTotalsKey;
  plan.find = "TfrmGLAccountSearch";
  return plan;
}

std::string periodField(int period) { return "Period" + std::to_string(period); }
std::string subField(int level) { return "Sub" + std::to_string(level); }

}  // namespace

TotalsList::TotalsList(shell::Session& session, form::ListPlan plan, Rows rows)
    : QueryListScreen(session.app(), withKey(std::move(plan))), rows_(std::move(rows)) {
  using store::FieldType;
  store::Cursor& list = this->rows();
  list.addCalculated({.name = "GLAccount"});
  list.addCalculated({.name = "AccountName"});
  list.addCalculated({.name = "AccountType", .type = FieldType::smallint});
  for (int level = 1; level <= kSubaccountLevels; ++level) {
    list.addCalculated({.name = subField(level)});
    list.addCalculated({.name = subField(level) + "Name"});
  }
  list.addCalculated({.name = "OpeningBal", .type = FieldType::currency});
  for (int period = 1; period <= kPeriods; ++period)
    list.addCalculated({.name = periodField(period), .type = FieldType::currency});
  list.events.onCalculate = [this] { lookUpRow(); };
}

form::Control& TotalsList::totalsGrid(form::Layout& l) {
  form::Control& grid = l.grid("grd" + rows_.table, rows(), columns(l));
  grid.grid()->search = [this](const std::string& typed) { find(typed); };
  return grid;
}

std::vector<std::unique_ptr<form::Control>> TotalsList::columns(form::Layout& l) {
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

form::Control& TotalsList::sortMenu(form::Layout& l) {
  return l.menu("&Sort by", sortBy(l, "mnuSortAccountNo", "Account &no.", true),
                sortBy(l, "mnuSortName", "&Name", false));
}

form::Control& TotalsList::sortBy(form::Layout& l, std::string name, std::string caption, bool byNumber) {
  const auto sort = [this, byNumber] {
    byNumber_ = byNumber;
    reread();
  };
  return l.entry(std::move(name), std::move(caption), sort).checkedWhen([this, byNumber] {
    return byNumber_ == byNumber;
  });
}

std::string TotalsList::statement(const std::string& condition) const {
  const std::string row = rows_.alias + ".";
  std::string text = "SELECT g.GLAccountID, " + row + "GLYear";
  std::string joins = " FROM GLAccnt g LEFT OUTER JOIN " + rows_.table + " " + rows_.alias + " ON " + row +
                      "GLAccountID = g.GLAccountID";
  for (int level = 1; level <= kSubaccountLevels; ++level) {
    const std::string s = "s" + std::to_string(level), id = row + subaccountField(level);
    text += ", " + id;
    joins += " LEFT OUTER JOIN " + subaccountTable(level) + " " + s + " ON " + s + ".SubAccountID = " + id;
  }
  return text + joins + (condition.empty() ? "" : " WHERE " + condition) + " ORDER BY " + order();
}

std::string TotalsList::order() const {
  std::string all = byNumber_ ? "g.GLAccount" : "g.AccountName";
  for (int level = 1; level <= kSubaccountLevels; ++level)
    all += ", s" + std::to_string(level) + (byNumber_ ? ".SubAccount" : ".SubAccountName");
  return all + ", " + rows_.alias + ".GLYear";
}

void TotalsList::lookUpRow() {
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
  for (int period = 1; period <= kPeriods; ++period) amounts.emplace_back(amountField(period), periodField(period));
  take(rows_.table, kTotalsKey, key, amounts);
}

std::string TotalsList::names() const {
  std::string all;
  for (const char* field : {"AccountName", "Sub1Name", "Sub2Name", "Sub3Name"})
    if (const Value name = value(field); !name.isNull()) all += (all.empty() ? "" : " - ") + name.asText();
  return all;
}

Money TotalsList::totalChange() const {
  Money sum;
  for (int period = 1; period <= kPeriods; ++period) sum += value(periodField(period).c_str()).asMoney();
  return sum;
}

// Commands.

void TotalsList::find(const std::string& typed) {
  form::Open open{.title = "Find Account"};
  open.values["text"] = Value(typed);
  open.values["index"] = Value(byNumber_ ? "GLAccount" : "AccountName1");
  open.values["key"] = value("GLAccountID");
  const form::Result found = app().runModal("TfrmGLAccountSearch", open);
  if (!found.confirmed) return;
  const Value id = found.values.at("key");
  if (rows().locate("GLAccountID", {id})) return;
  form::refuse("'" + app().lookUp("GLAccnt").lookup("GLAccountID", {id}, "GLAccount").asText() + "' not found in list");
}

void TotalsList::mnuHistoryClick() {
  requireRow();
  app().open("TfrmGLHistory", {.filter = accountClause(value("GLAccountID"))});
}

void TotalsList::printRows(const char* report, const char* data) {
  form::Open open = asShown();
  open.values["order"] = Value(order());
  open.values["data"] = Value(data);
  app().preview(report, open);
}

void TotalsList::mnuExportClick() {
  const std::optional<std::string> path = app().person().chooseFile(
      {.title = "Export", .filter = reports::kTableFilter, .name = rows_.file, .extension = "xlsx", .saving = true});
  if (!path) form::abort();
  app().person().hourglass(true);
  writeTotalsFile(rows(), rows_.file, *path);
}

}  // namespace quillon::ledger
