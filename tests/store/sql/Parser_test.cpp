#include "store/sql/Parser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "store/Errors.h"
#include "support/StatementCorpus.h"
#include "support/StatementShape.h"

namespace quillon::store::sql {
namespace {

using sim::shapeOf;
using testing::ElementsAre;

std::string shape(std::string_view text) { return shapeOf(*parse(text)); }
std::string condition(std::string_view text) { return shapeOf(*parseFilter(text)); }

struct Reading {
  std::string_view text, shape;
};

TEST(Parser, OperatorsBindByTheirRank) {
  constexpr Reading kReadings[] = {
      {"a + b * c - d", "(- (+ a (* b c)) d)"},
      {"a - b - c", "(- (- a b) c)"},
      {"a - (b - c)", "(- a (- b c))"},
      {"a / b * c", "(* (/ a b) c)"},
      {"-a * b", "(* (neg a) b)"},
      {"-(a * b)", "(neg (* a b))"},
      {"- -a", "(neg (neg a))"},
      {"a - -1", "(- a -1)"},
      {"a-1", "(- a 1)"},
      {"+a + +1", "(+ a 1)"},
      {"a || b + c", "(+ (|| a b) c)"},
      {"a + b = c", "(= (+ a b) c)"},
      {"a < b OR c", "(or (< a b) c)"},
      {"a OR b AND c OR d", "(or a (and b c) d)"},
      {"(a OR b) AND c", "(and (or a b) c)"},
      {"NOT a = b", "(not (= a b))"},
      {"NOT a AND b", "(and (not a) b)"},
      {"NOT NOT a", "(not (not a))"},
      {"NOT (a AND b)", "(not (and a b))"},
      {"a = b = c", "(= (= a b) c)"},
      {"a IS NULL = true", "(= (null? a) True)"},
      {"a + b IS NOT NULL", "(some? (+ a b))"},
      {"a BETWEEN b AND c AND d", "(and (between a b c) d)"},
      {"a NOT BETWEEN b + 1 AND c OR d", "(or (!between a (+ b 1) c) d)"},
      {"a NOT LIKE b AND c", "(and (not (like a b)) c)"},
      {"a IN (b, c OR d) OR e", "(or (in a b (or c d)) e)"},
      {"a + 1 NOT IN (2)", "(!in (+ a 1) 2)"},
      {"NOT a IN (2)", "(not (in a 2))"},
      {"NOT EXISTS (SELECT 1) AND a", "(and (!exists { 1}) a)"},
      {"NOT EXISTS (SELECT 1) = a", "(not (= (exists { 1}) a))"},
      {"a != b", "(<> a b)"},
  };
  for (const auto& [text, expected] : kReadings) {
    EXPECT_EQ(condition(text), expected) << text;
  }
}

TEST(Parser, LiteralsTakeTheKindOfTheirSpelling) {
  const auto kindOf = [](std::string_view text) { return parseFilter(text)->value.kind(); };
  using Kind = Value::Kind;
  for (const auto text : {"0", "9223372036854775807", "-9223372036854775808", "007"})
    EXPECT_EQ(kindOf(text), Kind::whole);
  for (const auto text : {"1.5", "1.", ".5", "-0.0001", "922337203685477.5807", "-922337203685477.5808"}) {
    EXPECT_EQ(kindOf(text), Kind::money) << text;
  }
  for (const auto text : {"0.00001", "1e3", "1.5E-2", "922337203685477.5808", "9223372036854775808", "1.50000"}) {
    EXPECT_EQ(kindOf(text), Kind::real) << text;
  }
  EXPECT_EQ(parseFilter("-9223372036854775808")->value, Value(std::numeric_limits<std::int64_t>::min()));
  EXPECT_EQ(parseFilter("-922337203685477.5808")->value,
            Value(Money::fromRaw(std::numeric_limits<std::int64_t>::min())));
  EXPECT_EQ(parseFilter("1.5E-2")->value, Value(0.015));
  EXPECT_EQ(parseFilter("True")->value, Value(true));
  EXPECT_TRUE(parseFilter("null")->value.isNull());
  const ExprPtr text = parseFilter("'it''s -- /* 5'");
  EXPECT_EQ(text->value, Value("it's -- /* 5"));
  EXPECT_TRUE(text->quoted);
}

TEST(Parser, NamesStandInAnyCaseAndInQuotes) {
  EXPECT_EQ(shape("select A.\"My \"\"field\"\"\", a.select FROM \"\\Memory\\X\" a wHeRe \"A\".b=1"),
            "select ~ { A.My \"field\" a.select first:\\Memory\\X~a where=(= A.b 1)}");
  EXPECT_EQ(shape("SELECT Ärmel x, t.* FROM Größe AS t"), "select ~ { Ärmel~x (star t) first:Größe~t}");
  EXPECT_EQ(shape("SELECT Sum, Key, Extract, Year FROM t"), "select ~ { Sum Key Extract Year first:t}");
  EXPECT_EQ(shape("SELECT \"CURRENT_DATE\", Current_Date, CURRENT_DATE()"),
            "select ~ { CURRENT_DATE (CURRENT_DATE) (CURRENT_DATE)}");
}

TEST(Parser, ClausesLandInTheirPlaces) {
  constexpr Reading kReadings[] = {
      {"SELECT a INTO \"\\Memory\\M\" FROM t, u INNER JOIN v ON p = q LEFT JOIN w x ON r ORDER BY a DESC, 2 NOCASE TOP "
       ":n",
       "select ~ { a into=\\Memory\\M first:t cross:u inner:v on=(= p q) left:w~x on=r down=a up=2 nocase top=:n}"},
      {"SELECT 1 UNION SELECT 2 UNION ALL SELECT 3 ORDER BY 1", "select ~ { 1 union{ 2 all{ 3}} up=1}"},
      {"SELECT DISTINCT a FROM (SELECT b c FROM t TOP 3) d GROUP BY a, e HAVING SUM(f) > 0",
       "select ~ {distinct a first:{ b~c first:t top=3}~d group=a group=e having=(> (SUM f) 0)}"},
      {"SELECT a FROM ((t JOIN u ON b) CROSS JOIN v), (w LEFT JOIN x ON c)",
       "select ~ { a first:t inner:u on=b cross:v cross:w left:x on=c}"},
      {"INSERT INTO t VALUES (1, 2), (3, 4);", "insert t~ row 1 2 row 3 4"},
      {"INSERT INTO t (a, b) SELECT c, d FROM u", "insertSelect t~ { c d first:u} (a,b,)"},
      {"UPDATE t x SET x.a = 1, b = a + 1 WHERE c", "update t~x a=1 b=(+ a 1) where=c"},
      {"DELETE FROM t", "delete t~"},
      {"CREATE TABLE t (a Char(3) NOT NULL PRIMARY KEY, b Numeric(10,2) UNIQUE, c Decimal(8), d Numeric(9,5), e "
       "Numeric(10,0), UNIQUE (a, b))",
       "createTable t~ [a 1 3 required] [b 6 0 unique] [c 3 0] [d 5 0] [e 14 0] primary (a,) unique (a,b,)"},
      {"CREATE UNIQUE INDEX i ON t (a DESC, b) NOCASE", "createIndex t~ index=i unique nocase a- b+"},
      {"ALTER TABLE t ADD a Date NOT NULL, DROP COLUMN b, MODIFY c Memo",
       "alterTable t~ 0 [a 8 0 required] 1 [b 1 0] 2 [c 11 0]"},
      {"DROP TABLE IF EXISTS \"\\Memory\\X\"", "dropTable \\Memory\\X~ ifExists"},
      {"DROP INDEX t.i", "dropIndex t~ index=i"},
      {"DROP INDEX i ON t", "dropIndex t~ index=i"},
      {"EXPLAIN DELETE FROM t", "explain ~ <delete t~>"},
  };
  for (const auto& [text, expected] : kReadings) EXPECT_EQ(shape(text), expected) << text;
}

TEST(Parser, SpellingsOfOneMeaningGiveOneTree) {
  constexpr Reading kPairs[] = {
      {"IF (a = 1 THEN b ELSE c)", "IF(a = 1, b, c)"},
      {"IF (a = 1 THEN b ELSE c)", "CASE WHEN a = 1 THEN b ELSE c END"},
      {"CASE a + 1 WHEN 2 THEN b WHEN 3 THEN c END", "CASE WHEN a + 1 = 2 THEN b WHEN a + 1 = 3 THEN c END"},
      {"SUBSTRING(a FROM 2 FOR 3)", "substring(a, 2, 3)"},
      {"a <> 1 /* one */", "(a) -- two\n != 1"},
      {"CAST(a AS Int)", "CAST(a AS INTEGER)"},
      {"COUNT(ALL a)", "count(a)"},
  };
  for (const auto& [one, other] : kPairs) EXPECT_EQ(condition(one), condition(other)) << one;
  EXPECT_EQ(condition("IF (a THEN 1)"), "(if a 1)");
  EXPECT_EQ(condition("EXTRACT(Month from d)"), "(EXTRACT_MONTH d)");
  EXPECT_EQ(condition("COUNT(DISTINCT a) + COUNT(*)"), "(+ (COUNT distinct a) (COUNT (star)))");
}

TEST(Parser, EveryStatementOfTheSystemIsRead) {
  for (const std::string_view text : sim::kStatementCorpus) EXPECT_NO_THROW(parse(text)) << text;
  for (const std::string_view text : sim::kFilterCorpus) EXPECT_NO_THROW(parseFilter(text)) << text;
}

TEST(Parser, ExpressionsKeepTheirSourceAndPlace) {
  const auto statement = parse("SELECT a+ b,\n  ( c  -1 ), 'ä', SUM( d )  FROM t");
  const auto& items = statement->select->items;
  EXPECT_EQ(items[0].expr->text, "a+ b");
  EXPECT_EQ(items[1].expr->text, "( c  -1 )");
  EXPECT_EQ(items[3].expr->text, "SUM( d )");
  EXPECT_EQ(items[0].expr->operands[1]->place.column, 11);
  EXPECT_EQ(items[1].expr->place.line, 2);
  EXPECT_EQ(items[1].expr->place.column, 5);
  EXPECT_EQ(items[3].expr->place.column, 19);  // in characters, not bytes
}

TEST(Parser, ParametersAreToldOnceInOrder) {
  EXPECT_THAT(
      parameterNames(*parse("EXPLAIN SELECT :B, CASE :a WHEN 1 THEN :b WHEN 2 THEN 0 END FROM t WHERE x IN (SELECT "
                            ":C) /* :no */ AND y = ':no' TOP :Count")),
      ElementsAre("B", "a", "C", "Count"));
  EXPECT_THAT(parameterNames(*parse("DELETE FROM t")), ElementsAre());
}

TEST(Parser, ScriptsArePartedOutsideOfQuotesAndComments) {
  const auto statements = splitStatements(
      "-- first; nothing\nSELECT ';' FROM \"a;b\" /* ; */ ; ;\n\n  DELETE FROM t;;UPDATE t SET a = 'open; text\n");
  ASSERT_EQ(statements.size(), 3u);
  EXPECT_EQ(statements[0].text, "SELECT ';' FROM \"a;b\"");
  EXPECT_EQ(statements[0].place.line, 2);
  EXPECT_EQ(statements[0].place.column, 1);
  EXPECT_EQ(statements[1].text, "DELETE FROM t");
  EXPECT_EQ(statements[1].place.line, 4);
  EXPECT_EQ(statements[1].place.column, 3);
  try {
    parse(statements[2].text, statements[2].place);
    FAIL();
  } catch (const StatementError& error) {
    EXPECT_EQ(error.line(), 4);
    EXPECT_EQ(error.column(), 35);  // of the quote in the script
  }
  EXPECT_TRUE(splitStatements(" ; -- none\n; /* none").size() == 1);
  EXPECT_TRUE(splitStatements("").empty());
}

}  // namespace
}  // namespace quillon::store::sql
