// Statements as a program holds them: parameters, many runs, results that live, and other people's locks.
#include "store/Query.h"

#include "support/TroubledCompany.h"

namespace quillon::store {
namespace {

using namespace trouble;

class QueryTest : public CompanyTest {
 protected:
  QueryTest() : anna_(sit("ANNA")), bert_(sit("BERT")) {}

  std::uint64_t run(const std::string& text) { return Query(anna_->database, text).execute(); }
  std::uint64_t count(const std::string& where) {
    Query query(anna_->database, "SELECT COUNT(*) AS N FROM Cust WHERE " + where);
    query.open();
    return static_cast<std::uint64_t>(query["N"].asInt64());
  }

  std::unique_ptr<Seat> anna_, bert_;
};

TEST_F(QueryTest, RunsManyTimesWithOtherParameters) {
  Query query(anna_->database, "SELECT Name FROM Cust WHERE ID = :id");
  EXPECT_TRUE(errorOf([&] { query.open(); }));
  EXPECT_FALSE(query.isOpen());
  for (int id = 1; id <= 150; ++id) {
    query.setParameter(id % 2 ? ":ID" : "Id", id);
    query.open();
    ASSERT_EQ(query.recordCount(), 1u) << id;
    EXPECT_EQ(query["Name"].asText(), "Name" + std::to_string(id - 1));
    EXPECT_TRUE(errorOf([&] { query.setStatement("SELECT 1"); })) << "while open";
    query.close();
  }
  query.setParameter("ID", Value());
  query.open();
  EXPECT_TRUE(query.isEmpty());
  query.close();
  query.setStatement("UPDATE Cust SET Name = :New WHERE ID = :ID");
  query.setParameter("New", "Other");
  query.setParameter("ID", 7);
  EXPECT_EQ(query.execute(), 1u);
  EXPECT_EQ(query.execute(), 1u);
  EXPECT_EQ(count("Name = 'Other'"), 1u);
}

// A closed Query has its plan and its tables' files at hand, and is in nobody's way.
TEST_F(QueryTest, ClosedOneStandsInNobodysWayAndSeesWhatBecameOfItsTables) {
  Query all(anna_->database, "SELECT * FROM Cust WHERE ID = :id");
  Query names(anna_->database, "SELECT Name FROM Cust WHERE Name = :name OR ID IN (SELECT ID FROM Cust WHERE ID < 3)");
  const auto fields = [&](const Value& id) {
    all.setParameter("id", id);
    all.open();
    const int count = all.isEmpty() ? -1 : all.fieldCount();
    all.close();
    return count;
  };
  const auto rows = [&](const Value& name) {
    names.setParameter("name", name);
    names.open();
    const std::uint64_t count = names.recordCount();
    names.close();
    return count;
  };
  const int before = fields(1);
  EXPECT_EQ(rows("Name7"), 3u);
  {
    Cursor alone(bert_->database, "Cust");
    alone.setExclusive(true);
    alone.open();
    EXPECT_EQ(errorOf([&] { fields(1); })->number(), 11013);
    alone.locate("ID", {1});
    alone.edit();
    alone["ID"] = 1000;
    alone.post();
  }
  EXPECT_EQ(fields(1), -1);
  EXPECT_EQ(fields(1000), before);
  EXPECT_EQ(fields("1000"), before) << "another type";
  EXPECT_EQ(rows("A name much longer than the one before"), 1u);
  EXPECT_EQ(rows(Value()), 1u);
  Query(bert_->database, "ALTER TABLE Cust ADD Extra Integer").execute();
  EXPECT_EQ(fields(1000), before + 1);
  Query(bert_->database, "DROP TABLE Cust").execute();
  EXPECT_EQ(errorOf([&] { fields(1000); })->code(), Code::noSuchTable);
  for (Seat* seat : {bert_.get(), anna_.get()}) {
    Query(seat->database, "DROP TABLE IF EXISTS Cust").execute();
    Query(seat->database, "CREATE TABLE Cust (ID Integer, Name Char(20))").execute();
    EXPECT_EQ(fields(1000), -1);
    Query(seat->database, "INSERT INTO Cust VALUES (1000, 'x')").execute();
    EXPECT_EQ(fields(1000), 2);
    EXPECT_EQ(rows("x"), 1u);
  }
  Query memory(anna_->database, "SELECT COUNT(*) AS N FROM \"\\Memory\\M\"");
  for (const int count : {1, 0}) {
    run("SELECT ID INTO \"\\Memory\\M\" FROM Cust WHERE ID = 1000");
    if (count == 0) run("DELETE FROM \"\\Memory\\M\"");
    memory.open();
    EXPECT_EQ(memory["N"].asInt(), count);
    memory.close();
  }
  auto home = sit("CARL");
  Query outlives(home->database, "SELECT ID FROM Cust");
  outlives.open();
  outlives.close();
  home.reset();
}

TEST_F(QueryTest, ResultIsTheStateOfItsOpening) {
  Query query(anna_->database, "SELECT ID, Name FROM Cust WHERE ID <= 3 ORDER BY ID DESC");
  query.open();
  run("DELETE FROM Cust WHERE ID = 2");
  run("UPDATE Cust SET Name = 'New' WHERE ID = 1");
  EXPECT_EQ(query.recordCount(), 3u);
  query.last();
  EXPECT_EQ(query["Name"].asText(), "Name0");
  EXPECT_EQ(errorOf([&] { query.edit(); })->code(), Code::notEditing);
  query.close();
  query.open();
  EXPECT_EQ(query.recordCount(), 2u);
  query.last();
  EXPECT_EQ(query["Name"].asText(), "New");
}

TEST_F(QueryTest, LiveRowsAreEditedByTheTablesRulesAndStayUntilReopened) {
  Query live(anna_->database, "SELECT * FROM Cust WHERE Name LIKE 'Name1_' ORDER BY Name");
  live.setLive(true);
  live.open();
  ASSERT_EQ(live.recordCount(), 10u);
  live.edit();
  live["Name"] = "Zzz";
  live.post();
  EXPECT_EQ(live.recordCount(), 10u);
  EXPECT_EQ(live["Name"].asText(), "Zzz");
  live.next();
  EXPECT_EQ(live["Name"].asText(), "Name11");
  live.edit();
  live["Name"] = "name0";
  EXPECT_EQ(errorOf([&] { live.post(); })->code(), Code::keyViolation);
  live.cancel();
  live.remove();
  EXPECT_EQ(live.recordCount(), 9u);
  live.close();
  live.open();
  EXPECT_EQ(live.recordCount(), 8u);
  EXPECT_EQ(countOf(anna_->database, "Cust"), 149u);
  for (const char* text :
       {"SELECT Name FROM Cust GROUP BY Name", "SELECT ID + 1 FROM Cust", "SELECT Name AS N FROM Cust",
        "SELECT C.Name FROM Cust C, Items I", "SELECT 1", "SELECT Name FROM Cust UNION SELECT Name FROM Items"}) {
    Query dead(anna_->database, text);
    dead.setLive(true);
    EXPECT_EQ(errorOf([&] { dead.open(); })->code(), Code::badStatement) << text;
    EXPECT_FALSE(dead.isOpen());
  }
}

TEST_F(QueryTest, OneLockedRowRefusesTheWholeStatement) {
  for (Seat* seat : {anna_.get(), bert_.get()}) {
    Cursor cursor(seat->database, "Cust");
    cursor.open();
    cursor.locate("ID", {100});
    cursor.edit();
    for (const char* text : {"UPDATE Cust SET Notes = 'x'", "DELETE FROM Cust WHERE ID > 90"}) {
      const auto error = errorOf([&] { run(text); });
      ASSERT_TRUE(error) << text;
      EXPECT_EQ(error->number(), 10258) << error->what();
    }
    EXPECT_EQ(count("Notes = 'x'"), 0u);
    EXPECT_EQ(countOf(anna_->database, "Cust"), 150u);
    EXPECT_EQ(run("UPDATE Cust SET Notes = 'y' WHERE ID < 90"), 89u);
    cursor.cancel();
  }
  EXPECT_EQ(run("UPDATE Cust SET Notes = 'x'"), 150u);
  EXPECT_TRUE(verifyFolder({*anna_->files, clock_, "ANNA", "PC", 1}, kFolder).clean());
}

TEST_F(QueryTest, StatementThatFindsNothingInAGroupHoldsNoTable) {
  {
    const Database::BulkScope bulk(anna_->database);
    EXPECT_EQ(run("DELETE FROM Cust WHERE ID = -1"), 0u);
  }
  Query other(bert_->database, "UPDATE Cust SET Name = 'Other' WHERE ID = 7");
  EXPECT_EQ(other.execute(), 1u);
}

TEST_F(QueryTest, FailureInsideATransactionKeepsWhatWasDoneBefore) {
  Database& database = anna_->database;
  database.startTransaction({"Cust"});
  EXPECT_EQ(run("UPDATE Cust SET Notes = 'before' WHERE ID <= 50"), 50u);
  EXPECT_EQ(run("DELETE FROM Cust WHERE ID = 60"), 1u);
  // Half of its rows go well before the name that is there already.
  run("INSERT INTO Cust (Name) VALUES ('New0')");
  EXPECT_EQ(
      errorOf([&] { run("UPDATE Cust SET Name = 'New' || SUBSTRING(Name, 7) WHERE ID BETWEEN 101 AND 120"); })->code(),
      Code::keyViolation);
  EXPECT_EQ(errorOf([&] { run("INSERT INTO Cust (Name) VALUES ('P'), ('Q'), ('name5')"); })->code(),
            Code::keyViolation);
  EXPECT_EQ(count("Name LIKE 'New%'"), 1u);
  EXPECT_EQ(count("Notes = 'before'"), 50u);
  EXPECT_EQ(countOf(database, "Cust"), 150u);
  EXPECT_EQ(countOf(bert_->database, "Cust"), 150u);
  EXPECT_TRUE(errorOf([&] { run("ALTER TABLE Cust ADD Extra Integer"); })) << "definitions stay as they are";
  run("SELECT Name INTO \"\\Memory\\Names\" FROM Cust WHERE Notes = 'before'");
  database.commit();
  Query query(bert_->database, "SELECT COUNT(*) FROM Cust WHERE Notes = 'before'");
  query.open();
  EXPECT_EQ(query.field(0).asInt64(), 50);

  database.startTransaction({"Cust"});
  run("DELETE FROM Cust");
  EXPECT_EQ(countOf(database, "Cust"), 0u);
  database.rollback();
  EXPECT_EQ(countOf(database, "Cust"), 150u);
  EXPECT_TRUE(verifyFolder({*anna_->files, clock_, "ANNA", "PC", 1}, kFolder).clean());
}

TEST_F(QueryTest, UpdateMustBeUniqueAtItsEndAndNotOnTheWay) {
  Database& database = anna_->database;
  for (const bool inTransaction : {false, true}) {
    if (inTransaction) database.startTransaction({"Cust"});
    EXPECT_EQ(run("UPDATE Cust SET ID = ID + 1"), 150u);
    EXPECT_EQ(run("UPDATE Cust SET ID = 152 - ID"), 150u);  // from 1 on again, the other way round
    EXPECT_EQ(run("UPDATE Cust SET ID = CASE ID WHEN 3 THEN 4 ELSE 3 END, Notes = 'swapped' WHERE ID IN (3, 4)"), 2u);
    for (const char* text : {"UPDATE Cust SET ID = 200 WHERE ID > 148", "UPDATE Cust SET ID = ID + 1 WHERE ID < 10",
                             "UPDATE Cust SET Notes = 'no', ID = 7 WHERE ID = 8"})
      EXPECT_EQ(errorOf([&] { run(text); })->code(), Code::keyViolation) << text;
    EXPECT_EQ(count("ID BETWEEN 1 AND 150 AND (Notes IS NULL OR Notes <> 'no')"), 150u);
    EXPECT_EQ(count("ID IN (3, 4) AND Notes = 'swapped'"), 2u);
    if (inTransaction) database.commit();
  }
  EXPECT_EQ(count("Name = 'Name2' AND ID = 4"), 1u);
  EXPECT_TRUE(verifyFolder({*anna_->files, clock_, "ANNA", "PC", 1}, kFolder).clean());
}

TEST_F(QueryTest, TablesInMemoryAreTablesForCursorsToo) {
  run("SELECT ID, Name INTO \"\\Memory\\Few\" FROM Cust WHERE ID < 4 ORDER BY ID DESC");
  {
    Cursor cursor(anna_->database, "\\memory\\FEW");
    cursor.open();
    EXPECT_EQ(cursor["ID"].asInt(), 3);
    cursor.edit();
    cursor["Name"] = "Edited";
    cursor.post();
    EXPECT_EQ(errorOf([&] { run("SELECT ID INTO \"\\Memory\\Few\" FROM Cust"); })->number(), 11013);
    EXPECT_EQ(cursor.recordCount(), 3u);
  }
  Query query(anna_->database, "SELECT COUNT(*) FROM \"\\Memory\\Few\" WHERE Name = 'Edited'");
  query.open();
  EXPECT_EQ(query.field(0).asInt64(), 1);
  EXPECT_EQ(run("SELECT ID INTO \"\\Memory\\Few\" FROM Cust WHERE ID = 1"), 1u);
}

// Beside a copy without indexes, with more equal rows than are read backwards at once.
TEST_F(QueryTest, OrdersAndEndsOfAnIndexAreThoseOfASort) {
  run("CREATE TABLE Ties (N Integer, K SmallInt, S VARCHAR(4))");
  for (int i = 0; i < 300; ++i)
    run("INSERT INTO Ties VALUES (" + std::to_string(i * 7 % 11) + ", " +
        (i % 10 == 0 ? "NULL" : std::to_string(i * i % 3)) + ", '" +
        (i % 4 == 0   ? "B"
         : i % 3 == 0 ? "b"
                      : "a") +
        "')");
  run("SELECT * INTO Bare FROM Ties");
  for (const char* index : {"ByK ON Ties (K)", "ByKN ON Ties (K DESC, N)", "ByS ON Ties (S) NOCASE"})
    run(std::string("CREATE INDEX ") + index);
  const auto rows = [&](const std::string& text) {
    std::string all;
    Query query(anna_->database, text);
    for (query.open(); !query.eof(); query.next(), all += '\n')
      for (int i = 0; i < query.fieldCount(); ++i) all += query.field(i).value().toText() + ' ';
    return all;
  };
  int ordered = 0;
  for (const std::string where :
       {"", " WHERE K = 1", " WHERE K < 1.5", " WHERE K >= 0 AND N > 4", " WHERE K IS NULL"}) {
    for (const char* what : {"MIN(K)", "MAX(K)", "MIN(N)", "MAX(N)", "MAX(S)"})
      EXPECT_EQ(rows(std::string("SELECT ") + what + " FROM Ties" + where),
                rows(std::string("SELECT ") + what + " FROM Bare" + where))
          << what << where;
    for (const char* order :
         {"K", "K DESC", "N DESC", "K, N DESC", "K DESC, N", "K DESC, N DESC", "S DESC NOCASE", "S"})
      for (const char* top : {"", " TOP 1", " TOP 110"}) {
        const std::string tail = where + " ORDER BY " + order + top;
        EXPECT_EQ(rows("SELECT * FROM Ties" + tail), rows("SELECT * FROM Bare" + tail)) << tail;
        ordered += rows("EXPLAIN SELECT * FROM Ties" + tail).find("in the order of") != std::string::npos;
      }
  }
  EXPECT_GT(ordered, 40);
}

TEST_F(QueryTest, ExplainTellsTheIndexThatServes) {
  const auto plan = [&](const std::string& text) {
    std::string all;
    for (const std::string& line : Query(anna_->database, text).explain()) all += line + "\n";
    return all;
  };
  const auto is = [](const char* text) { return testing::StartsWith(text); };
  EXPECT_THAT(plan("SELECT * FROM Cust WHERE Name = 'Name3'"), is("search Cust by index ByName"));
  EXPECT_THAT(plan("SELECT * FROM Cust WHERE Notes = 'x'"), is("walk Cust\n"));
  EXPECT_THAT(plan("SELECT MIN(ID) FROM Cust"), is("take the first row of Cust by the primary index"));
  EXPECT_THAT(plan("SELECT MAX(ID) FROM Cust WHERE ID < 9"), is("take the last row of Cust by the primary index"));
  EXPECT_THAT(plan("SELECT MIN(ID), MAX(ID) FROM Cust"), is("walk Cust\n"));
  EXPECT_EQ(plan("SELECT * FROM Cust ORDER BY ID DESC TOP 3"),
            "walk Cust backwards in the order of the primary index\ntop\n");
  EXPECT_EQ(plan("SELECT * FROM Cust ORDER BY ID DESC"), "walk Cust backwards in the order of the primary index\n");
  // A few rows are found by their index and sorted rather than met in another one's order.
  EXPECT_EQ(plan("SELECT * FROM Cust WHERE ID = 3 ORDER BY Name"), "search Cust by the primary index\nsort\n");
  for (const char* beyond : {"ID > 1000", "ID > 99999999999", "ID < -2147483648.5", "ID > 149.5"})
    EXPECT_THAT(plan(std::string("SELECT * FROM Cust WHERE ") + beyond), is("search Cust by the primary index"))
        << beyond;
  EXPECT_THAT(plan("SELECT * FROM Cust WHERE ID IN (SELECT ID FROM Cust WHERE ID < 3)"),
              is("search Cust by the primary index for each value of a list"));
  EXPECT_THAT(plan("SELECT * FROM Cust WHERE ID IN (SELECT ID FROM Cust WHERE ID < 60)"), is("walk Cust\n"));
  // SELECTs inside, each under what it is run for.
  EXPECT_EQ(plan("DELETE FROM Cust WHERE ID NOT IN (SELECT MAX(ID) FROM Cust)"),
            "walk Cust\nonce\n  take the last row of Cust by the primary index\n  aggregate\ndelete\n");
  EXPECT_EQ(
      plan("SELECT ID INTO Copy FROM Cust C WHERE EXISTS (SELECT 1 FROM Cust I WHERE I.ID = C.ID AND I.Name = "
           "(SELECT MIN(Name) FROM Cust N WHERE N.ID > C.ID))"),
      "walk Cust\nfor each row\n  search Cust by the primary index\n  for each row\n    search Cust by the primary "
      "index\n    aggregate\ninto Copy\n");
  Query query(anna_->database, "EXPLAIN SELECT * FROM Cust WHERE ID = 3");
  EXPECT_TRUE(query.givesRows());
  query.open();
  EXPECT_GT(query.recordCount(), 0u);
}

}  // namespace
}  // namespace quillon::store
