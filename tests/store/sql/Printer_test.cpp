#include "store/sql/Printer.h"

#include <gtest/gtest.h>

#include "store/sql/Parser.h"
#include "support/SeededRandom.h"
#include "support/StatementCorpus.h"
#include "support/StatementShape.h"

namespace quillon::store::sql {
namespace {

using sim::SeededRandom;
using sim::shapeOf;

TEST(Printer, StatementsComeBackFromTheirCanonicalText) {
  for (const std::string_view text : sim::kStatementCorpus) {
    const auto statement = parse(text);
    const std::string printed = print(*statement);
    SCOPED_TRACE(printed);
    const auto again = parse(printed);
    EXPECT_EQ(shapeOf(*again), shapeOf(*statement));
    EXPECT_EQ(print(*again), printed);
  }
  for (const std::string_view text : sim::kFilterCorpus) {
    const ExprPtr filter = parseFilter(text);
    EXPECT_EQ(shapeOf(*parseFilter(print(*filter))), shapeOf(*filter)) << text;
  }
}

TEST(Printer, WritesNoMoreThanIsNeeded) {
  constexpr std::pair<std::string_view, std::string_view> kTexts[] = {
      {"select ((a)+((b*c))) \"x\", \"Order\" from \"t\"", "SELECT a + b * c AS x, \"Order\" FROM t"},
      {"SELECT a FROM t WHERE (NOT (a = 1)) AND ((b OR c) AND d)",
       "SELECT a FROM t WHERE NOT a = 1 AND (b OR c) AND d"},
      {"select if(a then 1 else 2.50), -(-1), 'it''s', 1.0, 3e2",
       "SELECT CASE WHEN a THEN 1 ELSE 2.5 END, -(-1), 'it''s', 1.0, 3e+02"},
      {"delete from \"\\Memory\\X\" where not(exists(select 1))",
       "DELETE FROM \"\\Memory\\X\" WHERE NOT (EXISTS (SELECT 1))"},
  };
  for (const auto& [text, printed] : kTexts) {
    EXPECT_EQ(print(*parse(text)), printed);
  }
}

class RandomExpr {
 public:
  explicit RandomExpr(SeededRandom& random) : random_(random) {}

  ExprPtr make(int depth) {
    if (depth == 0) return leaf();
    switch (random_.below(10)) {
      case 0:
      case 1:
        return unary(depth);
      case 2:
        return several(ExprKind::between, 3, depth);
      case 3:
        return several(ExprKind::inList, 2 + random_.below(3), depth);
      case 4:
        return several(ExprKind::conditional, 2 + random_.below(4), depth);
      case 5:
        return call(depth);
      case 6:
        return subselect(depth);
      default:
        return binary(depth);
    }
  }

 private:
  ExprPtr several(ExprKind kind, std::size_t operands, int depth) {
    auto expr = std::make_unique<Expr>();
    expr->kind = kind;
    if (kind == ExprKind::between || kind == ExprKind::inList) expr->negated = random_.oneIn(3);
    for (; operands > 0; --operands) expr->operands.push_back(make(static_cast<int>(random_.below(depth))));
    return expr;
  }
  ExprPtr unary(int depth) {
    constexpr Op kOps[] = {Op::negate, Op::notTrue, Op::isNull, Op::isNotNull};
    ExprPtr expr = several(ExprKind::unary, 1, depth);
    expr->op = kOps[random_.below(std::size(kOps))];
    return expr;
  }
  ExprPtr binary(int depth) {
    ExprPtr expr = several(ExprKind::binary, 2, depth);
    expr->op = static_cast<Op>(random_.below(static_cast<std::size_t>(Op::like) + 1));
    return expr;
  }
  ExprPtr call(int depth) {
    constexpr std::pair<const char*, std::size_t> kCalls[] = {
        {"SUM", 1}, {"COUNT", 1}, {"COALESCE", 3}, {"SUBSTRING", 3}, {"EXTRACT_DAY", 1}, {"CURRENT_DATE", 0}};
    const auto [name, operands] = kCalls[random_.below(std::size(kCalls))];
    ExprPtr expr = several(ExprKind::call, operands, depth);
    expr->name = name;
    expr->distinct = expr->name == "COUNT" && random_.oneIn(2);
    return expr;
  }
  ExprPtr subselect(int depth) {
    constexpr ExprKind kKinds[] = {ExprKind::exists, ExprKind::scalar, ExprKind::inSelect};
    const ExprKind kind = kKinds[random_.below(std::size(kKinds))];
    ExprPtr expr = several(kind, kind == ExprKind::inSelect ? 1 : 0, depth);
    expr->negated = kind != ExprKind::scalar && random_.oneIn(2);
    expr->select = std::make_unique<Select>();
    expr->select->items.emplace_back().expr = make(depth - 1);
    return expr;
  }
  ExprPtr leaf() {
    auto expr = std::make_unique<Expr>();
    const auto number = static_cast<std::int64_t>(random_.next()) >> random_.below(64);
    switch (random_.below(8)) {
      case 0:
        expr->value = number;
        return expr;
      case 1:
        expr->value = Money::fromRaw(number);
        return expr;
      case 2:
        expr->value = static_cast<double>(number) / 3;
        return expr;
      case 3:
        expr->value = std::string("it's \"") + static_cast<char>(random_.below(128));
        expr->quoted = true;
        return expr;
      case 4:
        expr->value = random_.oneIn(3) ? Value() : Value(random_.oneIn(2));
        return expr;
      case 5:
        expr->kind = ExprKind::parameter;
        expr->name = "P";
        return expr;
      default:
        constexpr const char* kNames[] = {"a",  "Order", "b c",   "CURRENT_DATE", "Sum",
                                          "\"", "True",  "Größe", "\\Memory\\X"};
        expr->kind = ExprKind::column;
        expr->name = kNames[random_.below(std::size(kNames))];
        if (random_.oneIn(3)) expr->table = kNames[random_.below(std::size(kNames))];
        return expr;
    }
  }

  SeededRandom& random_;
};

// Method: trees of every kind of node in every place, whether they make sense or not, are written and read again.
TEST(Printer, AnyTreeComesBackFromItsText) {
  SeededRandom random(7);
  RandomExpr trees(random);
  for (int trial = 0; trial < 20000; ++trial) {
    const ExprPtr tree = trees.make(1 + static_cast<int>(random.below(5)));
    const std::string printed = "SELECT " + print(*tree);
    ASSERT_EQ(shapeOf(*parse(printed)->select->items[0].expr), shapeOf(*tree)) << printed;
  }
}

}  // namespace
}  // namespace quillon::store::sql
