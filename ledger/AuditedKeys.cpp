#include "ledger/AuditedKeys.h"

#include "store/Database.h"

namespace quillon::ledger {
namespace {

using store::Cursor;
using store::Value;

std::string fieldOf(int level) { return level == 0 ? "GLAccountID" : subaccountField(level); }

std::string keyOf(Cursor& row, const char* field) { return std::string(field) + " " + row.value(field).toText(); }

}  // namespace

AuditedKeys::AuditedKeys(store::Database& database)
    : database_(database), budgets_(open("GLBudget")), currencies_(open("Currency")), banks_(open("Bank")) {
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
  const auto points = [&wrong](Cursor& row, const std::string& key, const char* field, const Ids& ids,
                               const char* what) {
    const Value id = row.value(field);
    if (!id.isNull() && !ids.contains(id.asInt()))
      wrong.push_back({row.definition().name, key, field, id.toText(), what});
  };
  for (currencies_.first(); !currencies_.eof(); currencies_.next())
    for (const char* field : {"APGLAccountID", "APDiscGLAccountID", "ARGLAccountID", "ARDiscGLAccountID",
                              "DfltWriteOffGLAccountID", "GainLossExchangeGLAccntID"})
      points(currencies_, keyOf(currencies_, "CurrencyID"), field, ids_.front(), "an account");
  for (banks_.first(); !banks_.eof(); banks_.next()) {
    points(banks_, keyOf(banks_, "BankID"), "BankGLAccountID", ids_.front(), "an account");
    points(banks_, keyOf(banks_, "BankID"), "CurrencyID", currencyIds_, "a currency");
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
