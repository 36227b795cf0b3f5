#pragma once

#include <string_view>

namespace quillon::platform {

inline constexpr std::string_view kUnknownCountry = "unknown";

// The English name of a territory by its two capital letters (ISO 3166-1), such as "United States" for "US";
// kUnknownCountry for anything else.
std::string_view countryNameOf(std::string_view territory);

}  // namespace quillon::platform
