#include "form/Converter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>

#include "base/Errors.h"
#include "base/Period.h"
#include "base/Text.h"

namespace quillon::form {
namespace {

using store::FieldType;
using store::Value;

// A typed number in plain form ("-1234.5"): without spaces and group marks, the sign in front wherever it stood, also
// as parentheses or "CR". Null when it is none.
std::optional<std::string> plainNumber(std::string_view typed, const Separators& separators) {
  std::string text(trim(typed));
  bool negative = false;
  if (text.size() > 2 && equalFolded(text.substr(text.size() - 2), "CR")) {
    negative = true;
    text = std::string(trim(text.substr(0, text.size() - 2)));
  } else if (text.size() > 2 && text.front() == '(' && text.back() == ')') {
    negative = true;
    text = std::string(trim(text.substr(1, text.size() - 2)));
  } else if (!text.empty() && (text.front() == '-' || text.back() == '-')) {
    negative = true;
    text = std::string(trim(text.front() == '-' ? text.substr(1) : text.substr(0, text.size() - 1)));
  } else if (text.starts_with('+')) {
    text.erase(0, 1);
  }
  std::string plain;
  bool point = false, digit = false;
  for (std::size_t i = 0; i < text.size();) {
    const std::string_view rest = std::string_view(text).substr(i);
    if (rest.starts_with(separators.decimal) && !point) {
      plain += '.';
      point = true;
      i += separators.decimal.size();
    } else if (!separators.group.empty() && rest.starts_with(separators.group) && digit && !point) {
      i += separators.group.size();
    } else if (text[i] >= '0' && text[i] <= '9') {
      plain += text[i++];
      digit = true;
    } else {
      return std::nullopt;
    }
  }
  if (!digit) return std::nullopt;
  if (plain.front() == '.') plain.insert(plain.begin(), '0');
  if (plain.back() == '.') plain.pop_back();
  return (negative ? "-" : "") + plain;
}

bool isControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }
bool isBetweenLines(char c) { return c == '\r' || c == '\n' || c == '\t'; }

std::string quoted(std::string_view typed) { return "'" + std::string(trim(typed)) + "'"; }

class TextConverter final : public Converter {
 public:
  TextConverter(int size, bool keepsBlanks) : size_(static_cast<std::size_t>(size)), keepsBlanks_(keepsBlanks) {}
  std::string show(const Value& value) const override { return value.asText(); }
  Value read(std::string_view typed) const override {
    if (trim(typed).empty()) return {};
    const bool lines = size_ == 0;
    if (std::ranges::any_of(typed, [&](char c) { return isControl(c) && !(lines && isBetweenLines(c)); }))
      throw Error("The text has a character that cannot be typed here, such as a line's end");
    const std::string_view text = keepsBlanks_ ? typed : trim(typed);
    if (size_ > 0 && lengthInCharacters(text) > size_)
      throw Error("The text is too long: at most " + std::to_string(size_) + " characters fit");
    return Value(text);
  }
  int width() const override { return static_cast<int>(size_); }

 private:
  std::size_t size_;
  bool keepsBlanks_;
};

class WholeConverter final : public Converter {
 public:
  WholeConverter(const Formats& formats, std::int64_t least, std::int64_t most, std::string words)
      : separators_(formats.numbers), least_(least), most_(most), words_(std::move(words)) {}
  std::string show(const Value& value) const override {
    return value.isNull() ? std::string() : std::to_string(value.asInt64());
  }
  Value read(std::string_view typed) const override {
    if (trim(typed).empty()) return {};
    const std::optional<std::string> plain = plainNumber(typed, separators_);
    std::int64_t number = 0;
    if (plain) {
      const auto [end, error] = std::from_chars(plain->data(), plain->data() + plain->size(), number);
      if (error == std::errc() && end == plain->data() + plain->size() && number >= least_ && number <= most_)
        return number;
    }
    if (!words_.empty()) throw Error(words_);
    throw Error(quoted(typed) + " is not a whole number from " + std::to_string(least_) + " to " +
                std::to_string(most_));
  }
  bool alignsRight() const override { return true; }

