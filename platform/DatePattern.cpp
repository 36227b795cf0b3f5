#include "platform/DatePattern.h"

#include <algorithm>

namespace quillon::platform {
namespace {

struct Conversion {
  char letter;
  std::string_view pattern;
};

constexpr Conversion kConversions[] = {
    {'d', "dd"},   {'e', "d"},  {'m', "MM"},       {'b', "MMM"},        {'h', "MMM"}, {'B', "MMM"},
    {'Y', "yyyy"}, {'y', "yy"}, {'D', "MM/dd/yy"}, {'F', "yyyy-MM-dd"}, {'n', " "},   {'t', " "},
};

std::string_view patternOf(char letter) {
  for (const Conversion& conversion : kConversions) {
    if (conversion.letter == letter) return conversion.pattern;
  }
  return {};
}

bool isMark(char c) { return c == ' ' || c == '.' || c == '/' || c == '-' || c == ','; }

// What follows a '%' in `format` from `at` on; moves `at` behind it.
std::string_view takeConversion(std::string_view format, std::size_t& at) {
  std::string_view longYear;
  bool unpadded = false;
  for (; at < format.size() && std::string_view("-_0^#EO").find(format[at]) != std::string_view::npos; ++at) {
    unpadded |= format[at] == '-' || format[at] == '_';
    if (format[at] == 'E') longYear = "yyyy";  // an era's year has no two digits of its own
  }
  if (at == format.size()) return {};
  const char letter = format[at++];
  if (letter == 'y' && !longYear.empty()) return longYear;
  const std::string_view pattern = patternOf(letter);
  return unpadded && pattern.size() == 2 && letter != 'y' ? pattern.substr(1) : pattern;
}

bool holdsEachOnce(std::string_view pattern) {
  return std::all_of(std::begin("dMy"), std::end("dMy") - 1, [&](char letter) {
    const std::size_t first = pattern.find(letter);
    if (first == pattern.npos) return false;
    const std::size_t end = pattern.find_first_not_of(letter, first);
    return end == pattern.npos || pattern.find(letter, end) == pattern.npos;
  });
}

}  // namespace

std::string withNumericParts(std::string_view pattern) {
  std::string numeric(pattern);
  for (const char* name : {"MMM", "ddd"}) {
    const std::size_t at = numeric.find(name);
    if (at != std::string::npos) numeric.erase(at, 1);
  }
  return numeric;
}

std::string datePatternOf(std::string_view strftimeFormat) {
  std::string pattern, marks;
  for (std::size_t at = 0; at < strftimeFormat.size();) {
    const char c = strftimeFormat[at++];
    if (c != '%') {
      if (isMark(c) && !(c == ' ' && marks.ends_with(' '))) marks += c;
      continue;
    }
    const std::string_view part = takeConversion(strftimeFormat, at);
    if (!part.empty() && part != " " && !pattern.empty() && marks.empty()) marks = "/";
    if (!part.empty() && part != " ") {
      if (!pattern.empty()) pattern += marks;
      pattern += part;
      marks.clear();
    }
  }
  while (marks.ends_with(' ')) marks.pop_back();
  if (!marks.empty() && pattern.find(marks) != std::string::npos) pattern += marks;  // "yyyy. MM. dd."
  pattern = withNumericParts(pattern);
  return holdsEachOnce(pattern) ? pattern : std::string(kPlainDatePattern);
}

}  // namespace quillon::platform
