#include "base/Period.h"

namespace quillon {

std::optional<int> yearFromTwoDigits(int digits) {
  if (digits < 0 || digits > 99) return std::nullopt;
  return digits < 50 ? 2000 + digits : 1900 + digits;
}

}  // namespace quillon
