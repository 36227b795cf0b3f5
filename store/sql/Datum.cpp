#include "store/sql/Datum.h"

#include <bit>
#include <cmath>

#include "base/Text.h"
#include "store/Errors.h"

namespace quillon::store::sql {
namespace {

constexpr std::int64_t kDay = 86'400'000;  // milliseconds

struct TypeName {
  Type type;
  std::string_view name;
};
constexpr TypeName kNames[] = {
    {Type::null, "null"},        {Type::boolean, "true or false"}, {Type::whole, "a whole number"},
    {Type::money, "an amount"},  {Type::real, "a number"},         {Type::text, "a text"},
    {Type::date, "a date"},      {Type::time, "a time"},           {Type::dateTime, "a date with time"},
    {Type::blob, "binary data"},
};

long double amountOf(const Datum& datum) {
  switch (datum.type) {
    case Type::money:
      return static_cast<double>(Money::fromRaw(datum.whole).toDouble());
    case Type::real:
      return datum.real;
    default:
      return static_cast<long double>(datum.whole);
  }
}

std::weak_ordering order(long double a, long double b) {
  return a < b ? std::weak_ordering::less : a > b ? std::weak_ordering::greater : std::weak_ordering::equivalent;
}

std::weak_ordering compareNumbers(const Datum& a, const Datum& b) {
  if (a.type == b.type) return a.type == Type::real ? order(a.real, b.real) : a.whole <=> b.whole;
  if (a.type != Type::real && b.type != Type::real) {
    // A whole number beside an amount: by the whole part of the amount, then by what is behind its point.
    const bool swapped = b.type == Type::money;
    const std::int64_t whole = swapped ? a.whole : b.whole;
    const std::int64_t amount = swapped ? b.whole : a.whole;
    const std::weak_ordering parts = amount / Money::kScale <=> whole;
    const std::weak_ordering result = parts != 0 ? parts : amount % Money::kScale <=> std::int64_t{0};
    return swapped ? 0 <=> result : result;
  }
  return order(amountOf(a), amountOf(b));
}

void appendBigEndian(std::uint64_t value, std::string& out) {
  for (int shift = 56; shift >= 0; shift -= 8) out += static_cast<char>(value >> shift);
}

std::uint64_t orderedBits(double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value == 0 ? 0.0 : value);
  return bits >> 63 ? ~bits : bits | std::uint64_t{1} << 63;
}

[[noreturn]] void mismatch(const Datum& datum, Type wanted) {
  throw StoreError(Code::typeMismatch,
                   std::string(nameOf(datum.type)) + " cannot be taken as " + std::string(nameOf(wanted)) + ".");
}

Datum textTo(const Datum& datum, Type type) {
  const std::string text(trim(datum.text));
  const auto bad = [&]() -> StoreError {
    return {Code::badValue, "'" + text + "' is not " + std::string(nameOf(type)) + "."};
  };
  switch (type) {
    case Type::date: {
      const std::optional<Date> date = Date::parseIso(text);
      if (!date) throw bad();
      return Datum::make(Type::date, date->days());
    }
    case Type::dateTime: {
      if (const std::optional<Date> date = Date::parseIso(text))
        return Datum::make(Type::dateTime, date->days() * kDay);
      const std::optional<DateTime> moment = DateTime::parseIso(text);
      if (!moment) throw bad();
      return Datum::make(Type::dateTime, moment->date.days() * kDay + moment->time.milliseconds);
    }
    case Type::time: {
      const std::optional<TimeOfDay> time = TimeOfDay::parseIso(text);
      if (!time) throw bad();
      return Datum::make(Type::time, time->milliseconds);
    }
    case Type::boolean:
      if (equalFolded(text, "true")) return Datum::ofTruth(true);
      if (equalFolded(text, "false")) return Datum::ofTruth(false);
      throw bad();
    case Type::whole:
    case Type::money:
    case Type::real:
      break;
    default:
      throw bad();
  }
  if (type == Type::money) {
    const std::optional<Money> amount = Money::parse(text);
    if (!amount) throw bad();
    return Datum::ofMoney(amount->raw());
  }
  try {
    std::size_t used = 0;
    if (type == Type::whole) {
      const std::int64_t value = std::stoll(text, &used);
      if (used == text.size()) return Datum::ofWhole(value);
    } else {
      const double value = std::stod(text, &used);
      if (used == text.size() && std::isfinite(value)) return Datum::ofReal(value);
    }
  } catch (const std::logic_error&) {
    throw bad();
  }
  throw bad();
}

}  // namespace

