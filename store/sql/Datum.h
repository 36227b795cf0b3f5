#pragma once

#include <compare>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "store/Schema.h"
#include "store/Value.h"

// Values while a statement runs.
namespace quillon::store::sql {

enum class Type : std::uint8_t { null, boolean, whole, money, real, text, date, time, dateTime, blob };

// A value that looks at its text or blob bytes: in a page that is held, in a Texts, or in the statement.
struct Datum {
  Type type = Type::null;
  union {
    std::int64_t whole = 0;  // boolean 0 or 1; ten-thousandths; days; milliseconds
    double real;
  };
  std::string_view text;

  bool isNull() const { return type == Type::null; }
  bool isTrue() const { return type == Type::boolean && whole != 0; }
  static Datum ofTruth(bool truth) { return make(Type::boolean, truth ? 1 : 0); }
  static Datum ofWhole(std::int64_t value) { return make(Type::whole, value); }
  static Datum ofMoney(std::int64_t raw) { return make(Type::money, raw); }
  static Datum ofReal(double value) {
    Datum datum;
    datum.type = Type::real;
    datum.real = value;
    return datum;
  }
  static Datum ofText(std::string_view value, Type type = Type::text) {
    Datum datum;
    datum.type = type;
    datum.text = value;
    return datum;
  }
  static Datum make(Type type, std::int64_t value) {
    Datum datum;
    datum.type = type;
    datum.whole = value;
    return datum;
  }
};

// Keeps texts made while a row is worked on; they live until `clear`.
class Texts {
 public:
  std::string_view keep(std::string text) { return kept_.emplace_back(std::move(text)); }
  void clear() { kept_.clear(); }

 private:
  std::deque<std::string> kept_;
};

Type typeOf(FieldType type);
std::string_view nameOf(Type type);  // "a number", "a date": for messages
inline bool isNumber(Type type) { return type == Type::whole || type == Type::money || type == Type::real; }

Datum datumOf(const Value& value, Texts& texts);
Value valueOf(const Datum& datum);
std::optional<std::string> contentOf(const Datum& datum);  // what a memo or blob field holds of it; none for null

// Order among values of comparable types; null before everything, null equal to null. Numbers by what they amount to,
// a float beside money as floats; text by code points; a date beside a dateTime as its midnight.
std::weak_ordering compare(const Datum& a, const Datum& b);

// Bytes that are equal exactly when the values are (after both were brought to one type), for hashing and grouping.
void appendIdentity(const Datum& datum, std::string& out);
// Bytes whose order is that of the values (of one type); folded: text without case. Inverted when descending.
void appendSortKey(const Datum& datum, bool folded, bool descending, std::string& out);

// Conversion to another type where the unification of branches or a field asks for it. typeMismatch or badValue.
Datum convert(const Datum& datum, Type type, Texts& texts);

}  // namespace quillon::store::sql
