#pragma once

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "base/Date.h"
#include "base/Money.h"

namespace quillon::store {

// The content of a blob or graphic field.
struct Blob {
  std::string bytes;
  friend bool operator==(const Blob&, const Blob&) = default;
};

// What a field holds: null, or a value of one kind. `Value{}` is null.
//
// The as... functions give the value in the kind that is asked for. Null gives the neutral one (false, 0, "",
// midnight); a value of another kind is converted where nothing is lost, otherwise they raise badValue. What returns a
// reference lives as long as the value is unchanged.
class Value {
 public:
  enum class Kind : std::uint8_t { null, boolean, whole, real, money, text, date, time, dateTime, blob };

  Value() = default;
  template <std::same_as<bool> T>  // a template, so that no pointer ends up as a bool
  Value(T truth) : data_(truth) {}
  template <std::signed_integral T>
  requires(!std::same_as<T, char>) Value(T number) : data_(static_cast<std::int64_t>(number)) {}
  template <std::unsigned_integral T>
  requires(!std::same_as<T, bool> && !std::same_as<T, char>) Value(T number)
      : data_(wholeOf(number)) {}  // badValue above the range of 64 bits with a sign
  Value(double number) : data_(number) {}
  Value(Money amount) : data_(amount) {}
  Value(std::string text) : data_(std::move(text)) {}
  Value(std::string_view text) : data_(std::string(text)) {}
  Value(const char* text) : data_(std::string(text)) {}
  Value(Date date) : data_(date) {}
  Value(TimeOfDay time) : data_(time) {}
  Value(DateTime moment) : data_(moment) {}
  Value(Blob blob) : data_(std::move(blob)) {}
  Value(std::nullopt_t) {}
  template <typename T>
  Value(const std::optional<T>& some) {
    if (some) *this = Value(*some);
  }

  Kind kind() const { return static_cast<Kind>(data_.index()); }
  bool isNull() const { return kind() == Kind::null; }
  bool isNumber() const { return kind() == Kind::whole || kind() == Kind::real || kind() == Kind::money; }

  bool asBool() const;
  int asInt() const;  // whole numbers of any kind
  std::int64_t asInt64() const;
  double asDouble() const;  // money becomes the nearest double; a whole number must be exact
  Money asMoney() const;    // a double must be the nearest one to an amount
  const std::string& asText() const;
  Date asDate() const;  // null raises too; a DateTime must be a midnight
  std::optional<Date> dateOrNone() const;
  TimeOfDay asTime() const;
  DateTime asDateTime() const;  // null raises too; a Date is its midnight
  std::optional<DateTime> dateTimeOrNone() const;
  const Blob& asBlob() const;

  // As people read it in a message; "null" for null. Not for storing.
  std::string toText() const;

  // Null equals null. Numbers are equal by what they amount to, whatever their kind; otherwise kinds differ.
  friend bool operator==(const Value& a, const Value& b);

 private:
  using Data =
      std::variant<std::monostate, bool, std::int64_t, double, Money, std::string, Date, TimeOfDay, DateTime, Blob>;
  static std::int64_t wholeOf(std::uint64_t number);
  [[noreturn]] void refuse(const char* wanted) const;

  Data data_;
};

}  // namespace quillon::store
