// The budget of one account, with or without subaccounts, for one year.
#include "form/App.h"
#include "form/RecordScreen.h"
#include "ledger/Accounts.h"
#include "ledger/MakeScreens.h"
#include "ledger/Totals.h"
#include "shell/Session.h"

namespace quillon::ledger {
namespace {

using form::focus;
using form::refuse;
using store::Value;

constexpr const char* kYearInvalid = "Year invalid...\rEnter year as 2 digits";

class TfrmGLBudgetAccount final : public form::RecordScreen {
 public:
  explicit TfrmGLBudgetAccount(shell::Session& session);
  std::string title() override;

 private:
  void build(form::Layout& layout) override;
  void shown(const form::Open& open) override;
  void tblGLBudgetBeforePost();

  form::Table tblGLBudget{*this, "GLBudget"};
  Value account_;  // that a new budget begins with
};

TfrmGLBudgetAccount::TfrmGLBudgetAccount(shell::Session& session)
    : RecordScreen(session.app(), {.key = kTotalsKey,
                                   .list = "frmGLBudget",
                                   .keyViolation = "Budget for this account and year already exists",
                                   .keyFocus = "GLAccountID"}) {
  tblGLBudget.events.onNewRecord = [this] {
    tblGLBudget["ActualBudget"] = "B";
    tblGLBudget["GLAccountID"] = account_;
  };
  tblGLBudget.events.beforePost = [this] { tblGLBudgetBeforePost(); };
}

std::string TfrmGLBudgetAccount::title() {
  const Value year = tblGLBudget.isOpen() ? tblGLBudget.value("GLYear") : Value();
  return year.isNull() ? "Budget" : year.toText() + " Budget";
}

void TfrmGLBudgetAccount::build(form::Layout& l) {
  form::CodeOf account = accountCode();
  account.unknown = "Account not found";
  l.codeAndName("&Account:", tblGLBudget["GLAccountID"], account, "AccountName");
  for (int level = 1; level <= kSubaccountLevels; ++level)
    l.codeAndName("Subaccount &" + std::to_string(level) + ":", tblGLBudget[subaccountField(level)],
                  subaccountCode(level), "SubAccountName");
  l.field("&Year:", tblGLBudget["GLYear"], form::twoDigitYearConverter(kYearInvalid)).wide(2);
  l.money("&Opening Bal:", tblGLBudget["OpeningBal"]).inColumn();
  for (int period = 1; period <= kPeriods; ++period)
    l.money("Period " + std::to_string(period) + ":", tblGLBudget[amountField(period)]).inColumn();
  l.shown(
      "editTotal", "Total:", [this] { return tblGLBudget.isOpen() ? Value(changeOf(tblGLBudget)) : Value(); },
      form::moneyConverter(app().formats()));
  l.row(l.button("btnOK", "OK", &TfrmGLBudgetAccount::btnOKClick).saves().standard(),
        l.button("btnCancel", "Cancel", &TfrmGLBudgetAccount::btnCancelClick).abandons());
}

void TfrmGLBudgetAccount::shown(const form::Open& open) {
  app().refreshLookUps();
  const auto account = open.values.find("account");
  account_ = account == open.values.end() ? Value() : account->second;
  RecordScreen::shown(open);
}

void TfrmGLBudgetAccount::tblGLBudgetBeforePost() {
  const Value account = tblGLBudget.value("GLAccountID");
  if (account.isNull()) refuse("Field 'Account' must have a value", focus("GLAccountID"));
  if (!accountExists(app(), account)) refuse("GL Account no longer exists", focus("GLAccountID"));
  for (int level = 1; level <= kSubaccountLevels; ++level)
    if (const Value id = tblGLBudget.value(subaccountField(level)); !id.isNull() && !subaccountExists(app(), level, id))
      refuse("Subaccount " + std::to_string(level) + " no longer exists", focus(subaccountField(level)));
  if (tblGLBudget["GLYear"].isNull()) refuse(kYearInvalid, focus("GLYear"));
  const auto type =
      static_cast<AccountType>(app().lookUp("GLAccnt").lookup("GLAccountID", {account}, "AccountType").asInt());
  if (tblGLBudget["OpeningBal"].asMoney() != Money() && !isCarriedForward(type))
    refuse("Opening balance should not be entered for revenue or expense accounts", focus("OpeningBal"));
}

}  // namespace

ScreenPtr makeGLBudgetAccount(shell::Session& session) { return std::make_unique<TfrmGLBudgetAccount>(session); }

}  // namespace quillon::ledger
