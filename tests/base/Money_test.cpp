#include "base/Money.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <type_traits>
#include <vector>

#include "base/Errors.h"

namespace quillon {
namespace {

__extension__ using Wide = __int128;
constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();

static_assert(!std::is_convertible_v<double, Money> && !std::is_convertible_v<std::int64_t, Money>);
static_assert(!std::is_convertible_v<Money, double> && !std::is_constructible_v<double, Money>);
static_assert(Money::fromRaw(3) - Money::fromRaw(5) == -Money::fromRaw(2));

// Numbers of every magnitude, with those next to the ends of the range.
std::int64_t anyRaw(std::mt19937_64& random) {
  const std::int64_t edges[] = {0, 1, -1, 9999, 10000, kMost, kMost - 1, kLeast, kLeast + 1};
  if (random() % 8 == 0) return edges[random() % std::size(edges)];
  return static_cast<std::int64_t>(random()) >> (random() % 64);
}

void expectRaw(Wide expected, auto compute) {
  if (expected < kLeast || expected > kMost) {
    EXPECT_THROW(compute(), Error);
  } else {
    EXPECT_EQ(compute().raw(), static_cast<std::int64_t>(expected));
  }
}

TEST(Money, ArithmeticIsExactOrRefused) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 100000; ++i) {
    const Money a = Money::fromRaw(anyRaw(random)), b = Money::fromRaw(anyRaw(random));
    expectRaw(Wide{a.raw()} + b.raw(), [&] { return a + b; });
    expectRaw(Wide{a.raw()} - b.raw(), [&] { return a - b; });
    expectRaw(-Wide{a.raw()}, [&] { return -a; });
    ASSERT_EQ(a < b, a.raw() < b.raw());
    ASSERT_FALSE(HasFailure()) << "raw " << a.raw() << " and " << b.raw();
  }
}

TEST(Money, ARefusedSumLeavesTheAmount) {
  Money sum = Money::fromRaw(kMost);
  EXPECT_THROW(sum += Money::fromRaw(1), Error);
  EXPECT_EQ(sum.raw(), kMost);
  EXPECT_THROW(sum -= Money::fromRaw(-1), Error);
  EXPECT_EQ(sum.raw(), kMost);
}

TEST(Money, TextGoesThereAndBack) {
  std::mt19937_64 random(2);
  for (int i = 0; i < 100000; ++i) {
    const Money amount = Money::fromRaw(anyRaw(random));
    const std::string text = amount.toText();
    ASSERT_EQ(Money::parse(text), amount) << text;
    ASSERT_TRUE(text.find('.') == text.npos || text.back() != '0') << text;
  }
}

TEST(Money, TextOfKnownAmounts) {
  const struct {
    std::int64_t raw;
    const char* text;
  } cases[] = {{125000, "12.5"},  {-1, "-0.0001"}, {0, "0"},      {10000, "1"},
               {-10500, "-1.05"}, {100000, "10"},  {10, "0.001"}, {kLeast, "-922337203685477.5808"}};
  for (const auto& c : cases) EXPECT_EQ(Money::fromRaw(c.raw).toText(), c.text);
}

TEST(Money, ParsesPlainTextOnly) {
  const struct {
    const char* text;
    std::int64_t raw;
  } good[] = {{"-1234.5", -12345000},
              {"+7", 70000},
              {".5", 5000},
              {"5.", 50000},
              {"-0", 0},
              {"000.0001", 1},
              {"922337203685477.5807", kMost},
              {"1.2300", 12300},
              {"-922337203685477.5808", kLeast}};
  for (const auto& c : good) EXPECT_EQ(Money::parse(c.text), Money::fromRaw(c.raw)) << c.text;
  for (const char* text : {"", "-", ".", "-.", "1.23456", "1,000", " 1", "1 ", "--1", "+-1", "1.2.3", "1e3", "0x1",
                           "922337203685477.5808", "-922337203685477.5809", "99999999999999999999", "nan", "\xC2\xBD"})
    EXPECT_EQ(Money::parse(text), std::nullopt) << text;
}

// A double with a power of two below the fraction is known exactly, so whole numbers can say what is nearest.
TEST(Money, FromDoubleTakesTheNearestTiesToEven) {
  std::mt19937_64 random(3);
  int ties = 0;
  for (int i = 0; i < 200000; ++i) {
    const int shift = static_cast<int>(random() % 40);
    const std::int64_t numerator = static_cast<std::int64_t>(random()) >> (11 + random() % 40);
    const Wide scaled = Wide{numerator} * 10000, unit = Wide{1} << shift;
    Wide floor = scaled >> shift;
    const Wide twice = 2 * (scaled - floor * unit);
    if (twice == unit) ++ties;
    if (twice > unit || (twice == unit && floor % 2 != 0)) ++floor;
    expectRaw(floor, [&] { return Money::fromDouble(std::ldexp(static_cast<double>(numerator), -shift)); });
    ASSERT_FALSE(HasFailure()) << numerator << " / 2^" << shift;
  }
  EXPECT_GT(ties, 100);
}

TEST(Money, FromDoubleRefusesWhatItCannotHold) {
  const double limit = 922337203685477.5807;
  for (const double bad : {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e300, -1e300, limit, limit + 1, -limit - 1})
    EXPECT_THROW(Money::fromDouble(bad), Error) << bad;
  EXPECT_EQ(Money::fromDouble(-922337203685477.5).raw(), -9223372036854775000);
  EXPECT_EQ(Money::fromDouble(0.00035).raw(), 3) << "the double is a little below the tie";
  EXPECT_EQ(Money::fromDouble(1.00005).raw(), 10001) << "and this one a little above";
}

TEST(Money, ToDoubleIsTheNumberAsTyped) {
  std::mt19937_64 random(4);
  for (int i = 0; i < 50000; ++i) {
    const Money amount = Money::fromRaw(static_cast<std::int64_t>(random()) >> (11 + random() % 50));
    ASSERT_EQ(amount.toDouble(), std::stod(amount.toText())) << amount.toText();
    if (std::abs(amount.raw()) < (std::int64_t{1} << 39) * Money::kScale) {
      ASSERT_EQ(Money::fromDouble(amount.toDouble()), amount) << amount.toText();
    }
  }
}

}  // namespace
}  // namespace quillon
