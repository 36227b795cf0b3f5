#pragma once

#include <string>
#include <string_view>

// Patterns of short dates are what ShortDateFormat reads: "MM/dd/yyyy", "d.M.yy".
namespace quillon::platform {

// Where nothing is known of how people here write dates.
inline constexpr std::string_view kPlainDatePattern = "MM/dd/yyyy";

// With numeric months and days: the first "MMM" loses an M and the first "ddd" a d.
std::string withNumericParts(std::string_view pattern);

// The pattern of a strftime format such as "%m/%d/%Y", as the C library's locales give it. Weekdays and words are left
// out, years are those of our calendar, and where the format parts two numbers by letters only, '/' parts them.
// kPlainDatePattern when it does not hold each of day, month and year once.
std::string datePatternOf(std::string_view strftimeFormat);

}  // namespace quillon::platform
