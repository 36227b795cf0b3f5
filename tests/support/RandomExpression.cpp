#include "support/RandomExpression.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace quillon::sim {
namespace {

using store::Value;

constexpr std::array kTexts{"a", "A", "ab", "Ab", "aB", "B", "b", "bc", "", "c d", "C"};
constexpr std::array kAccents{"é", "É", "éa", "Éa", "ß", "z", "Z", "e"};

std::string quoted(const std::string& text) { return "'" + text + "'"; }

std::string shortDate(Date date) {
  return std::to_string(date.year()) + "-" + std::to_string(date.month()) + "-" + std::to_string(date.day());
}

std::string exponentForm(double number) {
  char text[40];
  std::snprintf(text, sizeof text, "%.10e", number);
  return text;
}

bool isNumber(Kind kind) { return kind <= Kind::real; }

}  // namespace

std::string theirLiteral(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::null:
      return "NULL";
    case Value::Kind::boolean:
      return value.asBool() ? "1" : "0";
    case Value::Kind::whole:
      return "(" + std::to_string(value.asInt64()) + ")";
    case Value::Kind::money:
      return "(" + std::to_string(value.asMoney().raw()) + ")";
    case Value::Kind::real:
      return "(" + exponentForm(value.asDouble()) + ")";
    case Value::Kind::date:
      return quoted(value.asDate().toIso());
    default:
      return quoted(value.asText());
  }
}

std::string widened(const Twin& twin, Kind kind) {
  if (twin.kind == kind || kind == Kind::whole) return twin.theirs;
  if (kind == Kind::money) return "(" + twin.theirs + "*10000)";
  return twin.kind == Kind::whole ? "CAST(" + twin.theirs + " AS REAL)" : "(CAST(" + twin.theirs + " AS REAL)/10000.0)";
}

Value RandomExpression::literal(Kind kind) {
  switch (kind) {
    case Kind::whole:
      return static_cast<std::int64_t>(random_.below(25)) - 5;
    case Kind::money:
      return Money::fromRaw((static_cast<std::int64_t>(random_.below(60)) - 20) * (random_.oneIn(3) ? 2500 : 10000));
    case Kind::real:
      return (static_cast<double>(random_.below(80)) - 20) / 8;
    case Kind::text:
      if (accents_ && random_.oneIn(2)) return kAccents[random_.below(kAccents.size())];
      return kTexts[random_.below(kTexts.size())];
    case Kind::date:
      return Date(2012, 1, 20).addDays(static_cast<std::int64_t>(random_.below(50)));
    case Kind::truth:
      return random_.oneIn(2);
  }
  return {};
}

std::string RandomExpression::ourLiteral(const Value& value) {
  if (withParameters && random_.percent(15)) {
    const std::string name = newName("P");
    parameters[name] = value;
    return ":" + name;
  }
  switch (value.kind()) {
    case Value::Kind::null:
      return "NULL";
    case Value::Kind::boolean:
      return value.asBool() ? "true" : "FALSE";
    case Value::Kind::whole:
      return std::to_string(value.asInt64());
    case Value::Kind::money:
      return value.asMoney().toText();
    case Value::Kind::real:
      return exponentForm(value.asDouble());  // without a point alone it would be an amount beside an amount
    case Value::Kind::date:
      return quoted(random_.oneIn(2) ? value.asDate().toIso() : shortDate(value.asDate()));
    default:
      return quoted(value.asText());
  }
}

// Of the kind wherever it stands, not only beside another that gives it its type.
Twin RandomExpression::constant(Kind kind) {
  const Value value = literal(kind);
  std::string ours = ourLiteral(value);
  if (kind == Kind::money && ours[0] != ':') ours = "CAST(" + ours + " AS NUMERIC(12,4))";
  if (kind == Kind::date && ours[0] != ':') ours = "CAST(" + ours + " AS Date)";
  return {kind, ours, theirLiteral(value)};
}

Twin RandomExpression::columnOf(const QuerySource& source, const QueryColumn& column) {
  // Without its table a name is the first table's, in the order of FROM, of the innermost SELECT that has it.
  const QuerySource* first = nullptr;
  for (auto scope = scopes.rbegin(); scope != scopes.rend() && !first; ++scope)
    for (const QuerySource& one : **scope)
      for (const QueryColumn& other : one.columns)
        if (!first && other.name == column.name) first = &one;
  const bool plain = first && first->alias == source.alias && random_.oneIn(2);
  const std::string full = source.alias + "." + column.name;
  return {column.kind, plain ? column.name : full, full};
}

