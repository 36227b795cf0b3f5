#include <algorithm>
#include <charconv>
#include <optional>

#include "base/Text.h"
#include "store/sql/ParserParts.h"

namespace quillon::store::sql {
namespace {

constexpr std::size_t kMaxNodes = 600000;  // more than one for each two bytes of the longest text
constexpr std::size_t kMaxText = 255;      // bytes of an expression's source that its node keeps

}  // namespace

ExprPtr Parser::expression() {
  const Nesting nesting(*this);
  return disjunction();
}

ExprPtr Parser::disjunction() { return evenChain(Op::either, "OR", &Parser::conjunction); }

ExprPtr Parser::conjunction() { return evenChain(Op::both, "AND", &Parser::negation); }

ExprPtr Parser::negation() {
  if (!at("NOT")) return predicate();
  const Nesting nesting(*this);
  const std::size_t first = position_;
  advance();
  if (!at("EXISTS")) return finish(make(ExprKind::unary, Op::notTrue, negation()), first);
  // Not the whole condition: what follows the parenthesis still compares the truth of EXISTS.
  ExprPtr condition = predicate();
  if (condition->kind != ExprKind::exists)
    return finish(make(ExprKind::unary, Op::notTrue, std::move(condition)), first);
  condition->negated = true;
  return finish(std::move(condition), first);
}

ExprPtr Parser::predicate() {
  static constexpr MarkOp kComparisons[] = {{"=", Op::equal},        {"<>", Op::notEqual},  {"!=", Op::notEqual},
                                            {"<", Op::less},         {"<=", Op::lessEqual}, {">", Op::greater},
                                            {">=", Op::greaterEqual}};
  const std::size_t first = position_;
  ExprPtr left = sum();
  while (true) {
    const auto* comparison = std::ranges::find_if(kComparisons, [this](const MarkOp& one) { return at(one.mark); });
    if (comparison != std::ranges::end(kComparisons)) {
      advance();
      left = finish(make(ExprKind::binary, comparison->op, std::move(left), sum()), first);
    } else if (accept("IS")) {
      const Op op = accept("NOT") ? Op::isNotNull : Op::isNull;
      expect("NULL");
      left = finish(make(ExprKind::unary, op, std::move(left)), first);
    } else {
      const bool negated = at("NOT");
      if (negated && !at("BETWEEN", 1) && !at("LIKE", 1) && !at("IN", 1)) {
        advance();
        expected("BETWEEN, IN or LIKE");
      }
      if (negated) advance();
      if (accept("BETWEEN")) {
        left = between(std::move(left), first, negated);
      } else if (accept("IN")) {
        left = in(std::move(left), first, negated);
      } else if (accept("LIKE")) {
        left = finish(make(ExprKind::binary, Op::like, std::move(left), sum()), first);
        if (negated) left = finish(make(ExprKind::unary, Op::notTrue, std::move(left)), first);
      } else {
        return left;
      }
    }
  }
}

ExprPtr Parser::between(ExprPtr left, std::size_t first, bool negated) {
  ExprPtr result = make(ExprKind::between);
  result->negated = negated;
  result->operands.push_back(std::move(left));
  result->operands.push_back(sum());
  expect("AND");
  result->operands.push_back(sum());
  return finish(std::move(result), first);
}

ExprPtr Parser::in(ExprPtr left, std::size_t first, bool negated) {
  expect("(");
  const bool ofSelect = at("SELECT");
  ExprPtr result = make(ofSelect ? ExprKind::inSelect : ExprKind::inList);
  result->negated = negated;
  result->operands.push_back(std::move(left));
  if (ofSelect) {
    result->select = select(false);
  } else {
    for (ExprPtr& value : expressions()) result->operands.push_back(std::move(value));
  }
  expect(")");
  return finish(std::move(result), first);
}

ExprPtr Parser::sum() {
  static constexpr MarkOp kOperators[] = {{"+", Op::add}, {"-", Op::subtract}, {"||", Op::concatenate}};
  return leftChain(kOperators, &Parser::product);
}

ExprPtr Parser::product() {
  static constexpr MarkOp kOperators[] = {{"*", Op::multiply}, {"/", Op::divide}};
  return leftChain(kOperators, &Parser::signedFactor);
}

ExprPtr Parser::signedFactor() {
  if (!at("-") && !at("+")) return factor();
  const Nesting nesting(*this);
  const std::size_t first = position_;
  const bool negative = at("-");
  advance();
  if (!negative) return signedFactor();
  // A number takes its sign at once, so that the least one can be written.
  if (token().kind == TokenKind::number) return finish(numberLiteral(true), first);
  return finish(make(ExprKind::unary, Op::negate, signedFactor()), first);
}

ExprPtr Parser::factor() {
  const std::size_t first = position_;
  const Token& next = token();
  if (at("(")) {
    if (at("SELECT", 1)) return subselect(ExprKind::scalar, first);
    advance();
    ExprPtr inner = expression();
    expect(")");
    return inner;
  }
  if (next.kind == TokenKind::number) return numberLiteral(false);
  if (next.kind == TokenKind::parameter) return parameter();
  if (next.kind == TokenKind::text || at("TRUE") || at("FALSE") || at("NULL")) {
    ExprPtr literal = make(ExprKind::literal);
    literal->quoted = next.kind == TokenKind::text;
    if (literal->quoted) literal->value = unquoted(next.text);
    if (at("TRUE") || at("FALSE")) literal->value = at("TRUE");
    advance();
    return finish(std::move(literal), first);
  }
  if (at("CASE")) return caseWhen();
  if (at("IF")) return ifElse();
  if (at("CAST")) return cast();
  if (accept("EXISTS")) return subselect(ExprKind::exists, first);
  if (!atName()) expected("a value");
  if (next.kind == TokenKind::word && (at("(", 1) || at("CURRENT_DATE"))) return call();
  return column();
}

ExprPtr Parser::column() {
  const std::size_t first = position_;
  ExprPtr result = make(ExprKind::column);
  result->name = name("a field");
  if (accept(".")) {
    result->table = std::move(result->name);
    result->name = nameAfterDot();
  }
  return finish(std::move(result), first);
}

ExprPtr Parser::numberLiteral(bool negative) {
  const std::size_t first = position_;
  const std::string text = (negative ? "-" : "") + std::string(token().text);
  ExprPtr literal = make(ExprKind::literal);
  const bool whole = text.find_first_of(".eE") == std::string::npos;
  std::int64_t number = 0;
  const std::optional<Money> amount = whole ? std::nullopt : Money::parse(text);
  if (whole && std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc()) {
    literal->value = number;
  } else if (amount) {
    literal->value = *amount;
  } else {
    double real = 0;
    if (std::from_chars(text.data(), text.data() + text.size(), real).ec != std::errc()) {
      fail(token().place, "the number is out of range.");
    }
    literal->value = real;
  }
  advance();
  return finish(std::move(literal), first);
}

ExprPtr Parser::parameter() {
  const std::size_t first = position_;
  ExprPtr result = make(ExprKind::parameter);
  result->name = token().text.substr(1);
  if (knownParameters_.insert(foldCase(result->name)).second) parameters_.push_back(result->name);
  advance();
  return finish(std::move(result), first);
}

ExprPtr Parser::star() {
  const std::size_t first = position_;
  ExprPtr result = make(ExprKind::star);
  if (!at("*")) {
    result->table = name("a table");
    expect(".");
  }
  expect("*");
  return finish(std::move(result), first);
}

ExprPtr Parser::subselect(ExprKind kind, std::size_t first) {
  ExprPtr result = make(kind);
  expect("(");
  result->select = select(false);
  expect(")");
  return finish(std::move(result), first);
}

ExprPtr Parser::leftChain(std::span<const MarkOp> operators, ExprPtr (Parser::*operand)()) {
  const std::size_t first = position_;
  ExprPtr left = (this->*operand)();
  while (true) {
    const auto found = std::ranges::find_if(operators, [this](const MarkOp& one) { return at(one.mark); });
    if (found == operators.end()) return left;
    advance();
    left = finish(make(ExprKind::binary, found->op, std::move(left), (this->*operand)()), first);
  }
}

// The order in which AND and OR are grouped changes nothing, so a chain of many conditions becomes a tree of few
// levels: neighbours are paired until one is left.
ExprPtr Parser::evenChain(Op op, std::string_view keyword, ExprPtr (Parser::*operand)()) {
  struct Term {
    ExprPtr expr;
    std::size_t first, end;
  };
  std::vector<Term> terms;
  do {
    const std::size_t first = position_;
    ExprPtr expr = (this->*operand)();
    terms.push_back({std::move(expr), first, position_});
  } while (accept(keyword));
  while (terms.size() > 1) {
    std::vector<Term> pairs;
    for (std::size_t i = 0; i < terms.size(); i += 2) {
      if (i + 1 == terms.size()) {
        pairs.push_back(std::move(terms[i]));
        break;
      }
      const std::size_t first = terms[i].first, end = terms[i + 1].end;
      ExprPtr pair = make(ExprKind::binary, op, std::move(terms[i].expr), std::move(terms[i + 1].expr));
      pair = finish(std::move(pair), first);
      pair->text = textBetween(first, end);
      pairs.push_back({std::move(pair), first, end});
    }
    terms = std::move(pairs);
  }
  return std::move(terms.front().expr);
}

ExprPtr Parser::make(ExprKind kind) {
  if (++nodes_ > kMaxNodes) fail(token().place, "the statement has too many values.");
  auto expr = std::make_unique<Expr>();
  expr->kind = kind;
  return expr;
}

ExprPtr Parser::make(ExprKind kind, Op op, ExprPtr operand) {
  ExprPtr expr = make(kind);
  expr->op = op;
  expr->operands.push_back(std::move(operand));
  return expr;
}

ExprPtr Parser::make(ExprKind kind, Op op, ExprPtr left, ExprPtr right) {
  ExprPtr expr = make(kind, op, std::move(left));
  expr->operands.push_back(std::move(right));
  return expr;
}

// Gives a node what follows from its tokens, up to where the parser stands, and from its operands.
ExprPtr Parser::finish(ExprPtr expr, std::size_t first) const {
  expr->place = tokens_[first].place;
  expr->text = textBetween(first, position_);
  int below = expr->select ? expr->select->height : 0;
  for (const ExprPtr& operand : expr->operands) below = std::max(below, operand->height);
  expr->height = below + 1;
  if (expr->height > kMaxHeight) fail(expr->place, "the expression is too deep.");
  return expr;
}

std::string Parser::textBetween(std::size_t first, std::size_t end) const {
  const std::size_t begin = tokens_[first].begin;
  std::size_t size = tokens_[end - 1].end() - begin;
  if (size > kMaxText) {
    size = kMaxText;
    while (size > 0 && (static_cast<unsigned char>(source_[begin + size]) & 0xC0) == 0x80) --size;
  }
  return std::string(source_.substr(begin, size));
}

}  // namespace quillon::store::sql
