// Unary operators, logic, arithmetic, and how literals and branches take a common type.
#include <algorithm>
#include <cmath>
#include <functional>

#include "base/Text.h"
#include "store/Errors.h"
#include "store/sql/Binary.h"
#include "store/sql/Expression.h"

namespace quillon::store::sql {
namespace {

class Unary final : public Expression {
 public:
  Unary(Op op, ExpressionPtr operand, Type result) : Expression(result), op_(op), operand_(std::move(operand)) {
    fixed = operand_->fixed;
    inherit(*this, *operand_);
  }
  Datum eval(Frame& frame) const override {
    const Datum value = operand_->eval(frame);
    switch (op_) {
      case Op::isNull:
        return Datum::ofTruth(value.isNull());
      case Op::isNotNull:
        return Datum::ofTruth(!value.isNull());
      case Op::notTrue:
        return Datum::ofTruth(!value.isTrue());
      default:
        break;
    }
    if (value.isNull()) return value;
    if (value.type == Type::real) return Datum::ofReal(-value.real);
    std::int64_t negated;
    if (__builtin_sub_overflow(std::int64_t{0}, value.whole, &negated))
      refuse(place, Code::badValue, "a number is too large to be negated.");
    return Datum::make(value.type, negated);
  }

 private:
  Op op_;
  ExpressionPtr operand_;
};

class Logic final : public Binary {
 public:
  using Binary::Binary;
  bool parts(Parts& out) const override {
    out = {op_, left_.get(), right_.get()};
    return op_ == Op::both;
  }
  Datum eval(Frame& frame) const override {
    const bool left = left_->eval(frame).isTrue();
    if (left != (op_ == Op::both)) return Datum::ofTruth(left);
    return Datum::ofTruth(right_->eval(frame).isTrue());
  }
};

std::int64_t firstDay() {
  static const std::int64_t kDay = Date(1, 1, 1).days();
  return kDay;
}

std::int64_t lastDay() {
  static const std::int64_t kDay = Date(9999, 12, 31).days();
  return kDay;
}

// Sums and differences stay what they are made of; products and quotients of anything but whole numbers are floats.
class Arithmetic final : public Binary {
 public:
  using Binary::Binary;
  Datum eval(Frame& frame) const override {
    const Datum left = left_->eval(frame);
    const Datum right = right_->eval(frame);
    if (left.isNull() || right.isNull()) return {};
    if (type == Type::real) return real(left, right);
    std::int64_t result;
    const bool over = op_ == Op::add        ? __builtin_add_overflow(left.whole, right.whole, &result)
                      : op_ == Op::subtract ? __builtin_sub_overflow(left.whole, right.whole, &result)
                                            : __builtin_mul_overflow(left.whole, right.whole, &result);
    if (over) refuse(place, Code::badValue, "the result is too large.");
    if (type == Type::date && (result < firstDay() || result > lastDay()))
      refuse(place, Code::badValue, "the date is outside the years 1 to 9999.");
    return Datum::make(type, result);
  }

 private:
  Datum real(const Datum& left, const Datum& right) const {
    double result = 0;
    switch (op_) {
      case Op::add:
        result = left.real + right.real;
        break;
      case Op::subtract:
        result = left.real - right.real;
        break;
      case Op::multiply:
        result = left.real * right.real;
        break;
      default:
        if (right.real == 0) refuse(place, Code::badValue, "division by zero.");
        result = left.real / right.real;
    }
    if (!std::isfinite(result)) refuse(place, Code::badValue, "the result is too large.");
    return Datum::ofReal(result);
  }
};

class Concatenation final : public Binary {
 public:
  using Binary::Binary;
  Datum eval(Frame& frame) const override {
    const Datum left = left_->eval(frame);
    const Datum right = right_->eval(frame);
    if (left.isNull() || right.isNull()) return {};
    return Datum::ofText(frame.texts.keep(textOf(left) + textOf(right)));
  }

