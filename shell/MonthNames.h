#pragma once

#include <array>
#include <cstddef>

namespace quillon::shell {

inline constexpr std::array<const char*, 12> kMonthNames = {"January",   "February", "March",    "April",
                                                            "May",       "June",     "July",     "August",
                                                            "September", "October",  "November", "December"};

// In English; 1 is January.
constexpr const char* monthName(int month) { return kMonthNames.at(static_cast<std::size_t>(month - 1)); }

}  // namespace quillon::shell
