#include "ledger/Accounts.h"

#include "form/App.h"
#include "form/Place.h"
#include "store/Cursor.h"

namespace quillon::ledger {
namespace {

using store::Value;

constexpr const char* kAccountUnknown = "GL Account not found...\rSelect a different account or press Esc to undo";
constexpr const char* kSubaccountUnknown =
    "Subaccount not found...\rSelect a different subaccount or press Esc to undo";

// The values of two fields of the row with that id; empty when there is none.
std::vector<Value> rowOf(form::App& app, const std::string& table, const char* idField, const Value& id,
                         const std::string& fields) {
  return app.lookUp(table).lookupAll(idField, {id}, fields);
}

}  // namespace

form::ConverterPtr accountTypes() {
  return form::choicesConverter({{Value(1), "Asset"},
                                 {Value(2), "Liability"},
                                 {Value(3), "Revenue"},
                                 {Value(4), "Expense"},
                                 {Value(5), "Equity"}});
}

bool isCarriedForward(AccountType type) { return type != AccountType::revenue && type != AccountType::expense; }

std::string subaccountTable(int level) { return "GLAcSub" + std::to_string(level); }
std::string subaccountField(int level) { return "SubAccount" + std::to_string(level) + "ID"; }

form::CodeOf accountCode() {
  return {.table = "GLAccnt",
          .idField = "GLAccountID",
          .shownField = "GLAccount",
          .unknown = kAccountUnknown,
          .picker = "TfrmGLAccountSearch",
          .title = "GL Account",
          .index = "GLAccount"};
}

form::CodeOf setUpAccountCode() {
  form::CodeOf code = accountCode();
  code.unknown = "GL Account not found";
  return code;
}

form::CodeOf subaccountCode(int level) {
  return {.table = subaccountTable(level),
          .idField = "SubAccountID",
          .shownField = "SubAccount",
          .unknown = kSubaccountUnknown,
          .picker = "TfrmGLAccountSubSearch",
          .title = "GL Subaccount " + std::to_string(level),
          .index = "SubAccount",
          .level = Value(level)};
}

void requireUsableAccount(form::App& app, const Value& id) {
  if (id.isNull()) return;
  const std::vector<Value> row = rowOf(app, "GLAccnt", "GLAccountID", id, "Suspended");
  if (row.empty()) form::refuse(kAccountUnknown);
  if (row.front().asBool()) form::refuse("GL Account has been suspended");
}

void requireUsableSubaccount(form::App& app, int level, const Value& id) {
  if (id.isNull()) return;
  const std::vector<Value> row = rowOf(app, subaccountTable(level), "SubAccountID", id, "Suspended");
  if (row.empty()) form::refuse(kSubaccountUnknown);
  if (row.front().asBool()) form::refuse("Subaccount has been suspended");
}

bool accountExists(form::App& app, const Value& id) {
  return !rowOf(app, "GLAccnt", "GLAccountID", id, "GLAccountID").empty();
}

bool subaccountExists(form::App& app, int level, const Value& id) {
  return !rowOf(app, subaccountTable(level), "SubAccountID", id, "SubAccountID").empty();
}

std::string accountClause(const Value& id) { return "(GLAccountID = " + id.toText() + ")"; }

std::string totalsClause(const Value& id) { return "(g.GLAccountID = " + id.toText() + ")"; }

std::string accountNames(form::App& app, const Value& account, const Value (&subaccounts)[3]) {
  std::string names;
  const auto add = [&](const std::vector<Value>& row) {
    if (!row.empty()) names += (names.empty() ? "" : " - ") + row.front().asText();
  };
  if (!account.isNull()) add(rowOf(app, "GLAccnt", "GLAccountID", account, "AccountName"));
  for (int level = 1; level <= kSubaccountLevels; ++level)
    if (const Value& id = subaccounts[level - 1]; !id.isNull())
      add(rowOf(app, subaccountTable(level), "SubAccountID", id, "SubAccountName"));
  return names;
}

}  // namespace quillon::ledger
