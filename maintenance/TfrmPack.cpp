// Repairs and packs every table of the company while nobody works in it.
//
// Keeps: the company is open again afterwards, whatever happened; what could not be saved is told, also when the run
// was stopped, and stands in a file of the company's folder.
#include "form/App.h"
#include "form/Ending.h"
#include "form/Screen.h"
#include "maintenance/MakeScreens.h"
#include "maintenance/PackTables.h"
#include "platform/Desktop.h"
#include "platform/ReplacementFile.h"
#include "shell/Session.h"
#include "shell/SoleUse.h"
#include "store/Database.h"
#include "store/vfs/File.h"

namespace quillon::maintenance {
namespace {

constexpr std::size_t kDetailsShown = 25;  // where the list cannot be kept

class TfrmPack final : public form::Screen {
 public:
  explicit TfrmPack(shell::Session& session) : Screen(session.app()), session_(session) {}
  std::string title() override { return "Pack/Repair Tables"; }

 private:
  void build(form::Layout& layout) override;
  void shown(const form::Open& /*open*/) override { session_.tblCompany(); }  // or there is nothing to pack
  void btnOKClick();
  void btnCancelClick() { setResult(false); }
  void tell(const std::vector<TableLoss>& losses);
  std::string keepList(const std::vector<TableLoss>& losses);

  shell::Session& session_;
};

void TfrmPack::build(form::Layout& l) {
  l.label("Compact data and re-index");
  l.progress("ProgressBar");
  l.row(l.button("btnOK", "OK", &TfrmPack::btnOKClick).standard(),
        l.button("btnCancel", "Cancel", &TfrmPack::btnCancelClick).abandons());
}

void TfrmPack::btnOKClick() {
  std::vector<TableLoss> losses;
  form::Ending ending;
  ending.step([&] {
    const shell::SoleUse alone(session_, this);
    store::Database company(session_.store(), session_.dataFolder);
    packTables(
        company,
        [this](const std::string& text, int done) {
          app().person().hourglass(true);
          app().person().progress({.text = text, .done = done, .total = static_cast<long>(packOrder().size())});
        },
        losses);
  });
  app().person().hourglass(false);
  if (!losses.empty()) tell(losses);
  ending.raise();
  setResult(true);
}

void TfrmPack::tell(const std::vector<TableLoss>& losses) {
  std::string text =
      "Some data was damaged and could not be saved. Compare these tables with your papers or with a backup, and enter "
      "again what is missing.\r";
  for (const TableLoss& loss : losses) text += "\r" + loss.head;
  text += "\r\rThe damaged files are kept in the company's folder, with \"~damaged\" behind their names.";
  const std::string list = keepList(losses);
  if (!list.empty()) {
    text += "\rWhat is known of the lost records is written in " + list;
  } else {
    std::size_t left = kDetailsShown;
    for (const TableLoss& loss : losses)
      for (const std::string& detail : loss.details)
        if (left > 0) --left, text += "\r" + detail;
  }
  app().person().show(form::Tone::warning, text);
}

// A text beside the tables; empty where it cannot be written.
std::string TfrmPack::keepList(const std::vector<TableLoss>& losses) {
  const std::string start = session_.dataFolder + "/Lost in repair " + session_.desktop().today().toIso();
  std::string path = start + ".txt";
  for (int number = 2; session_.store().environment().files.exists(path); ++number)
    path = start + " " + std::to_string(number) + ".txt";
  try {
    platform::ReplacementFile file(path, path + ".new");
    for (const TableLoss& loss : losses) {
      file.write(loss.head + "\n");
      for (const std::string& detail : loss.details) file.write("  " + detail + "\n");
    }
    file.putInPlace();
    return path;
  } catch (const Error&) {
    return {};
  }
}

}  // namespace

ScreenPtr makePack(shell::Session& session) { return std::make_unique<TfrmPack>(session); }

}  // namespace quillon::maintenance
