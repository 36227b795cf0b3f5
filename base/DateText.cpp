#include "base/DateText.h"

#include <array>
#include <optional>

#include "base/Errors.h"
#include "base/Text.h"

namespace quillon {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isMark(char c) {
  const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  return !letter && !isDigit(c) && static_cast<unsigned char>(c) < 0x80;
}

using Parts = std::array<std::string_view, 3>;

// Where day, month and year stand among the three parts of a date.
struct Places {
  std::size_t year, month, day;
};

Places placesOf(DateOrder order) {
  switch (order) {
    case DateOrder::dayMonthYear:
      return {2, 1, 0};
    case DateOrder::yearMonthDay:
      return {0, 1, 2};
    case DateOrder::monthDayYear:
      break;
  }
  return {2, 0, 1};
}

std::string_view takeDigits(std::string_view& text) {
  std::size_t count = 0;
  while (count < text.size() && isDigit(text[count])) ++count;
  const std::string_view digits = text.substr(0, count);
  text.remove_prefix(count);
  return digits;
}

bool takeSeparator(std::string_view& text, char separator) {
  const std::size_t before = text.size();
  text = trim(text);
  if (!text.empty() && (text.front() == separator || std::string_view("/-.").find(text.front()) != text.npos)) {
    text = trim(text.substr(1));
    return true;
  }
  return separator == ' ' && text.size() < before;
}

std::optional<Parts> splitUnseparated(std::string_view digits, std::size_t yearPlace) {
  if (digits.size() != 6 && digits.size() != 8) return std::nullopt;
  const std::size_t yearSize = digits.size() - 4;
  Parts parts;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const std::size_t size = i == yearPlace ? yearSize : 2;
    parts[i] = digits.substr(0, size);
    digits.remove_prefix(size);
  }
  return parts;
}

std::optional<Parts> split(std::string_view text, const ShortDateFormat& format) {
  text = trim(text);
  Parts parts;
  parts[0] = takeDigits(text);
  if (text.empty()) return splitUnseparated(parts[0], placesOf(format.order()).year);
  for (std::size_t i = 1; i < parts.size(); ++i) {
    if (!takeSeparator(text, format.separator())) return std::nullopt;
    parts[i] = takeDigits(text);
  }
  if (format.closed() && !text.empty()) takeSeparator(text, format.separator());
  if (!text.empty()) return std::nullopt;
  return parts;
}

unsigned valueOf(std::string_view digits) {
  unsigned value = 0;
  for (const char c : digits) value = value * 10 + static_cast<unsigned>(c - '0');
  return value;
}

std::optional<Date> read(std::string_view text, const ShortDateFormat& format) {
  const auto parts = split(text, format);
  if (!parts) return std::nullopt;
  const Places places = placesOf(format.order());
  const std::string_view year = (*parts)[places.year], month = (*parts)[places.month], day = (*parts)[places.day];
  const auto shortPart = [](std::string_view digits) { return digits.size() == 1 || digits.size() == 2; };
  if (!shortPart(month) || !shortPart(day)) return std::nullopt;
  // Three digits are a slip of the finger, not the second century.
  if (!shortPart(year) && year.size() != 4) return std::nullopt;
  const unsigned century = shortPart(year) ? 1900 : 0;
  return Date::make(static_cast<int>(century + valueOf(year)), valueOf(month), valueOf(day));
}

std::string write(int year, unsigned month, unsigned day, const ShortDateFormat& format) {
  const Places places = placesOf(format.order());
  std::array<std::string, 3> parts;
  parts[places.year] = std::to_string(year);
  parts[places.month] = std::to_string(month);
  parts[places.day] = std::to_string(day);
  return parts[0] + format.separator() + parts[1] + format.separator() + parts[2];
}

}  // namespace

ShortDateFormat::ShortDateFormat(std::string_view pattern) : pattern_(trim(pattern)) {
  const std::string_view text = pattern_;
  const std::size_t first = text.find_first_of("dDmMyY");
  if (first == text.npos) return;
  if (text[first] == 'd' || text[first] == 'D') order_ = DateOrder::dayMonthYear;
  if (text[first] == 'y' || text[first] == 'Y') order_ = DateOrder::yearMonthDay;
  bool spaced = false;
  for (const char c : text.substr(first)) {
    if (c == ' ') spaced = true;
    if (c == ' ' || !isMark(c)) continue;
    separator_ = c;
    closed_ = text.back() == c;
    return;
  }
  if (spaced) separator_ = ' ';
}

Date parseShortDate(std::string_view text, const ShortDateFormat& format) {
  if (const auto date = read(text, format)) return *date;
  throw Error("'" + std::string(text) + "' is not a valid date");
}

Date fixDate(std::string_view text, const ShortDateFormat& format) {
  // 1900, which 00 would be read as, had no 29 February, and the century is only moved after reading.
  const std::string s(1, format.separator());
  if (text == "02" + s + "29" + s + "00" || text == "29" + s + "02" + s + "00") return Date(2000, 2, 29);
  const Date typed = parseShortDate(text, format);
  int year = typed.year();
  if (year >= 1900 && year <= 1949)
    year += 100;
  else if (year >= 2051)
    year -= 100;
  if (year == typed.year()) return typed;
  // Written and read again, so that a day the other century lacks is reported as the date it would be.
  return parseShortDate(write(year, typed.month(), typed.day(), format), format);
}

}  // namespace quillon
