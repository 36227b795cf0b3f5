#pragma once

namespace quillon::shell {
class Session;
}

namespace quillon::ledger {

// Adds the ledger's screens to the program's.
void registerScreens(shell::Session& session);

}  // namespace quillon::ledger
