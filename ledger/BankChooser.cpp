#include "ledger/BankChooser.h"

#include "form/App.h"
#include "shell/Session.h"
#include "store/Cursor.h"

namespace quillon::ledger {

using store::Value;

BankChooser::BankChooser(shell::Session& session, std::function<void()> chosen)
    : session_(session), chosen_(std::move(chosen)) {}

form::Control& BankChooser::control(form::Layout& l) {
  bank_.change = [this](const Value&) { chosen_(); };
  return l.chooser("cboBank", "Bank:", bank_,
                   form::rowsConverter(session_.app(), "Bank", "BankID", "BankName", "BankName1"));
}

void BankChooser::begin(const form::Open& open) {
  if (const auto asked = open.values.find("BankID"); asked != open.values.end())
    bank_.value = asked->second;
  else if (bank_.value.isNull())
    bank_.value = ofOwnCurrency();
}

Value BankChooser::ofOwnCurrency() const {
  store::Cursor& company = session_.tblCompany();
  company.refresh();
  const Value currency = company.value("DefaultCurrencyID");
  return currency.isNull() ? Value() : session_.app().lookUp("Bank").lookup("CurrencyID", {currency}, "BankID");
}

Value BankChooser::account() const {
  if (bank_.value.isNull()) return {};
  return session_.app().lookUp("Bank").lookup("BankID", {bank_.value}, "BankGLAccountID");
}

}  // namespace quillon::ledger
