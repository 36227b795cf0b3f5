// Functions of one row, casts and conditionals.
#include <algorithm>
#include <cmath>

#include "base/Text.h"
#include "store/Errors.h"
#include "store/sql/OperandList.h"

namespace quillon::store::sql {
namespace {

constexpr std::int64_t kDay = 86'400'000;  // milliseconds

std::int64_t divideDown(std::int64_t value, std::int64_t by) { return value / by - (value % by < 0 ? 1 : 0); }

Date dateOf(const Datum& value) {
  const std::int64_t days = value.type == Type::dateTime ? divideDown(value.whole, kDay) : value.whole;
  return Date::fromDays(static_cast<std::int32_t>(days));
}

// Half away from zero at the given decimal, by the shortest decimal form that the float has.
double roundReal(double value, int decimals) {
  const long double scale = std::pow(10.0L, decimals);
  const long double scaled = static_cast<long double>(value) * scale;
  if (std::fabs(scaled) >= 0x1p53L) return value;  // nothing that the float knows is rounded away
  // Noise of the binary form below the fifteenth digit must not turn a half into less than a half. A large number's
  // digits behind the fifteenth are no noise.
  const long double nudge = std::min(std::fabs(scaled) * 1e-15L, 1e-3L);
  const long double rounded = scaled < 0 ? -std::floor(-scaled + nudge + 0.5L) : std::floor(scaled + nudge + 0.5L);
  const long double result = rounded / scale;
  return std::isfinite(result) ? static_cast<double>(result) + 0.0 : value;  // no -0
}

// The same for the last `digits` digits of a whole number.
std::int64_t roundWhole(std::int64_t raw, int digits, const Place& place) {
  std::int64_t unit = 1;
  for (int i = 0; i < digits; ++i)
    if (__builtin_mul_overflow(unit, 10, &unit)) return 0;
  const std::int64_t rest = raw % unit;
  const std::int64_t down = raw - rest;
  if (rest < 0 ? -rest < unit - unit / 2 : rest < unit - unit / 2) return down;
  std::int64_t result;
  if (__builtin_add_overflow(down, raw < 0 ? -unit : unit, &result))
    refuse(place, Code::badValue, "the result is too large.");
  return result;
}

std::int64_t roundMoney(std::int64_t raw, int decimals, const Place& place) {
  return roundWhole(raw, Money::kDecimals - decimals, place);
}

enum class Function { upper, lower, length, substring, abs, trunc, round, year, month, day };

struct FunctionRow {
  const char* name;
  Function function;
  std::size_t least, most;  // operands
};
constexpr FunctionRow kFunctions[] = {
    {"UPPER", Function::upper, 1, 1},
    {"LOWER", Function::lower, 1, 1},
    {"LENGTH", Function::length, 1, 1},
    {"SUBSTRING", Function::substring, 2, 3},
    {"ABS", Function::abs, 1, 1},
    {"TRUNC", Function::trunc, 1, 1},
    {"ROUND", Function::round, 1, 2},
    {"EXTRACT_YEAR", Function::year, 1, 1},
    {"EXTRACT_MONTH", Function::month, 1, 1},
    {"EXTRACT_DAY", Function::day, 1, 1},
};

class Call final : public OperandList {
 public:
  Call(Function function, std::vector<ExpressionPtr> operands, Type result, int resultSize)
      : OperandList(std::move(operands), result, resultSize), function_(function) {}

  Datum eval(Frame& frame) const override {
    const Datum value = operands_[0]->eval(frame);
    if (value.isNull()) return {};
    switch (function_) {
      case Function::upper:
        return Datum::ofText(frame.texts.keep(upper(value.text)));
      case Function::lower:
        return Datum::ofText(frame.texts.keep(lower(value.text)));
      case Function::length:
        return Datum::ofWhole(static_cast<std::int64_t>(lengthInCharacters(value.text)));
      case Function::substring:
        return part(value, frame);
      case Function::abs:
        return absolute(value);
      case Function::trunc:
        return truncated(value);
      case Function::round:
        return rounded(value, frame);
      case Function::year:
        return Datum::ofWhole(dateOf(value).year());
      case Function::month:
        return Datum::ofWhole(dateOf(value).month());
      case Function::day:
        return Datum::ofWhole(dateOf(value).day());
    }
    return {};
  }

