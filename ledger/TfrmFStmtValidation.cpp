// What is wrong with a statement's accounts before it is printed, and whether to print it anyway.
#include "form/App.h"
#include "form/Screen.h"
#include "form/Table.h"
#include "ledger/CheckStatement.h"
#include "ledger/MakeScreens.h"
#include "ledger/StatementDefinition.h"
#include "shell/Session.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/Query.h"

namespace quillon::ledger {
namespace {

using store::Value;
using What = StatementFault::What;

constexpr const char* kTable = R"("\Memory\FStmtValidation")";

// The faults, in a table in memory for the grids to show.
class Faults {
 public:
  explicit Faults(store::Database& database) : database_(database) {
    drop();
    store::Query(database_, std::string("CREATE TABLE ") + kTable +
                                " (What INTEGER, GLAccount VARCHAR(10), AccountName VARCHAR(50), AccountType SMALLINT, "
                                "PRIMARY KEY (What, GLAccount))")
        .execute();
  }
  ~Faults() {
    try {
      drop();
    } catch (const store::StoreError&) {
      // It takes memory until the next one drops it, or the program ends.
    }
  }
  Faults(const Faults&) = delete;
  Faults& operator=(const Faults&) = delete;

 private:
  void drop() { store::Query(database_, std::string("DROP TABLE IF EXISTS ") + kTable).execute(); }

  store::Database& database_;
};

class TfrmFStmtValidation final : public form::Screen {
 public:
  explicit TfrmFStmtValidation(shell::Session& session) : Screen(session.app()) {}
  std::string title() override { return "Financial Statement Validation: " + stmtTitle_; }

 private:
  void build(form::Layout& layout) override;
  void shown(const form::Open& open) override;
  form::Control& list(form::Layout& l, form::Table& rows, What what, const char* name, const char* caption);

  Faults faults_{database()};
  form::Table tblMissing{*this, "\\Memory\\FStmtValidation", "tblMissing"};
  form::Table tblRepeated{*this, "\\Memory\\FStmtValidation", "tblRepeated"};
  form::Table tblWrongType{*this, "\\Memory\\FStmtValidation", "tblWrongType"};
  std::string stmtTitle_;
};

void TfrmFStmtValidation::build(form::Layout& l) {
  list(l, tblMissing, What::missing, "grdMissing", "Accounts missing:");
  list(l, tblRepeated, What::repeated, "grdRepeated", "Accounts occurring more than once:");
  list(l, tblWrongType, What::wrongType, "grdWrongType", "Account type discrepancy:");
  l.row(l.button("btnOK", "OK", [this] { setResult(true); }).hint("Print anyway").standard(),
        l.button("btnCancel", "Cancel", [this] { setResult(false); }).abandons());
}

form::Control& TfrmFStmtValidation::list(form::Layout& l, form::Table& rows, What what, const char* name,
                                         const char* caption) {
  const Value kind(static_cast<int>(what));
  rows.setRange({kind}, {kind});
  const auto text = [&rows](const char* field) { return [&rows, field] { return rows[field].asText(); }; };
  const auto type = [&rows] { return accountTypes()->show(rows.value("AccountType")); };
  form::Control& grid = l.grid(name, rows,
                               l.columns(l.shownColumn("GLAccount", "Account no.", text("GLAccount"), 10),
                                         l.shownColumn("AccountName", "Name", text("AccountName"), 40),
                                         l.shownColumn("AccountType", "Type", type, 10)));
  return l.group(caption, grid).visibleWhen([&rows] { return !rows.isEmpty(); });
}

void TfrmFStmtValidation::shown(const form::Open& open) {
  const auto asked = open.values.find("StmtID");
  if (asked == open.values.end()) return;
  const int stmtId = asked->second.asInt();
  stmtTitle_ = readStatement(database(), stmtId).title;
  store::Cursor rows(database(), "\\Memory\\FStmtValidation");
  rows.open();
  while (!rows.isEmpty()) rows.remove();
  for (const StatementFault& fault : checkStatement(database(), stmtId)) {
    rows.append();
    rows["What"] = static_cast<int>(fault.what);
    rows["GLAccount"] = fault.account;
    rows["AccountName"] = fault.name;
    rows["AccountType"] = static_cast<int>(fault.type);
    rows.post();
  }
  for (form::Table* table : {&tblMissing, &tblRepeated, &tblWrongType}) table->refresh();
}

}  // namespace

ScreenPtr makeFStmtValidation(shell::Session& session) { return std::make_unique<TfrmFStmtValidation>(session); }

}  // namespace quillon::ledger
