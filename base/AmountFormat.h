#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "base/Money.h"

namespace quillon {

// The marks of the person's country.
struct Separators {
  std::string decimal = ".";
  std::string group = ",";
};

// Writes amounts by a picture such as "#,###,##0.00#;(#,###,##0.00#)".
//
// A picture has up to three sections parted by ';': for positive amounts, negative amounts and zero. In a section
//   0       a digit that is always written; so are those between it and the point
//   #       a digit written only when it counts; before the point there is always room for more
//   ,       before the point: thousands are grouped, wherever it stands
//   .       the decimal point, written only when decimals follow
//   others  stand as they are in front of the digits or behind them ($ % CR); in '...' or "..." anything does
// A negative amount is written by the second section without a sign, or where that is missing or empty by the first
// with '-' in front. What is zero at its section's decimals is written as zero: by the third section, or where that
// is missing or empty by the first, without sign. An empty first section writes the plain number.
//
// Rounds half away from zero at the section's last decimal: Money exactly, a double from its 15 significant decimal
// digits, so that 1.005 is 1.01 in "0.00".
class AmountFormat {
 public:
  // Error for a picture with more than three sections, an open quotation, text between digits, a second point or a
  // ',' behind the point.
  explicit AmountFormat(std::string_view picture, Separators separators = {});

  std::string format(Money amount) const;
  // Error when not finite.
  std::string format(double amount) const;
  // Of any of its sections.
  std::size_t mostDecimals() const;

 private:
  struct Section {
    std::string before, after;
    std::size_t leastWhole = 0;     // digits in front of the point that are always written
    std::size_t leastDecimals = 0;  // decimals that are always written
    std::size_t mostDecimals = 0;
    bool grouped = false;
    bool hasDigits = false;
    bool empty = true;
  };
  struct Decimal;

  static Section readSection(std::string_view& rest, std::string_view picture);
  std::string format(Decimal amount) const;
  std::string write(const Section& section, const Decimal& amount) const;

  Separators separators_;
  std::array<Section, 3> sections_;
};

}  // namespace quillon
