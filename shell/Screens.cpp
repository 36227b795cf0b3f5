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
};

// Those of the catalogue only get their maker here.
constexpr Row kScreens[] = {
    {"TfrmQuillon", makeMainWindow, Opening::plain, Lifetime::kept, false},
    {"TfrmCalendar", makeCalendar, Opening::companion, Lifetime::kept, false},
    {"TfrmSplash", makeSplash, Opening::companion, Lifetime::freed, false},
    {"TfrmLogin", makeLogin, Opening::companion, Lifetime::freed, false},
    {"TfrmAbout", makeAbout, Opening::companion, Lifetime::freed, false},
    {"TfrmGettingStarted", makeGettingStarted},
};

}  // namespace

void registerScreens(Session& session) {
  registerCatalogue(session.registry());
  for (const Row& row : kScreens)
    session.registry().add({.className = row.className,
                            .opening = row.opening,
                            .lifetime = row.lifetime,
                            .ofCompany = row.ofCompany,
                            .make = [&session, make = row.make](form::App&) { return make(session); }});
  session.app().calendar = "TfrmCalendar";
  session.app().checkAccess = [&session](const std::string& field, const std::string& name) {
    return checkAccess(session, field, name);
  };
}

}  // namespace quillon::shell