Type typeOf(FieldType type) {
  switch (type) {
    case FieldType::string:
    case FieldType::memo:
      return Type::text;
    case FieldType::smallint:
    case FieldType::integer:
    case FieldType::autoInc:
    case FieldType::largeInt:
      return Type::whole;
    case FieldType::floating:
      return Type::real;
    case FieldType::currency:
      return Type::money;
    case FieldType::boolean:
      return Type::boolean;
    case FieldType::date:
      return Type::date;
    case FieldType::time:
      return Type::time;
    case FieldType::dateTime:
      return Type::dateTime;
    case FieldType::blob:
    case FieldType::graphic:
      return Type::blob;
  }
  return Type::null;
}

std::string_view nameOf(Type type) {
  for (const TypeName& entry : kNames)
    if (entry.type == type) return entry.name;
  return "a value";
}

Datum datumOf(const Value& value, Texts& texts) {
  switch (value.kind()) {
    case Value::Kind::null:
      return {};
    case Value::Kind::boolean:
      return Datum::ofTruth(value.asBool());
    case Value::Kind::whole:
      return Datum::ofWhole(value.asInt64());
    case Value::Kind::real:
      return Datum::ofReal(value.asDouble());
    case Value::Kind::money:
      return Datum::ofMoney(value.asMoney().raw());
    case Value::Kind::text:
      return Datum::ofText(texts.keep(value.asText()));
    case Value::Kind::date:
      return Datum::make(Type::date, value.asDate().days());
    case Value::Kind::time:
      return Datum::make(Type::time, value.asTime().milliseconds);
    case Value::Kind::dateTime: {
      const DateTime moment = value.asDateTime();
      return Datum::make(Type::dateTime, moment.date.days() * kDay + moment.time.milliseconds);
    }
    case Value::Kind::blob:
      return Datum::ofText(texts.keep(value.asBlob().bytes), Type::blob);
  }
  return {};
}

Value valueOf(const Datum& datum) {
  switch (datum.type) {
    case Type::null:
      return {};
    case Type::boolean:
      return datum.whole != 0;
    case Type::whole:
      return datum.whole;
    case Type::money:
      return Money::fromRaw(datum.whole);
    case Type::real:
      return datum.real;
    case Type::text:
      return datum.text;
    case Type::date:
      return Date::fromDays(static_cast<std::int32_t>(datum.whole));
    case Type::time:
      return TimeOfDay{static_cast<std::int32_t>(datum.whole)};
    case Type::dateTime: {
      const std::int64_t days = (datum.whole >= 0 ? datum.whole : datum.whole - kDay + 1) / kDay;
      return DateTime{Date::fromDays(static_cast<std::int32_t>(days)),
                      TimeOfDay{static_cast<std::int32_t>(datum.whole - days * kDay)}};
    }
    case Type::blob:
      return Blob{std::string(datum.text)};
  }
  return {};
}

std::optional<std::string> contentOf(const Datum& datum) {
  if (datum.isNull()) return {};
  const bool bytes = datum.type == Type::text || datum.type == Type::blob;
  return bytes ? std::string(datum.text) : valueOf(datum).toText();
}

