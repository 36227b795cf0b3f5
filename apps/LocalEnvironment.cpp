#include "apps/LocalEnvironment.h"

#include <pwd.h>
#include <unistd.h>

#include <array>

namespace quillon::apps {
namespace {

// A user without a name in the system's list is shown by number.
std::string userName() {
  const uid_t user = ::geteuid();
  std::array<char, 4096> buffer;
  passwd entry{};
  passwd* found = nullptr;
  if (::getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found) == 0 && found) return found->pw_name;
  return std::to_string(user);
}

// The system cuts a name that is too long and may leave its end unmarked.
std::string machineName() {
  std::array<char, 256> buffer{};
  if (::gethostname(buffer.data(), buffer.size() - 1) != 0) return "unknown";
  return buffer.data();
}

}  // namespace

LocalEnvironment::LocalEnvironment()
    : environment_{.files = files_,
                   .clock = store::systemClock(),
                   .user = userName(),
                   .machine = machineName(),
                   .process = ::getpid()} {}

}  // namespace quillon::apps
