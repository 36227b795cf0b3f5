#pragma once

#include <memory>

namespace quillon::form {
class Screen;
}

namespace quillon::shell {

class Session;

std::unique_ptr<form::Screen> makeMainWindow(Session& session);

}  // namespace quillon::shell
