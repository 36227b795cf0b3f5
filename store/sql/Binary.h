#pragma once

#include "store/sql/Expression.h"

namespace quillon::store::sql {

// An operator with two operands.
class Binary : public Expression {
 public:
  Binary(Op op, ExpressionPtr left, ExpressionPtr right, Type result)
      : Expression(result), op_(op), left_(std::move(left)), right_(std::move(right)) {
    fixed = left_->fixed && right_->fixed;
    inherit(*this, *left_);
    inherit(*this, *right_);
  }

 protected:
  Op op_;
  ExpressionPtr left_, right_;
};

ExpressionPtr makeComparison(Op op, ExpressionPtr left, ExpressionPtr right, const Expr& source);  // LIKE too
bool comparable(Type a, Type b);
// A literal with up to four decimals is money beside money.
void adaptLiteral(ExpressionPtr& one, Type other);

}  // namespace quillon::store::sql
