// Comparisons, LIKE, IN and BETWEEN.
#include <algorithm>

#include "base/Text.h"
#include "store/Errors.h"
#include "store/sql/Binary.h"
#include "store/sql/OperandList.h"

namespace quillon::store::sql {
namespace {

class Comparison final : public Binary {
 public:
  Comparison(Op op, ExpressionPtr left, ExpressionPtr right, Type result)
      : Binary(op, std::move(left), std::move(right), result) {
    if (const auto* constant = dynamic_cast<const Constant*>(right_.get())) constant_ = &constant->value();
  }
  bool parts(Parts& out) const override {
    out = {op_, left_.get(), right_.get()};
    return true;
  }
  Datum eval(Frame& frame) const override {
    const Datum left = left_->eval(frame);
    if (constant_) return Datum::ofTruth(holds(left, *constant_));
    return Datum::ofTruth(holds(left, right_->eval(frame)));
  }

 private:
  bool holds(const Datum& left, const Datum& right) const {
    if (op_ != Op::equal && op_ != Op::notEqual && (left.isNull() || right.isNull())) return false;
    const bool words = left.type == right.type && left.type != Type::null && left.type != Type::real &&
                       left.type != Type::text && left.type != Type::blob;
    const std::weak_ordering order = words ? std::weak_ordering(left.whole <=> right.whole) : compare(left, right);
    switch (op_) {
      case Op::equal:
        return order == 0;
      case Op::notEqual:
        return order != 0;
      case Op::less:
        return order < 0;
      case Op::lessEqual:
        return order <= 0;
      case Op::greater:
        return order > 0;
      default:
        return order >= 0;
    }
  }

  const Datum* constant_ = nullptr;  // the right side, where it is one
};

// Going back is needed to the last '%' only: what an earlier one could take, the last takes as well.
bool matchesLike(std::string_view text, std::string_view pattern) {
  std::string_view againText, againPattern;  // behind the last '%', from the place where it is tried next
  bool again = false;
  while (!text.empty() || !pattern.empty()) {
    const std::string_view wanted = firstCharacters(pattern, 1), mine = firstCharacters(text, 1);
    if (wanted == "%") {
      pattern.remove_prefix(1);
      againText = text;
      againPattern = pattern;
      again = true;
    } else if (!wanted.empty() && !mine.empty() && (wanted == "_" || wanted == mine)) {
      text.remove_prefix(mine.size());
      pattern.remove_prefix(wanted.size());
    } else {
      if (!again || againText.empty()) return false;
      againText.remove_prefix(firstCharacters(againText, 1).size());
      text = againText;
      pattern = againPattern;
    }
  }
  return true;
}

class Like final : public Binary {
 public:
  using Binary::Binary;
  Datum eval(Frame& frame) const override {
    const Datum text = left_->eval(frame);
    const Datum pattern = right_->eval(frame);
    return Datum::ofTruth(!text.isNull() && !pattern.isNull() && matchesLike(text.text, pattern.text));
  }
};

class InList final : public OperandList {
 public:
  InList(std::vector<ExpressionPtr> operands, bool negated)
      : OperandList(std::move(operands), Type::boolean), negated_(negated) {}
  Datum eval(Frame& frame) const override {
    const Datum value = operands_[0]->eval(frame);
    const bool found = std::any_of(operands_.begin() + 1, operands_.end(), [&](const ExpressionPtr& operand) {
      return compare(value, operand->eval(frame)) == 0;
    });
    return Datum::ofTruth(found != negated_);
  }
  const std::vector<ExpressionPtr>* alternatives() const override { return negated_ ? nullptr : &operands_; }

 private:
  bool negated_;
};

class Between final : public OperandList {
 public:
  Between(std::vector<ExpressionPtr> operands, bool negated)
      : OperandList(std::move(operands), Type::boolean), negated_(negated) {}
  Datum eval(Frame& frame) const override {
    const Datum value = operands_[0]->eval(frame);
    const Datum low = operands_[1]->eval(frame);
    const Datum high = operands_[2]->eval(frame);
    const bool inside =
        !value.isNull() && !low.isNull() && !high.isNull() && compare(value, low) >= 0 && compare(value, high) <= 0;
    return Datum::ofTruth(inside != negated_);
  }
  const std::vector<ExpressionPtr>* limits() const override { return negated_ ? nullptr : &operands_; }

 private:
  bool negated_;
};

}  // namespace

bool comparable(Type a, Type b) {
  if (a == b || a == Type::null || b == Type::null || (isNumber(a) && isNumber(b))) return true;
  const auto calendar = [](Type type) { return type == Type::date || type == Type::dateTime; };
  return calendar(a) && calendar(b);
}

bool adaptsToOther(const Expression& side) {
  const auto* constant = dynamic_cast<const Constant*>(&side);
  return side.type == Type::text && side.fixed && side.sources == 0 && (!constant || constant->quoted);
}

void unifyForComparison(ExpressionPtr& left, ExpressionPtr& right, const Place& place) {
  adaptLiteral(left, right->type);
  adaptLiteral(right, left->type);
  if (comparable(left->type, right->type)) return;
  if (adaptsToOther(*left)) {
    left = convertTo(std::move(left), right->type);
  } else if (adaptsToOther(*right)) {
    right = convertTo(std::move(right), left->type);
  } else {
    refuse(place, Code::typeMismatch,
           std::string(nameOf(left->type)) + " cannot be compared with " + std::string(nameOf(right->type)) + ".");
  }
}

ExpressionPtr makeComparison(Op op, ExpressionPtr left, ExpressionPtr right, const Expr& source) {
  if (op != Op::like) {
    unifyForComparison(left, right, source.place);
    return placed(std::make_unique<Comparison>(op, std::move(left), std::move(right), Type::boolean), source);
  }
  for (const Expression* side : {left.get(), right.get()})
    if (side->type != Type::text && side->type != Type::null)
      refuse(source.place, Code::typeMismatch, "LIKE compares texts, not " + std::string(nameOf(side->type)) + ".");
  return placed(std::make_unique<Like>(op, std::move(left), std::move(right), Type::boolean), source);
}

ExpressionPtr makeInList(std::vector<ExpressionPtr> operands, const Expr& source) {
  for (std::size_t i = 1; i < operands.size(); ++i) unifyForComparison(operands[0], operands[i], source.place);
  return placed(std::make_unique<InList>(std::move(operands), source.negated), source);
}

ExpressionPtr makeBetween(std::vector<ExpressionPtr> operands, const Expr& source) {
  unifyForComparison(operands[0], operands[1], source.place);
  unifyForComparison(operands[0], operands[2], source.place);
  return placed(std::make_unique<Between>(std::move(operands), source.negated), source);
}

}  // namespace quillon::store::sql
