#include "base/Period.h"

#include <gtest/gtest.h>

namespace quillon {
namespace {

TEST(Period, StepsRunThroughTheYearsInOrder) {
  Period period{1999, 1};
  for (int step = 0; step < 36; ++step) {
    EXPECT_EQ(period.key(), (1999 + step / 12) * 100 + step % 12 + 1);
    const Period next = period.next();
    EXPECT_TRUE(next.valid());
    EXPECT_LT(period, next);
    EXPECT_EQ(next.previous().key(), period.key());
    period = next;
  }
}

TEST(Period, ValidNumbers) {
  EXPECT_TRUE((Period{2024, 1}.valid() && Period{2024, 12}.valid() && Period{1, 1}.valid()));
  for (const Period bad :
       {Period{}, Period{2024, 0}, Period{2024, 13}, Period{0, 5}, Period{10000, 1}, Period{2024, -1}})
    EXPECT_FALSE(bad.valid()) << bad.key();
}

TEST(Period, TwoDigitYears) {
  EXPECT_EQ(yearFromTwoDigits(0), 2000);
  EXPECT_EQ(yearFromTwoDigits(49), 2049);
  EXPECT_EQ(yearFromTwoDigits(50), 1950);
  EXPECT_EQ(yearFromTwoDigits(99), 1999);
  EXPECT_EQ(yearFromTwoDigits(100), std::nullopt);
  EXPECT_EQ(yearFromTwoDigits(-1), std::nullopt);
}

}  // namespace
}  // namespace quillon
