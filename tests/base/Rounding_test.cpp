#include "base/Rounding.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <random>

#include "base/Errors.h"

namespace quillon {
namespace {

__extension__ using Wide = __int128;

Wide powerOfTen(int exponent) { return exponent == 0 ? Wide{1} : 10 * powerOfTen(exponent - 1); }

// numerator / 10^drop, half away from zero.
Wide awayFromZero(Wide numerator, int drop) {
  const Wide unit = powerOfTen(drop);
  const Wide magnitude = numerator < 0 ? -numerator : numerator;
  const Wide rounded = (2 * magnitude + unit) / (2 * unit);
  return numerator < 0 ? -rounded : rounded;
}

// The two passes over the decimal number numerator / 10^decimals, in whole numbers.
Wide twoPasses(Wide numerator, int decimals) {
  if (decimals > 7) {
    numerator = awayFromZero(numerator, decimals - 7);
    decimals = 7;
  }
  return awayFromZero(numerator, decimals);
}

struct Decimal {
  std::int64_t numerator;
  int decimals;
  double value() const { return static_cast<double>(numerator) / static_cast<double>(powerOfTen(decimals)); }
};

// A decimal of up to some millions, often at or just beside a half, but never where the first pass would be asked to
// decide a tie that the double only comes near to (`settled` decimals and one more).
Decimal anyDecimal(std::mt19937_64& random, int settled) {
  while (true) {
    const int decimals = static_cast<int>(random() % 12);
    const auto unit = static_cast<std::int64_t>(powerOfTen(decimals));
    std::int64_t numerator = static_cast<std::int64_t>(random() % 3000) * unit;
    if (random() % 2 == 0) {
      numerator += static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(unit));
    } else {
      const std::int64_t place = random() % 2 == 0 ? unit : unit / 100;
      numerator += place / 2 + static_cast<std::int64_t>(random() % 21) - 10;
    }
    if (random() % 2 == 0) numerator = -numerator;
    if (decimals > settled) {
      const auto tail = static_cast<std::int64_t>(powerOfTen(decimals - settled));
      if (std::abs(numerator) % tail == tail / 2) continue;
    }
    return {numerator, decimals};
  }
}

TEST(RoundAmount, FollowsTheDecimalsNotTheBinaryNoise) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 300000; ++i) {
    const Decimal d = anyDecimal(random, 7);
    ASSERT_EQ(roundAmount(d.value()), static_cast<double>(twoPasses(d.numerator, d.decimals)))
        << d.numerator << " / 10^" << d.decimals;
  }
}

TEST(Round2, FollowsTheDecimalsNotTheBinaryNoise) {
  std::mt19937_64 random(2);
  for (int i = 0; i < 300000; ++i) {
    const Decimal d = anyDecimal(random, 9);
    const Wide hundredths =
        d.decimals >= 2 ? twoPasses(d.numerator, d.decimals - 2) : d.numerator * powerOfTen(2 - d.decimals);
    ASSERT_EQ(round2(d.value()), static_cast<double>(hundredths) / 100) << d.numerator << " / 10^" << d.decimals;
  }
}

TEST(RoundAmount, KnownCases) {
  const struct {
    long double x;
    double expected;
  } cases[] = {{2.4999999999, 3},
               {-2.4999999999, -3},
               {2.5, 3},
               {-2.5, -3},
               {2.49999994, 2},
               {-2.49999994, -2},
               {2.49999996, 3},
               {0.0, 0},
               {0.49, 0},
               {-0.49, 0},
               {0.49999999, 1},
               {-0.49999999, -1},
               {1.0049999999L * 100, 101},
               {1e15, 1e15},
               {-1e15, -1e15},
               {1e300, 1e300},
               {4503599627370497.5, 4503599627370498},
               // Beyond 2^63 ten-millionths the added half goes to the even neighbour, which carries the tie up.
               {1000000000000.4999999L, 1000000000001.0},
               {1000000000000.4999998L, 1000000000000.0}};
  for (const auto& c : cases) EXPECT_EQ(roundAmount(c.x), c.expected) << static_cast<double>(c.x);
}

TEST(Rounding, NoNegativeZero) {
  for (const double x : {-0.0, -0.3, -0.004, -1e-9}) {
    EXPECT_FALSE(std::signbit(roundAmount(x)) && roundAmount(x) == 0) << x;
    EXPECT_FALSE(std::signbit(round2(x)) && round2(x) == 0) << x;
    EXPECT_FALSE(std::signbit(round6(x)) && round6(x) == 0) << x;
  }
}

TEST(RoundAmount, WhatCannotBeScaledGoesThrough) {
  EXPECT_EQ(roundAmount(HUGE_VAL), HUGE_VAL);
  EXPECT_EQ(roundAmount(-HUGE_VAL), -HUGE_VAL);
  EXPECT_TRUE(std::isnan(roundAmount(std::nan(""))));
}

TEST(Round2, KnownCases) {
  const struct {
    double x, expected;
  } cases[] = {{1.005, 1.01},
               {-1.005, -1.01},
               {1.0049999999, 1.01},
               {1.004999999, 1.00},
               {2.675, 2.68},
               {0.285, 0.29},
               {1.115, 1.12},
               {33.335, 33.34},
               {-0.005, -0.01},
               {0.0049, 0},
               {1e12 + 0.25, 1e12 + 0.25}};
  for (const auto& c : cases) EXPECT_EQ(round2(c.x), c.expected) << c.x;
}

// j / 2^10 times a million is known exactly in whole numbers, and is often a tie.
TEST(Round6, NearestWithTiesToEven) {
  std::mt19937_64 random(3);
  int ties = 0;
  for (int i = 0; i < 100000; ++i) {
    const std::int64_t j = static_cast<std::int64_t>(random()) >> (24 + random() % 30);
    const Wide scaled = Wide{j} * 1000000;
    Wide floor = scaled >> 10;
    const Wide rest = scaled - floor * 1024;
    if (rest == 512) ++ties;
    if (rest > 512 || (rest == 512 && floor % 2 != 0)) ++floor;
    ASSERT_EQ(round6(static_cast<double>(j) / 1024), static_cast<double>(static_cast<long double>(floor) / 1000000))
        << j << " / 1024";
  }
  EXPECT_GT(ties, 100);
}

TEST(Round6, KnownCasesAndLimits) {
  EXPECT_EQ(round6(0.0078125), 0.007812);
  EXPECT_EQ(round6(0.0234375), 0.023438);
  EXPECT_EQ(round6(-0.0078125), -0.007812);
  EXPECT_EQ(round6(1.0 / 3), 0.333333);
  EXPECT_EQ(round6(9223372036854.0), 9223372036854.0);
  for (const double bad : {9223372036855.0, -9223372036855.0, 1e300, HUGE_VAL, -HUGE_VAL, std::nan("")})
    EXPECT_THROW(round6(bad), Error) << bad;
}

}  // namespace
}  // namespace quillon
