// The main window: a small bar with the menus of the whole program, the toolbar of one module, and the company's name.
// It lives as long as the process; closing it ends the program.
#include <algorithm>
#include <map>

#include "base/Text.h"
#include "form/App.h"
#include "form/Screen.h"
#include "platform/SettingsText.h"
#include "shell/BackupAtExit.h"
#include "shell/Companies.h"
#include "shell/CompanySession.h"
#include "shell/MakeScreens.h"
#include "shell/Security.h"
#include "shell/Session.h"
#include "shell/Toolbar.h"
#include "store/Cursor.h"

namespace quillon::shell {
namespace {

using form::Control;

constexpr int kCompaniesShown = 5;
constexpr int kBarWidth = 236, kNameHeight = 22;  // of the window and of the company's name, in 1/96 inch
constexpr int kHelpContents = 0, kTechnicalSupport = 510;

class TfrmQuillon final : public form::Screen {
 public:
  explicit TfrmQuillon(Session& session);
  std::string title() override { return kEdition; }
  bool closesByEsc() const override { return false; }  // one key too many would end the program

 private:
  // A name and its switch in the View menu: a setting that is turned and written at once.
  struct Switch {
    const char* key;
    bool on;
  };
  // The entries below a menu, by the part of their path that is left.
  struct Branch {
    explicit Branch(std::string some) : caption(std::move(some)) {}
    std::string caption;
    const form::MenuRow* row = nullptr;
    std::vector<Branch> below;
  };

  void build(form::Layout& layout) override;
  bool mayClose() override;
  static void plant(std::vector<Branch>& branches, std::string_view path, const form::MenuRow& row);
  Control& told(form::Layout& layout, const Branch& branch, bool ofModules);
  Control& entryOf(form::Layout& layout, const form::MenuRow& row, bool ofModules);
  void addCompanies(form::Layout& layout, std::vector<Control*>& entries);
  Control& toolbar(form::Layout& layout);
  bool isOffered(const std::string& screen) const;
  std::string companyName();
  std::string shownName();

  void mnuSettingsClick();
  void mnuBackupOptionsClick();
  void mnuCompanyDatabaseClick(const char* screen);
  void mnuSelectCompanyClick(int number);
  void mnuExitClick() { app().close(*this); }
  void mnuRestoreAllClick();
  void turn(Switch& some);

