#pragma once

#include <chrono>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillon {

// A day of the Gregorian calendar, carried back before its introduction, in the years 1 to 9999.
//
// Always a day that exists. No day stands for "none": that is std::optional<Date>.
class Date {
 public:
  // Error when there is no such day.
  Date(int year, unsigned month, unsigned day);
  static std::optional<Date> make(int year, unsigned month, unsigned day);
  // Days since 1970-01-01. Error outside the years 1 to 9999.
  static Date fromDays(std::int32_t days);
  // Year, month and day joined by '-'; the year has four digits, month and day one or two.
  static std::optional<Date> parseIso(std::string_view text);

  int year() const { return static_cast<int>(parts().year()); }
  unsigned month() const { return static_cast<unsigned>(parts().month()); }
  unsigned day() const { return static_cast<unsigned>(parts().day()); }
  // 0 is Sunday, 6 is Saturday.
  unsigned weekday() const { return std::chrono::weekday(day_).c_encoding(); }
  // Days since 1970-01-01, negative before it.
  std::int32_t days() const { return static_cast<std::int32_t>(day_.time_since_epoch().count()); }

  // Error when the result leaves the years 1 to 9999.
  Date addDays(std::int64_t count) const;
  // The same day of another month, or that month's last day when it is shorter: 31 January and one month give the
  // last day of February. Error as for addDays.
  Date addMonths(std::int64_t count) const;
  Date lastOfMonth() const;
  // "YYYY-MM-DD"
  std::string toIso() const;

  friend auto operator<=>(const Date&, const Date&) = default;

 private:
  explicit Date(std::chrono::sys_days day) : day_(day) {}
  std::chrono::year_month_day parts() const { return std::chrono::year_month_day(day_); }

  std::chrono::sys_days day_;
};

// A time of the day on the clock, without zone: 0 to 86,399,999 milliseconds since midnight.
struct TimeOfDay {
  static constexpr std::int32_t kDay = 86'400'000;

  std::int32_t milliseconds = 0;

  // Null when a part is out of its range; there is no second 60.
  static std::optional<TimeOfDay> make(unsigned hour, unsigned minute, unsigned second = 0, unsigned millisecond = 0);
  // "H:MM", "H:MM:SS" or "H:MM:SS.f" with one or two digits a part and one to three of fraction.
  static std::optional<TimeOfDay> parseIso(std::string_view text);

  bool valid() const { return milliseconds >= 0 && milliseconds < kDay; }
  // "HH:MM:SS.mmm", the fraction left out when zero.
  std::string toIso() const;

  friend auto operator<=>(const TimeOfDay&, const TimeOfDay&) = default;
};

struct DateTime {
  Date date;
  TimeOfDay time;

  // A date, alone for its midnight or followed by one ' ' or 'T' and a time.
  static std::optional<DateTime> parseIso(std::string_view text);

  // "YYYY-MM-DD HH:MM:SS.mmm", the fraction left out when zero.
  std::string toIso() const { return date.toIso() + ' ' + time.toIso(); }

  friend auto operator<=>(const DateTime&, const DateTime&) = default;
};

}  // namespace quillon
