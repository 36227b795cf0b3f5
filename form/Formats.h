#pragma once

#include <functional>

#include "base/AmountFormat.h"
#include "base/Date.h"
#include "base/DateText.h"

namespace quillon::form {

// How this person writes numbers and dates, and the clock.
struct Formats {
  ShortDateFormat date{"MM/dd/yyyy"};
  Separators numbers;
  std::function<Date()> today;
};

}  // namespace quillon::form
