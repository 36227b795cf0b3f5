#include "base/Date.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

#include "base/Errors.h"

namespace quillon {
namespace {

bool leap(int year) { return year % 400 == 0 || (year % 4 == 0 && year % 100 != 0); }

unsigned lengthOf(int year, unsigned month) {
  if (month == 2) return leap(year) ? 29 : 28;
  return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

// A calendar that only knows how to go one day on walks through all years beside the one under test.
TEST(Date, EveryDayOfAllYears) {
  std::int32_t number = -719162;  // 0001-01-01, a Monday
  unsigned weekday = 1;
  for (int year = 1; year <= 9999; ++year) {
    for (unsigned month = 1; month <= 12; ++month) {
      for (unsigned day = 1; day <= lengthOf(year, month); ++day, ++number, weekday = (weekday + 1) % 7) {
        const Date date = Date::fromDays(number);
        const bool same = date.year() == year && date.month() == month && date.day() == day &&
                          date.weekday() == weekday && Date(year, month, day).days() == number;
        ASSERT_TRUE(same) << year << "-" << month << "-" << day << " is day " << number;
      }
      const Date last(year, month, lengthOf(year, month));
      ASSERT_EQ(Date(year, month, 1).lastOfMonth(), last);
      ASSERT_EQ(Date::parseIso(last.toIso()), last) << last.toIso();
      ASSERT_EQ(Date::make(year, month, lengthOf(year, month) + 1), std::nullopt);
    }
  }
  EXPECT_THROW(Date::fromDays(number), Error);
  EXPECT_THROW(Date::fromDays(-719163), Error);
  EXPECT_EQ(Date(1970, 1, 1).days(), 0);
}

TEST(Date, RefusesDaysThatAreNot) {
  const struct {
    int year;
    unsigned month, day;
  } cases[] = {{2023, 2, 29},  {1900, 2, 29}, {2024, 0, 1},         {2024, 13, 1}, {2024, 1, 0},
               {2024, 1, 32},  {0, 1, 1},     {10000, 1, 1},        {-1, 1, 1},    {2024, 257, 1},
               {2024, 1, 257}, {67560, 1, 1}, {2024, 0x80000001, 1}};
  for (const auto& c : cases) {
    EXPECT_EQ(Date::make(c.year, c.month, c.day), std::nullopt) << c.year << "-" << c.month << "-" << c.day;
    EXPECT_THROW(Date(c.year, c.month, c.day), Error);
  }
}

TEST(Date, AddMonthsStaysInTheMonthMeant) {
  std::mt19937 random(1);
  for (int i = 0; i < 100000; ++i) {
    const Date date = Date::fromDays(static_cast<std::int32_t>(random() % 3652059) - 719162);
    const int count = static_cast<int>(random() % 4801) - 2400;
    int year = date.year(), month = static_cast<int>(date.month());
    for (int step = 0; step != count; step += count > 0 ? 1 : -1) {
      month += count > 0 ? 1 : -1;
      if (month == 13) ++year, month = 1;
      if (month == 0) --year, month = 12;
    }
    if (year < 1 || year > 9999) {
      ASSERT_THROW(date.addMonths(count), Error) << date.toIso() << " and " << count;
      continue;
    }
    const auto inMonth = static_cast<unsigned>(month);
    ASSERT_EQ(date.addMonths(count), Date(year, inMonth, std::min(date.day(), lengthOf(year, inMonth))))
        << date.toIso() << " and " << count;
  }
}

TEST(Date, AdditionsBeyondTheCalendarAreErrors) {
  constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
  constexpr auto kLeast = std::numeric_limits<std::int64_t>::min();
  const Date first(1, 1, 1), last(9999, 12, 31), before(1969, 12, 31);
  EXPECT_EQ(first.addDays(3652058), last);
  EXPECT_EQ(last.addDays(-3652058), first);
  for (const std::int64_t count : {std::int64_t{1}, std::int64_t{1} << 32, kMost}) {
    EXPECT_THROW(last.addDays(count), Error);
    EXPECT_THROW(last.addMonths(count), Error);
  }
  for (const std::int64_t count : {std::int64_t{-1}, -(std::int64_t{1} << 32), kLeast}) {
    EXPECT_THROW(first.addDays(count), Error);
    EXPECT_THROW(first.addMonths(count), Error);
  }
  EXPECT_THROW(before.addDays(kLeast), Error) << "the sum overflows";
}

TEST(Date, ReadsIsoText) {
  EXPECT_EQ(Date::parseIso("2024-2-9"), Date(2024, 2, 9));
  EXPECT_EQ(Date::parseIso("2024-02-29"), Date(2024, 2, 29));
  EXPECT_EQ(Date(33, 4, 5).toIso(), "0033-04-05");
  for (const char* text :
       {"", "2024", "2024-02", "2024-02-", "2024-02-30", "2024-002-01", "2024-2-001", "02024-1-1", "2024/02/01",
        " 2024-02-01", "2024-02-01 ", "-2024-02-01", "2024--02-01", "0-1-1", "12-1-1", "212-01-01", "0000-1-1", "x"})
    EXPECT_EQ(Date::parseIso(text), std::nullopt) << text;
}

TEST(DateTime, TextGoesThereAndBack) {
  std::mt19937 random(2);
  for (int i = 0; i < 50000; ++i) {
    std::int32_t milliseconds = static_cast<std::int32_t>(random() % 86400000);
    if (i % 2 == 0) milliseconds -= milliseconds % 1000;
    const DateTime moment{Date::fromDays(static_cast<std::int32_t>(random() % 3652059) - 719162), {milliseconds}};
    const std::string text = moment.toIso();
    ASSERT_EQ(DateTime::parseIso(text), moment) << text;
    ASSERT_EQ(text.size(), milliseconds % 1000 == 0 ? 19U : 23U) << text;
  }
}

TEST(DateTime, ReadsWhatItShouldAndNoMore) {
  const Date day(2024, 2, 9);
  const struct {
    const char* text;
    std::int32_t milliseconds;
  } good[] = {{"2024-02-09", 0},
              {"2024-2-9 7:05", 25500000},
              {"2024-02-09T23:59:59.999", 86399999},
              {"2024-02-09 0:0:0.5", 500},
              {"2024-02-09 00:00:01.05", 1050}};
  for (const auto& c : good) EXPECT_EQ(DateTime::parseIso(c.text), (DateTime{day, {c.milliseconds}})) << c.text;
  for (const char* text :
       {"2024-02-09 ", "2024-02-09 24:00", "2024-02-09 7", "2024-02-09 7:", "2024-02-09 7:60", "2024-02-09 7:05:60",
        "2024-02-09 7:05:00.", "2024-02-09 7:05:00.1234", "2024-02-09  7:05", "2024-02-30 7:05", "7:05", "T"})
    EXPECT_EQ(DateTime::parseIso(text), std::nullopt) << text;
  EXPECT_LT((DateTime{day, {86399999}}), (DateTime{day.addDays(1), {0}}));
}

}  // namespace
}  // namespace quillon
