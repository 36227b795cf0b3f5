// The people who may log in to the company.
//
// Keeps: as long as there are users, one of them may change users; the list does not close before.
#include "form/App.h"
#include "form/Grid.h"
#include "form/Screen.h"
#include "shell/MakeScreens.h"
#include "shell/Security.h"
#include "shell/Session.h"
#include "store/Cursor.h"

namespace quillon::shell {
namespace {

constexpr int kRowsShown = 12;

class TfrmUsers final : public form::Screen {
 public:
  explicit TfrmUsers(Session& session) : Screen(session.app()), session_(session), tblUsers(session.tblUsers()) {}
  std::string title() override { return "Users"; }

 private:
  void build(form::Layout& layout) override;
  void shown(const form::Open& open) override;
  bool mayClose() override { return securityHasAdministrator(session_); }
  void mnuNewClick() { app().open("TfrmUser", {.newRow = true}); }
  void mnuEditClick();
  void mnuDeleteClick();
  void mnuRefreshClick() { tblUsers.refresh(); }
  void requireRow();

  Session& session_;
  store::Cursor& tblUsers;
};

void TfrmUsers::build(form::Layout& l) {
  l.menu("&Edit", l.entry("mnuNew", "&New", &TfrmUsers::mnuNewClick).key("Ctrl+N"),
         l.entry("mnuEdit", "&Edit", &TfrmUsers::mnuEditClick),
         l.entry("mnuDelete", "&Delete", &TfrmUsers::mnuDeleteClick),
         l.entry("mnuRefresh", "&Refresh", &TfrmUsers::mnuRefreshClick).key("F5"));
  l.grid(tblUsers, l.columns(l.column("User Name", tblUsers["UserName"]))).high(kRowsShown).opens([this] {
    mnuEditClick();
  });
}

void TfrmUsers::shown(const form::Open& /*open*/) {
  setFocus(gridOf(tblUsers));
  tblUsers.refresh();
}

void TfrmUsers::requireRow() {
  if (tblUsers.isEmpty()) form::abort();
}

void TfrmUsers::mnuEditClick() {
  requireRow();
  app().open("TfrmUser", {.locate = {{"UserName", tblUsers.value("UserName")}}});
}

void TfrmUsers::mnuDeleteClick() {
  requireRow();
  tblUsers.remove();
  tblUsers.flush();
}

}  // namespace

ScreenPtr makeUsers(Session& session) { return std::make_unique<TfrmUsers>(session); }

}  // namespace quillon::shell
