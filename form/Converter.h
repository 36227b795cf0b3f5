#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "form/Formats.h"
#include "store/Schema.h"
#include "store/Value.h"

namespace quillon::form {

inline constexpr std::string_view kMoneyPicture = "#,###,##0.00#;(#,###,##0.00#)";

// What a chooser offers: values and their texts, in order.
using Choices = std::vector<std::pair<store::Value, std::string>>;

// How a value becomes text, and typed text a value.
class Converter {
 public:
  virtual ~Converter() = default;
  virtual std::string show(const store::Value& value) const = 0;
  // What stands in the field while it is typed in.
  virtual std::string edit(const store::Value& value) const { return show(value); }
  // Empty text is null. Error, with the field's words, when it cannot be read.
  virtual store::Value read(std::string_view typed) const = 0;
  virtual Choices choices() const { return {}; }
  virtual bool alignsRight() const { return false; }
  // Of figures below each other: decimals that there is room for behind the point in all of them.
  virtual std::size_t decimals() const { return 0; }
  virtual int width() const { return 0; }  // in characters, of what may be typed; 0: not known
};
using ConverterPtr = std::shared_ptr<const Converter>;

// Text of at most `size` characters in one line, or of any number in several (0). Blanks alone are none. Blanks at the
// ends of the one line are left out: nobody sees them, and two names or codes must not differ by them alone.
ConverterPtr textConverter(int size);
// The same line with all its blanks: a password.
ConverterPtr secretConverter(int size);
// Whole numbers from `least` to `most`; `words` refuse anything else (empty: words of our own).
ConverterPtr wholeConverter(const Formats& formats, std::int64_t least, std::int64_t most, std::string words = {});
// Quantities and rates: shown by the picture, typed with up to 15 digits.
ConverterPtr quantityConverter(const Formats& formats, std::string_view picture = "#,###,##0.######");
// Amounts: shown by the picture; typed with a sign, group separators, "CR" or parentheses, and up to four decimals.
ConverterPtr moneyConverter(const Formats& formats, std::string_view picture = kMoneyPicture);
// Shown as "05 Mar 26"; typed in the desktop's order with or without separators and century, or as YYYY-MM-DD.
ConverterPtr dateConverter(const Formats& formats);
ConverterPtr yesNoConverter();
// A year of four digits shown and typed as its last two; `words` refuse others.
ConverterPtr twoDigitYearConverter(std::string words = "Period invalid...\rEnter year as 2 digits");
// The same, but shown with all its digits.
ConverterPtr fullYearConverter(std::string words);
// Fixed texts for values, or texts that are asked for anew each time.
ConverterPtr choicesConverter(Choices choices);
ConverterPtr choicesConverter(std::function<Choices()> choices);
// What suits a field of a table by its type.
ConverterPtr converterFor(const store::FieldDef& field, const Formats& formats);

}  // namespace quillon::form
