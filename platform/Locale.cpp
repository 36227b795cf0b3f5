#include "platform/Locale.h"

#include <langinfo.h>
#include <locale.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "base/Text.h"
#include "platform/CountryNames.h"
#include "platform/DatePattern.h"

namespace quillon::platform {
namespace {

std::string localeName(const char* category) {
  for (const char* variable : {"LC_ALL", category, "LANG"}) {
    const char* value = std::getenv(variable);
    if (value && *value) return value;
  }
  return "C";
}

bool ofNoCountry(std::string_view name) {
  const std::string_view language = name.substr(0, name.find_first_of(".@"));
  return language == "C" || language == "POSIX";
}

using Data = std::unique_ptr<__locale_struct, decltype(&::freelocale)>;

// Null when there is none to go by.
Data dataOf(const char* category, int mask) {
  const std::string name = localeName(category);
  return Data(ofNoCountry(name) ? nullptr : ::newlocale(mask, name.c_str(), nullptr), &::freelocale);
}

// Outside ASCII, the marks of the old character sets are all blanks.
std::string mark(const char* text) { return isValidUtf8(text) ? text : " "; }

}  // namespace

std::string countryName() {
  const std::string name = localeName("LC_MONETARY");
  const std::size_t line = name.find('_');
  if (line == std::string::npos) return std::string(kUnknownCountry);
  const std::size_t end = name.find_first_of(".@", line);
  return std::string(countryNameOf(std::string_view(name).substr(line + 1, end - line - 1)));
}

ShortDateFormat shortDateFormat() {
  const Data data = dataOf("LC_TIME", LC_TIME_MASK);
  return ShortDateFormat(data ? datePatternOf(::nl_langinfo_l(D_FMT, data.get())) : kPlainDatePattern);
}

std::string weekdayName(Date day) {
  static constexpr std::array<nl_item, 7> kItems = {DAY_1, DAY_2, DAY_3, DAY_4, DAY_5, DAY_6, DAY_7};
  static constexpr std::array<const char*, 7> kEnglish = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                          "Thursday", "Friday", "Saturday"};
  const Data data = dataOf("LC_TIME", LC_TIME_MASK);
  const std::string name = data ? ::nl_langinfo_l(kItems[day.weekday()], data.get()) : "";
  return name.empty() || !isValidUtf8(name) ? kEnglish[day.weekday()] : name;
}

Separators separators() {
  const Data data = dataOf("LC_NUMERIC", LC_NUMERIC_MASK);
  if (!data) return {};
  return {mark(::nl_langinfo_l(RADIXCHAR, data.get())), mark(::nl_langinfo_l(THOUSEP, data.get()))};
}

}  // namespace quillon::platform
