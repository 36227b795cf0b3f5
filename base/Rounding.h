#pragma once

namespace quillon {

// The three roundings that the amounts of the books go through, in 80-bit extended precision throughout; an argument
// may be an unrounded extended product. They differ on purpose and are not interchangeable. None gives a negative zero.

// RoundAmount: to a whole number in two passes, first to seven decimals and then to none, both half away from zero. So
// 2.4999999999, which is 2.5 but for binary noise, gives 3, and -2.5 gives -3. Infinity and not-a-number come back as
// they are.
double roundAmount(long double x);

// Round2: to two decimals by roundAmount.
double round2(long double x);

// Round6: to six decimals, ties to even. Error where a million times x leaves 64 bits.
double round6(long double x);

}  // namespace quillon
