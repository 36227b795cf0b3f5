#pragma once

#include <memory>

namespace quillon::form {
class Screen;
}

// The makers of this folder's screens, for its Screens.cpp.
namespace quillon::shell {

class Session;
using ScreenPtr = std::unique_ptr<form::Screen>;

ScreenPtr makeMainWindow(Session& session);
ScreenPtr makeCalendar(Session& session);
ScreenPtr makeSplash(Session& session);
ScreenPtr makeLogin(Session& session);
ScreenPtr makeAbout(Session& session);
ScreenPtr makeDialer(Session& session);
ScreenPtr makeWelcome(Session& session);
ScreenPtr makeCompanyDatabase(Session& session);
ScreenPtr makeOrganizeCompanies(Session& session);
ScreenPtr makeSelectCompany(Session& session);
ScreenPtr makeGettingStarted(Session& session);
ScreenPtr makeUsers(Session& session);
ScreenPtr makeUser(Session& session);
ScreenPtr makeCompanySettings(Session& session);

}  // namespace quillon::shell
