#include "maintenance/Screens.h"

#include "maintenance/MakeScreens.h"
#include "shell/Session.h"

namespace quillon::maintenance {
namespace {

struct Row {
  const char* className;
  ScreenPtr (*make)(shell::Session&);
  int help;
};

// All stand in the catalogue; here they get their makers.
constexpr Row kScreens[] = {
    {"TfrmBackup", makeBackup, 180},
    {"TfrmBackupOptions", makeBackupOptions, 180},
    {"TfrmPack", makePack, 190},
};

}  // namespace

void registerScreens(shell::Session& session) {
  for (const Row& row : kScreens)
    session.registry().add({.className = row.className,
                            .help = row.help,
                            .make = [&session, make = row.make](form::App&) { return make(session); }});
}

}  // namespace quillon::maintenance