 private:
  Datum part(const Datum& value, Frame& frame) const {
    const Datum from = operands_[1]->eval(frame);
    const Datum count = operands_.size() > 2 ? operands_[2]->eval(frame) : Datum::ofWhole(INT32_MAX);
    if (from.isNull() || count.isNull()) return {};
    // Characters from `from` (1 is the first) to before from + count; places outside the text count but give nothing.
    const std::int64_t start = std::max<std::int64_t>(from.whole, 1);
    const std::int64_t end = std::max(start, from.whole + std::min<std::int64_t>(count.whole, INT32_MAX));
    std::string_view text = value.text;
    text.remove_prefix(firstCharacters(text, static_cast<std::size_t>(start - 1)).size());
    return Datum::ofText(firstCharacters(text, static_cast<std::size_t>(end - start)));
  }
  Datum absolute(const Datum& value) const {
    if (value.type == Type::real) return Datum::ofReal(std::fabs(value.real));
    if (value.whole == INT64_MIN) refuse(place, Code::badValue, "the result is too large.");
    return Datum::make(value.type, value.whole < 0 ? -value.whole : value.whole);
  }
  static Datum truncated(const Datum& value) {
    if (value.type == Type::real) return Datum::ofReal(std::trunc(value.real) + 0.0);
    if (value.type == Type::money) return Datum::ofMoney(value.whole - value.whole % Money::kScale);
    return value;
  }
  Datum rounded(const Datum& value, Frame& frame) const {
    const Datum count = operands_.size() > 1 ? operands_[1]->eval(frame) : Datum::ofWhole(0);
    if (count.isNull()) return {};
    const int decimals = static_cast<int>(std::clamp<std::int64_t>(count.whole, -18, 18));
    if (value.type == Type::real) return Datum::ofReal(roundReal(value.real, decimals));
    if (value.type == Type::money) return Datum::ofMoney(roundMoney(value.whole, decimals, place));
    return Datum::ofWhole(roundWhole(value.whole, -decimals, place));
  }

  Function function_;
};

class Coalesce final : public OperandList {
 public:
  using OperandList::OperandList;
  Datum eval(Frame& frame) const override {
    for (const ExpressionPtr& operand : operands_)
      if (const Datum value = operand->eval(frame); !value.isNull()) return value;
    return {};
  }
};

class Conditional final : public OperandList {
 public:
  using OperandList::OperandList;
  Datum eval(Frame& frame) const override {
    std::size_t i = 0;
    for (; i + 1 < operands_.size(); i += 2)
      if (operands_[i]->eval(frame).isTrue()) return operands_[i + 1]->eval(frame);
    return i < operands_.size() ? operands_[i]->eval(frame) : Datum();
  }
};

class Cast final : public Expression {
 public:
  Cast(ExpressionPtr operand, const CastType& wanted, Type result, int resultSize)
      : Expression(result, resultSize), operand_(std::move(operand)), wanted_(wanted) {
    fixed = operand_->fixed;
    inherit(*this, *operand_);
  }
  Datum eval(Frame& frame) const override {
    const Datum value = operand_->eval(frame);
    if (value.isNull()) return {};
    try {
      return cast(value, frame);
    } catch (const StatementError&) {
      throw;
    } catch (const Error& error) {
      refuse(place, Code::badValue, error.what());
    }
  }

 private:
  Datum cast(const Datum& value, Frame& frame) const {
    switch (type) {
      case Type::whole:
        return whole(value, frame);
      case Type::boolean:
        if (value.type == Type::whole) return Datum::ofTruth(value.whole != 0);
        break;
      case Type::date:
        if (value.type == Type::dateTime) return Datum::make(Type::date, divideDown(value.whole, kDay));
        break;
      case Type::time:
        if (value.type == Type::dateTime)
          return Datum::make(Type::time, value.whole - divideDown(value.whole, kDay) * kDay);
        break;
      case Type::text: {
        const std::string text = value.type == Type::text ? std::string(value.text) : valueOf(value).toText();
        const auto most = wanted_.size > 0 ? static_cast<std::size_t>(wanted_.size) : text.size();
        return Datum::ofText(frame.texts.keep(std::string(firstCharacters(text, most))));
      }
      case Type::real:
        if (value.type == Type::boolean) return Datum::ofReal(static_cast<double>(value.whole));
        break;
      case Type::money:
        if (wanted_.scale >= 0 && wanted_.scale < Money::kDecimals)
          return Datum::ofMoney(roundMoney(convert(value, type, frame.texts).whole, wanted_.scale, place));
        break;
      default:
        break;
    }
    return convert(value, type, frame.texts);
  }
  // Whole numbers are cut, not rounded, as everywhere where a fraction is dropped.
  Datum whole(const Datum& value, Frame& frame) const {
    Datum number = value;
    if (value.type == Type::text)
      number =
          convert(value, value.text.find_first_of(".eE") == value.text.npos ? Type::whole : Type::real, frame.texts);
    std::int64_t result = number.whole;
    if (number.type == Type::money) result = number.whole / Money::kScale;
    if (number.type == Type::real) {
      if (!(std::fabs(number.real) < 9.2e18)) refuse(place, Code::badValue, "the number is too large.");
      result = static_cast<std::int64_t>(number.real);
    }
    const auto outside = [&](std::int64_t least, std::int64_t most) { return result < least || result > most; };
    if (wanted_.type == FieldType::smallint ? outside(INT16_MIN, INT16_MAX)
                                            : wanted_.type != FieldType::largeInt && outside(INT32_MIN, INT32_MAX))
      refuse(place, Code::badValue, std::to_string(result) + " is too large for this type.");
    return Datum::ofWhole(result);
  }

