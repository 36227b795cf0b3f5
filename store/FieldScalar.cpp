#include "store/FieldScalar.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

#include "base/Text.h"
#include "store/Errors.h"

namespace quillon::store {
namespace {

using Kind = Value::Kind;

static_assert(std::endian::native == std::endian::little);  // a scalar's bytes are copied as they are

constexpr std::int32_t kFirstDay = -719162;  // 0001-01-01
constexpr std::int32_t kLastDay = 2932896;   // 9999-12-31
constexpr std::int64_t kDay = TimeOfDay::kDay;
constexpr std::size_t kShownInMessages = 60;  // characters of a refused text

// The value as one piece of the sentence that refuses it.
std::string shown(const Value& value) {
  const std::string text = value.toText();
  const std::string_view start = firstCharacters(text, kShownInMessages);
  return "'" + std::string(start) + (start.size() < text.size() ? "...'" : "'");
}

template <typename Whole>
Whole load(const std::byte* from) {
  Whole value;
  std::memcpy(&value, from, sizeof value);
  return value;
}

template <typename Whole>
bool within(std::int64_t number) {
  return number >= std::numeric_limits<Whole>::min() && number <= std::numeric_limits<Whole>::max();
}

std::int64_t floorDay(std::int64_t moment) { return (moment >= 0 ? moment : moment - (kDay - 1)) / kDay; }

std::int64_t wholeScalar(const FieldDef& field, std::string_view table, const Value& value) {
  if (!value.isNumber()) refuseValue(field, table, value, "a whole number is needed");
  std::int64_t number = 0;
  try {
    number = value.asInt64();
  } catch (const StoreError&) {
    refuseValue(field, table, value, "a whole number is needed");
  }
  if (field.type == FieldType::largeInt) return number;
  const bool fits = field.type == FieldType::smallint ? within<std::int16_t>(number) : within<std::int32_t>(number);
  if (!fits) refuseValue(field, table, value, "the number is out of range");
  return number;
}

std::int64_t floatScalar(const FieldDef& field, std::string_view table, const Value& value) {
  if (!value.isNumber()) refuseValue(field, table, value, "a number is needed");
  double number = 0;
  try {
    number = value.asDouble();
  } catch (const StoreError&) {
    refuseValue(field, table, value, "the number has too many digits");
  }
  if (!std::isfinite(number)) refuseValue(field, table, value, "the number is not finite");
  return std::bit_cast<std::int64_t>(number == 0 ? 0.0 : number);
}

std::int64_t moneyScalar(const FieldDef& field, std::string_view table, const Value& value, Purpose purpose) {
  if (!value.isNumber()) refuseValue(field, table, value, "an amount is needed");
  try {
    if (value.kind() == Kind::real && purpose == Purpose::field) return Money::fromDouble(value.asDouble()).raw();
    return value.asMoney().raw();
  } catch (const Error&) {
    refuseValue(field, table, value, purpose == Purpose::field ? "the amount is out of range" : "it is no amount");
  }
}

std::int64_t dateScalar(const FieldDef& field, std::string_view table, const Value& value) {
  if (value.kind() == Kind::date) return value.asDate().days();
  if (value.kind() == Kind::dateTime) {
    const DateTime moment = value.asDateTime();
    if (moment.time == TimeOfDay{}) return moment.date.days();
  }
  refuseValue(field, table, value, "a date is needed");
}

std::int64_t momentScalar(const FieldDef& field, std::string_view table, const Value& value) {
  if (value.kind() != Kind::date && value.kind() != Kind::dateTime) {
    refuseValue(field, table, value, "a date and time is needed");
  }
  const DateTime moment = value.asDateTime();
  if (!moment.time.valid()) refuseValue(field, table, value, "the time of the day is out of range");
  return moment.date.days() * kDay + moment.time.milliseconds;
}

}  // namespace

void refuseValue(const FieldDef& field, std::string_view table, const Value& value, const char* reason) {
  throw StoreError(Code::badValue, "The field " + field.name + " of table " + std::string(table) + " cannot hold " +
                                       shown(value) + ": " + reason);
}

std::int64_t scalarOf(const FieldDef& field, std::string_view table, const Value& value, Purpose purpose) {
  switch (field.type) {
    case FieldType::smallint:
    case FieldType::integer:
    case FieldType::autoInc:
    case FieldType::largeInt:
      return wholeScalar(field, table, value);
    case FieldType::floating:
      return floatScalar(field, table, value);
    case FieldType::currency:
      return moneyScalar(field, table, value, purpose);
    case FieldType::boolean:
      if (value.kind() != Kind::boolean) refuseValue(field, table, value, "true or false is needed");
      return value.asBool() ? 1 : 0;
    case FieldType::date:
      return dateScalar(field, table, value);
    case FieldType::time:
      if (value.kind() != Kind::time) refuseValue(field, table, value, "a time of the day is needed");
      if (!value.asTime().valid()) refuseValue(field, table, value, "the time of the day is out of range");
      return value.asTime().milliseconds;
    case FieldType::dateTime:
      return momentScalar(field, table, value);
    case FieldType::string:
    case FieldType::memo:
    case FieldType::blob:
    case FieldType::graphic:
      break;
  }
  refuseValue(field, table, value, "its content is set in another way");
}

Value valueOf(FieldType type, std::int64_t scalar) {
  switch (type) {
    case FieldType::smallint:
    case FieldType::integer:
    case FieldType::autoInc:
    case FieldType::largeInt:
      return scalar;
    case FieldType::floating:
      return std::bit_cast<double>(scalar);
    case FieldType::currency:
      return Money::fromRaw(scalar);
    case FieldType::boolean:
      return scalar != 0;
    case FieldType::date:
      return Date::fromDays(static_cast<std::int32_t>(scalar));
    case FieldType::time:
      return TimeOfDay{static_cast<std::int32_t>(scalar)};
    case FieldType::dateTime: {
      const std::int64_t day = floorDay(scalar);
      return DateTime{Date::fromDays(static_cast<std::int32_t>(day)), {static_cast<std::int32_t>(scalar - day * kDay)}};
    }
    case FieldType::string:
    case FieldType::memo:
    case FieldType::blob:
    case FieldType::graphic:
      break;
  }
  return {};
}

std::int64_t loadScalar(FieldType type, const std::byte* from) {
  switch (widthOf(type)) {
    case 1:
      return static_cast<std::uint8_t>(*from);
    case 2:
      return load<std::int16_t>(from);
    case 4:
      return load<std::int32_t>(from);
    default:
      return load<std::int64_t>(from);
  }
}

void appendScalar(FieldType type, std::int64_t scalar, std::string& out) {
  char bytes[sizeof scalar];
  std::memcpy(bytes, &scalar, sizeof scalar);
  out.append(bytes, widthOf(type));
}

bool isSound(FieldType type, std::int64_t scalar) {
  switch (type) {
    case FieldType::smallint:
      return within<std::int16_t>(scalar);
    case FieldType::integer:
    case FieldType::autoInc:
      return within<std::int32_t>(scalar);
    case FieldType::floating:
      return std::isfinite(std::bit_cast<double>(scalar)) && scalar != std::numeric_limits<std::int64_t>::min();
    case FieldType::currency:
    case FieldType::largeInt:
      return true;
    case FieldType::boolean:
      return scalar == 0 || scalar == 1;
    case FieldType::date:
      return scalar >= kFirstDay && scalar <= kLastDay;
    case FieldType::time:
      return scalar >= 0 && scalar < kDay;
    case FieldType::dateTime:
      return scalar >= kFirstDay * kDay && scalar < (kLastDay + 1) * kDay;
    case FieldType::string:
    case FieldType::memo:
    case FieldType::blob:
    case FieldType::graphic:
      break;
  }
  return false;
}

const std::string& textOf(const FieldDef& field, std::string_view table, const Value& value, Purpose purpose) {
  if (value.kind() != Kind::text) refuseValue(field, table, value, "text is needed");
  const std::string& text = value.asText();
  if (purpose == Purpose::search) return text;
  if (!isValidUtf8(text)) refuseValue(field, table, value, "the text is not valid UTF-8");
  const auto most = static_cast<std::size_t>(field.size);
  if (text.size() > most && lengthInCharacters(text) > most) refuseValue(field, table, value, "the text is too long");
  return text;
}

}  // namespace quillon::store
