#include "base/DateText.h"

#include <gtest/gtest.h>

#include <random>

#include "base/Errors.h"

namespace quillon {
namespace {

std::string fixed(const std::string& text, const char* pattern) {
  try {
    return fixDate(text, ShortDateFormat(pattern)).toIso();
  } catch (const Error& error) {
    return error.what();
  }
}

std::string refused(const std::string& text) { return "'" + text + "' is not a valid date"; }

TEST(ShortDateFormat, FindsOrderAndSeparator) {
  using enum DateOrder;
  const struct {
    const char* pattern;
    DateOrder order;
    char separator;
  } cases[] = {{"MM/dd/yy", monthDayYear, '/'}, {"M/d/yyyy", monthDayYear, '/'},      {"dd.MM.yyyy", dayMonthYear, '.'},
               {"D-M-Y", dayMonthYear, '-'},    {"yyyy-MM-dd", yearMonthDay, '-'},    {"d. M. yyyy", dayMonthYear, '.'},
               {"dd MM yy", dayMonthYear, ' '}, {"yyyy. MM. dd.", yearMonthDay, '.'}, {"", monthDayYear, '/'}};
  for (const auto& c : cases) {
    EXPECT_EQ(ShortDateFormat(c.pattern).order(), c.order) << c.pattern;
    EXPECT_EQ(ShortDateFormat(c.pattern).separator(), c.separator) << c.pattern;
  }
}

TEST(DateText, CenturyOfATypedDate) {
  const struct {
    const char *text, *pattern, *expected;
  } cases[] = {{"1/1/49", "MM/dd/yy", "2049-01-01"},
               {"1/1/50", "MM/dd/yy", "1950-01-01"},
               {"12/31/99", "MM/dd/yy", "1999-12-31"},
               {"1/1/00", "MM/dd/yy", "2000-01-01"},
               {"1/2/3", "MM/dd/yy", "2003-01-02"},
               {"1/2/3", "dd/MM/yy", "2003-02-01"},
               {"1/2/3", "yy/MM/dd", "2001-02-03"},
               {"1/1/1949", "MM/dd/yy", "2049-01-01"},
               {"1/1/1900", "MM/dd/yyyy", "2000-01-01"},
               {"1/1/1899", "MM/dd/yyyy", "1899-01-01"},
               {"1/1/2050", "MM/dd/yyyy", "2050-01-01"},
               {"1/1/2051", "MM/dd/yyyy", "1951-01-01"},
               {"1/1/2151", "MM/dd/yyyy", "2051-01-01"},
               {"31.12.2051", "dd.MM.yyyy", "1951-12-31"},
               {"2051-12-31", "yyyy-MM-dd", "1951-12-31"},
               {"02/29/04", "MM/dd/yy", "2004-02-29"},
               {"2051. 12. 31.", "yyyy. MM. dd.", "1951-12-31"}};
  for (const auto& c : cases) EXPECT_EQ(fixed(c.text, c.pattern), c.expected) << c.text << " by " << c.pattern;
}

TEST(DateText, TheLeapDayOf2000) {
  EXPECT_EQ(fixed("02/29/00", "MM/dd/yy"), "2000-02-29");
  EXPECT_EQ(fixed("29/02/00", "MM/dd/yy"), "2000-02-29") << "either order, whatever the format's";
  EXPECT_EQ(fixed("29.02.00", "dd.MM.yy"), "2000-02-29");
  EXPECT_EQ(fixed("02-29-00", "yyyy-MM-dd"), "2000-02-29");
  EXPECT_EQ(fixed("02/29/2000", "MM/dd/yy"), "2000-02-29");
  EXPECT_EQ(fixed("2/29/00", "MM/dd/yy"), refused("2/29/00")) << "only the exact text is known";
  EXPECT_EQ(fixed("02-29-00", "MM/dd/yy"), refused("02-29-00"));
  EXPECT_EQ(fixed("02/29/2400", "MM/dd/yy"), refused("2/29/2300")) << "the other century lacks the day";
  EXPECT_THROW(parseShortDate("02/29/00", ShortDateFormat("MM/dd/yy")), Error);
}

TEST(DateText, WaysOfTyping) {
  for (const char* text :
       {"3/4/2024", "03/04/2024", "3-4-2024", "3.4.2024", " 3 / 4 / 2024 ", "3/4-2024", "03042024", "030424", "3/4/24"})
    EXPECT_EQ(fixed(text, "MM/dd/yy"), "2024-03-04") << text;
  EXPECT_EQ(fixed("03042024", "dd.MM.yy"), "2024-04-03");
  EXPECT_EQ(fixed("20240304", "yyyy-MM-dd"), "2024-03-04");
  EXPECT_EQ(fixed("240304", "yyyy-MM-dd"), "2024-03-04");
  EXPECT_EQ(fixed("3 4 2024", "dd MM yyyy"), "2024-04-03");
}

TEST(DateText, RefusesWhatIsNoDate) {
  for (const char* text : {"",           " ",
                           "xyz",        "3/4",
                           "3/4/",       "/3/4/2024",
                           "3//4/2024",  "3/4/2024/",
                           "3/4/2024 x", "13/1/2024",
                           "2/30/2024",  "0/1/2024",
                           "3/4/024",    "3/4/20245",
                           "003/4/2024", "3 4 2024",
                           "3042024",    "0304",
                           "3:4:2024",   "-3/4/2024",
                           "3/4/0000",   "99999999999999999999",
                           "2024-03-04", "3\xC2\xA0/4/24"})
    EXPECT_EQ(fixed(text, "MM/dd/yy"), refused(text));
}

// Every day from 1950 to 2050, written as each desktop would, comes back as itself.
TEST(DateText, WhatTheDesktopWritesIsReadBack) {
  for (const char* pattern : {"MM/dd/yy", "dd.MM.yyyy", "yyyy-MM-dd", "dd MM yy"}) {
    const ShortDateFormat format(pattern);
    const std::string s(1, format.separator());
    for (Date date(1950, 1, 1); date <= Date(2050, 12, 31); date = date.addDays(1)) {
      const std::string iso = date.toIso(), year = iso.substr(0, 4), month = iso.substr(5, 2), day = iso.substr(8);
      for (const std::string& y : {year, year.substr(2)}) {
        if (y.size() == 2 && (date.year() == 2050 || (y == "00" && month + day == "0229"))) continue;
        for (const std::string& between : {s, std::string()}) {
          const std::string text = format.order() == DateOrder::monthDayYear   ? month + between + day + between + y
                                   : format.order() == DateOrder::dayMonthYear ? day + between + month + between + y
                                                                               : y + between + month + between + day;
          ASSERT_EQ(fixed(text, pattern), iso) << text << " by " << pattern;
        }
      }
    }
  }
}

TEST(DateText, AnyTextIsADateOrAnError) {
  std::mt19937 random(1);
  const std::string alphabet = "0123456789012/-. a";
  int dates = 0;
  for (int i = 0; i < 100000; ++i) {
    std::string text;
    for (auto size = random() % 11; size > 0; --size) text += alphabet[random() % alphabet.size()];
    const std::string result = fixed(text, i % 2 == 0 ? "MM/dd/yy" : "d. M. yyyy");
    if (result.front() == '\'') continue;
    ++dates;
    const auto date = Date::parseIso(result);
    ASSERT_TRUE(date) << text << " gave " << result;
    ASSERT_TRUE(date->year() < 1900 || date->year() >= 1950) << text << " gave " << result;
  }
  EXPECT_GT(dates, 100);
}

}  // namespace
}  // namespace quillon
