#pragma once

#include <string>
#include <vector>

#include "platform/Program.h"

namespace quillon::platform {

// Hands files and links to the desktop's own choice of program, with xdg-open.
class Opening {
 public:
  // `target` is the path of an existing file or folder, or a link that begins with http:, https:, mailto: or file:.
  // Waits until the desktop has taken it, for two seconds at most. Error for anything else, for more than 131071 bytes,
  // when xdg-open is not installed, and when it says that it failed.
  void open(const std::string& target);

 private:
  std::vector<DetachedProgram> running_;  // to be reaped
};

}  // namespace quillon::platform
