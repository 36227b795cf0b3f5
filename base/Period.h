#pragma once

#include <compare>
#include <optional>

namespace quillon {

// An accounting period: one of the twelve of a financial year. Which calendar days it covers is the company's to say.
struct Period {
  static constexpr int kCount = 12;

  int year = 0;
  int number = 0;

  // The order of periods as one whole number: 202403 for the third of 2024.
  constexpr int key() const { return year * 100 + number; }
  // Year 1 to 9999, number 1 to 12.
  constexpr bool valid() const { return year >= 1 && year <= 9999 && number >= 1 && number <= kCount; }
  // The neighbours of a valid period; the last period is followed by the first of the next year.
  constexpr Period next() const { return number < kCount ? Period{year, number + 1} : Period{year + 1, 1}; }
  constexpr Period previous() const { return number > 1 ? Period{year, number - 1} : Period{year - 1, kCount}; }

  friend constexpr auto operator<=>(Period a, Period b) { return a.key() <=> b.key(); }
  friend constexpr bool operator==(Period a, Period b) { return a.key() == b.key(); }
};

// The year that two typed digits mean: 0 to 49 are 2000 to 2049, 50 to 99 are 1950 to 1999. Null for other numbers.
std::optional<int> yearFromTwoDigits(int digits);

}  // namespace quillon
