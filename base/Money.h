#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillon {

// An amount of money: a whole number of ten-thousandths in 64 bits, so sums are exact.
//
// Ranges over -922,337,203,685,477.5808 to +922,337,203,685,477.5807; arithmetic that leaves it raises Error.
// Never converts to or from a floating point number by itself: the rounding is spelled out at the call.
class Money {
 public:
  static constexpr std::int64_t kScale = 10000;
  static constexpr int kDecimals = 4;

  constexpr Money() = default;
  static constexpr Money fromRaw(std::int64_t tenThousandths) { return Money(tenThousandths); }
  // The nearest amount to exactly `amount`, ties to the even ten-thousandth. Error when not finite or out of range.
  static Money fromDouble(double amount);
  // Plain text: an optional sign, digits, and a point with up to four decimals. Null for anything else, spaces and
  // amounts out of range included.
  static std::optional<Money> parse(std::string_view text);

  constexpr std::int64_t raw() const { return raw_; }
  // The nearest double; from 549,755,813,888 on (2^39) fromDouble may not find the last decimal again.
  double toDouble() const;
  // The shortest exact text, such as "12.5", "-0.0001", "0"; parse reads it back.
  std::string toText() const;

  constexpr Money operator-() const {
    std::int64_t result = 0;
    if (__builtin_sub_overflow(std::int64_t{0}, raw_, &result)) raiseOutOfRange();
    return Money(result);
  }
  constexpr Money& operator+=(Money other) {
    std::int64_t result = 0;
    if (__builtin_add_overflow(raw_, other.raw_, &result)) raiseOutOfRange();
    raw_ = result;
    return *this;
  }
  constexpr Money& operator-=(Money other) {
    std::int64_t result = 0;
    if (__builtin_sub_overflow(raw_, other.raw_, &result)) raiseOutOfRange();
    raw_ = result;
    return *this;
  }
  friend constexpr Money operator+(Money a, Money b) { return a += b; }
  friend constexpr Money operator-(Money a, Money b) { return a -= b; }
  friend constexpr auto operator<=>(Money, Money) = default;

 private:
  explicit constexpr Money(std::int64_t raw) : raw_(raw) {}
  [[noreturn]] static void raiseOutOfRange();

  std::int64_t raw_ = 0;
};

}  // namespace quillon