 private:
  Separators separators_;
  std::int64_t least_, most_;
  std::string words_;
};

class QuantityConverter final : public Converter {
 public:
  QuantityConverter(const Formats& formats, std::string_view picture)
      : separators_(formats.numbers), format_(picture, formats.numbers) {}
  std::string show(const Value& value) const override {
    return value.isNull() ? std::string() : format_.format(value.asDouble());
  }
  Value read(std::string_view typed) const override {
    if (trim(typed).empty()) return {};
    double number = 0;
    if (const std::optional<std::string> plain = plainNumber(typed, separators_)) {
      const auto [end, error] = std::from_chars(plain->data(), plain->data() + plain->size(), number);
      if (error == std::errc() && end == plain->data() + plain->size() && std::isfinite(number)) return number;
    }
    throw Error(quoted(typed) + " is not a valid number");
  }
  bool alignsRight() const override { return true; }

 private:
  Separators separators_;
  AmountFormat format_;
};

class MoneyConverter final : public Converter {
 public:
  MoneyConverter(const Formats& formats, std::string_view picture)
      : separators_(formats.numbers), format_(picture, formats.numbers) {}
  std::string show(const Value& value) const override {
    return value.isNull() ? std::string() : format_.format(value.asMoney());
  }
  Value read(std::string_view typed) const override {
    if (trim(typed).empty()) return {};
    if (const std::optional<std::string> plain = plainNumber(typed, separators_))
      if (const std::optional<Money> amount = Money::parse(*plain)) return *amount;
    throw Error(quoted(typed) + " is not a valid amount");
  }
  bool alignsRight() const override { return true; }
  std::size_t decimals() const override { return format_.mostDecimals(); }

 private:
  Separators separators_;
  AmountFormat format_;
};

class DateConverter final : public Converter {
 public:
  explicit DateConverter(const Formats& formats) : format_(formats.date) {}
  std::string show(const Value& value) const override {
    static constexpr std::array<const char*, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                            "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    if (value.isNull()) return {};
    const Date date = value.asDate();
    return twoDigits(date.day()) + ' ' + kMonths[date.month() - 1] + ' ' +
           twoDigits(static_cast<unsigned>(date.year() % 100));
  }
  std::string edit(const Value& value) const override {
    if (value.isNull()) return {};
    const Date date = value.asDate();
    const std::string day = twoDigits(date.day()), month = twoDigits(date.month()), year = date.toIso().substr(0, 4);
    const std::string mark(1, format_.separator());
    switch (format_.order()) {
      case DateOrder::dayMonthYear:
        return day + mark + month + mark + year;
      case DateOrder::yearMonthDay:
        return year + mark + month + mark + day;
      default:
        return month + mark + day + mark + year;
    }
  }
  Value read(std::string_view typed) const override {
    const std::string_view text = trim(typed);
    if (text.empty()) return {};
    if (text.find('-') == 4)
      if (const std::optional<Date> iso = Date::parseIso(text)) return *iso;
    return fixDate(text, format_);
  }
  int width() const override { return 10; }

 private:
  static std::string twoDigits(unsigned number) { return (number < 10 ? "0" : "") + std::to_string(number); }
  ShortDateFormat format_;
};

class YearConverter final : public Converter {
 public:
  YearConverter(std::string words, bool showsAll) : words_(std::move(words)), showsAll_(showsAll) {}
  std::string show(const Value& value) const override {
    return value.isNull() ? std::string() : showsAll_ ? std::to_string(value.asInt()) : edit(value);
  }
  std::string edit(const Value& value) const override {
    if (value.isNull()) return {};
    const int year = value.asInt() % 100;
    return (year < 10 ? "0" : "") + std::to_string(year);
  }
  Value read(std::string_view typed) const override {
    const std::string_view text = trim(typed);
    if (text.empty()) return {};
    int digits = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), digits);
    if (error == std::errc() && end == text.data() + text.size())
      if (const std::optional<int> year = yearFromTwoDigits(digits)) return *year;
    throw Error(words_);
  }
  bool alignsRight() const override { return true; }
  int width() const override { return showsAll_ ? 4 : 2; }

 private:
  std::string words_;
  bool showsAll_;
};

