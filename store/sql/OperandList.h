#pragma once

#include "store/sql/Expression.h"

namespace quillon::store::sql {

// An operator or function with any number of operands.
class OperandList : public Expression {
 public:
  OperandList(std::vector<ExpressionPtr> operands, Type result, int resultSize = 0)
      : Expression(result, resultSize), operands_(std::move(operands)) {
    fixed = true;
    for (const ExpressionPtr& operand : operands_) {
      fixed = fixed && operand->fixed;
      inherit(*this, *operand);
    }
  }

 protected:
  std::vector<ExpressionPtr> operands_;
};

}  // namespace quillon::store::sql
