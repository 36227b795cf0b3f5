#include "base/Money.h"

#include <cmath>
#include <limits>

#include "base/Errors.h"

namespace quillon {

// The product below is exact only because an extended mantissa holds the 53 bits of a double times 625 (10000 is
// 625 * 16), so the one rounding is the one to the whole ten-thousandth.
static_assert(std::numeric_limits<long double>::digits >= 63);

void Money::raiseOutOfRange() { throw Error("The amount is out of the range of money"); }

Money Money::fromDouble(double amount) {
  if (!std::isfinite(amount)) throw Error("The amount is not a number");
  const long double scaled = std::nearbyint(static_cast<long double>(amount) * kScale);
  constexpr long double kLimit = 9223372036854775808.0L;
  if (scaled < -kLimit || scaled >= kLimit) raiseOutOfRange();
  return Money(static_cast<std::int64_t>(scaled));
}

double Money::toDouble() const {
  constexpr std::int64_t kWholeInDouble = std::int64_t{1} << 53;
  if (raw_ >= -kWholeInDouble && raw_ <= kWholeInDouble) return static_cast<double>(raw_) / kScale;
  return static_cast<double>(static_cast<long double>(raw_) / kScale);
}

std::optional<Money> Money::parse(std::string_view text) {
  bool negative = false;
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  // Gathered below zero, where the range reaches one further.
  std::int64_t raw = 0;
  int decimals = -1;  // -1 before the point
  bool anyDigit = false;
  const auto append = [&raw](int digit) {
    return !__builtin_mul_overflow(raw, std::int64_t{10}, &raw) && !__builtin_sub_overflow(raw, digit, &raw);
  };
  for (const char c : text) {
    if (c == '.' && decimals < 0) {
      decimals = 0;
      continue;
    }
    if (c < '0' || c > '9' || decimals == kDecimals) return std::nullopt;
    if (!append(c - '0')) return std::nullopt;
    if (decimals >= 0) ++decimals;
    anyDigit = true;
  }
  if (!anyDigit) return std::nullopt;
  for (int i = decimals < 0 ? 0 : decimals; i < kDecimals; ++i) {
    if (!append(0)) return std::nullopt;
  }
  if (negative) return Money(raw);
  if (raw == std::numeric_limits<std::int64_t>::min()) return std::nullopt;
  return Money(-raw);
}

std::string Money::toText() const {
  const auto bits = static_cast<std::uint64_t>(raw_);
  const std::uint64_t magnitude = raw_ < 0 ? 0 - bits : bits;
  std::string text = (raw_ < 0 ? "-" : "") + std::to_string(magnitude / kScale);
  std::uint64_t fraction = magnitude % kScale;
  if (fraction == 0) return text;
  text += '.';
  for (std::uint64_t unit = kScale / 10; fraction != 0; unit /= 10) {
    text += static_cast<char>('0' + fraction / unit);
    fraction %= unit;
  }
  return text;
}

}  // namespace quillon
