// One subaccount, of the list that it is asked for.
#include "form/RecordScreen.h"
#include "ledger/Accounts.h"
#include "ledger/MakeScreens.h"
#include "shell/Session.h"

namespace quillon::ledger {
namespace {

using form::focus;
using form::refuse;

class TfrmGLAccountSub final : public form::RecordScreen {
 public:
  explicit TfrmGLAccountSub(shell::Session& session);
  std::string title() override { return isNew() ? "New Subaccount" : "Subaccount"; }

 private:
  void build(form::Layout& layout) override;
  void shown(const form::Open& open) override;
  void tblGLAcSubBeforePost();

  form::Table tblGLAcSub{*this, subaccountTable(1), "tblGLAcSub"};
};

TfrmGLAccountSub::TfrmGLAccountSub(shell::Session& session)
    : RecordScreen(session.app(), {.key = "SubAccountID",
                                   .list = "frmGLAccounts",
                                   .keyViolation = "Subaccount no. and Name must be unique",
                                   .keyFocus = "SubAccount",
                                   .nextId = true}) {
  tblGLAcSub.events.onNewRecord = [this] { tblGLAcSub["Suspended"] = false; };
  tblGLAcSub.events.beforePost = [this] { tblGLAcSubBeforePost(); };
}

void TfrmGLAccountSub::build(form::Layout& l) {
  l.field("&Subaccount no.:", tblGLAcSub["SubAccount"]);
  l.field("&Name:", tblGLAcSub["SubAccountName"]);
  l.check("S&uspended", tblGLAcSub["Suspended"]).hint("Check here to prevent further transactions from being entered");
  l.row(l.button("btnOK", "OK", &TfrmGLAccountSub::btnOKClick).saves().standard(),
        l.button("btnCancel", "Cancel", &TfrmGLAccountSub::btnCancelClick).abandons());
}

void TfrmGLAccountSub::shown(const form::Open& open) {
  tblGLAcSub.reopenOn(subaccountTable(open.values.at("level").asInt()));
  RecordScreen::shown(open);
}

void TfrmGLAccountSub::tblGLAcSubBeforePost() {
  if (tblGLAcSub["SubAccount"].isNull()) refuse("Field 'Subaccount no.' must have a value", focus("SubAccount"));
  if (tblGLAcSub["SubAccountName"].isNull())
    refuse("Field 'Subaccount Name' must have a value", focus("SubAccountName"));
}

}  // namespace

ScreenPtr makeGLAccountSub(shell::Session& session) { return std::make_unique<TfrmGLAccountSub>(session); }

}  // namespace quillon::ledger
