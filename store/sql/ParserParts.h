#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "store/sql/Lexer.h"
#include "store/sql/Parser.h"

namespace quillon::store::sql {

// A recursive descent over the tokens of one text: a function for each construct, which stands at the construct's first
// token when it is called and behind its last one when it returns.
class Parser {
 public:
  Parser(std::string_view source, Place origin);
  std::unique_ptr<Statement> wholeStatement();
  ExprPtr wholeCondition();

 private:
  class Nesting;
  struct MarkOp {
    std::string_view mark;
    Op op;
  };

  // Tokens (Parser.cpp). A keyword is asked for in upper case, like a mark; names may be quoted.
  const Token& token(std::size_t ahead = 0) const;
  bool at(std::string_view word, std::size_t ahead = 0) const;
  bool atName(std::size_t ahead = 0) const;
  void advance();
  bool accept(std::string_view word);
  void expect(std::string_view word);
  void expectEnd();
  std::string name(std::string_view what);
  std::string nameAfterDot();
  int number(std::string_view what, int least, int most);
  [[noreturn]] void expected(std::string_view what) const;
  [[noreturn]] void fail(const Place& place, const std::string& text) const;

  // Statements that change rows (Parser.cpp).
  std::unique_ptr<Statement> statement();
  void insert(Statement& statement);
  void update(Statement& statement);
  void remove(Statement& statement);
  Assignment assignment(const Statement& statement);
  void target(Statement& statement);
  std::string aliasOrNone();

  // SELECT (ParserSelect.cpp).
  std::unique_ptr<Select> select(bool ofStatement);
  std::unique_ptr<Select> selectCore(bool head);
  void selectTail(Select& select);
  SelectItem selectItem();
  void sources(std::vector<Source>& from);
  void joins(std::vector<Source>& from);
  void source(std::vector<Source>& from, JoinKind join);
  ExprPtr rowCount();
  std::vector<ExprPtr> expressions();

  // Expressions, from the weakest binding to the strongest (ParserExpr.cpp).
  ExprPtr expression();
  ExprPtr disjunction();
  ExprPtr conjunction();
  ExprPtr negation();
  ExprPtr predicate();
  ExprPtr between(ExprPtr left, std::size_t first, bool negated);
  ExprPtr in(ExprPtr left, std::size_t first, bool negated);
  ExprPtr sum();
  ExprPtr product();
  ExprPtr signedFactor();
  ExprPtr factor();
  ExprPtr column();
  ExprPtr numberLiteral(bool negative);
  ExprPtr parameter();
  ExprPtr star();
  ExprPtr subselect(ExprKind kind, std::size_t first);
  ExprPtr leftChain(std::span<const MarkOp> operators, ExprPtr (Parser::*operand)());
  ExprPtr evenChain(Op op, std::string_view keyword, ExprPtr (Parser::*operand)());

  // What is written like a call (ParserCalls.cpp).
  ExprPtr call();
  ExprPtr substring();
  ExprPtr extract();
  ExprPtr cast();
  ExprPtr ifElse();
  ExprPtr caseWhen();
  ExprPtr equalTo(std::size_t operand);

  // Making nodes (ParserExpr.cpp). `first` is the position of the node's first token.
  ExprPtr make(ExprKind kind);
  ExprPtr make(ExprKind kind, Op op, ExprPtr operand);
  ExprPtr make(ExprKind kind, Op op, ExprPtr left, ExprPtr right);
  ExprPtr finish(ExprPtr expr, std::size_t first) const;
  std::string textBetween(std::size_t first, std::size_t end) const;

  // Definitions (ParserDefinitions.cpp).
  void create(Statement& statement);
  void createTable(Statement& statement);
  void tableItem(Statement& statement);
  void createIndex(Statement& statement);
  void alterTable(Statement& statement);
  void drop(Statement& statement);
  void dropIndex(Statement& statement);
  ColumnDef columnDef(bool withKeys);
  CastType type(bool sized);
  std::vector<std::string> fieldList();

  std::string_view source_;
  std::vector<Token> tokens_;  // the last one is the end, or the first bad one
  std::size_t position_ = 0;
  int nesting_ = 0;
  std::size_t nodes_ = 0;
  std::vector<std::string> parameters_;
  std::unordered_set<std::string> knownParameters_;  // folded
};

// Counts how deep the parser is in itself, so that no text runs it out of stack.
class Parser::Nesting {
 public:
  explicit Nesting(Parser& parser) : parser_(parser) {
    if (parser.nesting_ >= kMaxNesting) {
      parser.fail(parser.token().place, "more than " + std::to_string(kMaxNesting) + " levels in each other.");
    }
    ++parser.nesting_;
  }
  ~Nesting() { --parser_.nesting_; }
  Nesting(const Nesting&) = delete;
  Nesting& operator=(const Nesting&) = delete;

 private:
  Parser& parser_;
};

}  // namespace quillon::store::sql
