#pragma once

#include <memory>

namespace quillon::form {
class App;
class Screen;
}  // namespace quillon::form

namespace quillon::shell {

std::unique_ptr<form::Screen> makeCalendar(form::App& app);

}  // namespace quillon::shell