Twin RandomExpression::column(Kind kind) {
  if (leaves) {
    std::vector<const Twin*> fitting;
    for (const Twin& leaf : *leaves)
      if (leaf.kind == kind) fitting.push_back(&leaf);
    return fitting.empty() ? constant(kind) : *fitting[random_.below(fitting.size())];
  }
  for (std::size_t back = 1; back <= scopes.size(); ++back) {
    if (back < scopes.size() && !innerOnly_ && random_.percent(35)) continue;
    const QueryScope& scope = *scopes[scopes.size() - back];
    std::vector<Twin> fitting;
    for (const QuerySource& source : scope)
      for (const QueryColumn& one : source.columns)
        if (one.kind == kind) fitting.push_back(columnOf(source, one));
    if (!fitting.empty()) return fitting[random_.below(fitting.size())];
    if (innerOnly_) break;
  }
  return constant(kind);
}

Twin RandomExpression::value(Kind kind, int depth) {
  if (depth <= 0 || random_.percent(45)) return random_.percent(80) ? column(kind) : constant(kind);
  if (random_.percent(15)) return chosen(kind, depth);
  if (random_.percent(6) && !leaves && kind != Kind::truth) return scalar(kind, depth);
  switch (kind) {
    case Kind::whole:
      return whole(depth);
    case Kind::money:
      return money(depth);
    case Kind::real:
      return real(depth);
    case Kind::text:
      return text(depth);
    case Kind::date:
      return date(depth);
    case Kind::truth: {
      Twin one = condition(depth - 1);
      if (one.theirs.ends_with(" IS TRUE)")) one.ours = "(" + one.ours + " = true)";  // a field alone may be null
      return one;
    }
  }
  return constant(kind);
}

Twin RandomExpression::whole(int depth) {
  const Twin a = value(Kind::whole, depth - 1);
  const Twin b = value(Kind::whole, depth - 1);
  switch (random_.below(9)) {
    case 0:
      return {Kind::whole, "(" + a.ours + " - " + b.ours + ")", "(" + a.theirs + " - " + b.theirs + ")"};
    case 1:
      return {Kind::whole, "(" + a.ours + " * " + b.ours + ")", "(" + a.theirs + " * " + b.theirs + ")"};
    case 2:
      return {Kind::whole, "- (" + a.ours + ")", "(- (" + a.theirs + "))"};
    case 3:
      return {Kind::whole, "ABS(" + a.ours + ")", "abs(" + a.theirs + ")"};
    case 4: {
      const Twin t = value(Kind::text, depth - 1);
      return {Kind::whole, "LENGTH(" + t.ours + ")", "length(" + t.theirs + ")"};
    }
    case 5: {
      const Twin d = value(Kind::date, depth - 1);
      const std::size_t part = random_.below(3);
      constexpr const char* kParts[] = {"Year", "MONTH", "day"};
      constexpr const char* kFormats[] = {"%Y", "%m", "%d"};
      return {Kind::whole, "EXTRACT(" + std::string(kParts[part]) + " FROM " + d.ours + ")",
              "CAST(strftime('" + std::string(kFormats[part]) + "', " + d.theirs + ") AS INTEGER)"};
    }
    case 6: {
      const Twin c = value(Kind::date, depth - 1), d = value(Kind::date, depth - 1);
      return {Kind::whole, "(" + c.ours + " - " + d.ours + ")",
              "CAST(julianday(" + c.theirs + ") - julianday(" + d.theirs + ") AS INTEGER)"};
    }
    case 7: {
      const Twin r = column(Kind::real);
      return {Kind::whole, "CAST(" + r.ours + " AS Integer)", "CAST(" + r.theirs + " AS INTEGER)"};
    }
    default:
      return {Kind::whole, "(" + a.ours + " + " + b.ours + ")", "(" + a.theirs + " + " + b.theirs + ")"};
  }
}

Twin RandomExpression::money(int depth) {
  const Twin a = value(Kind::money, depth - 1);
  const Twin b = value(random_.oneIn(2) ? Kind::money : Kind::whole, depth - 1);
  const std::string op = random_.oneIn(2) ? " + " : " - ";
  switch (random_.below(7)) {
    case 0:
      return {Kind::money, "-(" + a.ours + ")", "(-(" + a.theirs + "))"};
    case 1:
      return {Kind::money, "ABS(" + a.ours + ")", "abs(" + a.theirs + ")"};
    case 2:
      return {Kind::money, "TRUNC(" + a.ours + ")", "(" + a.theirs + "/10000*10000)"};
    case 3: {
      const Value amount = literal(Kind::money);
      return {Kind::money, "(" + a.ours + op + ourLiteral(amount) + ")",
              "(" + a.theirs + op + theirLiteral(amount) + ")"};
    }
    case 4:
      return {Kind::money, "ROUND(" + a.ours + ")",
              "((abs(" + a.theirs + ")+5000)/10000*10000*CASE WHEN " + a.theirs + "<0 THEN -1 ELSE 1 END)"};
    default:
      return {Kind::money, "(" + a.ours + op + b.ours + ")", "(" + a.theirs + op + widened(b, Kind::money) + ")"};
  }
}

