#include "ledger/CheckStatement.h"

#include <algorithm>

#include "form/App.h"
#include "ledger/StatementDefinition.h"
#include "store/Cursor.h"

namespace quillon::ledger {

std::vector<StatementFault> checkStatement(store::Database& database, int stmtId) {
  const StatementDefinition statement = readStatement(database, stmtId);
  std::vector<StatementRange> ranges;
  for (const StatementLine& line : statement.lines) ranges.insert(ranges.end(), line.ranges.begin(), line.ranges.end());

  const bool ofChanges = statement.format.starts_with("Net Change");
  store::Cursor accounts(database, "GLAccnt");
  accounts.setIndex("GLAccount");
  accounts.open();
  std::vector<StatementFault> faults;
  for (accounts.first(); !accounts.eof(); accounts.next()) {
    const std::string number = accounts["GLAccount"].asText();
    const auto type = static_cast<AccountType>(accounts["AccountType"].asInt());
    const auto times = std::ranges::count_if(ranges, [&](const StatementRange& range) { return range.covers(number); });
    const auto tell = [&](StatementFault::What what) {
      faults.push_back({what, number, accounts["AccountName"].asText(), type});
    };
    const bool belongs = !ofChanges || type == AccountType::revenue || type == AccountType::expense;
    if (times == 0 && belongs) tell(StatementFault::What::missing);
    if (times > 1) tell(StatementFault::What::repeated);
    if (times > 0 && !belongs) tell(StatementFault::What::wrongType);
  }
  return faults;
}

bool mayPrintStatement(form::App& app, int stmtId) {
  if (checkStatement(app.database(), stmtId).empty()) return true;
  return app.runModal("TfrmFStmtValidation", {.values = {{"StmtID", store::Value(stmtId)}}}).confirmed;
}

}  // namespace quillon::ledger
