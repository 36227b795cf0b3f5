#include <gtest/gtest.h>

#include <algorithm>

#include "store/Errors.h"
#include "store/sql/Parser.h"
#include "store/sql/Printer.h"
#include "support/SeededRandom.h"
#include "support/StatementCorpus.h"
#include "support/StatementShape.h"

namespace quillon::store::sql {
namespace {

using sim::SeededRandom;

std::string errorOf(std::string_view text) {
  try {
    parse(text);
  } catch (const StatementError& error) {
    EXPECT_EQ(error.code(), Code::badStatement);
    return error.what();
  }
  return "none";
}

TEST(ParserErrors, NameThePlaceAndWhatWasExpected) {
  struct Fault {
    std::string_view text, error;
  };
  constexpr Fault kFaults[] = {
      {"", "Line 1, column 1: expected a statement, found the end."},
      {"SELEC * FROM t", "Line 1, column 1: expected a statement, found 'SELEC'."},
      {"SELECT *\n  FORM t", "Line 2, column 3: expected FROM, found 'FORM'."},
      {"SELECT a FROM", "Line 1, column 14: expected a table, found the end."},
      {"SELECT a, FROM t", "Line 1, column 11: expected a value, found 'FROM'."},
      {"SELECT 'äö', * * FROM t", "Line 1, column 16: expected FROM, found '*'."},
      {"SELECT a FROM t WHERE a = 'x", "Line 1, column 27: the closing quote is missing."},
      {"SELECT a FROM t /* b", "Line 1, column 17: the comment has no end."},
      {"SELECT 12ab", "Line 1, column 8: this is neither a number nor a name."},
      {"SELECT 1e999", "Line 1, column 8: the number is out of range."},
      {"SELECT a # b", "Line 1, column 10: a character that has no meaning here."},
      {"SELECT a FROM \"\"", "Line 1, column 15: the name in quotes is empty."},
      {"SELECT : a", "Line 1, column 8: a parameter is a colon and a name."},
      {"SELECT (a + b FROM t", "Line 1, column 15: expected ')', found 'FROM'."},
      {"SELECT a FROM t; SELECT b", "Line 1, column 18: expected the end, found 'SELECT'."},
      {"SELECT a FROM t ORDER BY a NOCASE, b", "Line 1, column 34: expected the end, found ','."},
      {"SELECT a FROM t ORDER BY a UNION SELECT b", "Line 1, column 28: expected the end, found 'UNION'."},
      {"SELECT a FROM t TOP 1.5", "Line 1, column 21: expected a whole number of rows, found '1.5'."},
      {"SELECT a FROM t TOP -1", "Line 1, column 21: expected a number of rows, found '-'."},
      {"SELECT a FROM t JOIN u", "Line 1, column 23: expected ON, found the end."},
      {"SELECT a FROM t RIGHT JOIN u ON b", "Line 1, column 17: expected the end, found 'RIGHT'."},
      {"SELECT a FROM (SELECT b FROM u)", "Line 1, column 32: expected a name for the SELECT, found the end."},
      {"SELECT a FROM t WHERE b IN (SELECT c INTO d FROM u)",
       "Line 1, column 38: INTO can only stand in the first SELECT of a statement."},
      {"SELECT a FROM t WHERE b NOT = c", "Line 1, column 29: expected BETWEEN, IN or LIKE, found '='."},
      {"SELECT a FROM t WHERE b IS true", "Line 1, column 28: expected NULL, found 'true'."},
      {"SELECT MEDIAN(a) FROM t", "Line 1, column 8: there is no function 'MEDIAN'."},
      {"SELECT ROUND(a, 1, 2) FROM t", "Line 1, column 8: ROUND does not take 3 values."},
      {"SELECT SUM(DISTINCT a) FROM t", "Line 1, column 12: expected a value, found 'DISTINCT'."},
      {"SELECT IF(a THEN b ELSE c FROM t", "Line 1, column 27: expected ')', found 'FROM'."},
      {"SELECT IF(a, b) FROM t", "Line 1, column 15: expected ',', found ')'."},
      {"SELECT CASE WHEN a THEN b", "Line 1, column 26: expected END, found the end."},
      {"SELECT CAST(a AS Nothing)", "Line 1, column 18: expected a type, found 'Nothing'."},
      {"SELECT EXTRACT(Week FROM a)", "Line 1, column 16: expected YEAR, MONTH or DAY, found 'Week'."},
      {"INSERT INTO t (a) b", "Line 1, column 19: expected VALUES or SELECT, found 'b'."},
      {"UPDATE t SET u.a = 1", "Line 1, column 14: only fields of the table that is updated can be set."},
      {"CREATE TABLE t (a Char)", "Line 1, column 23: expected '(', found ')'."},
      {"CREATE TABLE t (a Char(256))", "Line 1, column 24: expected a size from 1 to 255, found '256'."},
      {"CREATE TABLE t (a Numeric(3,4))", "Line 1, column 29: expected a number of decimals from 0 to 3, found '4'."},
      {"CREATE TABLE t (a Int PRIMARY KEY, b Int, PRIMARY KEY (b))", "Line 1, column 43: a table has one primary key."},
      {"ALTER TABLE t ADD a Int UNIQUE", "Line 1, column 25: expected the end, found 'UNIQUE'."},
      {"DROP INDEX i", "Line 1, column 13: expected ON, found the end."},
      {"EXPLAIN EXPLAIN SELECT 1", "Line 1, column 9: expected a statement, found 'EXPLAIN'."},
  };
  for (const auto& [text, error] : kFaults) EXPECT_EQ(errorOf(text), error) << text;
}

TEST(ParserErrors, FiltersHoldOneConditionWithoutParameters) {
  for (const std::string_view text :
       {"", "  ", "a = ", "a = 1;", "a = :b", "a = 1, b", "SELECT 1", "(a = 1", "WHERE a"}) {
    EXPECT_THROW(parseFilter(text), StatementError) << text;
  }
}

std::string repeated(std::string_view part, std::size_t count) {
  std::string text;
  for (; count > 0; --count) text += part;
  return text;
}

// Method: each construct that can stand in itself, and each chain, once within its limit and once far beyond it.
TEST(ParserErrors, NoTextRunsOutOfStackOrTime) {
  struct Pattern {
    std::string_view before, part, middle, close;
    std::size_t fits, tooMany;
  };
  constexpr Pattern kPatterns[] = {
      {"SELECT ", "(", "1", ")", 150, 500000},
      {"SELECT ", "-(", "1", ")", 90, 300000},
      {"SELECT ", "- ", "a", "", 150, 500000},
      {"SELECT ", "NOT ", "a", "", 150, 250000},
      {"SELECT ", "ABS(", "a", ")", 150, 200000},
      {"SELECT ", "(SELECT ", "1", ")", 60, 100000},
      {"SELECT ", "IF(a THEN ", "1", ")", 150, 90000},
      {"SELECT ", "CASE WHEN ", "a", " THEN 1 END", 150, 40000},
      {"SELECT 1 FROM ", "(SELECT 1 FROM ", "t", ") x", 90, 50000},
      {"SELECT 1 FROM ", "(", "t", " JOIN u ON a)", 150, 50000},
      {"SELECT a", "", "", "+ a", 900, 300000},
      {"SELECT a", "", "", " = a", 900, 200000},
      {"SELECT a", "", "", " IS NULL", 900, 100000},
      {"SELECT a", "", "", " UNION SELECT a", 400, 60000},
      {"SELECT ", "CASE ", "a", " WHEN a THEN 1 END", 10, 40000},
  };
  for (const auto& [before, part, middle, close, fits, tooMany] : kPatterns) {
    const auto text = [&](std::size_t count) {
      return std::string(before) + repeated(part, part.empty() ? 0 : count) + std::string(middle) +
             repeated(close, count);
    };
    EXPECT_EQ(errorOf(text(fits)), "none") << before << part;
    EXPECT_NE(errorOf(text(tooMany)), "none") << before << part;
  }
  // Long without being deep.
  EXPECT_EQ(errorOf("SELECT a FROM t WHERE a = 0" + repeated(" OR a = 1", 100000)), "none");
  EXPECT_EQ(errorOf("SELECT a FROM t WHERE a IN (0" + repeated(",1", 400000) + ")"), "none");
  EXPECT_EQ(errorOf("INSERT INTO t VALUES (0)" + repeated(",(0)", 200000)), "none");
  EXPECT_EQ(errorOf("SELECT '" + repeated("x", kMaxStatementSize - 9) + "'"), "none");
  EXPECT_NE(errorOf("SELECT '" + repeated("x", kMaxStatementSize - 8) + "'"), "none");
}

std::string mutated(SeededRandom& random) {
  const auto pick = [&random] { return sim::kStatementCorpus[random.below(std::size(sim::kStatementCorpus))]; };
  constexpr std::string_view kPieces[] = {
      "(",    ")",     "'", "\"",  ",",  ".",    "*",  "-",       "--",   "/*", "*/",  ":",    ";",  "NOT ", " AND ",
      " IN ", "CASE ", "0", "1e9", "\n", " END", "||", {"\0", 1}, "\xff", "ä",  "IF(", " AS ", "<>", "NULL", "SELECT "};
  std::string text(pick());
  for (std::size_t changes = 1 + random.below(4); changes > 0; --changes) {
    const std::size_t at = random.below(text.size() + 1);
    const std::size_t size = random.below(1 + std::min<std::size_t>(20, text.size() - at));
    switch (random.below(5)) {
      case 0:
        text.erase(at, size);
        break;
      case 1:
        text.insert(at, kPieces[random.below(std::size(kPieces))]);
        break;
      case 2:
        text.insert(random.below(text.size() + 1), text.substr(at, size));
        break;
      case 3: {
        const std::string_view other = pick();
        text = text.substr(0, at) + std::string(other.substr(random.below(other.size())));
        break;
      }
      default:
        if (at < text.size()) text[at] = static_cast<char>(random.next());
    }
  }
  return text;
}

// Method: statements cut, spliced and sprinkled with pieces of the dialect. Each is refused at a place inside it, or
// its canonical text gives the same tree again.
TEST(ParserErrors, MutilatedStatementsAreRefusedOrUnderstood) {
  SeededRandom random(11);
  int refused = 0, read = 0;
  for (int trial = 0; trial < 20000; ++trial) {
    const std::string text = mutated(random);
    SCOPED_TRACE(text);
    try {
      const auto statement = parse(text);
      const std::string printed = print(*statement);
      ASSERT_EQ(sim::shapeOf(*parse(printed)), sim::shapeOf(*statement)) << printed;
      ++read;
    } catch (const StatementError& error) {
      const auto lines = 1 + std::count(text.begin(), text.end(), '\n');
      ASSERT_TRUE(error.line() >= 1 && error.line() <= lines && error.column() >= 1) << error.what();
      ASSERT_LE(error.column(), static_cast<int>(text.size()) + 1) << error.what();
      ASSERT_EQ(error.code(), Code::badStatement);
      ++refused;
    }
    for (const StatementText& part : splitStatements(text)) {
      ASSERT_NE(text.find(part.text), std::string::npos);
      ASSERT_FALSE(part.text.empty());
    }
  }
  EXPECT_GT(refused, 10000);
  EXPECT_GT(read, 2000);
}

}  // namespace
}  // namespace quillon::store::sql
