#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quillon::apps {

// "1 row", "1,234 rows".
std::string counted(std::uint64_t count, std::string_view noun);

}  // namespace quillon::apps
