#pragma once

#include <memory>

namespace quillon::form {
class Screen;
}
namespace quillon::shell {
class Session;
}

// The makers of this folder's screens; each stands in the file of that name.
namespace quillon::reports {

std::unique_ptr<form::Screen> makePreview(shell::Session& session);

}  // namespace quillon::reports
