#pragma once

#include <string>

#include "base/AmountFormat.h"
#include "base/Date.h"
#include "base/DateText.h"

// What the user's locale says, from the environment and the C library's data; the process's own locale stays as it is.
// LC_ALL counts before the category's variable, and that before LANG. A locale of no country (C, POSIX), or one whose
// data is not installed, gives kPlainDatePattern, '.' and ','.
namespace quillon::platform {

// The English name of LC_MONETARY's territory, or "unknown".
std::string countryName();
// With numeric months and days.
ShortDateFormat shortDateFormat();
// The full name of the day's weekday in the language of LC_TIME; in English where it has none. In UTF-8.
std::string weekdayName(Date day);
// In UTF-8. The group mark may be empty.
Separators separators();

}  // namespace quillon::platform
