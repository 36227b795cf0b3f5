// Finds an account by its number or its name.
#include "form/FilterScreen.h"
#include "form/PickerScreen.h"
#include "ledger/Accounts.h"
#include "ledger/MakeScreens.h"
#include "shell/Session.h"

namespace quillon::ledger {
namespace {

class TfrmGLAccountSearch final : public form::PickerScreen {
 public:
  explicit TfrmGLAccountSearch(shell::Session& session) : PickerScreen(session.app(), "GL Account", "GLAccountID") {
    cboAccountType.change = [this](const store::Value&) { cboAccountTypeChange(); };
  }

 private:
  void build(form::Layout& l) override {
    l.row(findBox(l, "Account &no.:", editGLAccount), findBox(l, "&Name:", editAccountName));
    l.chooser("cboAccountType", "&Type:", cboAccountType, form::orAllConverter(accountTypes()->choices()));
    pickGrid(l, l.columns(l.column("Account no.", tblGLAccnt["GLAccount"]), l.column("Name", tblGLAccnt["AccountName"]),
                          l.column("Type", tblGLAccnt["AccountType"], accountTypes())));
    buttons(l, l.button("btnGLAccounts", "&Accounts...", [this] {
                  maintain("TfrmGLAccounts", store::Value(0));
                }).hint("Add or edit accounts"));
  }

  void shown(const form::Open& open) override {
    cboAccountType.value = {};
    PickerScreen::shown(open);
  }

  // Joined to the caller's filter, where there is one.
  void cboAccountTypeChange() {
    const std::string type = cboAccountType.value.isNull() ? "" : "AccountType = " + cboAccountType.value.toText();
    narrow(type.empty() || callersFilter().empty() ? type : "(" + type + ")");
  }

  form::Table tblGLAccnt{*this, "GLAccnt"};
  Box editGLAccount{.control = "editGLAccount", .index = "GLAccount"};
  Box editAccountName{.control = "editAccountName", .index = "AccountName1"};
  form::Variable cboAccountType;
};

}  // namespace

ScreenPtr makeGLAccountSearch(shell::Session& session) { return std::make_unique<TfrmGLAccountSearch>(session); }

}  // namespace quillon::ledger
