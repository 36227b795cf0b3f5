#include "ledger/Screens.h"

#include "ledger/MakeScreens.h"
#include "shell/Session.h"

namespace quillon::ledger {
namespace {

using form::Lifetime;
using form::Opening;

struct Row {
  const char* className;
  ScreenPtr (*make)(shell::Session&);
  Opening opening = Opening::companion;
  Lifetime lifetime = Lifetime::freed;
  bool many = false;
};

constexpr Row kScreens[] = {
    {"TfrmGLAccounts", makeGLAccounts, Opening::list},
    {"TfrmGLAccountsFilter", makeGLAccountsFilter, Opening::companion, Lifetime::hidden},
    {"TfrmGLAccount", makeGLAccount},
    {"TfrmGLAccountSub", makeGLAccountSub},
    // A picker leads to its list, and that to the picker again.
    {"TfrmGLAccountSearch", makeGLAccountSearch, Opening::companion, Lifetime::freed, true},
    {"TfrmGLAccountSubSearch", makeGLAccountSubSearch, Opening::companion, Lifetime::freed, true},
    {"TfrmJVs", makeJVs, Opening::list},
    {"TfrmJVsFilter", makeJVsFilter, Opening::companion, Lifetime::hidden},
    {"TfrmJVsFind", makeJVsFind, Opening::companion, Lifetime::hidden},
    {"TfrmJV", makeJV},
    {"TfrmImportJVData", makeImportJVData},
};

}  // namespace

void registerScreens(shell::Session& session) {
  for (const Row& row : kScreens)
    session.registry().add({.className = row.className,
                            .opening = row.opening,
                            .lifetime = row.lifetime,
                            .many = row.many,
                            .make = [&session, make = row.make](form::App&) { return make(session); }});
}

}  // namespace quillon::ledger
