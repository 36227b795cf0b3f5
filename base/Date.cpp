#include "base/Date.h"

#include <algorithm>

#include "base/Errors.h"

namespace quillon {

namespace {

namespace chrono = std::chrono;

constexpr chrono::sys_days kFirst = chrono::year(1) / 1 / 1;
constexpr chrono::sys_days kLast = chrono::year(9999) / 12 / 31;

[[noreturn]] void raiseOutOfRange() { throw Error("The date is outside the years 1 to 9999"); }

// Takes `least` to `most` digits off the front of `text`; null when fewer stand there.
std::optional<unsigned> takeDigits(std::string_view& text, std::size_t least, std::size_t most) {
  unsigned value = 0;
  std::size_t count = 0;
  while (count < most && count < text.size() && text[count] >= '0' && text[count] <= '9') {
    value = value * 10 + static_cast<unsigned>(text[count++] - '0');
  }
  if (count < least) return std::nullopt;
  text.remove_prefix(count);
  return value;
}

bool takeMark(std::string_view& text, char mark) {
  if (text.empty() || text.front() != mark) return false;
  text.remove_prefix(1);
  return true;
}

std::string padded(unsigned value, std::size_t width) {
  std::string digits = std::to_string(value);
  return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
}

}  // namespace

Date::Date(int year, unsigned month, unsigned day) {
  const auto made = make(year, month, day);
  if (!made) {
    throw Error("There is no day " + std::to_string(year) + "-" + padded(month, 2) + "-" + padded(day, 2));
  }
  *this = *made;
}

std::optional<Date> Date::make(int year, unsigned month, unsigned day) {
  // The calendar types keep only the low bits of what they are given, so large numbers are refused first.
  if (year < 1 || year > 9999 || month > 12 || day > 31) return std::nullopt;
  const chrono::year_month_day parts{chrono::year(year), chrono::month(month), chrono::day(day)};
  if (!parts.ok()) return std::nullopt;
  return Date(chrono::sys_days(parts));
}

Date Date::fromDays(std::int32_t days) {
  if (days < kFirst.time_since_epoch().count() || days > kLast.time_since_epoch().count()) raiseOutOfRange();
  return Date(chrono::sys_days(chrono::days(days)));
}

std::optional<Date> Date::parseIso(std::string_view text) {
  const auto year = takeDigits(text, 4, 4);
  if (!year || !takeMark(text, '-')) return std::nullopt;
  const auto month = takeDigits(text, 1, 2);
  if (!month || !takeMark(text, '-')) return std::nullopt;
  const auto day = takeDigits(text, 1, 2);
  if (!day || !text.empty()) return std::nullopt;
  return make(static_cast<int>(*year), *month, *day);
}

Date Date::addDays(std::int64_t count) const {
  std::int64_t sum = 0;
  if (__builtin_add_overflow(std::int64_t{days()}, count, &sum) || sum != static_cast<std::int32_t>(sum)) {
    raiseOutOfRange();
  }
  return fromDays(static_cast<std::int32_t>(sum));
}

Date Date::addMonths(std::int64_t count) const {
  std::int64_t months = 0;
  if (__builtin_add_overflow(std::int64_t{year()} * 12 + month() - 1, count, &months)) raiseOutOfRange();
  if (months < 12 || months >= 120000) raiseOutOfRange();
  const auto target =
      chrono::year(static_cast<int>(months / 12)) / chrono::month(static_cast<unsigned>(months % 12) + 1);
  const auto last = static_cast<unsigned>(chrono::year_month_day_last(target / chrono::last).day());
  return Date(chrono::sys_days(target / chrono::day(std::min(day(), last))));
}

Date Date::lastOfMonth() const { return Date(chrono::sys_days(parts().year() / parts().month() / chrono::last)); }

std::string Date::toIso() const {
  return padded(static_cast<unsigned>(year()), 4) + '-' + padded(month(), 2) + '-' + padded(day(), 2);
}

std::optional<TimeOfDay> TimeOfDay::make(unsigned hour, unsigned minute, unsigned second, unsigned millisecond) {
  if (hour > 23 || minute > 59 || second > 59 || millisecond > 999) return std::nullopt;
  return TimeOfDay{static_cast<std::int32_t>(((hour * 60 + minute) * 60 + second) * 1000 + millisecond)};
}

std::optional<TimeOfDay> TimeOfDay::parseIso(std::string_view text) {
  const auto hour = takeDigits(text, 1, 2);
  if (!hour || !takeMark(text, ':')) return std::nullopt;
  const auto minute = takeDigits(text, 1, 2);
  if (!minute) return std::nullopt;
  unsigned seconds = 0;
  unsigned fraction = 0;
  if (takeMark(text, ':')) {
    const auto typed = takeDigits(text, 1, 2);
    if (!typed) return std::nullopt;
    seconds = *typed;
    if (takeMark(text, '.')) {
      const std::size_t before = text.size();
      const auto digits = takeDigits(text, 1, 3);
      if (!digits) return std::nullopt;
      fraction = *digits;
      for (std::size_t taken = before - text.size(); taken < 3; ++taken) fraction *= 10;
    }
  }
  if (!text.empty()) return std::nullopt;
  return make(*hour, *minute, seconds, fraction);
}

std::string TimeOfDay::toIso() const {
  const auto total = static_cast<unsigned>(milliseconds);
  std::string text =
      padded(total / 3'600'000, 2) + ':' + padded(total / 60'000 % 60, 2) + ':' + padded(total / 1000 % 60, 2);
  if (total % 1000 != 0) text += '.' + padded(total % 1000, 3);
  return text;
}

std::optional<DateTime> DateTime::parseIso(std::string_view text) {
  const std::size_t gap = text.find_first_of(" T");
  const auto date = Date::parseIso(text.substr(0, gap));
  if (!date) return std::nullopt;
  if (gap == std::string_view::npos) return DateTime{*date, TimeOfDay{}};
  const auto time = TimeOfDay::parseIso(text.substr(gap + 1));
  if (!time) return std::nullopt;
  return DateTime{*date, *time};
}

}  // namespace quillon
