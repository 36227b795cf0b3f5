// What happens to the company's files when the program ends.
#include "form/App.h"
#include "form/Screen.h"
#include "form/Table.h"
#include "maintenance/MakeScreens.h"
#include "shell/Session.h"

namespace quillon::maintenance {
namespace {

using store::Value;

class TfrmBackupOptions final : public form::Screen {
 public:
  explicit TfrmBackupOptions(shell::Session& session) : Screen(session.app()), session_(session) {}
  std::string title() override { return "Backup Options"; }

 private:
  void build(form::Layout& layout) override;
  void shown(const form::Open& /*open*/) override { tblCompany.refresh(); }
  void btnOKClick();
  void btnCancelClick() { setResult(false); }

  shell::Session& session_;
  form::Table tblCompany{*this, "Company"};
};

void TfrmBackupOptions::build(form::Layout& l) {
  l.choice("Backup on Exit", tblCompany["BackupOnExit"],
           form::choicesConverter({{Value(1), "Always"}, {Value(2), "Never"}, {Value(3), "Ask"}}))
      .readOnlyWhen([this] { return tblCompany.isEmpty(); })
      .explains("\"Your Company\" info must be entered before you can set backup options.");
  l.row(l.button("btnOK", "OK", &TfrmBackupOptions::btnOKClick).standard(),
        l.button("btnCancel", "Cancel", &TfrmBackupOptions::btnCancelClick).abandons());
}

void TfrmBackupOptions::btnOKClick() {
  if (tblCompany.isEditing()) tblCompany.post();
  tblCompany.flush();
  session_.tblCompany().refresh();
  setResult(true);
}

}  // namespace

ScreenPtr makeBackupOptions(shell::Session& session) { return std::make_unique<TfrmBackupOptions>(session); }

}  // namespace quillon::maintenance