Twin RandomExpression::real(int depth) {
  const Twin a = value(static_cast<Kind>(random_.below(3)), depth - 1);
  const Twin b = value(Kind::real, depth - 1);
  switch (random_.below(5)) {
    case 0: {
      const std::string by = std::to_string(random_.below(7) + 1);
      return {Kind::real, "(" + a.ours + " / " + by + ")", "(" + widened(a, Kind::real) + " / " + by + ")"};
    }
    case 1: {
      const Twin m = value(Kind::money, depth - 1);
      return {Kind::real, "(" + m.ours + " * " + a.ours + ")",
              "(" + widened(m, Kind::real) + " * " + widened(a, Kind::real) + ")"};
    }
    case 2: {
      const Twin one = value(random_.oneIn(2) ? Kind::money : Kind::whole, depth - 1);
      return {Kind::real, "CAST(" + one.ours + " AS Float)", widened(one, Kind::real)};
    }
    case 3:
      return {Kind::real, "(" + a.ours + " - " + b.ours + ")", "(" + widened(a, Kind::real) + " - " + b.theirs + ")"};
    default:
      return {Kind::real, "(" + b.ours + " + " + a.ours + ")", "(" + b.theirs + " + " + widened(a, Kind::real) + ")"};
  }
}

Twin RandomExpression::text(int depth) {
  const Twin a = value(Kind::text, depth - 1);
  const std::size_t which = random_.below(accents_ ? 3 : 5);
  if (which == 0) {
    const Twin b = value(Kind::text, depth - 1);
    return {Kind::text, "(" + a.ours + " || " + b.ours + ")", "(" + a.theirs + " || " + b.theirs + ")"};
  }
  if (which == 1) {
    const std::string range =
        ", " + std::to_string(random_.below(3) + 1) + ", " + std::to_string(random_.below(3)) + ")";
    return {Kind::text, "SUBSTRING(" + a.ours + range, "substr(" + a.theirs + range};
  }
  if (which == 2) return {Kind::text, "CAST(" + a.ours + " AS Char(1))", "substr(" + a.theirs + ", 1, 1)"};
  const std::string function = which == 3 ? "UPPER(" : "LOWER(";
  return {Kind::text, function + a.ours + ")", function + a.theirs + ")"};
}

Twin RandomExpression::date(int depth) {
  const Twin a = value(Kind::date, depth - 1);
  const std::string days = std::to_string(random_.below(40));
  const std::string sign = random_.oneIn(2) ? "+" : "-";
  return {Kind::date, "(" + a.ours + " " + sign + " " + days + ")",
          "date(" + a.theirs + ", '" + sign + days + " days')"};
}

// COALESCE, IF and CASE: one branch is of the kind, the others may be narrower numbers or null.
Twin RandomExpression::chosen(Kind kind, int depth) {
  std::vector<Twin> branches{value(kind, depth - 1)};
  for (std::size_t i = random_.below(2) + 1; i > 0; --i) {
    const Kind other = isNumber(kind) ? static_cast<Kind>(random_.below(static_cast<std::size_t>(kind) + 1)) : kind;
    Twin branch = value(other, depth - 1);
    branch.theirs = widened(branch, kind);
    if (random_.oneIn(6)) branch.ours = branch.theirs = "NULL";
    branches.insert(branches.begin() + static_cast<std::ptrdiff_t>(random_.below(branches.size() + 1)), branch);
  }
  Twin result{kind, "", ""};
  if (random_.oneIn(3)) {
    for (const Twin& branch : branches) {
      result.ours += (result.ours.empty() ? "COALESCE(" : ", ") + branch.ours;
      result.theirs += (result.theirs.empty() ? "COALESCE(" : ", ") + branch.theirs;
    }
    return {kind, result.ours + ")", result.theirs + ")"};
  }
  const Twin first = condition(depth - 1);
  if (branches.size() == 2 && random_.oneIn(2)) {
    const bool words = random_.oneIn(2);
    return {kind,
            "IF(" + first.ours + (words ? " THEN " : ", ") + branches[0].ours + (words ? " ELSE " : ", ") +
                branches[1].ours + ")",
            "CASE WHEN " + first.theirs + " THEN " + branches[0].theirs + " ELSE " + branches[1].theirs + " END"};
  }
  result = {kind, "CASE WHEN " + first.ours + " THEN " + branches[0].ours,
            "CASE WHEN " + first.theirs + " THEN " + branches[0].theirs};
  for (std::size_t i = 1; i < branches.size(); ++i) {
    if (i + 1 == branches.size() && random_.oneIn(2)) {
      result.ours += " ELSE " + branches[i].ours;
      result.theirs += " ELSE " + branches[i].theirs;
      break;
    }
    const Twin next = condition(depth - 2);
    result.ours += " WHEN " + next.ours + " THEN " + branches[i].ours;
    result.theirs += " WHEN " + next.theirs + " THEN " + branches[i].theirs;
  }
  return {kind, "(" + result.ours + " END)", "(" + result.theirs + " END)"};
}

}  // namespace quillon::sim
