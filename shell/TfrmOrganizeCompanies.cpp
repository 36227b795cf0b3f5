// The list of the companies: adds, edits and removes entries. A company's data is never touched. The sample company's
// entry stays, since every start puts it back. Its result is confirmed when the list has changed.
#include "base/Text.h"
#include "form/App.h"
#include "form/Screen.h"
#include "platform/SettingsText.h"
#include "shell/Companies.h"
#include "shell/MakeScreens.h"
#include "shell/Session.h"

namespace quillon::shell {
namespace {

using store::Value;

class TfrmOrganizeCompanies final : public form::Screen {
 public:
  explicit TfrmOrganizeCompanies(Session& session) : Screen(session.app()), session_(session) {}
  std::string title() override { return "Organize Companies"; }

 private:
  void build(form::Layout& layout) override;
  void shown(const form::Open& open) override;
  void btnAddClick();
  void btnEditClick();
  void btnRemoveClick();
  void btnCloseClick() { setResult(changed_); }

  std::string selected() const { return company_.value.asText(); }
  void select(const std::string& name);
  void changed(const form::Result& result);

  Session& session_;
  form::Variable company_;
  bool changed_ = false;
};

void TfrmOrganizeCompanies::build(form::Layout& l) {
  const auto some = [this] { return !selected().empty(); };
  l.list("lstCompanies", "&Companies:", company_, companyChoices(session_)).high(12).wide(40).opens([this] {
    btnEditClick();
  });
  l.label("lblFolder", [this] { return "Folder: " + companyFolder(session_, selected()); });
  l.row(l.button("btnAdd", "&Add...", &TfrmOrganizeCompanies::btnAddClick),
        l.button("btnEdit", "&Edit...", &TfrmOrganizeCompanies::btnEditClick).enabledWhen(some),
        l.button("btnRemove", "&Remove", &TfrmOrganizeCompanies::btnRemoveClick)
            .enabledWhen([this, some] { return some() && !equalFolded(selected(), kSampleData); })
            .hint("Takes the company off the list; its data stays"),
        l.button("btnClose", "Close", &TfrmOrganizeCompanies::btnCloseClick).standard());
}

void TfrmOrganizeCompanies::shown(const form::Open&) {
  changed_ = false;
  rebuildCompaniesMenu(session_);
  select({});
}

// The first where there is none of that name.
void TfrmOrganizeCompanies::select(const std::string& name) {
  const std::vector<std::string>& names = session_.companiesMenu;
  std::string found = names.empty() ? "" : names.front();
  for (const std::string& some : names)
    if (equalFolded(some, name)) found = some;
  company_.set(found.empty() ? Value() : Value(found));
}

void TfrmOrganizeCompanies::changed(const form::Result& result) {
  rebuildCompaniesMenu(session_);
  if (!result.confirmed) return;
  changed_ = true;
  select(result.values.at("name").asText());
}

void TfrmOrganizeCompanies::btnAddClick() { changed(app().runModal("TfrmCompanyDatabase")); }

void TfrmOrganizeCompanies::btnEditClick() {
  if (selected().empty()) return;
  changed(app().runModal("TfrmCompanyDatabase", {.values = {{"mode", Value("edit")}, {"name", company_.value}}}));
}

void TfrmOrganizeCompanies::btnRemoveClick() {
  const std::string name = selected();
  if (!app().person().confirm("Remove '" + name + "' from the list of companies?\r\rIts data in folder '" +
                                  companyFolder(session_, name) + "' is not deleted.",
                              form::Tone::confirmation, form::Button::no))
    return;
  session_.settings().change([&](platform::SettingsText& settings) { settings.remove("Companies", name); });
  changed_ = true;
  rebuildCompaniesMenu(session_);
  select({});
}

}  // namespace

ScreenPtr makeOrganizeCompanies(Session& session) { return std::make_unique<TfrmOrganizeCompanies>(session); }

}  // namespace quillon::shell
