// Adds a company to the settings' list, edits an entry of it, or makes the sample company.
//
// Asked for with the values "mode" ("new" where it is not given, "edit", "sample") and, for edit, "name". Confirmed,
// the list has the company, its result has "name" and "folder", and one that was added or made was opened, unless the
// person was told why not.
#include "base/Text.h"
#include "form/App.h"
#include "form/Screen.h"
#include "platform/Folders.h"
#include "platform/SettingsText.h"
#include "shell/Companies.h"
#include "shell/CompanySession.h"
#include "shell/MakeScreens.h"
#include "shell/Session.h"
#include "store/vfs/File.h"

namespace quillon::shell {
namespace {

using form::focus;
using form::refuse;
using store::Value;

constexpr int kNameSize = 40;
constexpr std::size_t kShortestFolder = 4;  // in characters
constexpr const char* kOnlyAShortcut =
    "\r\rThis option will not move or create a database, but it can be used to update a company shortcut after a "
    "database has been moved.";

class TfrmCompanyDatabase final : public form::Screen {
 public:
  explicit TfrmCompanyDatabase(Session& session) : Screen(session.app()), session_(session) {}
  std::string title() override;

 private:
  enum class Mode { add, edit, sample };

  void build(form::Layout& layout) override;
  void shown(const form::Open& open) override;
  void btnBrowseClick();
  void btnOKClick();
  void btnCancelClick() { setResult(false); }

  bool nameIsFixed() const { return mode_ == Mode::sample || equalFolded(oldName_, kSampleData); }
  void checkName(const std::string& name) const;
  void checkFolder(const std::string& folder) const;
  void requireDatabase(const std::string& folder) const;
  bool prepareFolder(const std::string& folder) const;
  void requireUnlisted(const std::string& name) const;
  void list(const std::string& name, const std::string& folder);

  Session& session_;
  Mode mode_ = Mode::add;
  std::string oldName_;
  form::Variable name_, folder_;
};

std::string TfrmCompanyDatabase::title() {
  switch (mode_) {
    case Mode::edit:
      return "Edit Company";
    case Mode::sample:
      return "Create Sample Data";
    default:
      return "Add New Company";
  }
}

void TfrmCompanyDatabase::build(form::Layout& l) {
  l.edit("editCompanyName", "Company &Name:", name_, form::textConverter(kNameSize))
      .wide(kNameSize)
      .readOnlyWhen([this] { return nameIsFixed(); })
      .explains("The sample company keeps its name.");
  l.row(l.edit("editDatabase", "Database &Folder:", folder_, form::textConverter(0)).wide(50),
        l.button("btnBrowse", "&Browse...", &TfrmCompanyDatabase::btnBrowseClick));
  l.row(l.button("btnOK", "OK", &TfrmCompanyDatabase::btnOKClick).standard(),
        l.button("btnCancel", "Cancel", &TfrmCompanyDatabase::btnCancelClick).abandons());
}

void TfrmCompanyDatabase::shown(const form::Open& open) {
  const auto given = [&](const char* name) {
    const auto found = open.values.find(name);
    return found == open.values.end() ? std::string() : found->second.asText();
  };
  const std::string mode = given("mode");
  mode_ = mode == "sample" ? Mode::sample : mode == "edit" ? Mode::edit : Mode::add;
  oldName_ = mode_ == Mode::edit ? given("name") : "";
  name_.reset();
  folder_.reset();
  if (mode_ == Mode::sample) {
    name_.set(Value(kSampleData));
    folder_.set(Value(session_.publicFolder() + "/Data"));
  } else if (mode_ == Mode::edit) {
    name_.set(Value(oldName_));
    folder_.set(Value(companyFolder(session_, oldName_)));
  }
  if (nameIsFixed()) setFocus(find("editDatabase"));
}

void TfrmCompanyDatabase::btnBrowseClick() {
  if (const auto chosen = app().person().chooseFolder("Database Folder", folder_.value.asText()))
    folder_.set(Value(*chosen));
}

// The checks, in their order.

void TfrmCompanyDatabase::checkName(const std::string& name) const {
  if (name.empty()) refuse("Company Name must be entered", focus("editCompanyName"));
  if (name.find('&') != name.npos) refuse("Company Name must not contain character '&'.", focus("editCompanyName"));
  if (!nameIsFixed() && equalFolded(name, kSampleData))
    refuse("Company Name 'Sample Data' is reserved for system generated sample data", focus("editCompanyName"));
}

void TfrmCompanyDatabase::checkFolder(const std::string& folder) const {
  if (folder.empty()) refuse("Database Folder must be entered", focus("editDatabase"));
  if (lengthInCharacters(folder) < kShortestFolder) refuse("Database Folder invalid", focus("editDatabase"));
}

void TfrmCompanyDatabase::requireDatabase(const std::string& folder) const {
  if (!session_.store().environment().files.folderExists(folder))
    refuse(std::string("The specified folder does not exist. The folder must exist and contain an existing database.") +
               kOnlyAShortcut,
           focus("editDatabase"));
  if (!holdsCompany(session_, folder))
    refuse(std::string("The specified folder does not contain an existing database.") + kOnlyAShortcut,
           focus("editDatabase"));
}

// Makes it where it is missing. False: it has a database that the person does not want.
bool TfrmCompanyDatabase::prepareFolder(const std::string& folder) const {
  try {
    platform::makeFolder(folder);
  } catch (const Error& error) {
    refuse(error.what(), focus("editDatabase"));
  }
  return mode_ == Mode::sample || !holdsCompany(session_, folder) ||
         app().person().confirm(
             "The specified folder already contains a database. Create a company shortcut to it?\r\rThis would be "
             "expected if setting up multiple workstations to access a shared database on a network.");
}

// An entry may be spelled anew under its own name, but no other is written over.
void TfrmCompanyDatabase::requireUnlisted(const std::string& name) const {
  if (nameIsFixed() || equalFolded(name, oldName_)) return;
  if (session_.settings().find("Companies", name))
    refuse("Company Name '" + name + "' already exists", focus("editCompanyName"));
}

void TfrmCompanyDatabase::btnOKClick() {
  const std::string name(trim(name_.value.asText())), typed(trim(folder_.value.asText()));
  if (name.empty() && typed.empty()) return btnCancelClick();
  if (!worksOnFolders(session_)) return;
  checkName(name);
  checkFolder(typed);
  const std::string folder = absoluteFolder(typed);
  if (mode_ == Mode::edit)
    requireDatabase(folder);
  else if (!prepareFolder(folder))
    form::abort(focus("editDatabase"));
  requireUnlisted(name);
  if (mode_ != Mode::edit && !holdsCompany(session_, folder)) {
    app().person().hourglass(true);
    createCompany(session_, folder);
  }
  list(name, folder);
  if (mode_ != Mode::edit) enterCompany(session_, name, folder);
}

// From here on the company is in the list, whatever becomes of opening it.
void TfrmCompanyDatabase::list(const std::string& name, const std::string& folder) {
  session_.settings().change([&](platform::SettingsText& settings) {
    if (!oldName_.empty()) settings.remove("Companies", oldName_);
    settings.set("Companies", name, folder);
  });
  rebuildCompaniesMenu(session_);
  result().values = {{"name", Value(name)}, {"folder", Value(folder)}};
  setResult(true);
}

}  // namespace

ScreenPtr makeCompanyDatabase(Session& session) { return std::make_unique<TfrmCompanyDatabase>(session); }

}  // namespace quillon::shell
