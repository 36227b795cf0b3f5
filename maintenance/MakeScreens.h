#pragma once

#include <memory>

namespace quillon::form {
class Screen;
}
namespace quillon::shell {
class Session;
}

// The makers of this folder's screens; each stands in the file of that name.
namespace quillon::maintenance {

using ScreenPtr = std::unique_ptr<form::Screen>;

ScreenPtr makeBackup(shell::Session& session);
ScreenPtr makeBackupOptions(shell::Session& session);
ScreenPtr makePack(shell::Session& session);

}  // namespace quillon::maintenance
