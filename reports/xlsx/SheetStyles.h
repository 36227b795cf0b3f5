#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "reports/Pages.h"

namespace quillon::reports {

// How a cell shows its value.
enum class CellFormat : std::uint8_t { text, money, whole, grouped, decimals, percent, date, dateTime, time };

// The styles of a workbook's cells, numbered as they are first used.
class SheetStyles {
 public:
  std::size_t numberOf(const Style& style, CellFormat format);
  // The workbook's part of styles.
  std::string part() const;

 private:
  // Face, size, shade; alignment, format.
  struct Look {
    std::uint32_t font = 0, cell = 0;
    friend auto operator<=>(const Look&, const Look&) = default;
  };

  std::vector<Look> looks_;
  std::map<Look, std::size_t> numbers_;
};

// A value as a cell holds it: a decimal number, or, for what a sheet cannot hold as one, nothing.
struct CellNumber {
  CellFormat format = CellFormat::text;
  std::string digits;
};
// `text` is how the page shows it.
CellNumber cellNumber(const store::Value& value, std::string_view text);

}  // namespace quillon::reports
