#pragma once

#include <string>
#include <string_view>

#include "base/Date.h"

namespace quillon {

enum class DateOrder { monthDayYear, dayMonthYear, yearMonthDay };

// How a person's desktop writes dates, from a pattern such as "MM/dd/yy", "dd.MM.yyyy" or "yyyy-MM-dd".
//
// The first letter alone gives the order of day, month and year: D or d, Y or y, anything else is month first. The
// first mark between letters is the separator; '/' when there is none.
class ShortDateFormat {
 public:
  explicit ShortDateFormat(std::string_view pattern);

  const std::string& pattern() const { return pattern_; }
  char separator() const { return separator_; }
  DateOrder order() const { return order_; }
  // Whether the pattern ends with its separator, as in "yyyy. MM. dd."
  bool closed() const { return closed_; }

 private:
  std::string pattern_;
  char separator_ = '/';
  DateOrder order_ = DateOrder::monthDayYear;
  bool closed_ = false;
};

// The date that `text` says in the order of `format`; Error "'...' is not a valid date" when it says none.
//
// Day and month have one or two digits. A year of one or two digits is 19yy, one of four stands as it is. Between them
// stands the format's separator or any of / - . with or without spaces; six or eight digits need no separator.
Date parseShortDate(std::string_view text, const ShortDateFormat& format);

// The date a clerk means by `text`: parseShortDate, then moved by a century into the years 1950 to 2050 where a hundred
// years do it: 1/1/49 is 2049, 1/1/50 is 1950, and 2051 is 1951. Error as parseShortDate, also when the moved date
// does not exist.
Date fixDate(std::string_view text, const ShortDateFormat& format);

}  // namespace quillon
