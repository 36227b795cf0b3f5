#include "ledger/ImportScreen.h"

#include <filesystem>

#include "base/Text.h"

namespace quillon::ledger {

using form::focus;
using form::refuse;

void ImportScreen::build(form::Layout& l) {
  for (const std::string& line : format_) l.label(line);
  l.row(l.edit("editFileName", "&File name:", fileName_, form::textConverter(0)).wide(50),
        l.button("btnBrowse", "&Browse...", &ImportScreen::btnBrowseClick));
  l.label("lblStatus", [this] { return status_; });
  l.progress("ProgressBar");
  l.row(l.button("btnOK", "OK", &ImportScreen::btnOKClick).standard(),
        l.button("btnCancel", "Cancel", &ImportScreen::btnCancelClick).abandons());
}

void ImportScreen::shown(const form::Open& /*open*/) { status_.clear(); }

void ImportScreen::btnBrowseClick() {
  const std::optional<std::string> chosen = app().person().chooseFile(
      {.title = title_, .filter = "Text files (*.txt)|*.txt|All files (*.*)|*.*", .extension = "txt"});
  if (chosen) fileName_.set(*chosen);
}

void ImportScreen::requireFile() {
  const std::string name = fileName_.value.asText();
  if (name.empty()) refuse("File name must be entered", focus("editFileName"));
  if (lengthInCharacters(name) < 4) refuse("File name invalid", focus("editFileName"));
  if (!std::filesystem::is_regular_file(name)) refuse("The specified file does not exist", focus("editFileName"));
}

void ImportScreen::btnOKClick() {
  requireFile();
  try {
    import(fileName_.value.asText());
  } catch (...) {
    status_.clear();
    throw;
  }
  setResult(true);
}

void ImportScreen::show(const std::string& status) {
  status_ = status;
  app().person().progress({.text = status_});
}

void ImportScreen::progress(std::uint64_t done, std::uint64_t total) {
  app().person().progress({.text = status_, .done = static_cast<long>(done), .total = static_cast<long>(total)});
}

}  // namespace quillon::ledger
