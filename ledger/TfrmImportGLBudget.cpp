// Imports budgets from a text file, in the layout that the lists of totals and budgets export: a user exports, changes
// figures in a spreadsheet, and imports.
//
// Keeps: a row replaces the whole budget of its account, subaccounts and year; one whose codes are unknown is left out
// only when the person says so.
#include "form/Table.h"
#include "ledger/Accounts.h"
#include "ledger/ImportScreen.h"
#include "ledger/ImportTable.h"
#include "ledger/MakeScreens.h"
#include "ledger/Totals.h"
#include "shell/Session.h"
#include "store/Database.h"
#include "store/Query.h"

namespace quillon::ledger {
namespace {

using store::Value;

std::vector<ImportColumn> columns() {
  using Kind = ImportColumn::Kind;
  std::vector<ImportColumn> all = {{"GLAccount", Kind::text, 10}};
  for (const char* code : {"Sub1", "Sub2", "Sub3"}) all.push_back({code, Kind::text, 5});
  all.push_back({.name = "AccountName", .digits = 50, .required = false});
  for (const char* name : {"Sub1Name", "Sub2Name", "Sub3Name"})
    all.push_back({.name = name, .digits = 12, .required = false});
  all.push_back({"GLYear", Kind::year});
  all.push_back({"OpeningBal", Kind::amount, 18, 4});
  for (int period = 1; period <= kPeriods; ++period)
    all.push_back({"Period" + std::to_string(period), Kind::amount, 18, 4});
  return all;
}

class TfrmImportGLBudget final : public ImportScreen {
 public:
  explicit TfrmImportGLBudget(shell::Session& session)
      : ImportScreen(session.app(), "Import Budget",
                     {"Format: *.txt, fields separated by tabs, first line with the field names",
                      "Fields: as in an exported budget (debit positive, decimal separator \".\")"}) {}

 private:
  void import(const std::string& path) override;
  void importRows(const ImportTable& table, std::uint64_t count);
  std::string unknownCode(store::Cursor& row, std::vector<Value>& key);
  void replace(store::Cursor& row, const std::vector<Value>& key);

  form::Table tblGLBudget{*this, "GLBudget"};
};

void TfrmImportGLBudget::import(const std::string& path) {
  show("Importing to memory");
  ImportTable table(database(), "GLBudgetImport", columns(),
                    "Import Budget is already running.\rMultiple instances are not allowed");
  const auto lines = table.load(path, [this](std::uint64_t done, std::uint64_t total) { progress(done, total); });
  importRows(table, lines.size());
}

void TfrmImportGLBudget::importRows(const ImportTable& table, std::uint64_t count) {
  show("Importing to database");
  store::Query qryImport(database(), "SELECT * FROM " + table.quotedName());
  qryImport.open();
  const store::Database::BulkScope bulk(database());
  std::uint64_t done = 0;
  for (qryImport.first(); !qryImport.eof(); qryImport.next()) {
    if (++done % 256 == 0) progress(done, count);
    if (qryImport["GLYear"].isNull()) continue;
    // Yes leaves the row out; No ends the import, and the rows already taken stay.
    std::vector<Value> key;
    if (const std::string unknown = unknownCode(qryImport, key); !unknown.empty()) {
      if (!app().person().confirm(unknown + " not found.\rContinue importing budget?", form::Tone::warning,
                                  form::Button::no))
        break;
      continue;
    }
    replace(qryImport, key);
  }
  database().settle();
}

// Of the first code of the row that is not known; empty when all are, and `key` is then that of its budget.
std::string TfrmImportGLBudget::unknownCode(store::Cursor& row, std::vector<Value>& key) {
  key.push_back(app().lookUp("GLAccnt").lookup("GLAccount", {row.value("GLAccount")}, "GLAccountID"));
  if (key.back().isNull()) return "Account '" + row["GLAccount"].asText() + "'";
  for (int level = 1; level <= kSubaccountLevels; ++level) {
    const Value code = row.value("Sub" + std::to_string(level));
    key.push_back(code.isNull() ? Value()
                                : app().lookUp(subaccountTable(level)).lookup("SubAccount", {code}, "SubAccountID"));
    if (key.back().isNull() && !code.isNull())
      return "Subaccount " + std::to_string(level) + " '" + code.asText() + "'";
  }
  key.push_back(row.value("GLYear"));
  return {};
}

void TfrmImportGLBudget::replace(store::Cursor& row, const std::vector<Value>& key) {
  if (tblGLBudget.findKey(key)) {
    tblGLBudget.edit();
  } else {
    tblGLBudget.append();
    tblGLBudget["GLAccountID"] = key.front();
    for (int level = 1; level <= kSubaccountLevels; ++level)
      tblGLBudget[subaccountField(level)] = key.at(static_cast<std::size_t>(level));
    tblGLBudget["GLYear"] = key.back();
    tblGLBudget["ActualBudget"] = "B";
  }
  tblGLBudget["OpeningBal"] = row.value("OpeningBal");
  for (int period = 1; period <= kPeriods; ++period)
    tblGLBudget[amountField(period)] = row.value("Period" + std::to_string(period));
  tblGLBudget.post();
}

}  // namespace

ScreenPtr makeImportGLBudget(shell::Session& session) { return std::make_unique<TfrmImportGLBudget>(session); }

}  // namespace quillon::ledger
