// Finds a subaccount of one level, or takes the subaccount off a line.
#include "form/PickerScreen.h"
#include "ledger/Accounts.h"
#include "ledger/MakeScreens.h"
#include "shell/Session.h"

namespace quillon::ledger {
namespace {

class TfrmGLAccountSubSearch final : public form::PickerScreen {
 public:
  explicit TfrmGLAccountSubSearch(shell::Session& session)
      : PickerScreen(session.app(), "GL Subaccount", "SubAccountID") {}

 private:
  void build(form::Layout& l) override {
    l.check("chkSubUsed", "Subaccount &used", chkSubUsed).hint("Checked = subaccount used. Unchecked = no subaccount.");
    const auto used = [this] { return chkSubUsed.value.asBool(); };
    l.row(findBox(l, "Subaccount &no.:", editSubAccount).enabledWhen(used),
          findBox(l, "&Name:", editSubAccountName).enabledWhen(used));
    pickGrid(l, l.columns(l.column("Subaccount no.", tblGLAcSub["SubAccount"]),
                          l.column("Name", tblGLAcSub["SubAccountName"])))
        .named("grdGLAcSub")
        .enabledWhen(used);
    buttons(l, l.button("btnGLSubaccounts", "&Subaccounts...", [this] {
                  maintain("TfrmGLAccounts", level_);
                }).hint("Add or edit subaccounts"));
  }

  void shown(const form::Open& open) override {
    level_ = open.values.at("level");
    tblGLAcSub.reopenOn(subaccountTable(level_.asInt()));
    chkSubUsed.value = true;
    PickerScreen::shown(open);
  }

  void btnOKClick() override {
    if (chkSubUsed.value.asBool()) return PickerScreen::btnOKClick();
    result().values["key"] = store::Value();
    setResult(true);
  }

  form::Table tblGLAcSub{*this, subaccountTable(1), "tblGLAcSub"};
  Box editSubAccount{.control = "editSubAccount", .index = "SubAccount"};
  Box editSubAccountName{.control = "editSubAccountName", .index = "SubAccountName1"};
  form::Variable chkSubUsed;
  store::Value level_;
};

}  // namespace

ScreenPtr makeGLAccountSubSearch(shell::Session& session) { return std::make_unique<TfrmGLAccountSubSearch>(session); }

}  // namespace quillon::ledger