class YesNoConverter final : public Converter {
 public:
  std::string show(const Value& value) const override { return value.asBool() ? "Yes" : "No"; }
  Value read(std::string_view typed) const override {
    const std::string text = foldCase(trim(typed));
    if (text.empty()) return {};
    for (const char* yes : {"true", "yes", "y", "1"})
      if (text == yes) return true;
    for (const char* no : {"false", "no", "n", "0"})
      if (text == no) return false;
    throw Error(quoted(typed) + " is neither Yes nor No");
  }
  Choices choices() const override { return {{Value(true), "Yes"}, {Value(false), "No"}}; }
};

class ChoicesConverter final : public Converter {
 public:
  explicit ChoicesConverter(std::function<Choices()> ask) : ask_(std::move(ask)) {}
  std::string show(const Value& value) const override {
    for (const auto& [some, text] : ask_())
      if (some == value) return text;
    return {};
  }
  Value read(std::string_view typed) const override {
    const Choices all = ask_();
    for (const auto& [some, text] : all)
      if (text == typed) return some;
    for (const auto& [some, text] : all)
      if (equalFolded(text, typed)) return some;
    if (trim(typed).empty()) return {};
    throw Error(quoted(typed) + " is not in the list");
  }
  Choices choices() const override { return ask_(); }

 private:
  std::function<Choices()> ask_;
};

}  // namespace

ConverterPtr textConverter(int size) { return std::make_shared<TextConverter>(size, size == 0); }
ConverterPtr secretConverter(int size) { return std::make_shared<TextConverter>(size, true); }
ConverterPtr wholeConverter(const Formats& formats, std::int64_t least, std::int64_t most, std::string words) {
  return std::make_shared<WholeConverter>(formats, least, most, std::move(words));
}
ConverterPtr quantityConverter(const Formats& formats, std::string_view picture) {
  return std::make_shared<QuantityConverter>(formats, picture);
}
ConverterPtr moneyConverter(const Formats& formats, std::string_view picture) {
  return std::make_shared<MoneyConverter>(formats, picture);
}
ConverterPtr dateConverter(const Formats& formats) { return std::make_shared<DateConverter>(formats); }
ConverterPtr yesNoConverter() { return std::make_shared<YesNoConverter>(); }
ConverterPtr twoDigitYearConverter(std::string words) {
  return std::make_shared<YearConverter>(std::move(words), false);
}
ConverterPtr fullYearConverter(std::string words) { return std::make_shared<YearConverter>(std::move(words), true); }
ConverterPtr choicesConverter(Choices choices) {
  return std::make_shared<ChoicesConverter>([all = std::move(choices)] { return all; });
}
ConverterPtr choicesConverter(std::function<Choices()> choices) {
  return std::make_shared<ChoicesConverter>(std::move(choices));
}

ConverterPtr converterFor(const store::FieldDef& field, const Formats& formats) {
  switch (field.type) {
    case FieldType::smallint:
      return wholeConverter(formats, INT16_MIN, INT16_MAX);
    case FieldType::integer:
    case FieldType::autoInc:
      return wholeConverter(formats, INT32_MIN, INT32_MAX);
    case FieldType::largeInt:
      return wholeConverter(formats, INT64_MIN, INT64_MAX);
    case FieldType::floating:
      return quantityConverter(formats);
    case FieldType::currency:
      return moneyConverter(formats);
    case FieldType::date:
      return dateConverter(formats);
    case FieldType::boolean:
      return yesNoConverter();
    default:
      return textConverter(field.size);
  }
}

}  // namespace quillon::form
