#include "base/AmountFormat.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <random>

#include "base/Errors.h"

namespace quillon {
namespace {

__extension__ using Wide = __int128;

TEST(AmountFormat, KnownAmounts) {
  const struct {
    const char *picture, *amount, *expected;
  } cases[] = {
      {"#,###,##0.00#;(#,###,##0.00#)", "1234567.8", "1,234,567.80"},
      {"#,###,##0.00#;(#,###,##0.00#)", "-1234.567", "(1,234.567)"},
      {"#,###,##0.00#;(#,###,##0.00#)", "-0.0004", "0.00"},
      {"#,###,##0.00#;(#,###,##0.00#)", "-0.0005", "(0.001)"},
      {"#,###,##0.00###;(#,###,##0.00###)", "0.1234", "0.1234"},
      {"#,###,##0.00#;#,###,##0.00#CR", "-5", "5.00CR"},
      {"0", "0.5", "1"},
      {"0", "-0.4999", "0"},
      {"0", "-0.5", "-1"},
      {"0.00", "999.995", "1000.00"},
      {"0.00", "-1.005", "-1.01"},
      {"#,##0", "999999.5", "1,000,000"},
      {"#,##0", "999", "999"},
      {"#,##0", "-1000", "-1,000"},
      {"#,##0", "-922337203685477.5808", "-922,337,203,685,478"},
      {"0000", "12", "0012"},
      {"#0#", "5", "05"},
      {"0,000", "5", "0,005"},
      {"#", "0", ""},
      {"#.##", "0.5", ".5"},
      {"#.##", "7", "7"},
      {"0.#", "7", "7"},
      {"$0.00", "-2", "-$2.00"},
      {"0.00%", "12.5", "12.50%"},
      {"'#'0\" ;0\"", "7", "#7 ;0"},
      {"0.00;(0.00);nil", "0", "nil"},
      {"0.00;(0.00);nil", "0.004", "nil"},
      {"0.00;(0.000);nil", "-0.004", "(0.004)"},
      {"0.00;(0.00);nil", "-0.004", "nil"},
      {"0.00;;nil", "-1", "-1.00"},
      {"0.00;;", "0", "0.00"},
      {"0.00;(0.00);", "0", "0.00"},
      {"0;none", "-3", "none"},
      {"", "-1234.5", "-1234.5"},
      {"", "0", "0"},
      {";(0)", "0.25", "0.25"},
  };
  for (const auto& c : cases) {
    const Money amount = *Money::parse(c.amount);
    EXPECT_EQ(AmountFormat(c.picture).format(amount), c.expected) << c.picture << " of " << c.amount;
    if (std::string_view(c.amount).size() < 16) {
      EXPECT_EQ(AmountFormat(c.picture).format(amount.toDouble()), c.expected) << c.picture << " of " << c.amount;
    }
  }
}

TEST(AmountFormat, DoublesGoByTheirFifteenDigits) {
  const struct {
    const char* picture;
    double amount;
    const char* expected;
  } cases[] = {{"0.00", 1.005, "1.01"},
               {"0.00", -1.005, "-1.01"},
               {"0.00", 0.285, "0.29"},
               {"0.00", 0.1 + 0.2, "0.30"},
               {"0.####################", 0.1 + 0.2, "0.3"},
               {"0.####################", 1.0 / 3, "0.333333333333333"},
               {"0.00", 1e-300, "0.00"},
               {"0.00", -1e-300, "0.00"},
               {"0.00", 0.005, "0.01"},
               {"0.0", 0.05, "0.1"},
               {"0.0", 0.049999999999999999, "0.1"},
               {"0", 0.5, "1"},
               {"0", 0.05, "0"},
               {"#,##0", 123456789012345678.0, "123,456,789,012,346,000"},
               {"#,##0.00", 999999999999999.0, "999,999,999,999,999.00"},
               {"0.00", -0.0, "0.00"},
               {"0.0000000000", 1e-10, "0.0000000001"}};
  for (const auto& c : cases) EXPECT_EQ(AmountFormat(c.picture).format(c.amount), c.expected) << c.amount;
  EXPECT_EQ(AmountFormat("0").format(1e308), "1" + std::string(308, '0'));
  for (const double bad : {std::nan(""), HUGE_VAL, -HUGE_VAL}) EXPECT_THROW(AmountFormat("0").format(bad), Error);
}

TEST(AmountFormat, SeparatorsOfTheCountry) {
  const Money amount = *Money::parse("-1234567.5");
  EXPECT_EQ(AmountFormat("#,##0.00", {",", "."}).format(amount), "-1.234.567,50");
  EXPECT_EQ(AmountFormat("#,##0.00", {",", "\xC2\xA0"}).format(amount),
            "-1\xC2\xA0"
            "234\xC2\xA0"
            "567,50");
  EXPECT_EQ(AmountFormat("#,##0.00", {",", ""}).format(amount), "-1234567,50");
}

TEST(AmountFormat, RefusesPicturesItCannotFollow) {
  for (const char* picture : {"0;0;0;0", "'0", "0\"", "0-0", "0.0.0", "0.0,0", "0x.0"})
    EXPECT_THROW(AmountFormat{picture}, Error) << picture;
}

// Method: each picture is told again by hand, and amounts of whole numbers of 10^-scale are written from the right,
// digit by digit, after one rounding division.
struct Told {
  const char* picture;
  const char *before, *after;                  // of positive amounts
  const char *negativeBefore, *negativeAfter;  // of negative amounts
  int whole, least, most;
  bool grouped;
};

constexpr Told kTold[] = {
    {"#,###,##0.00#;(#,###,##0.00#)", "", "", "(", ")", 1, 2, 3, true},
    {"#,###,##0.00###;(#,###,##0.00###)", "", "", "(", ")", 1, 2, 5, true},
    {"#,###,##0.00#;#,###,##0.00#CR", "", "", "", "CR", 1, 2, 3, true},
    {"0", "", "", "-", "", 1, 0, 0, false},
    {"0.00", "", "", "-", "", 1, 2, 2, false},
    {"#,##0", "", "", "-", "", 1, 0, 0, true},
    {"'a0'000,000.0#'%'", "a0", "%", "-a0", "%", 6, 1, 2, true},
    {"#.#;<#.#>", "", "", "<", ">", 0, 0, 1, false},
};

std::string slowly(const Told& told, std::int64_t number, int scale) {
  Wide magnitude = number < 0 ? -Wide{number} : Wide{number};
  for (int i = scale; i < told.most; ++i) magnitude *= 10;
  Wide unit = 1;
  for (int i = told.most; i < scale; ++i) unit *= 10;
  magnitude = (2 * magnitude + unit) / (2 * unit);
  const bool negative = number < 0 && magnitude != 0;
  std::string decimals, whole;
  for (int place = told.most; place > 0; --place, magnitude /= 10) {
    const int digit = static_cast<int>(magnitude % 10);
    if (digit != 0 || place <= told.least || !decimals.empty())
      decimals.insert(decimals.begin(), static_cast<char>('0' + digit));
  }
  for (int place = 0; magnitude != 0 || place < told.whole; ++place, magnitude /= 10) {
    if (told.grouped && place > 0 && place % 3 == 0) whole.insert(whole.begin(), ',');
    whole.insert(whole.begin(), static_cast<char>('0' + static_cast<int>(magnitude % 10)));
  }
  if (!decimals.empty()) whole += '.' + decimals;
  return (negative ? told.negativeBefore : told.before) + whole + (negative ? told.negativeAfter : told.after);
}

TEST(AmountFormat, AgreesWithSlowWriting) {
  std::mt19937_64 random(1);
  for (const Told& told : kTold) {
    const AmountFormat format(told.picture);
    for (int i = 0; i < 20000; ++i) {
      std::int64_t raw = static_cast<std::int64_t>(random()) >> (random() % 64);
      if (i % 4 == 0) raw = raw / 1000 * 1000 + 500 * (raw < 0 ? -1 : 1);
      ASSERT_EQ(format.format(Money::fromRaw(raw)), slowly(told, raw, 4)) << told.picture << " of raw " << raw;
      const auto fifteen = static_cast<std::int64_t>(random() % 2000000000000000) - 1000000000000000;
      const std::int64_t number = fifteen >> (random() % 50);
      if (std::abs(number) >= 1000000000000000) continue;
      const int scale = static_cast<int>(random() % 10);
      const double amount = static_cast<double>(number) / std::pow(10.0, scale);
      ASSERT_EQ(format.format(amount), slowly(told, number, scale))
          << told.picture << " of " << number << "e-" << scale;
    }
  }
}

}  // namespace
}  // namespace quillon