std::weak_ordering compare(const Datum& a, const Datum& b) {
  if (a.isNull() || b.isNull()) return !a.isNull() <=> !b.isNull();
  if (isNumber(a.type) && isNumber(b.type)) return compareNumbers(a, b);
  if (a.type == Type::text || a.type == Type::blob) return a.text <=> b.text;
  if (a.type == Type::date && b.type == Type::dateTime) return a.whole * kDay <=> b.whole;
  if (a.type == Type::dateTime && b.type == Type::date) return a.whole <=> b.whole * kDay;
  return a.whole <=> b.whole;
}

void appendIdentity(const Datum& datum, std::string& out) {
  out += static_cast<char>(datum.type);
  if (datum.isNull()) return;
  if (datum.type == Type::text || datum.type == Type::blob) {
    const std::uint64_t size = datum.text.size();
    out.append(reinterpret_cast<const char*>(&size), sizeof size);
    out += datum.text;
    return;
  }
  const std::uint64_t bits =
      datum.type == Type::real ? orderedBits(datum.real) : static_cast<std::uint64_t>(datum.whole);
  out.append(reinterpret_cast<const char*>(&bits), sizeof bits);
}

void appendSortKey(const Datum& datum, bool folded, bool descending, std::string& out) {
  const std::size_t start = out.size();
  if (datum.isNull()) {
    out += '\0';
  } else {
    out += '\1';
    if (datum.type == Type::text || datum.type == Type::blob) {
      const std::string fold = folded ? foldCase(datum.text) : std::string();
      for (const char byte : folded ? std::string_view(fold) : datum.text) {
        if (byte == '\0' || byte == '\1') out += '\1';
        out += byte == '\0' ? '\1' : byte == '\1' ? '\2' : byte;
      }
      out += '\0';
    } else if (datum.type == Type::real) {
      appendBigEndian(orderedBits(datum.real), out);
    } else {
      appendBigEndian(static_cast<std::uint64_t>(datum.whole) ^ std::uint64_t{1} << 63, out);
    }
  }
  if (descending)
    for (std::size_t i = start; i < out.size(); ++i) out[i] = static_cast<char>(~out[i]);
}

Datum convert(const Datum& datum, Type type, Texts&) {
  if (datum.isNull() || datum.type == type || type == Type::null) return datum;
  if (datum.type == Type::text) return textTo(datum, type);
  switch (type) {
    case Type::real:
      if (isNumber(datum.type)) return Datum::ofReal(static_cast<double>(amountOf(datum)));
      break;
    case Type::money:
      if (datum.type == Type::whole) {
        std::int64_t raw;
        if (__builtin_mul_overflow(datum.whole, Money::kScale, &raw))
          throw StoreError(Code::badValue, std::to_string(datum.whole) + " is too large for an amount.");
        return Datum::ofMoney(raw);
      }
      if (datum.type == Type::real) return Datum::ofMoney(Money::fromDouble(datum.real).raw());
      break;
    case Type::whole:
      if (datum.type == Type::money && datum.whole % Money::kScale == 0)
        return Datum::ofWhole(datum.whole / Money::kScale);
      if (datum.type == Type::real && std::trunc(datum.real) == datum.real && std::fabs(datum.real) < 9.2e18)
        return Datum::ofWhole(static_cast<std::int64_t>(datum.real));
      if (isNumber(datum.type)) throw StoreError(Code::badValue, valueOf(datum).toText() + " is not a whole number.");
      break;
    case Type::dateTime:
      if (datum.type == Type::date) return Datum::make(Type::dateTime, datum.whole * kDay);
      break;
    case Type::date:
      if (datum.type == Type::dateTime && datum.whole % kDay == 0) return Datum::make(Type::date, datum.whole / kDay);
      break;
    case Type::blob:
    case Type::text:
      if (datum.type != Type::blob) break;
      if (!isValidUtf8(datum.text)) throw StoreError(Code::badValue, "the binary data is no text in UTF-8.");
      return Datum::ofText(datum.text, type);
      break;
    default:
      break;
  }
  mismatch(datum, type);
}

}  // namespace quillon::store::sql
