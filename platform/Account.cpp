#include "platform/Account.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

#include "base/Text.h"

namespace quillon::platform {
namespace {

// A field of this user's entry in the system's list of users; empty when there is none.
std::string listed(char* passwd::*field) {
  std::array<char, 4096> buffer;
  passwd entry{};
  passwd* found = nullptr;
  if (::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found || !(found->*field))
    return {};
  return found->*field;
}

}  // namespace

std::string userName() {
  constexpr std::size_t kLongest = 31;
  const std::string name = listed(&passwd::pw_name);
  return name.empty() ? std::to_string(::geteuid()) : std::string(firstCharacters(name, kLongest));
}

std::string homeFolder() {
  const char* home = std::getenv("HOME");
  return home && *home == '/' ? home : listed(&passwd::pw_dir);
}

// The system cuts a name that is too long and may leave its end unmarked.
std::string machineName() {
  std::array<char, 256> buffer{};
  if (::gethostname(buffer.data(), buffer.size() - 1) != 0) return "unknown";
  return buffer.data();
}

}  // namespace quillon::platform
