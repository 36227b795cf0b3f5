#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "store/Errors.h"
#include "store/RecordCodec.h"
#include "store/locks/TableLocks.h"
#include "store/sql/Ast.h"
#include "store/sql/Datum.h"

namespace quillon::store {
class Table;
}

// Expressions with names resolved and types known.
namespace quillon::store::sql {

// The current row of one source of a SELECT.
struct SourceRow {
  Table* table = nullptr;
  std::optional<RecordView> view;  // none: no row, which is all null (the right side of a left join)
  RowId row = 0;
};

// What an expression reads while its SELECT runs.
struct Frame {
  std::vector<SourceRow> rows;
  std::vector<Datum> slots;  // of the current group: first values and aggregates
  Frame* outer = nullptr;    // of the SELECT around
  Texts texts;               // made for the current row
};

class Expression {
 public:
  explicit Expression(Type resultType, int resultSize = 0) : type(resultType), size(resultSize) {}
  Expression(const Expression&) = delete;
  Expression& operator=(const Expression&) = delete;
  virtual ~Expression() = default;

  virtual Datum eval(Frame& frame) const = 0;
  // For the planner: what it can search an index for.
  struct Parts {
    Op op = Op::equal;  // a comparison, or `both` for a conjunction
    const Expression* left = nullptr;
    const Expression* right = nullptr;
  };
  virtual bool parts(Parts&) const { return false; }  // of a comparison or AND
  virtual const std::vector<std::unique_ptr<Expression>>* alternatives() const {
    return nullptr;
  }  // of IN (list), [0] is the left side
  // Of IN (SELECT) whose values are the same for a whole run: its left side, and the values.
  struct Members {
    const Expression* left;
    std::function<void(Frame& frame, const std::function<void(const Datum& value)>& each)> forEach;
  };
  virtual const Members* members() const { return nullptr; }
  virtual const std::vector<std::unique_ptr<Expression>>* limits() const { return nullptr; }  // of BETWEEN
  virtual bool column(int&, int&) const { return false; }  // of a column of the own SELECT: source, field

  Type type;                  // of every value that is not null
  int size;                   // of a text: its most characters; 0 when not known
  std::uint64_t sources = 0;  // bit i: reads source i of its SELECT
  bool readsOuter = false;    // reads a SELECT around
  bool fixed = false;         // the same for a whole run: no source, no group
  Place place;
};

using ExpressionPtr = std::unique_ptr<Expression>;

// A value known when the statement is bound.
class Constant final : public Expression {
 public:
  Constant(Datum value, std::unique_ptr<std::string> text, const Expr& source);
  Datum eval(Frame&) const override { return value_; }
  const Datum& value() const { return value_; }
  bool quoted = false;                 // a text literal: takes the type of the other side
  std::optional<std::int64_t> amount;  // of a literal with up to four decimals: it is money beside money

 private:
  Datum value_;
  std::unique_ptr<std::string> text_;
};

// Operators and functions over bound operands; types are checked here. StatementError naming the place.
ExpressionPtr makeUnary(Op op, ExpressionPtr operand, const Expr& source);
ExpressionPtr makeBinary(Op op, ExpressionPtr left, ExpressionPtr right, const Expr& source);
ExpressionPtr makeCall(const std::string& function, std::vector<ExpressionPtr> operands, const Expr& source);
ExpressionPtr makeCast(ExpressionPtr operand, const Expr& source);
ExpressionPtr makeConditional(std::vector<ExpressionPtr> operands, const Expr& source);
ExpressionPtr makeInList(std::vector<ExpressionPtr> operands, const Expr& source);
ExpressionPtr makeBetween(std::vector<ExpressionPtr> operands, const Expr& source);

// Brings two sides of a comparison to comparable types.
void unifyForComparison(ExpressionPtr& left, ExpressionPtr& right, const Place& place);
// The type that all branches fit (whole, money, float; null takes the others'), and the branches converted to it.
Type unifyBranches(std::vector<ExpressionPtr*> branches, const Place& place);
ExpressionPtr convertTo(ExpressionPtr expression, Type type);
ExpressionPtr placed(ExpressionPtr node, const Expr& source);  // the node, standing where the source stands
// Whether it is a text that takes the type of what it is compared or unified with: in quotes, or of a parameter.
bool adaptsToOther(const Expression& side);
// Takes the properties that depend on operands: sources, readsOuter, fixed.
void inherit(Expression& expression, const Expression& operand);

[[noreturn]] void refuse(const Place& place, Code code, const std::string& text);

}  // namespace quillon::store::sql
