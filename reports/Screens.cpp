#include "reports/Screens.h"

#include "form/Registry.h"
#include "form/Screen.h"
#include "reports/MakeScreens.h"
#include "reports/Preview.h"
#include "shell/Session.h"

namespace quillon::reports {

void registerScreens(shell::Session& session) {
  session.app().preview = [&session](const std::string& report, const form::Open& open) {
    preview(session, report, open);
  };
  session.registry().add({.className = "TfrmPreview",
                          .opening = form::Opening::companion,
                          .many = true,
                          .help = 270,
                          .make = [&session](form::App&) { return makePreview(session); }});
}

}  // namespace quillon::reports
