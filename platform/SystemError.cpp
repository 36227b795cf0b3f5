#include "platform/SystemError.h"

#include <system_error>

namespace quillon::platform {

Error systemError(std::string_view verb, std::string_view path, int number) {
  return Error("Could not " + std::string(verb) + " '" + std::string(path) +
               "': " + std::generic_category().message(number));
}

}  // namespace quillon::platform
