#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <iostream>

#include "store/Database.h"
#include "store/Errors.h"
#include "store/Query.h"
#include "store/Session.h"
#include "store/Verify.h"
#include "store/schema/CreateCompany.h"
#include "store/sql/Parser.h"
#include "store/sql/Printer.h"
#include "support/RandomTable.h"
#include "support/SeededRandom.h"
#include "support/SimClock.h"
#include "support/SimDisk.h"
#include "support/StatementCorpus.h"
#include "support/StatementShape.h"
#include "support/Trials.h"

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

// One word becomes another of the statement, or a value: much of that can still be read.
void exchangeWord(SeededRandom& random, std::string& text) {
  constexpr std::string_view kValues[] = {"null", "0",  "-1",   "2",          "2.5",    "1e300", "9223372036854775807",
                                          "'x'",  "''", "true", "'2012-3-1'", ":Param", "a",     "(SELECT 1)"};
  const auto word = [&] {
    const auto isWord = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; };
    std::size_t first = random.below(text.size());
    while (first < text.size() && !isWord(text[first])) ++first;
    while (first > 0 && isWord(text[first - 1])) --first;
    std::size_t end = first;
    while (end < text.size() && isWord(text[end])) ++end;
    return std::pair(first, end - first);
  };
  const auto [from, size] = word();
  const std::string other = text.substr(from, size);
  const auto [to, replaced] = word();
  text.replace(to, replaced, random.oneIn(3) ? std::string(kValues[random.below(std::size(kValues))]) : other);
}

