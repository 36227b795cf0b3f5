#include "store/sql/Parser.h"

#include <algorithm>

#include "base/Text.h"
#include "store/Errors.h"
#include "store/sql/ParserParts.h"

namespace quillon::store::sql {
namespace {

constexpr std::size_t kShownInError = 40;  // characters of a token

bool isLast(const Token& token) { return token.kind == TokenKind::end || token.kind == TokenKind::bad; }

}  // namespace

std::unique_ptr<Statement> parse(std::string_view text, Place origin) { return Parser(text, origin).wholeStatement(); }

ExprPtr parseFilter(std::string_view text) { return Parser(text, {}).wholeCondition(); }

std::vector<std::string> parameterNames(const Statement& statement) { return statement.parameters; }

std::vector<StatementText> splitStatements(std::string_view script) {
  std::vector<StatementText> statements;
  Lexer lexer(script);
  Token first, last;
  bool any = false;
  while (true) {
    const Token token = lexer.next();
    const bool end = token.kind == TokenKind::end;
    if (end || (token.kind == TokenKind::mark && token.text == ";")) {
      if (any) {
        statements.push_back({std::string(script.substr(first.begin, last.end() - first.begin)), first.place});
      }
      if (end) return statements;
      any = false;
      continue;
    }
    if (!any) first = token;
    last = token;
    any = true;
  }
}

Parser::Parser(std::string_view source, Place origin) : source_(source) {
  if (source.size() > kMaxStatementSize) fail(origin, "the statement is longer than 1 MB.");
  Lexer lexer(source, origin);
  do {
    tokens_.push_back(lexer.next());
  } while (!isLast(tokens_.back()));
}

std::unique_ptr<Statement> Parser::wholeStatement() {
  std::unique_ptr<Statement> result = statement();
  accept(";");
  expectEnd();
  result->parameters = std::move(parameters_);
  return result;
}

ExprPtr Parser::wholeCondition() {
  ExprPtr condition = expression();
  expectEnd();
  const auto parameter =
      std::find_if(tokens_.begin(), tokens_.end(), [](const Token& one) { return one.kind == TokenKind::parameter; });
  if (parameter != tokens_.end()) fail(parameter->place, "a filter has no parameters.");
  return condition;
}

const Token& Parser::token(std::size_t ahead) const { return tokens_[std::min(position_ + ahead, tokens_.size() - 1)]; }

bool Parser::at(std::string_view word, std::size_t ahead) const {
  const Token& next = token(ahead);
  return next.kind == TokenKind::mark ? next.text == word : !next.keyword.empty() && next.keyword == word;
}

bool Parser::atName(std::size_t ahead) const {
  const Token& next = token(ahead);
  return next.kind == TokenKind::quotedName || (next.kind == TokenKind::word && !isReserved(next.keyword));
}

void Parser::advance() {
  if (!isLast(token())) ++position_;
}

bool Parser::accept(std::string_view word) {
  if (!at(word)) return false;
  advance();
  return true;
}

void Parser::expect(std::string_view word) {
  if (accept(word)) return;
  const bool isMark = word.front() < 'A' || word.front() > 'Z';
  expected(isMark ? "'" + std::string(word) + "'" : word);
}

void Parser::expectEnd() {
  if (token().kind != TokenKind::end) expected("the end");
}

std::string Parser::name(std::string_view what) {
  if (!atName()) expected(what);
  return nameAfterDot();
}

std::string Parser::nameAfterDot() {
  const Token& next = token();
  if (next.kind != TokenKind::word && next.kind != TokenKind::quotedName) expected("a name");
  advance();
  return next.kind == TokenKind::quotedName ? unquoted(next.text) : std::string(next.text);
}

int Parser::number(std::string_view what, int least, int most) {
  const Token& next = token();
  int value = 0;
  bool whole = next.kind == TokenKind::number && next.text.size() <= 9;
  for (const char c : next.text) {
    whole = whole && c >= '0' && c <= '9';
    if (whole) value = value * 10 + (c - '0');
  }
  if (!whole || value < least || value > most) {
    expected(std::string(what) + " from " + std::to_string(least) + " to " + std::to_string(most));
  }
  advance();
  return value;
}

void Parser::expected(std::string_view what) const {
  const Token& next = token();
  if (next.kind == TokenKind::bad) fail(next.place, std::string(next.fault) + ".");
  std::string found = "the end";
  if (next.kind != TokenKind::end) {
    const std::string_view shown = firstCharacters(next.text, kShownInError);
    found = "'" + std::string(shown) + (shown.size() < next.text.size() ? "..." : "") + "'";
  }
  fail(next.place, "expected " + std::string(what) + ", found " + found + ".");
}

void Parser::fail(const Place& place, const std::string& text) const {
  throw StatementError(Code::badStatement, place.line, place.column, text);
}

std::unique_ptr<Statement> Parser::statement() {
  auto result = std::make_unique<Statement>();
  result->place = token().place;
  if (at("SELECT")) {
    result->select = select(true);
  } else if (accept("INSERT")) {
    insert(*result);
  } else if (accept("UPDATE")) {
    update(*result);
  } else if (accept("DELETE")) {
    remove(*result);
  } else if (accept("CREATE")) {
    create(*result);
  } else if (accept("ALTER")) {
    alterTable(*result);
  } else if (accept("DROP")) {
    drop(*result);
  } else if (at("EXPLAIN")) {
    advance();
    if (at("EXPLAIN")) expected("a statement");
    result->kind = StatementKind::explain;
    result->explained = statement();
  } else {
    expected("a statement");
  }
  return result;
}

void Parser::insert(Statement& statement) {
  expect("INTO");
  target(statement);
  if (at("(") && !at("SELECT", 1)) {
    advance();
    do {
      statement.fieldPlaces.push_back(token().place);
      statement.fields.push_back(name("a field"));
    } while (accept(","));
    expect(")");
  }
  if (at("SELECT") || at("(")) {
    statement.kind = StatementKind::insertSelect;
    const bool enclosed = accept("(");
    statement.select = select(false);
    if (enclosed) expect(")");
    return;
  }
  statement.kind = StatementKind::insertValues;
  if (!accept("VALUES")) expected("VALUES or SELECT");
  do {
    expect("(");
    statement.rows.push_back(expressions());
    expect(")");
  } while (accept(","));
}

void Parser::update(Statement& statement) {
  statement.kind = StatementKind::update;
  target(statement);
  statement.alias = aliasOrNone();
  expect("SET");
  do {
    statement.assignments.push_back(assignment(statement));
  } while (accept(","));
  if (accept("WHERE")) statement.where = expression();
}

Assignment Parser::assignment(const Statement& statement) {
  Assignment result;
  result.place = token().place;
  result.field = name("a field");
  if (at(".")) {
    if (!equalFolded(result.field, statement.alias.empty() ? statement.table : statement.alias)) {
      fail(result.place, "only fields of the table that is updated can be set.");
    }
    advance();
    result.place = token().place;
    result.field = nameAfterDot();
  }
  expect("=");
  result.value = expression();
  return result;
}

void Parser::remove(Statement& statement) {
  statement.kind = StatementKind::remove;
  expect("FROM");
  target(statement);
  statement.alias = aliasOrNone();
  if (accept("WHERE")) statement.where = expression();
}

void Parser::target(Statement& statement) {
  statement.tablePlace = token().place;
  statement.table = name("a table");
}

std::string Parser::aliasOrNone() {
  const bool announced = accept("AS");
  return announced || atName() ? name("a name") : "";
}

}  // namespace quillon::store::sql