 private:
  static std::string textOf(const Datum& datum) {
    return datum.type == Type::text ? std::string(datum.text) : valueOf(datum).toText();
  }
};

class Conversion final : public Expression {
 public:
  Conversion(ExpressionPtr operand, Type wanted) : Expression(wanted), operand_(std::move(operand)) {
    fixed = operand_->fixed;
    place = operand_->place;
    inherit(*this, *operand_);
  }
  Datum eval(Frame& frame) const override {
    try {
      return convert(operand_->eval(frame), type, frame.texts);
    } catch (const StoreError& error) {
      refuse(place, error.code(), error.what());
    }
  }

 private:
  ExpressionPtr operand_;
};

// The type of a sum, difference or product of two numbers.
Type numberType(Op op, Type left, Type right) {
  if (op == Op::divide || left == Type::real || right == Type::real) return Type::real;
  if (left == Type::money || right == Type::money) return op == Op::multiply ? Type::real : Type::money;
  return Type::whole;
}

ExpressionPtr makeArithmetic(Op op, ExpressionPtr left, ExpressionPtr right, const Expr& source) {
  adaptLiteral(left, right->type);
  adaptLiteral(right, left->type);
  // Days between a date and one that is written as a text.
  if (op == Op::subtract && left->type == Type::date && adaptsToOther(*right))
    right = convertTo(std::move(right), Type::date);
  if (op == Op::subtract && right->type == Type::date && adaptsToOther(*left))
    left = convertTo(std::move(left), Type::date);
  const Type a = left->type;
  const Type b = right->type;
  const auto joins = [](Type type) { return type == Type::text || type == Type::null; };
  if (op == Op::add && joins(a) && joins(b) && (a == Type::text || b == Type::text))
    return makeBinary(Op::concatenate, std::move(left), std::move(right), source);
  const auto days = [](Type type) { return type == Type::whole || type == Type::null; };
  if ((a == Type::date && days(b) && (op == Op::add || op == Op::subtract)) ||
      (days(a) && b == Type::date && op == Op::add))
    return placed(std::make_unique<Arithmetic>(op, std::move(left), std::move(right), Type::date), source);
  if (a == Type::date && b == Type::date && op == Op::subtract)
    return placed(std::make_unique<Arithmetic>(op, std::move(left), std::move(right), Type::whole), source);
  const auto countable = [](Type type) { return isNumber(type) || type == Type::null; };
  if (!countable(a) || !countable(b))
    refuse(source.place, Code::typeMismatch, std::string(nameOf(countable(a) ? b : a)) + " cannot be calculated with.");
  const Type result = numberType(op, a, b);
  left = convertTo(std::move(left), result);
  right = convertTo(std::move(right), result);
  return placed(std::make_unique<Arithmetic>(op, std::move(left), std::move(right), result), source);
}

// The most characters of an operand that is joined to a text; 0 when not known.
int sizeAsText(const Expression& operand) {
  constexpr int kLongestNumber = 32;
  return operand.type == Type::text || operand.type == Type::blob ? operand.size : kLongestNumber;
}

void requireTruth(const Expression& operand, const Place& place) {
  if (operand.type != Type::boolean && operand.type != Type::null)
    refuse(place, Code::typeMismatch, "expected a condition, found " + std::string(nameOf(operand.type)) + ".");
}

}  // namespace

void adaptLiteral(ExpressionPtr& one, Type other) {
  const auto* literal = dynamic_cast<const Constant*>(one.get());
  if (!literal || !literal->amount || other != Type::money) return;
  Expr source;
  source.place = one->place;
  one = std::make_unique<Constant>(Datum::ofMoney(*literal->amount), nullptr, source);
}

Constant::Constant(Datum value, std::unique_ptr<std::string> text, const Expr& source)
    : Expression(value.type), value_(value), text_(std::move(text)) {
  if (text_) value_.text = *text_;
  if (type == Type::text) size = std::max(1, static_cast<int>(lengthInCharacters(value_.text)));  // 0: not known
  fixed = true;
  place = source.place;
}

ExpressionPtr placed(ExpressionPtr node, const Expr& source) {
  node->place = source.place;
  return node;
}

void inherit(Expression& expression, const Expression& operand) {
  expression.sources |= operand.sources;
  expression.readsOuter = expression.readsOuter || operand.readsOuter;
}

void refuse(const Place& place, Code code, const std::string& text) {
  throw StatementError(code, place.line, place.column, text);
}

ExpressionPtr convertTo(ExpressionPtr expression, Type type) {
  if (expression->type == type || type == Type::null) return expression;
  if (expression->type == Type::null) {
    expression->type = type;
    return expression;
  }
  if (const auto* constant = dynamic_cast<const Constant*>(expression.get())) {
    Texts texts;
    Expr source;
    source.place = constant->place;
    try {
      if (constant->amount && type == Type::money)
        return std::make_unique<Constant>(Datum::ofMoney(*constant->amount), nullptr, source);
      const Datum value = convert(constant->value(), type, texts);
      auto text =
          value.type == Type::text || value.type == Type::blob ? std::make_unique<std::string>(value.text) : nullptr;
      return std::make_unique<Constant>(value, std::move(text), source);
    } catch (const StoreError& error) {
      refuse(constant->place, error.code(), error.what());
    }
  }
  return std::make_unique<Conversion>(std::move(expression), type);
}

Type unifyBranches(std::vector<ExpressionPtr*> branches, const Place& place) {
  bool money = false;
  for (ExpressionPtr* branch : branches) money = money || (*branch)->type == Type::money;
  Type common = Type::null;
  for (ExpressionPtr* branch : branches) {
    if (money) adaptLiteral(*branch, Type::money);
    const Type type = (*branch)->type;
    if (type == Type::null || type == common || adaptsToOther(**branch)) continue;
    if (common == Type::null) {
      common = type;
    } else if (isNumber(common) && isNumber(type)) {
      common = common == Type::real || type == Type::real ? Type::real : Type::money;
    } else if (comparable(common, type)) {
      common = Type::dateTime;
    } else {
      refuse(place, Code::typeMismatch,
             "the branches are " + std::string(nameOf(common)) + " and " + std::string(nameOf(type)) + ".");
    }
  }
  const bool texts = std::any_of(branches.begin(), branches.end(),
                                 [](const ExpressionPtr* branch) { return (*branch)->type == Type::text; });
  if (common == Type::null && texts) common = Type::text;
  for (ExpressionPtr* branch : branches) *branch = convertTo(std::move(*branch), common);
  return common;
}

ExpressionPtr makeUnary(Op op, ExpressionPtr operand, const Expr& source) {
  Type result = Type::boolean;
  if (op == Op::notTrue) requireTruth(*operand, source.place);
  if (op == Op::negate) {
    if (!isNumber(operand->type) && operand->type != Type::null)
      refuse(source.place, Code::typeMismatch, std::string(nameOf(operand->type)) + " cannot be negated.");
    const auto* literal = dynamic_cast<const Constant*>(operand.get());
    if (literal && literal->amount) {
      auto negated = std::make_unique<Constant>(Datum::ofReal(-literal->value().real), nullptr, source);
      negated->amount = -*literal->amount;
      return negated;
    }
    result = operand->type;
  }
  return placed(std::make_unique<Unary>(op, std::move(operand), result), source);
}

ExpressionPtr makeBinary(Op op, ExpressionPtr left, ExpressionPtr right, const Expr& source) {
  switch (op) {
    case Op::both:
    case Op::either:
      requireTruth(*left, left->place);
      requireTruth(*right, right->place);
      return placed(std::make_unique<Logic>(op, std::move(left), std::move(right), Type::boolean), source);
    case Op::equal:
    case Op::notEqual:
    case Op::less:
    case Op::lessEqual:
    case Op::greater:
    case Op::greaterEqual:
    case Op::like:
      return makeComparison(op, std::move(left), std::move(right), source);
    case Op::concatenate: {
      const int a = sizeAsText(*left);
      const int b = sizeAsText(*right);
      const int size = a > 0 && b > 0 ? a + b : 0;
      auto node = std::make_unique<Concatenation>(op, std::move(left), std::move(right), Type::text);
      node->size = size;
      return placed(std::move(node), source);
    }
    default:
      return makeArithmetic(op, std::move(left), std::move(right), source);
  }
}

}  // namespace quillon::store::sql
