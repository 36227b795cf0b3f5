#pragma once

#include <span>
#include <string_view>

namespace quillon::shell {

// A right of a user: a flag of Users. `group` is where it stands on the screen of a user.
struct Right {
  const char* group;  // name of a RightGroup
  const char* caption;
  const char* field;
};

// Rights that are given and taken together. Its name begins those of the buttons for that: "btnGeneralAll".
struct RightGroup {
  const char* name;
  const char* page;
  const char* caption;  // empty where it is all of its page
};

std::span<const Right> allRights();
std::span<const RightGroup> rightGroups();  // in the order of their pages

}  // namespace quillon::shell