  ExpressionPtr operand_;
  CastType wanted_;
};

// Whether a value of one type can become another by CAST at all.
bool castable(Type from, Type to) {
  if (from == Type::null || from == to || from == Type::text || to == Type::text) return to != Type::blob || from == to;
  if (isNumber(to)) return isNumber(from) || (from == Type::boolean && to != Type::money);
  if (to == Type::boolean) return from == Type::whole;
  if (to == Type::date || to == Type::time) return from == Type::dateTime;
  return to == Type::dateTime && from == Type::date;
}

void requireType(const Expression& operand, bool fits, const std::string& function, const char* wanted) {
  if (!fits && operand.type != Type::null)
    refuse(operand.place, Code::typeMismatch,
           function + " needs " + wanted + ", not " + std::string(nameOf(operand.type)) + ".");
}

// The size of a text that is one of several; asked before they take a common type, for null has none.
int widest(const std::vector<ExpressionPtr*>& branches) {
  int size = 0;
  for (const ExpressionPtr* branch : branches) {
    if ((*branch)->type == Type::text && (*branch)->size == 0) return 0;
    size = std::max(size, (*branch)->size);
  }
  return size;
}

}  // namespace

ExpressionPtr makeConditional(std::vector<ExpressionPtr> operands, const Expr& source) {
  std::vector<ExpressionPtr*> values;
  for (std::size_t i = 0; i < operands.size(); ++i) {
    const bool condition = i % 2 == 0 && i + 1 < operands.size();
    if (!condition)
      values.push_back(&operands[i]);
    else if (operands[i]->type != Type::boolean && operands[i]->type != Type::null)
      refuse(operands[i]->place, Code::typeMismatch,
             "expected a condition, found " + std::string(nameOf(operands[i]->type)) + ".");
  }
  const int size = widest(values);
  const Type type = unifyBranches(values, source.place);
  return placed(std::make_unique<Conditional>(std::move(operands), type, size), source);
}

ExpressionPtr makeCall(const std::string& function, std::vector<ExpressionPtr> operands, const Expr& source) {
  if (function == "COALESCE") {
    if (operands.empty()) refuse(source.place, Code::badStatement, "COALESCE needs values.");
    std::vector<ExpressionPtr*> values;
    values.reserve(operands.size());
    for (ExpressionPtr& operand : operands) values.push_back(&operand);
    const int size = widest(values);
    const Type type = unifyBranches(values, source.place);
    return placed(std::make_unique<Coalesce>(std::move(operands), type, size), source);
  }
  for (const FunctionRow& row : kFunctions) {
    if (function != row.name) continue;
    if (operands.size() < row.least || operands.size() > row.most)
      refuse(source.place, Code::badStatement, "wrong number of values for " + function + ".");
    Type result = operands[0]->type;
    int size = operands[0]->size;
    switch (row.function) {
      case Function::upper:
      case Function::lower:
      case Function::substring:
      case Function::length:
        requireType(*operands[0], result == Type::text, function, "a text");
        for (std::size_t i = 1; i < operands.size(); ++i)
          requireType(*operands[i], operands[i]->type == Type::whole, function, "a whole number");
        result = row.function == Function::length ? Type::whole : Type::text;
        break;
      case Function::abs:
      case Function::trunc:
      case Function::round:
        requireType(*operands[0], isNumber(result), function, "a number");
        if (operands.size() > 1)
          requireType(*operands[1], operands[1]->type == Type::whole, function, "a whole number");
        break;
      default:
        if (result == Type::text && operands[0]->fixed) operands[0] = convertTo(std::move(operands[0]), Type::date);
        requireType(*operands[0], operands[0]->type == Type::date || operands[0]->type == Type::dateTime, "EXTRACT",
                    "a date");
        result = Type::whole;
    }
    return placed(std::make_unique<Call>(row.function, std::move(operands), result, size), source);
  }
  refuse(source.place, Code::badStatement, "there is no function '" + function + "'.");
}

ExpressionPtr makeCast(ExpressionPtr operand, const Expr& source) {
  const Type type = typeOf(source.cast.type);
  if (!castable(operand->type, type))
    refuse(source.place, Code::typeMismatch,
           std::string(nameOf(operand->type)) + " cannot be cast to " + std::string(nameOf(type)) + ".");
  return placed(std::make_unique<Cast>(std::move(operand), source.cast, type, source.cast.size), source);
}

}  // namespace quillon::store::sql
