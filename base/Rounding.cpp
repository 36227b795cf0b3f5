#include "base/Rounding.h"

#include <cmath>
#include <limits>

#include "base/Errors.h"

namespace quillon {

static_assert(std::numeric_limits<long double>::digits == 64, "the roundings are told in 80-bit extended precision");

namespace {

// Added to a negative zero it leaves plain zero, which prints and sorts like any other.
constexpr long double kNoSign = 0;

// Half away from zero as the truncations show it: adding the half may itself round, which std::round would not do.
long double toWhole(long double t) {
  const long double whole = std::trunc(t);
  if (t > 0) return std::trunc(t + 0.5L) > whole ? whole + 1 : whole;
  return std::trunc(t - 0.5L) < whole ? whole - 1 : whole;
}

}  // namespace

double roundAmount(long double x) {
  constexpr long double kSevenDecimals = 10000000.0L;
  const long double y = toWhole(x * kSevenDecimals) / kSevenDecimals;
  return static_cast<double>(toWhole(y) + kNoSign);
}

double round2(long double x) { return roundAmount(x * 100) / 100; }

double round6(long double x) {
  constexpr long double kSixDecimals = 1000000.0L;
  constexpr long double kLimit = 9223372036854775808.0L;
  const long double millionths = std::nearbyint(x * kSixDecimals);
  if (!(millionths >= -kLimit && millionths < kLimit)) throw Error("The number is too large to be rounded");
  return static_cast<double>(millionths / kSixDecimals + kNoSign);
}

}  // namespace quillon
