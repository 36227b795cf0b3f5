#pragma once

namespace quillon::shell {
class Session;
}

namespace quillon::maintenance {

// Adds the screens of maintenance to the program's.
void registerScreens(shell::Session& session);

}  // namespace quillon::maintenance
