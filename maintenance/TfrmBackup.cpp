// Copies the company's folder while nobody works in it.
//
// Keeps: the company is open again afterwards, whatever happened; a copy that was made before stays whole until the new
// one is complete.
#include <filesystem>

#include "base/Text.h"
#include "form/App.h"
#include "form/Screen.h"
#include "maintenance/MakeScreens.h"
#include "platform/Folders.h"
#include "shell/Companies.h"
#include "shell/CopyTree.h"
#include "shell/Session.h"
#include "shell/SoleUse.h"

namespace quillon::maintenance {
namespace {

using form::focus;
using form::refuse;
using store::Value;

bool sameFolder(const std::string& one, const std::string& other) {
  std::error_code isNone;
  return std::filesystem::equivalent(one, other, isNone) && !isNone;
}

class TfrmBackup final : public form::Screen {
 public:
  explicit TfrmBackup(shell::Session& session) : Screen(session.app()), session_(session) {}
  std::string title() override { return "Backup"; }

 private:
  void build(form::Layout& layout) override;
  void shown(const form::Open& open) override;
  void btnBrowseClick();
  void btnOKClick();
  void btnCancelClick() { setResult(false); }
  std::string checkedFolder();
  void askBeforeReplacing(const std::string& folder);

  shell::Session& session_;
  form::Variable folder_;
};

void TfrmBackup::build(form::Layout& l) {
  l.row(l.edit("editFolder", "Backup to folder:", folder_, form::textConverter(0)).wide(60),
        l.button("btnBrowse", "&Browse...", &TfrmBackup::btnBrowseClick));
  l.progress("ProgressBar");
  l.row(l.button("btnOK", "OK", &TfrmBackup::btnOKClick).standard(),
        l.button("btnCancel", "Cancel", &TfrmBackup::btnCancelClick).abandons());
}

void TfrmBackup::shown(const form::Open& /*open*/) {
  session_.tblCompany();  // or there is nothing to copy
  folder_.set(Value(shell::weekdayFolder(session_.desktop(), session_.dataFolder)));
}

void TfrmBackup::btnBrowseClick() {
  const std::string now = folder_.value.isNull() ? session_.dataFolder : folder_.value.asText();
  if (const auto chosen = app().person().chooseFolder("Backup to folder", now)) folder_.set(Value(*chosen));
}

std::string TfrmBackup::checkedFolder() {
  std::string folder(folder_.value.isNull() ? "" : trim(folder_.value.asText()));
  if (folder.empty()) refuse("Backup to folder must be entered", focus("editFolder"));
  try {
    if (!folder.starts_with('/')) throw Error("It would stand wherever the program was started");
    platform::makeFolder(folder);
  } catch (const Error&) {
    refuse("Backup to folder invalid", focus("editFolder"));
  }
  if (sameFolder(folder, session_.dataFolder))
    refuse("Backup to folder must not be same as database folder", focus("editFolder"));
  for (const std::string& name : shell::companyNames(session_))
    if (sameFolder(folder, shell::companyFolder(session_, name)))
      refuse("Backup to folder must not be same as database folder of company '" + name + "'", focus("editFolder"));
  return folder;
}

// An earlier copy of this company is replaced without a question.
void TfrmBackup::askBeforeReplacing(const std::string& folder) {
  const auto other = shell::otherCompanyIn(session_.database(), folder);
  if (other && !app().person().confirm("The folder holds a backup of another company, '" + *other +
                                           "'.\r\rReplace it by one of this company?",
                                       form::Tone::warning, form::Button::no))
    form::abort();
}

void TfrmBackup::btnOKClick() {
  const std::string folder = checkedFolder();
  askBeforeReplacing(folder);
  const shell::SoleUse alone(session_, this);
  if (shell::copyTree(session_, session_.dataFolder, folder)) setResult(true);
}

}  // namespace

ScreenPtr makeBackup(shell::Session& session) { return std::make_unique<TfrmBackup>(session); }

}  // namespace quillon::maintenance
