#pragma once

#include <string>

namespace quillon::platform {

// Who runs this process: the user's name in the system's list, or the number of one without a name; at most 31
// characters.
std::string userName();
// The user's home folder from $HOME, else from the system's list; empty where neither tells one.
std::string homeFolder();
// The name of this machine; "unknown" when the system does not tell.
std::string machineName();

}  // namespace quillon::platform
