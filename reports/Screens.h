#pragma once

namespace quillon::shell {
class Session;
}

namespace quillon::reports {

// Adds what this folder has: the preview, and how the program shows a report in one.
void registerScreens(shell::Session& session);

}  // namespace quillon::reports