std::string mutated(SeededRandom& random) {
  const auto pick = [&random] { return sim::kStatementCorpus[random.below(std::size(sim::kStatementCorpus))]; };
  constexpr std::string_view kPieces[] = {
      "(",    ")",     "'", "\"",  ",",  ".",    "*",  "-",       "--",   "/*", "*/",  ":",    ";",  "NOT ", " AND ",
      " IN ", "CASE ", "0", "1e9", "\n", " END", "||", {"\0", 1}, "\xff", "ä",  "IF(", " AS ", "<>", "NULL", "SELECT "};
  std::string text(pick());
  if (random.oneIn(2)) {
    for (std::size_t changes = random.below(4); changes > 0; --changes) exchangeWord(random, text);
    return text;
  }
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

// The tables that the corpus names, with a few awkward rows in each, in a folder and process of their own.
class FewRows {
 public:
  explicit FewRows(SeededRandom& random) {
    files_->makeFolder("/few");
    database_ = std::make_unique<Database>(session_, "/few");
    createCompanyTables(*database_);
    for (const char* text :
         {"CREATE TABLE t (a Integer PRIMARY KEY, b VARCHAR(9), c Money, d Memo, e VARCHAR(3), f VARCHAR(3), g Date)",
          "CREATE TABLE u (a Integer, x Double, y SmallInt, Name VARCHAR(5))", "CREATE TABLE v (a Integer)",
          "CREATE TABLE w (b Boolean, s Timestamp, z Time, raw Blob)",
          "CREATE TABLE Dept (Dept Integer, Active Boolean)", "CREATE TABLE Staff (Name VARCHAR(40), Dept Integer)",
          "CREATE TABLE Temps (Name VARCHAR(40))",
          "CREATE TABLE \"Table\" (Key Integer, \"Index\" Date, Year Money, \"Order\" VARCHAR(4), \"Group\" Memo)"})
      Query(*database_, text).execute();
    for (const std::string_view text : sim::kStatementCorpus)
      if (text.starts_with("CREATE TABLE")) Query(*database_, std::string(text)).execute();
    for (const std::string& name : database_->tableNames()) fill(random, name);
  }

  // A run with values for its parameters: how many rows it gave or changed.
  std::uint64_t run(SeededRandom& random, const std::string& text, const Statement& statement) {
    Query query(*database_, text);
    for (const std::string& name : statement.parameters)
      query.setParameter(name, sim::randomValue(random, kParameters[random.below(12) % std::size(kParameters)]));
    if (!query.givesRows()) return query.execute();
    query.open();
    std::string shown;
    for (query.first(); !query.eof(); query.next())
      for (int i = 0; i < query.fieldCount(); ++i) shown += query.field(i).value().toText();
    return query.recordCount();
  }
  bool sound() {
    database_.reset();
    return verifyFolder({*files_, clock_, "ANNA", "PC", 1}, "/few").clean();
  }

 private:
  static inline const FieldDef kParameters[] = {
      {"p", FieldType::smallint}, {"p", FieldType::integer}, {"p", FieldType::date},    {"p", FieldType::string, 9},
      {"p", FieldType::currency}, {"p", FieldType::boolean}, {"p", FieldType::dateTime}};

  void fill(SeededRandom& random, const std::string& name) {
    Cursor cursor(*database_, name);
    cursor.open();
    const Database::BulkScope bulk(*database_);
    const Database::CopyScope copy(*database_);
    for (int row = 0; row < 3; ++row) {
      cursor.insert();
      for (int i = 0; i < cursor.fieldCount(); ++i) {
        const FieldDef& field = cursor.field(i).definition();
        const bool small = field.type == FieldType::integer && random.below(3) > 0;
        cursor.field(i) = small ? Value(static_cast<int>(random.below(4))) : sim::randomValue(random, field);
      }
      try {
        cursor.post();
      } catch (const StoreError& error) {
        if (error.code() != Code::keyViolation && error.code() != Code::limitReached) throw;
        cursor.cancel();
      }
    }
  }

  sim::SimDisk disk_;
  sim::SimClock clock_;
  std::unique_ptr<FileSystem> files_ = disk_.process();
  Session session_{{*files_, clock_, "ANNA", "PC", 1}};
  std::unique_ptr<Database> database_;
};

void expectPlaceInside(const StatementError& error, const std::string& text) {
  const auto lines = 1 + std::count(text.begin(), text.end(), '\n');
  ASSERT_TRUE(error.line() >= 1 && error.line() <= lines && error.column() >= 1) << error.what();
  ASSERT_LE(error.column(), static_cast<int>(text.size()) + 1) << error.what();
}

// Method: statements cut, spliced and sprinkled with pieces of the dialect. Each is refused at a place inside it, or
// its canonical text gives the same tree again and it runs on small tables: it gives rows, changes some, or is refused
// at a place or for what the tables hold. The tables are sound in the end.
TEST(ParserErrors, MutilatedStatementsAreRefusedOrRun) {
  constexpr Code kOfTables[] = {Code::keyViolation, Code::tableInUse, Code::limitReached};
  const sim::Trials trials = sim::Trials::fromEnvironment();
  const std::uint64_t aim = trials.aim(20000, 200000);
  SeededRandom random(trials.seed.value_or(11));
  std::unique_ptr<FewRows> tables;
  std::uint64_t unread = 0, refused = 0, ran = 0, rows = 0;
  for (std::uint64_t trial = 0; trial < aim; ++trial) {
    if (trial % 5000 == 0) {
      ASSERT_TRUE(!tables || tables->sound());
      tables = std::make_unique<FewRows>(random);
    }
    const std::string text = mutated(random);
    SCOPED_TRACE(text);
    for (const StatementText& part : splitStatements(text)) {
      ASSERT_NE(text.find(part.text), std::string::npos);
      ASSERT_FALSE(part.text.empty());
    }
    std::unique_ptr<Statement> statement;
    try {
      statement = parse(text);
    } catch (const StatementError& error) {
      ASSERT_NO_FATAL_FAILURE(expectPlaceInside(error, text));
      ASSERT_EQ(error.code(), Code::badStatement);
      ++unread;
      continue;
    }
    const std::string printed = print(*statement);
    ASSERT_EQ(sim::shapeOf(*parse(printed)), sim::shapeOf(*statement)) << printed;
    try {
      rows += tables->run(random, text, *statement);
      ++ran;
    } catch (const StatementError& error) {
      ASSERT_NO_FATAL_FAILURE(expectPlaceInside(error, text));
      ++refused;
    } catch (const StoreError& error) {
      ASSERT_EQ(std::ranges::count(kOfTables, error.code()), 1) << error.number() << ": " << error.what();
      ++refused;
    }
  }
  ASSERT_TRUE(!tables || tables->sound());
  std::cout << aim << " statements: " << unread << " not read, " << refused << " refused, " << ran << " ran, " << rows
            << " rows\n";
  EXPECT_GT(unread, aim / 4);
  EXPECT_GT(refused, aim / 50);
  EXPECT_GT(ran, aim / 20);
  EXPECT_GT(rows, ran / 10);
}

}  // namespace
}  // namespace quillon::store::sql
