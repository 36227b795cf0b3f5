// One bank.
//
// Keeps: its currency stays what it is from the first payment on, since the ledger account adds up units of it.
#include "form/App.h"
#include "form/RecordScreen.h"
#include "form/UsedBy.h"
#include "ledger/Accounts.h"
#include "ledger/MakeScreens.h"
#include "shell/Session.h"

namespace quillon::ledger {
namespace {

using form::focus;
using form::refuse;
using store::Value;

class TfrmBank final : public form::RecordScreen {
 public:
  explicit TfrmBank(shell::Session& session);
  std::string title() override { return isNew() ? "New Bank" : "Bank"; }

 private:
  void build(form::Layout& layout) override;
  void shown(const form::Open& open) override;
  void recordShown(const form::Open& open) override;
  void tblBankNewRecord();
  void tblBankBeforePost();

  shell::Session& session_;
  form::Table tblBank{*this, "Bank"};
  Value currencyAtOpening_;
};

TfrmBank::TfrmBank(shell::Session& session)
    : RecordScreen(session.app(), {.key = "BankID",
                                   .list = "frmBanks",
                                   .keyViolation = "Bank Name must be unique",
                                   .keyFocus = "BankName",
                                   .nextId = true}),
      session_(session) {
  tblBank.events.onNewRecord = [this] { tblBankNewRecord(); };
  tblBank.events.beforePost = [this] { tblBankBeforePost(); };
}

void TfrmBank::build(form::Layout& l) {
  l.field("Bank Name:", tblBank["BankName"]);
  l.chooser("Currency:", tblBank["CurrencyID"],
            form::rowsConverter(app(), "Currency", "CurrencyID", "CurrencyName", "CurrencyName1"));
  l.codeAndName("Bank GL Account:", tblBank["BankGLAccountID"], setUpAccountCode(), "AccountName");
  l.row(l.button("btnOK", "OK", &TfrmBank::btnOKClick).saves().standard(),
        l.button("btnCancel", "Cancel", &TfrmBank::btnCancelClick).abandons());
}

void TfrmBank::shown(const form::Open& open) {
  app().refreshLookUps();
  RecordScreen::shown(open);
}

void TfrmBank::recordShown(const form::Open& /*open*/) {
  currencyAtOpening_ = isNew() ? Value() : tblBank.value("CurrencyID");
}

void TfrmBank::tblBankNewRecord() {
  store::Cursor& company = session_.tblCompany();
  company.refresh();
  if (company["DefaultCurrencyID"].asInt() > 0) tblBank["CurrencyID"] = company.value("DefaultCurrencyID");
}

void TfrmBank::tblBankBeforePost() {
  const Value currency = tblBank.value("CurrencyID");
  if (tblBank["BankName"].isNull()) refuse("Field 'Bank Name' must have a value", focus("BankName"));
  if (currency.isNull()) refuse("Field 'Currency' must have a value", focus("CurrencyID"));
  if (tblBank["BankGLAccountID"].isNull())
    refuse("Field 'Bank GL Account' must have a value", focus("BankGLAccountID"));
  if (!form::isUsed(database(), {"Currency", "CurrencyID", {}}, currency))
    refuse("Currency no longer exists", focus("CurrencyID"));
  if (!accountExists(app(), tblBank.value("BankGLAccountID")))
    refuse("GL Account no longer exists", focus("BankGLAccountID"));
  if (!isNew() && currency != currencyAtOpening_ &&
      form::isUsed(database(), {"APCheq", "BankID", {}}, tblBank.value("BankID")))
    refuse("Currency cannot be changed... \rAP payment(s) already exist", focus("CurrencyID"));
}

}  // namespace

ScreenPtr makeBank(shell::Session& session) { return std::make_unique<TfrmBank>(session); }

}  // namespace quillon::ledger
