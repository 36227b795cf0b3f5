// One account of the chart.
#include "form/RecordScreen.h"
#include "ledger/Accounts.h"
#include "ledger/MakeScreens.h"
#include "shell/Session.h"
#include "store/Query.h"

namespace quillon::ledger {
namespace {

using form::focus;
using form::refuse;
using store::Value;

class TfrmGLAccount final : public form::RecordScreen {
 public:
  explicit TfrmGLAccount(shell::Session& session);
  std::string title() override { return isNew() ? "New Account" : "Account"; }

 private:
  void build(form::Layout& layout) override;
  void tblGLAccntBeforePost();
  void recordShown(const form::Open& open) override;
  void closed() override;
  bool isEquity() { return tblGLAccnt["AccountType"].asInt() == static_cast<int>(AccountType::equity); }

  shell::Session& session_;
  form::Table tblGLAccnt{*this, "GLAccnt"};
  Value numberAtOpening_;
};

TfrmGLAccount::TfrmGLAccount(shell::Session& session)
    : RecordScreen(session.app(), {.key = "GLAccountID",
                                   .list = "frmGLAccounts",
                                   .keyViolation = "Account no. and Name must be unique",
                                   .keyFocus = "GLAccount",
                                   .nextId = true}),
      session_(session) {
  tblGLAccnt.events.onNewRecord = [this] {
    tblGLAccnt["RetainedEarnings"] = false;
    tblGLAccnt["Suspended"] = false;
  };
  tblGLAccnt.events.beforePost = [this] { tblGLAccntBeforePost(); };
  tblGLAccnt.change("AccountType", [this](const Value&) {
    if (!isEquity()) tblGLAccnt["RetainedEarnings"] = false;
  });
}

void TfrmGLAccount::build(form::Layout& l) {
  form::Control& general = l.group(
      "General", l.field("&Account no.:", tblGLAccnt["GLAccount"]), l.field("&Name:", tblGLAccnt["AccountName"]),
      l.choice("&Type", tblGLAccnt["AccountType"], accountTypes()),
      l.check("&Suspended", tblGLAccnt["Suspended"])
          .hint("Check here to prevent further transactions from being entered"),
      l.check("&Retained Earnings", tblGLAccnt["RetainedEarnings"]).visibleWhen([this] { return isEquity(); }));
  l.pages(general, l.group("Notes", l.memo("", tblGLAccnt["Notes"])));
  l.row(l.button("btnOK", "OK", &TfrmGLAccount::btnOKClick).saves().standard(),
        l.button("btnCancel", "Cancel", &TfrmGLAccount::btnCancelClick).abandons());
}

void TfrmGLAccount::recordShown(const form::Open& /*open*/) {
  numberAtOpening_ = isNew() ? Value() : tblGLAccnt.value("GLAccount");
}

void TfrmGLAccount::tblGLAccntBeforePost() {
  if (tblGLAccnt["GLAccount"].isNull()) refuse("Field 'Account no.' must have a value", focus("GLAccount"));
  if (tblGLAccnt["AccountName"].isNull()) refuse("Field 'Account Name' must have a value", focus("AccountName"));
  if (tblGLAccnt["AccountType"].isNull()) refuse("Field 'Account Type' must have a value", focus("AccountType"));
}

// Statements name accounts by their numbers, also those to come. The tip comes once in a run of the program.
void TfrmGLAccount::closed() {
  if (session_.tipShown || !savedOnce()) return;
  if (tblGLAccnt.value("GLAccount") == numberAtOpening_) return;
  session_.tipShown = true;
  store::Query statements(database(), "SELECT StmtID FROM FStmt TOP 1");
  statements.open();
  if (statements.isEmpty()) return;
  app().person().show(form::Tone::information,
                      "Tip: Remember to update any custom financial statements for new or changed account "
                      "numbers.\r\rYou can use AutoCreate to recreate statements with the latest accounts\ror you can "
                      "modify more complex statements.");
}

}  // namespace

ScreenPtr makeGLAccount(shell::Session& session) { return std::make_unique<TfrmGLAccount>(session); }

}  // namespace quillon::ledger
