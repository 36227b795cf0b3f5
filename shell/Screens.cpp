#include "platform/Desktop.h"
#include "shell/Catalogue.h"
#include "shell/MakeScreens.h"
#include "shell/Security.h"
#include "shell/Session.h"

namespace quillon::shell {
namespace {

using form::Lifetime;
using form::Opening;

struct Row {
  const char* className;
  ScreenPtr (*make)(Session&);
  Opening opening = Opening::companion;
  Lifetime lifetime = Lifetime::freed;
  bool ofCompany = true;
  int help = 0;
};

// Those of the catalogue only get their maker here.
constexpr Row kScreens[] = {
    {"TfrmQuillon", makeMainWindow, Opening::plain, Lifetime::kept, false, 100},
    {"TfrmCalendar", makeCalendar, Opening::companion, Lifetime::kept, false, 104},
    {"TfrmDialer", makeDialer, Opening::plain, Lifetime::kept, false, 105},
    {"TfrmSplash", makeSplash, Opening::companion, Lifetime::freed, false, 100},
    {"TfrmLogin", makeLogin, Opening::companion, Lifetime::freed, false, 103},
    {"TfrmAbout", makeAbout, Opening::companion, Lifetime::freed, false, 510},
    {"TfrmWelcome", makeWelcome, Opening::companion, Lifetime::freed, false, 101},
    {"TfrmCompanyDatabase", makeCompanyDatabase, Opening::modal, Lifetime::freed, false, 102},
    {"TfrmOrganizeCompanies", makeOrganizeCompanies, Opening::modal, Lifetime::freed, false, 102},
    {"TfrmSelectCompany", makeSelectCompany, Opening::companion, Lifetime::freed, false, 102},
    {.className = "TfrmGettingStarted", .make = makeGettingStarted, .help = 110},
    {.className = "TfrmCompany", .make = makeCompanySettings, .help = 130},
    {.className = "TfrmUsers", .make = makeUsers, .help = 120},
    {.className = "TfrmUser", .make = makeUser, .help = 120},
};

}  // namespace

void registerScreens(Session& session) {
  registerCatalogue(session.registry());
  for (const Row& row : kScreens)
    session.registry().add({.className = row.className,
                            .opening = row.opening,
                            .lifetime = row.lifetime,
                            .ofCompany = row.ofCompany,
                            .help = row.help,
                            .make = [&session, make = row.make](form::App&) { return make(session); }});
  session.app().calendar = "TfrmCalendar";
  session.app().help = [&session](int context) { session.person().openOutside(session.desktop().helpPage(context)); };
  session.app().checkAccess = [&session](const std::string& field, const std::string& name) {
    return checkAccess(session, field, name);
  };
}

}  // namespace quillon::shell
