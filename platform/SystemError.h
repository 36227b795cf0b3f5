#pragma once

#include <string>
#include <string_view>

#include "base/Errors.h"

namespace quillon::platform {

// "Could not `verb` 'path': " and what the system says of the error number.
Error systemError(std::string_view verb, std::string_view path, int number);

}  // namespace quillon::platform
