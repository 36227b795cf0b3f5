#include "ledger/AuditKeys.h"

namespace quillon::ledger {
namespace {

using store::Cursor;
using store::Value;

struct Key {
  const char* table;
  const char* id;  // of the row; empty where there is but one
  const char* field;
  bool ofCurrency;  // else of an account
  bool needed;
};
constexpr Key kKeys[] = {
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

AuditKeys::AuditKeys(store::Database& database)
    : currencies_(database, "Currency"), banks_(database, "Bank"), company_(database, "Company") {
  for (Cursor* cursor : {&currencies_, &banks_, &company_}) cursor->open();
}

void AuditKeys::addTables(std::vector<store::Table*>& tables) {
  for (Cursor* cursor : {&currencies_, &banks_, &company_}) tables.push_back(&cursor->table());
}

std::vector<Disagreement> AuditKeys::faults(const std::set<int>& accounts) {
  std::set<int> currencies;
  for (currencies_.first(); !currencies_.eof(); currencies_.next())
    currencies.insert(currencies_["CurrencyID"].asInt());
  std::vector<Disagreement> found;
  for (Cursor* rows : {&currencies_, &banks_, &company_})
    for (rows->first(); !rows->eof(); rows->next())
      for (const Key& key : kKeys) {
        if (rows->definition().name != key.table) continue;
        const Value id = rows->value(key.field);
        if (id.isNull() ? !key.needed : (key.ofCurrency ? currencies : accounts).contains(id.asInt())) continue;
        const std::string row = *key.id == '\0' ? "the row" : key.id + (" " + rows->value(key.id).toText());
        found.push_back({key.table, row, key.field, id.isNull() ? "nothing" : id.toText(),
                         key.ofCurrency ? "a currency" : "an account"});
      }
  return found;
}

}  // namespace quillon::ledger
