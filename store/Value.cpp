#include "store/Value.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "store/Errors.h"

namespace quillon::store {
namespace {

constexpr double kWholeLimit = 9223372036854775808.0;  // 2^63, the first double above the whole numbers

std::optional<std::int64_t> exactWhole(double number) {
  if (!(number >= -kWholeLimit && number < kWholeLimit) || number != std::trunc(number)) return std::nullopt;
  return static_cast<std::int64_t>(number);
}

bool equalNumbers(const Value& a, const Value& b) {
  using Kind = Value::Kind;
  if (a.kind() > b.kind()) return equalNumbers(b, a);  // whole, real, money
  if (a.kind() == Kind::whole && b.kind() == Kind::real) return exactWhole(b.asDouble()) == a.asInt64();
  if (a.kind() == Kind::whole) {
    std::int64_t raw = 0;
    return !__builtin_mul_overflow(a.asInt64(), Money::kScale, &raw) && raw == b.asMoney().raw();
  }
  return a.asDouble() == b.asMoney().toDouble();
}

std::string textOfDouble(double number) {
  char buffer[40];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, number).ptr;
  return {buffer, end};
}

}  // namespace

std::int64_t Value::wholeOf(std::uint64_t number) {
  if (number > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
    throw StoreError(Code::badValue, "The number " + std::to_string(number) + " is too large");
  }
  return static_cast<std::int64_t>(number);
}

void Value::refuse(const char* wanted) const {
  throw StoreError(Code::badValue, "'" + toText() + "' is not " + wanted);
}

bool Value::asBool() const {
  if (isNull()) return false;
  if (const auto* truth = std::get_if<bool>(&data_)) return *truth;
  refuse("true or false");
}

int Value::asInt() const {
  const std::int64_t number = asInt64();
  if (number != static_cast<int>(number)) refuse("a whole number within 32 bits");
  return static_cast<int>(number);
}

std::int64_t Value::asInt64() const {
  switch (kind()) {
    case Kind::null:
      return 0;
    case Kind::whole:
      return std::get<std::int64_t>(data_);
    case Kind::real:
      if (const auto whole = exactWhole(std::get<double>(data_))) return *whole;
      break;
    case Kind::money:
      if (const std::int64_t raw = std::get<Money>(data_).raw(); raw % Money::kScale == 0) return raw / Money::kScale;
      break;
    default:
      break;
  }
  refuse("a whole number");
}

double Value::asDouble() const {
  switch (kind()) {
    case Kind::null:
      return 0;
    case Kind::whole: {
      const std::int64_t whole = std::get<std::int64_t>(data_);
      const auto number = static_cast<double>(whole);
      if (exactWhole(number) == whole) return number;
      refuse("a number that floating point holds exactly");
    }
    case Kind::real:
      return std::get<double>(data_);
    case Kind::money:
      return std::get<Money>(data_).toDouble();
    default:
      refuse("a number");
  }
}

Money Value::asMoney() const {
  switch (kind()) {
    case Kind::null:
      return {};
    case Kind::whole: {
      std::int64_t raw = 0;
      if (!__builtin_mul_overflow(std::get<std::int64_t>(data_), Money::kScale, &raw)) return Money::fromRaw(raw);
      break;
    }
    case Kind::real: {
      const double number = std::get<double>(data_);
      // Below this bound fromDouble raises nothing.
      if (std::abs(number) < kWholeLimit / Money::kScale) {
        const Money amount = Money::fromDouble(number);
        if (amount.toDouble() == number) return amount;
      }
      break;
    }
    case Kind::money:
      return std::get<Money>(data_);
    default:
      break;
  }
  refuse("an amount of money");
}

const std::string& Value::asText() const {
  static const std::string kEmpty;
  if (isNull()) return kEmpty;
  if (const auto* text = std::get_if<std::string>(&data_)) return *text;
  refuse("text");
}

Date Value::asDate() const {
  if (const auto* date = std::get_if<Date>(&data_)) return *date;
  if (const auto* moment = std::get_if<DateTime>(&data_); moment && moment->time == TimeOfDay{}) return moment->date;
  refuse("a date");
}

std::optional<Date> Value::dateOrNone() const { return isNull() ? std::nullopt : std::optional(asDate()); }

TimeOfDay Value::asTime() const {
  if (isNull()) return {};
  if (const auto* time = std::get_if<TimeOfDay>(&data_)) return *time;
  refuse("a time of the day");
}

DateTime Value::asDateTime() const {
  if (const auto* moment = std::get_if<DateTime>(&data_)) return *moment;
  if (const auto* date = std::get_if<Date>(&data_)) return {*date, {}};
  refuse("a date and time");
}

std::optional<DateTime> Value::dateTimeOrNone() const { return isNull() ? std::nullopt : std::optional(asDateTime()); }

const Blob& Value::asBlob() const {
  static const Blob kEmpty;
  if (isNull()) return kEmpty;
  if (const auto* blob = std::get_if<Blob>(&data_)) return *blob;
  refuse("binary content");
}

std::string Value::toText() const {
  switch (kind()) {
    case Kind::null:
      return "null";
    case Kind::boolean:
      return asBool() ? "True" : "False";
    case Kind::whole:
      return std::to_string(asInt64());
    case Kind::real:
      return textOfDouble(asDouble());
    case Kind::money:
      return asMoney().toText();
    case Kind::text:
      return asText();
    case Kind::date:
      return asDate().toIso();
    case Kind::time:
      return asTime().toIso();
    case Kind::dateTime:
      return asDateTime().toIso();
    case Kind::blob:
      return std::to_string(asBlob().bytes.size()) + " bytes";
  }
  return {};
}

bool operator==(const Value& a, const Value& b) {
  if (a.kind() != b.kind() && a.isNumber() && b.isNumber()) return equalNumbers(a, b);
  return a.data_ == b.data_;
}

}  // namespace quillon::store