  Session& session_;
  Switch viewCompanyName_{"ViewCompanyName", true}, toolbarText_{"ToolbarText", true},
      viewConfirmExit_{"ViewConfirmExit", false};
  form::Variable system_;  // the module whose buttons show
  std::map<std::string, std::function<void()>, std::less<>> commands_;
};

TfrmQuillon::TfrmQuillon(Session& session) : Screen(session.app()), session_(session) {
  const platform::SettingsFile& settings = session.settings();
  for (Switch* some : {&viewCompanyName_, &toolbarText_, &viewConfirmExit_})
    some->on = settings.flag("General", some->key, some->on);
  system_.value = systemNamed(settings.text("General", "System"));
  commands_ = {
      {"mnuSettings", [this] { mnuSettingsClick(); }},
      {"mnuBackupOptions", [this] { mnuBackupOptionsClick(); }},
      {"mnuNewCompany", [this] { mnuCompanyDatabaseClick("TfrmCompanyDatabase"); }},
      {"mnuOrganizeCompanies", [this] { mnuCompanyDatabaseClick("TfrmOrganizeCompanies"); }},
      {"mnuExit", [this] { mnuExitClick(); }},
      {"mnuViewCompanyName", [this] { turn(viewCompanyName_); }},
      {"mnuToolbarText", [this] { turn(toolbarText_); }},
      {"mnuViewConfirmExit", [this] { turn(viewConfirmExit_); }},
      {"mnuRestoreAll", [this] { mnuRestoreAllClick(); }},
      {"mnuHelp", [this] { app().help(kHelpContents); }},
      {"mnuTechnicalSupport", [this] { app().help(kTechnicalSupport); }},
      {"mnuAbout", [this] { app().runModal("TfrmAbout"); }},
  };
}

void TfrmQuillon::build(form::Layout& l) {
  l.size({.width = kBarWidth});
  std::vector<Branch> menus;
  for (const form::MenuRow& row : app().registry().menu()) plant(menus, row.path, row);
  for (const Branch& menu : menus) told(l, menu, false);
  toolbar(l);
  l.label("lblCompanyName", [this] { return shownName(); })
      .visibleWhen([this] { return viewCompanyName_.on; })
      .sized({.height = kNameHeight});
}

std::string TfrmQuillon::companyName() {
  if (!session_.hasCompany() || session_.tblCompany().isEmpty()) return {};
  return session_.tblCompany()["CompanyName"].asText();
}

// Also on a drive that is not there any more.
std::string TfrmQuillon::shownName() {
  try {
    return companyName();
  } catch (const Error&) {
    return {};
  }
}

// Menus.

void TfrmQuillon::plant(std::vector<Branch>& branches, std::string_view path, const form::MenuRow& row) {
  const std::size_t end = std::min(path.find('>'), path.size());
  const std::string caption(trim(path.substr(0, end)));
  auto branch = std::ranges::find(branches, caption, &Branch::caption);
  if (branch == branches.end()) branch = branches.insert(branches.end(), Branch{caption});
  if (end == path.size())
    branch->row = &row;
  else
    plant(branch->below, path.substr(end + 1), row);
}

// Those of the modules, which stand in menus of their own below File, can be switched off; Companies and Exit cannot.
Control& TfrmQuillon::told(form::Layout& l, const Branch& branch, bool ofModules) {
  if (branch.row != nullptr) return entryOf(l, *branch.row, ofModules);
  std::vector<Control*> entries;
  for (const Branch& below : branch.below) {
    const bool module = branch.caption == "&File" && below.row == nullptr && below.caption != "&Companies";
    entries.push_back(&told(l, below, ofModules || module));
  }
  if (branch.caption == "&Companies") addCompanies(l, entries);
  Control& menu = l.menuOf(branch.caption, entries);
  if (ofModules) menu.enabledWhen([this] { return session_.menusEnabled; });
  return menu;
}

bool TfrmQuillon::isOffered(const std::string& screen) const {
  const form::ScreenEntry* entry = app().registry().find(screen);
  return entry != nullptr && entry->make;
}

Control& TfrmQuillon::entryOf(form::Layout& l, const form::MenuRow& row, bool ofModules) {
  const auto found = commands_.find(row.name);
  // Without a command: this version does not have it.
  std::function<void()> command;
  if (found != commands_.end())
    command = found->second;
  else if (isOffered(row.screen))
    command = [this, &row] { app().openFromMenu(row.screen); };
  const bool known = command && (row.screen.empty() || isOffered(row.screen));
  Control& entry = l.entry(row.name, std::string(trim(row.path.substr(row.path.rfind('>') + 1))),
                           known ? std::move(command) : nullptr);
  entry.enabledWhen([this, known, ofModules] { return known && (!ofModules || session_.menusEnabled); });
  for (const Switch* some : {&viewCompanyName_, &toolbarText_, &viewConfirmExit_})
    if (row.name == "mnu" + std::string(some->key)) entry.checkedWhen([some] { return some->on; });
  if (row.name == "mnuRestoreAll") entry.key("Ctrl+R");
  return entry;
}

void TfrmQuillon::addCompanies(form::Layout& l, std::vector<Control*>& entries) {
  const auto count = [this] { return static_cast<int>(session_.companiesMenu.size()); };
  entries.push_back(&l.separator());
  for (int i = 0; i < kCompaniesShown; ++i)
    entries.push_back(
        &l.entry("mnuCompany" + std::to_string(i + 1), {}, [this, i] { mnuSelectCompanyClick(i); })
             .caption([this, i, count] { return i < count() ? session_.companiesMenu[i] : std::string(); })
             .visibleWhen([i, count] { return i < count(); }));
  entries.push_back(&l.entry("mnuMoreCompanies", "&More...", [this] {
                        app().runModal("TfrmSelectCompany");
                      }).visibleWhen([count] { return count() > kCompaniesShown; }));
}

// The toolbar: the buttons of one module, and the module to choose.
Control& TfrmQuillon::toolbar(form::Layout& l) {
  std::vector<Control*> controls = {&l.chooser("cboSystem", "&Module:", system_, systemChoices())};
  for (const ToolbarButton& button : toolbarButtons())
    controls.push_back(&l.button(button.name, button.caption,
                                 [this, &button] { app().openFromMenu(button.screenOf(system_.value.asText())); })
                            .visibleWhen([this, &button] { return !button.screenOf(system_.value.asText()).empty(); })
                            .enabledWhen([this, &button] {
                              return session_.menusEnabled && isOffered(button.screenOf(system_.value.asText()));
                            }));
  return l.toolbarOf(controls).captionsWhen([this] { return toolbarText_.on; });
}

// Commands.

void TfrmQuillon::mnuSettingsClick() {
  if (!checkAccess(session_, "Security")) form::abort();
  const std::string path = session_.settings().path();
  const std::string question =
      "Location of settings is:\r" + path + "\r\rChanging settings can cause problems.\rDo you want to proceed?";
  if (app().person().confirm(question, form::Tone::warning, form::Button::no)) app().person().openOutside(path);
}

void TfrmQuillon::mnuBackupOptionsClick() {
  if (!companyName().empty()) {
    app().runModal("TfrmBackupOptions");
    return;
  }
  if (app().person().confirm(
          "\"Your Company\" info must be entered before you can set backup options.\r\rWould you like "
          "to enter it now?"))
    app().open("TfrmCompany", {.page = "Backup"});
}

void TfrmQuillon::mnuCompanyDatabaseClick(const char* screen) {
  app().openFromMenu(screen);
  rebuildCompaniesMenu(session_);
}

void TfrmQuillon::mnuSelectCompanyClick(int number) {
  const auto at = static_cast<std::size_t>(number);
  if (at < session_.companiesMenu.size()) selectCompany(session_, std::string(session_.companiesMenu[at]));
}

void TfrmQuillon::mnuRestoreAllClick() {
  for (const auto& screen : app().screens()) screen->minimised = false;
}

void TfrmQuillon::turn(Switch& some) {
  some.on = !some.on;
  session_.writeSettings(
      [&](platform::SettingsText& settings) { settings.set("General", some.key, some.on ? "1" : "0"); });
}

// The end of the program.

bool TfrmQuillon::mayClose() {
  const form::Screen* users = app().find("frmUsers");
  if (users != nullptr && users->visible() && !securityHasAdministrator(session_)) return false;
  closeForms(session_, "All unsaved changes must be resolved before closing Quillon");
  app().dropScreens();
  if (viewConfirmExit_.on && !app().person().confirm("Close application?")) return false;
  session_.writeSettings([&](platform::SettingsText& settings) {
    if (!session_.dataFolder.empty()) settings.set("General", "Database", session_.dataFolder);
    settings.set("General", "System", system_.value.asText());
  });
  backUpAtExit(session_);
  return true;
}

}  // namespace

ScreenPtr makeMainWindow(Session& session) { return std::make_unique<TfrmQuillon>(session); }

}  // namespace quillon::shell
