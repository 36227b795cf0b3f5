#include "ledger/AuditedKeys.h"

#include "store/Database.h"

namespace quillon::ledger {
namespace {

using store::Cursor;
using store::Value;

std::string fieldOf(int level) { return level == 0 ? "GLAccountID" : subaccountField(level); }

std::string keyOf(Cursor& row, const char* field) { return std::string(field) + " " + row.value(field).toText(); }

// What is set up with an account or a currency.
struct SetUp {
  const char* table;
  const char* id;  // of the row; empty where there is but one
  const char* field;
  bool ofCurrency;  // else of an account
  bool needed;
};
constexpr SetUp kSetUp[] = {
    {"Currency", "CurrencyID", "APGLAccountID", false, true},
    {"Currency", "CurrencyID", "APDiscGLAccountID", false, true},
    {"Currency", "CurrencyID", "ARGLAccountID", false, true},
    {"Currency", "CurrencyID", "ARDiscGLAccountID", false, true},
    {"Currency", "CurrencyID", "GainLossExchangeGLAccntID", false, false},
    {"Currency", "CurrencyID", "DfltWriteOffGLAccountID", false, false},
    {"Bank", "BankID", "BankGLAccountID", false, true},
    {"Bank", "BankID", "CurrencyID", true, true},
    {"Company", "", "DfltSalesGLAccountID", false, false},
    {"Company", "", "DfltCOGSGLAccountID", false, false},
    {"Company", "", "DfltInventoryGLAccountID", false, false},
};

}  // namespace

AuditedKeys::AuditedKeys(store::Database& database)
    : database_(database),
      budgets_(open("GLBudget")),
      currencies_(open("Currency")),
      banks_(open("Bank")),
      company_(open("Company")) {
  for (int level = 0; level <= kSubaccountLevels; ++level)
    levels_.at(static_cast<std::size_t>(level)) = &open(level == 0 ? "GLAccnt" : subaccountTable(level).c_str());
}

Cursor& AuditedKeys::open(const char* table) {
  cursors_.push_back(std::make_unique<Cursor>(database_, table));
  cursors_.back()->open();
  return *cursors_.back();
}

std::vector<store::Table*> AuditedKeys::tables() const {
  std::vector<store::Table*> all;
  for (const auto& cursor : cursors_) all.push_back(&cursor->table());
  return all;
}

void AuditedKeys::read() {
  const auto readIds = [](Cursor& rows, const char* field, Ids& ids) {
    for (rows.first(); !rows.eof(); rows.next())
      if (const Value id = rows.value(field); !id.isNull()) ids.insert(id.asInt());
  };
  for (std::size_t level = 0; level < ids_.size(); ++level)
    readIds(*levels_.at(level), level == 0 ? "GLAccountID" : "SubAccountID", ids_.at(level));
  readIds(currencies_, "CurrencyID", currencyIds_);
}

void AuditedKeys::check(std::vector<Disagreement>& wrong) {
  checkAccounts(wrong);
  checkBudgets(wrong);
  for (Cursor* rows : {&currencies_, &banks_, &company_})
    for (rows->first(); !rows->eof(); rows->next())
      for (const SetUp& key : kSetUp) {
        if (rows->definition().name != key.table) continue;
        const Value id = rows->value(key.field);
        if (id.isNull() ? !key.needed : (key.ofCurrency ? currencyIds_ : ids_.front()).contains(id.asInt())) continue;
        wrong.push_back({key.table, *key.id == '\0' ? "the row" : keyOf(*rows, key.id), key.field,
                         id.isNull() ? "nothing" : id.toText(), key.ofCurrency ? "a currency" : "an account"});
      }
}

void AuditedKeys::checkAccounts(std::vector<Disagreement>& wrong) {
  Cursor& accounts = *levels_.front();
  for (accounts.first(); !accounts.eof(); accounts.next()) {
    const std::string key = keyOf(accounts, "GLAccountID");
    const int type = accounts["AccountType"].asInt();
    if (type < static_cast<int>(AccountType::asset) || type > static_cast<int>(AccountType::equity))
      wrong.push_back({"GLAccnt", key, "AccountType", std::to_string(type), "1 to 5"});
    if (accounts["RetainedEarnings"].asBool() && type != static_cast<int>(AccountType::equity))
      wrong.push_back({"GLAccnt", key, "RetainedEarnings", "True", "False"});
  }
}

void AuditedKeys::checkBudgets(std::vector<Disagreement>& wrong) {
  for (budgets_.first(); !budgets_.eof(); budgets_.next()) {
    const std::string key = nameOf(combinationOf(budgets_), budgets_["GLYear"].asInt());
    checkCombination(budgets_, key, wrong);
    if (const std::string kind = budgets_["ActualBudget"].asText(); kind != "B")
      wrong.push_back({"GLBudget", key, "ActualBudget", kind, "B"});
  }
}

void AuditedKeys::checkCombination(Cursor& row, const std::string& key, std::vector<Disagreement>& wrong) const {
  const Combination combination = combinationOf(row);
  for (int level = 0; level <= kSubaccountLevels; ++level) {
    const auto& id = combination.at(static_cast<std::size_t>(level));
    if (id ? ids_.at(static_cast<std::size_t>(level)).contains(*id) : level > 0) continue;
    wrong.push_back({row.definition().name, key, fieldOf(level), id ? std::to_string(*id) : kNone,
                     level == 0 ? "an account" : "a subaccount"});
  }
}

Combination AuditedKeys::combinationOf(Cursor& row) {
  Combination combination;
  for (int level = 0; level <= kSubaccountLevels; ++level)
    if (const Value id = row.value(fieldOf(level)); !id.isNull())
      combination.at(static_cast<std::size_t>(level)) = id.asInt();
  return combination;
}

std::string AuditedKeys::nameOf(const Combination& combination, int year) {
  std::string text;
  for (const auto& id : combination) text += (id ? std::to_string(*id) : "-") + ";";
  return text + std::to_string(year);
}

}  // namespace quillon::ledger
