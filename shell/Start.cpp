#include "shell/Start.h"

#include "platform/SettingsText.h"
#include "shell/Companies.h"
#include "shell/CompanySession.h"
#include "shell/Security.h"
#include "shell/Session.h"

namespace quillon::shell {
namespace {

bool onlySampleData(Session& session) {
  return session.companiesMenu.empty() ||
         (session.companiesMenu.size() == 1 && session.companiesMenu[0] == kSampleData);
}

// This version works on folders; the settings may ask for a server that another one reached.
bool asksForServer(Session& session) {
  const auto& settings = session.settings();
  return !settings.text("General", "RemoteAddress").empty() || !settings.text("General", "RemoteHost").empty();
}

void closeSplash(Session& session) {
  if (form::Screen* splash = session.app().find("frmSplash")) session.app().dismiss(*splash);
}

}  // namespace

void prepareStart(Session& session) {
  if (!session.settings().find("Companies", kSampleData))
    session.writeSettings([&](platform::SettingsText& settings) {
      settings.set("Companies", kSampleData, session.publicFolder() + "/Data");
    });
  rebuildCompaniesMenu(session);
}

bool enterAtStart(Session& session, const std::string& given, bool welcomes) {
  if (asksForServer(session)) {
    closeSplash(session);
    session.menusEnabled = false;
    session.person().show(form::Tone::warning,
                          "The settings name a remote store server (RemoteHost or RemoteAddress).\rThis version works "
                          "on company folders only.\r\rRemove the setting to open a company: " +
                              session.settings().path(),
                          kTitle);
    return true;
  }
  const std::string folder = given.empty() ? session.settings().text("General", "Database") : given;
  if (welcomes && (onlySampleData(session) || folder.empty())) {
    closeSplash(session);
    return session.app().runModal("TfrmWelcome").confirmed;
  }
  const bool opened = !folder.empty() && openCompany(session, {}, folder);
  closeSplash(session);
  session.menusEnabled = opened && login(session);
  if (session.menusEnabled) setUpIfNew(session, {});
  return true;
}

}  // namespace quillon::shell
