// Conditions, sub-selects and aggregates of random expressions.
#include <algorithm>
#include <array>
#include <cstdio>

#include "support/RandomExpression.h"

namespace quillon::sim {
namespace {

using store::Value;

constexpr std::array kPatterns{"a%", "%b", "_", "A_", "%", "", "%a%", "_b%"};
constexpr std::array kComparisons{"=", "=", "=", "<>", "<", "<=", ">", ">="};

std::string quoted(const std::string& text) { return "'" + text + "'"; }

bool isNumber(Kind kind) { return kind <= Kind::real; }

}  // namespace

Twin RandomExpression::comparison(const Twin& left, const Twin& right) {
  std::string op = kComparisons[random_.below(kComparisons.size())];
  if (left.kind == Kind::truth) op = random_.oneIn(2) ? "=" : "<>";
  const Kind common = std::max(left.kind, right.kind);
  const bool exact = left.kind == right.kind || std::min(left.kind, right.kind) == Kind::whole;
  const bool keep = common == Kind::real && exact;
  const std::string a = keep ? left.theirs : widened(left, common);
  const std::string b = keep ? right.theirs : widened(right, common);
  Twin result{Kind::truth, "(" + left.ours + " " + op + " " + right.ours + ")", ""};
  if (op == "=" || op == "<>")
    result.theirs = "(" + a + (op == "=" ? " IS " : " IS NOT ") + b + ")";
  else
    result.theirs = "COALESCE(" + a + " " + op + " " + b + ", 0)";
  return result;
}

Twin RandomExpression::simpleComparison(int depth) {
  const Kind kind = anyKind();
  if (random_.percent(55)) {
    const Twin one = column(kind);
    const Value value = random_.oneIn(12) ? Value() : literal(kind);
    const Twin other{kind, ourLiteral(value), theirLiteral(value)};
    return random_.oneIn(4) ? comparison(other, one) : comparison(one, other);
  }
  const Kind second = isNumber(kind) ? static_cast<Kind>(random_.below(3)) : kind;
  return comparison(value(kind, depth), value(second, depth));
}

Twin RandomExpression::between() {
  const Kind kind = static_cast<Kind>(random_.below(5));
  const Twin one = column(kind);
  const Twin low = constant(kind), high = random_.oneIn(5) ? column(kind) : constant(kind);
  const bool negated = random_.oneIn(3);
  return {Kind::truth, "(" + one.ours + (negated ? " NOT" : "") + " BETWEEN " + low.ours + " AND " + high.ours + ")",
          std::string(negated ? "(NOT " : "(") + "COALESCE(" + one.theirs + " BETWEEN " + low.theirs + " AND " +
              high.theirs + ", 0))"};
}

Twin RandomExpression::inList() {
  const Kind kind = static_cast<Kind>(random_.below(5));
  const Twin one = column(kind);
  const bool negated = random_.oneIn(3);
  Twin result{Kind::truth, "(" + one.ours + (negated ? " NOT IN (" : " IN ("), negated ? "(NOT (" : "(("};
  for (std::size_t i = 0, count = random_.below(4) + 1; i < count; ++i) {
    const Twin other = random_.oneIn(10)  ? Twin{kind, "NULL", "NULL"}
                       : random_.oneIn(8) ? column(kind)
                                          : constant(kind);
    result.ours += (i ? ", " : "") + other.ours;
    result.theirs += (i ? " OR " : "") + one.theirs + " IS " + other.theirs;
  }
  return {Kind::truth, result.ours + "))", result.theirs + "))"};
}

Twin RandomExpression::like() {
  const Twin one = column(Kind::text);
  const std::string pattern = quoted(kPatterns[random_.below(kPatterns.size())]);
  const bool negated = random_.oneIn(3);
  return {Kind::truth, "(" + one.ours + (negated ? " NOT" : "") + " LIKE " + pattern + ")",
          std::string(negated ? "(NOT " : "(") + "COALESCE(" + one.theirs + " LIKE " + pattern + ", 0))"};
}

Twin RandomExpression::condition(int depth) {
  if (depth > 0 && random_.percent(45)) {
    const Twin a = condition(depth - 1), b = condition(depth - 1);
    if (random_.oneIn(5)) return {Kind::truth, "(NOT " + a.ours + ")", "(NOT " + a.theirs + ")"};
    const std::string op = random_.percent(60) ? " AND " : " OR ";
    return {Kind::truth, "(" + a.ours + op + b.ours + ")", "(" + a.theirs + op + b.theirs + ")"};
  }
  const std::size_t chance = random_.below(100);
  if (chance < 50) return simpleComparison(depth);
  if (chance < 60) return between();
  if (chance < 70) return inList();
  if (chance < 76) return like();
  if (chance < 82) {
    const bool negated = random_.oneIn(2);
    const Twin one = value(anyKind(), depth - 1);
    const std::string test = negated ? " IS NOT NULL)" : " IS NULL)";
    return {Kind::truth, "(" + one.ours + test, "(" + one.theirs + test};
  }
  if (chance < 86 || leaves || depth <= 0) {
    const Twin one = column(Kind::truth);
    return {Kind::truth, one.ours, "(" + one.theirs + " IS TRUE)"};
  }
  return chance < 93 ? inSelect(depth) : exists(depth);
}

template <typename Items>
Twin RandomExpression::subselect(int depth, Items&& items) {
  const QueryTable* table = &tables_[random_.below(tables_.size())];
  while (table->name == without) table = &tables_[random_.below(tables_.size())];
  const std::string alias = newName("s");
  const QueryScope scope{{alias, table->columns}};
  scopes.push_back(&scope);
  const Twin item = items();
  Twin result{item.kind, "SELECT " + item.ours + " FROM " + table->name + " " + alias,
              "SELECT " + item.theirs + " AS c FROM " + table->name + " " + alias};
  if (random_.percent(85)) {
    Twin where = condition(depth - 2);
    if (scopes.size() > 1 && random_.percent(60)) {
      const Kind kind = random_.oneIn(2) ? Kind::whole : anyKind();
      innerOnly_ = true;
      const Twin here = column(kind);
      innerOnly_ = false;
      const Twin link = comparison(here, column(kind));
      where = {Kind::truth, link.ours + " AND " + where.ours, link.theirs + " AND " + where.theirs};
    }
    result.ours += " WHERE " + where.ours;
    result.theirs += " WHERE " + where.theirs;
  }
  result.theirs += "\x01" + alias;  // for an order by row, where the first is wanted
  scopes.pop_back();
  return result;
}

namespace {

std::string beforeMark(const std::string& theirs) { return theirs.substr(0, theirs.find('\x01')); }
std::string afterMark(const std::string& theirs) { return theirs.substr(theirs.find('\x01') + 1); }

}  // namespace

Twin RandomExpression::aggregate(Kind kind) {
  const bool was = innerOnly_;
  innerOnly_ = scopes.size() > 1;
  Twin result{kind, "", ""};
  const std::size_t which = random_.below(4);
  if (kind == Kind::whole && which == 0) {
    const bool rows = random_.oneIn(3);
    const bool distinct = !rows && random_.oneIn(2);
    const Twin of = rows ? Twin{Kind::whole, "*", "*"} : value(anyKind(), innerOnly_ ? 0 : 1);
    const std::string begin = distinct ? "COUNT(DISTINCT " : "COUNT(";
    result = {kind, begin + of.ours + ")", begin + of.theirs + ")"};
  } else if (kind == Kind::real && which == 0) {
    const Twin of = value(static_cast<Kind>(random_.below(3)), innerOnly_ ? 0 : 1);
    const std::string total = of.kind == Kind::money ? "CAST(SUM(" + of.theirs + ") AS REAL)/10000.0"
                                                     : "CAST(SUM(" + of.theirs + ") AS REAL)";
    result = {kind, "AVG(" + of.ours + ")", "(" + total + "/COUNT(" + of.theirs + "))"};
  } else {
    const Twin of = value(kind, innerOnly_ ? 0 : 1);
    const std::string begin = isNumber(kind) && which < 3 ? "SUM(" : random_.oneIn(2) ? "MIN(" : "MAX(";
    result = {kind, begin + of.ours + ")", begin + of.theirs + ")"};
  }
  innerOnly_ = was;
  return result;
}

Twin RandomExpression::scalar(Kind kind, int depth) {
  if (random_.percent(60)) {
    const Twin one = subselect(depth, [&] { return aggregate(kind); });
    return {kind, "(" + one.ours + ")", "(" + beforeMark(one.theirs) + ")"};
  }
  const Twin one = subselect(depth, [&] { return column(kind); });
  return {kind, "(" + one.ours + " TOP 1)",
          "(" + beforeMark(one.theirs) + " ORDER BY " + afterMark(one.theirs) + ".rid LIMIT 1)"};
}

Twin RandomExpression::exists(int depth) {
  const Twin one = subselect(depth, [&] { return Twin{Kind::whole, random_.oneIn(2) ? "*" : "1", "1"}; });
  const std::string begin = random_.oneIn(3) ? "(NOT EXISTS (" : "(EXISTS (";
  return {Kind::truth, begin + one.ours + "))", begin + beforeMark(one.theirs) + "))"};
}

Twin RandomExpression::inSelect(int depth) {
  const Kind kind = static_cast<Kind>(random_.below(5));
  const Twin left = value(kind, depth - 2);
  const bool negated = random_.oneIn(3);
  const Kind inner = isNumber(kind) ? static_cast<Kind>(random_.below(3)) : kind;
  const Twin one = subselect(depth, [&] { return value(inner, depth - 2); });
  const std::string name = newName("n");
  const Kind common = std::max(kind, inner);
  const Twin field{inner, "", name + ".c"};
  return {Kind::truth, "(" + left.ours + (negated ? " NOT IN (" : " IN (") + one.ours + "))",
          std::string(negated ? "(NOT " : "(") + "EXISTS (SELECT 1 FROM (" + beforeMark(one.theirs) + ") AS " + name +
              " WHERE " + widened(field, common) + " IS " + widened(left, common) + "))"};
}

}  // namespace quillon::sim
