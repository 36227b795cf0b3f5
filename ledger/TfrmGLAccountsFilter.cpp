// The conditions of the list of accounts.
#include "form/FilterScreen.h"
#include "ledger/Accounts.h"
#include "ledger/MakeScreens.h"
#include "shell/Session.h"

namespace quillon::ledger {
namespace {

class TfrmGLAccountsFilter final : public form::FilterScreen {
 public:
  explicit TfrmGLAccountsFilter(shell::Session& session) : FilterScreen(session.app(), "TfrmGLAccounts") {
    clears(type_);
    clears(suspended_);
  }
  std::string title() override { return "GL Accounts Filter"; }

 private:
  void build(form::Layout& l) override {
    l.chooser("cboAccountType", "&Type:", type_, form::orAllConverter(accountTypes()->choices()));
    l.choice("radSuspended", "Suspended", suspended_, form::yesNoAllConverter());
    buttons(l);
  }

  std::string expression() const override {
    std::string type = type_.value.isNull() ? "" : "(AccountType = " + type_.value.toText() + ")";
    if (suspended_.value.isNull()) return type;
    return form::allOf({type, suspended_.value.asBool() ? "(Suspended = true)" : "(Suspended <> true)"});
  }

  form::Variable type_, suspended_;
};

}  // namespace

ScreenPtr makeGLAccountsFilter(shell::Session& session) { return std::make_unique<TfrmGLAccountsFilter>(session); }

}  // namespace quillon::ledger
