#include "shell/Start.h"

#include "base/Text.h"
#include "form/Ending.h"
#include "platform/SettingsText.h"
#include "shell/Companies.h"
#include "shell/CompanySession.h"
#include "shell/Security.h"
#include "shell/Session.h"

namespace quillon::shell {
namespace {

bool onlySampleData(Session& session) {
  return session.companiesMenu.empty() ||
         (session.companiesMenu.size() == 1 && equalFolded(session.companiesMenu[0], kSampleData));
}

// One that is given relative to where the program was started, so that it is found from elsewhere the next time.
std::string folderToOpen(Session& session, const std::string& given) {
  if (given.empty()) return session.settings().text("General", "Database");
  return absoluteFolder(given);
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
  session.menusEnabled = false;
  if (!worksOnFolders(session)) {
    closeSplash(session);
    return true;
  }
  const std::string folder = folderToOpen(session, given);
  if (welcomes && (onlySampleData(session) || folder.empty())) {
    closeSplash(session);
    return session.app().runModal("TfrmWelcome").confirmed;
  }
  bool opened = false;
  form::Ending ending;
  ending.step([&] { opened = !folder.empty() && openCompany(session, {}, folder); });
  closeSplash(session);
  ending.raise();
  session.menusEnabled = opened && login(session);
  if (session.menusEnabled) setUpIfNew(session, {});
  return true;
}

}  // namespace quillon::shell
