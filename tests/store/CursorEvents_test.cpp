// Events of a cursor, calculated and looked-up fields, contents of memo fields, details of a master.
#include <gtest/gtest.h>

#include "base/Errors.h"
#include "store/Cursor.h"
#include "support/SimProcess.h"

namespace quillon::store {
namespace {

using sim::codeOf;
using sim::SimProcess;

class CursorEventsTest : public testing::Test {
 protected:
  CursorEventsTest() {
    disk_.process()->makeFolder(sim::kSharedFolder);
    settings_.lockRetryCount = 2;
    settings_.lockWaitTime = 5;
    one_ = std::make_unique<SimProcess>(disk_, clock_, settings_);
    one_->open();
    database().createTable(TableDef::of(
        "Cust",
        {{"ID", FieldType::autoInc},
         {"Name", FieldType::string, 20, true},
         {"Group", FieldType::integer},
         {"Notes", FieldType::memo}},
        {{"", "ID", IndexOptions::unique}, {"ByName", "Name", IndexOptions::unique | IndexOptions::caseInsensitive}}));
    database().createTable(
        TableDef::of("Line", {{"No", FieldType::autoInc}, {"Cust", FieldType::integer}, {"Amount", FieldType::integer}},
                     {{"", "No", IndexOptions::unique}, {"ByCust", "Cust;No"}}));
  }
  Database& database() { return one_->database(); }
  static void add(Cursor& cursor, const std::string& name, const Value& group = {}) {
    cursor.insert();
    cursor["Name"] = name;
    cursor["Group"] = group;
    cursor.post();
  }

  sim::SimDisk disk_;
  sim::SimClock clock_;
  Settings settings_;
  std::unique_ptr<SimProcess> one_;
};

TEST_F(CursorEventsTest, ComeInOrderAndOneThatRaisesStopsWhatItCameBefore) {
  Cursor cursor(database(), "Cust");
  cursor.open();
  std::string order;
  const auto note = [&order](const char* what) { return [&order, what] { order += std::string(what) + " "; }; };
  cursor.events.beforeInsert = note("beforeInsert");
  cursor.events.afterInsert = note("afterInsert");
  cursor.events.beforeEdit = note("beforeEdit");
  cursor.events.afterEdit = note("afterEdit");
  cursor.events.beforePost = note("beforePost");
  cursor.events.afterPost = note("afterPost");
  cursor.events.beforeDelete = note("beforeDelete");
  cursor.events.afterDelete = note("afterDelete");
  cursor.events.afterCancel = note("afterCancel");
  cursor.events.afterScroll = note("scroll");
  cursor.events.onNewRecord = [&] {
    order += "new ";
    cursor["Group"] = 7;
  };
  cursor.insert();
  EXPECT_FALSE(cursor.modified());
  cursor.first();  // an untouched new row is dropped
  EXPECT_EQ(cursor.recordCount(), 0u);
  EXPECT_EQ(order, "beforeInsert new afterInsert afterCancel scroll scroll ");
  order.clear();
  add(cursor, "a", 7);
  cursor.edit();
  cursor["Group"] = 8;
  cursor.post();
  cursor.remove();
  EXPECT_EQ(order,
            "beforeInsert new afterInsert beforePost scroll afterPost beforeEdit afterEdit beforePost scroll afterPost "
            "beforeDelete scroll afterDelete ");

  add(cursor, "b");
  cursor.events.beforePost = [] { throw Abort(); };
  cursor.edit();
  cursor["Name"] = "c";
  EXPECT_THROW(cursor.first(), Abort);
  EXPECT_EQ(cursor.state(), CursorState::edit);
  EXPECT_EQ(cursor["Name"].asText(), "c");
  EXPECT_EQ(cursor["Name"].oldValue().asText(), "b");
  cursor.cancel();
  cursor.events.beforeEdit = cursor.events.beforeDelete = cursor.events.beforeInsert = [] { throw Abort(); };
  EXPECT_THROW(cursor.edit(), Abort);
  EXPECT_THROW(cursor.remove(), Abort);
  EXPECT_THROW(cursor.insert(), Abort);
  EXPECT_EQ(cursor.state(), CursorState::browse);
  EXPECT_EQ(cursor.recordCount(), 1u);
}

TEST_F(CursorEventsTest, ErrorsAreAnsweredWithRetryAbortOrFail) {
  Cursor cursor(database(), "Cust"), holder(database(), "Cust");
  cursor.open();
  add(cursor, "a");
  add(cursor, "b");
  holder.open();
  cursor.first();
  for (auto* handler : {&cursor.events.onEditError, &cursor.events.onDeleteError}) {
    const auto call = [&] { handler == &cursor.events.onEditError ? cursor.edit() : cursor.remove(); };
    holder.first();
    holder.edit();
    *handler = [](const StoreError&) { return ErrorAnswer::abort; };
    EXPECT_THROW(call(), Abort);
    *handler = [](const StoreError&) { return ErrorAnswer::fail; };
    EXPECT_EQ(codeOf(call), Code::recordLocked);
    EXPECT_EQ(cursor.state(), CursorState::browse);
    int tries = 0;
    *handler = [&](const StoreError& error) {
      EXPECT_EQ(error.code(), Code::recordLocked);
      if (++tries == 3) holder.cancel();
      return ErrorAnswer::retry;
    };
    EXPECT_EQ(codeOf(call), Code{});
    EXPECT_EQ(tries, 3);
    cursor.cancel();
  }
  EXPECT_EQ(cursor.recordCount(), 1u);
  cursor.insert();
  cursor["Name"] = "B";
  cursor.events.onPostError = [](const StoreError&) { return ErrorAnswer::abort; };
  EXPECT_THROW(cursor.post(), Abort);
  cursor.events.onPostError = [&](const StoreError& error) {
    EXPECT_EQ(error.code(), Code::keyViolation);
    cursor["Name"] = "c";
    return ErrorAnswer::retry;
  };
  cursor.post();
  EXPECT_EQ(cursor["Name"].asText(), "c");
  EXPECT_EQ(cursor.recordCount(), 2u);
}

// The change is saved before anybody hears of the row that comes up after it.
TEST_F(CursorEventsTest, AnErrorBehindASavedPostIsNotTriedAgain) {
  Cursor cursor(database(), "Cust");
  cursor.open();
  cursor.events.onPostError = [](const StoreError&) { return ErrorAnswer::retry; };
  int raised = 0;
  cursor.events.afterScroll = [&] {
    if (++raised == 1) throw StoreError(Code::recordLocked, "by a look at another table");
  };
  cursor.insert();
  cursor["Name"] = "a";
  (void)codeOf([&] { cursor.post(); });
  cursor.events = {};
  EXPECT_EQ(cursor.state(), CursorState::browse);
  cursor.first();
  EXPECT_EQ(cursor.recordCount(), 1u);
  EXPECT_EQ(cursor["Name"].asText(), "a");
}

TEST_F(CursorEventsTest, RequiredFieldsMayStayEmptyWhileCopying) {
  Cursor cursor(database(), "Cust");
  cursor.open();
  cursor.insert();
  cursor["Group"] = 1;
  EXPECT_EQ(codeOf([&] { cursor.post(); }), Code::required);
  EXPECT_EQ(cursor.state(), CursorState::insert);
  {
    const Database::CopyScope copying(database());
    cursor.post();
  }
  cursor.edit();
  cursor["Group"] = 2;
  EXPECT_EQ(codeOf([&] { cursor.post(); }), Code::required);
  cursor.events.beforePost = [&] { cursor["Name"] = "given"; };
  cursor.post();
  EXPECT_EQ(cursor["Name"].asText(), "given");
}

TEST_F(CursorEventsTest, CalculatedAndLookedUpFieldsFollowTheRowAndTheFilter) {
  Cursor names(database(), "Cust"), cursor(database(), "Cust");
  names.open();
  add(names, "one");
  add(names, "two", 1);
  add(names, "three", 2);
  int calculated = 0;
  cursor.addCalculated({"Twice", FieldType::integer});
  cursor.addLookup({"GroupName", FieldType::string, 20}, "Group", names, "ID", "Name");
  cursor.events.onCalculate = [&] {
    ++calculated;
    cursor.setCalculated("Twice", cursor["Group"].isNull() ? Value() : Value(cursor["Group"].asInt() * 2));
  };
  cursor.open();
  EXPECT_TRUE(cursor["Twice"].isNull());
  EXPECT_TRUE(cursor["GroupName"].isNull());
  cursor.next();
  EXPECT_EQ(cursor["Twice"].asInt(), 2);
  EXPECT_EQ(cursor["GroupName"].asText(), "one");
  EXPECT_EQ(cursor["Twice"].asInt(), 2);
  EXPECT_EQ(calculated, 2);
  cursor.edit();
  cursor["Group"] = 3;
  EXPECT_EQ(cursor["Twice"].asInt(), 6);
  EXPECT_EQ(cursor["GroupName"].asText(), "three");
  EXPECT_EQ(codeOf([&] { cursor["Twice"] = 1; }), Code::badValue);
  cursor.cancel();
  EXPECT_EQ(cursor["Twice"].asInt(), 2);
  cursor.events.onFilter = [&] { return !cursor["Twice"].isNull() && cursor["GroupName"].asText() != "one"; };
  cursor.setFiltered(true);
  EXPECT_EQ(cursor.recordCount(), 1u);
  EXPECT_EQ(cursor["Name"].asText(), "three");
  EXPECT_FALSE(cursor.goTo(2));
  EXPECT_EQ(cursor["Twice"].asInt(), 4);
  EXPECT_TRUE(cursor.locate("GroupName", {"two"}));
}

TEST_F(CursorEventsTest, AFilterTextReadsEveryFieldOfTheCursor) {
  Cursor names(database(), "Cust"), cursor(database(), "Cust");
  names.open();
  for (const char* name : {"one", "two", "three", "four"}) add(names, name, names.recordCount() + 1);
  names.edit();
  names["Notes"] = "pays late";
  names.post();
  cursor.addCalculated({"Rest", FieldType::integer});
  cursor.addLookup({"Of", FieldType::string, 20}, "Group", names, "ID", "Name");
  cursor.events.onCalculate = [&] { cursor.setCalculated("Rest", 10 - cursor["Group"].asInt()); };
  cursor.setFilter("Rest >= 7 AND of <> 'two'");
  cursor.setFiltered(true);
  cursor.open();
  EXPECT_EQ(cursor.recordCount(), 2u);
  cursor.edit();
  cursor["Group"] = 8;  // Rest is 2 then, and nobody is called by that number
  cursor.post();
  EXPECT_EQ(cursor["Name"].asText(), "three");
  EXPECT_EQ(cursor.recordCount(), 1u);
  cursor.setFilter("NOTES LIKE '%late' AND Cust.Rest = 6");
  EXPECT_EQ(cursor["Name"].asText(), "four");
  cursor.setFilter("Notes = null");
  EXPECT_EQ(cursor.recordCount(), 3u);
  cursor.events.onFilter = [&] { return cursor["Name"].asText() > "p"; };
  EXPECT_EQ(cursor.recordCount(), 2u);
  cursor.setFilter(" ");
  EXPECT_EQ(cursor.recordCount(), 2u);
}

TEST_F(CursorEventsTest, AFilterTextThatCannotBeIsRefusedAndTheEarlierOneStays) {
  Cursor cursor(database(), "Cust");
  cursor.open();
  for (const char* name : {"a", "b", "c"}) add(cursor, name, cursor.recordCount());
  cursor.setFiltered(true);
  cursor.setFilter("\"Group\" <> 0");
  struct Bad {
    const char* text;
    int column;
    Code code;
  };
  constexpr Bad kBad[] = {{"\"Group\" = ", 11, Code::badStatement},
                          {"\"Group\" = 1)", 12, Code::badStatement},
                          {"\"Group\" = 1 AND Nowhere = 2", 17, Code::noSuchField},
                          {"Other.ID = 1", 1, Code::noSuchField},
                          {"ID = :G", 6, Code::badStatement},
                          {"ID IN (SELECT ID FROM Cust)", 1, Code::badStatement},
                          {"SUM(ID) = 1", 1, Code::badStatement},
                          {"Name = 1", 1, Code::typeMismatch},
                          {"ID = 'x'", 6, Code::badValue},
                          {"ID", 1, Code::typeMismatch}};
  for (const Bad& bad : kBad) {
    try {
      cursor.setFilter(bad.text);
      ADD_FAILURE() << bad.text;
    } catch (const StatementError& error) {
      EXPECT_EQ(error.code(), bad.code) << bad.text << ": " << error.what();
      EXPECT_EQ(error.column(), bad.column) << bad.text << ": " << error.what();
    }
    EXPECT_EQ(cursor.filter(), "\"Group\" <> 0");
    EXPECT_EQ(cursor.recordCount(), 2u);
  }
  cursor.close();
  cursor.setFilter("Nowhere = 2");
  for (int tries = 0; tries < 2; ++tries) EXPECT_THROW(cursor.open(), StatementError);
  EXPECT_FALSE(cursor.isOpen());
  cursor.setFilter("\"Group\" = 2");
  int arrivals = 0;
  cursor.events.afterScroll = [&] { ++arrivals; };
  cursor.open();
  EXPECT_EQ(arrivals, 1);
  EXPECT_EQ(cursor["Name"].asText(), "c");
}

// Rows are read ahead, but only the row whose turn has come may raise; and a condition that guards another is asked
// first, whatever an index could tell.
TEST_F(CursorEventsTest, AnErrorOfAFilterIsRaisedAtItsRow) {
  Cursor cursor(database(), "Line");
  cursor.open();
  for (const int amount : {5, 10, 0, 4}) {
    cursor.insert();
    cursor["Amount"] = amount;
    cursor["Cust"] = amount;
    cursor.post();
  }
  cursor.setFiltered(true);
  cursor.setFilter("20 / Amount > 1");
  EXPECT_EQ(cursor["Amount"].asInt(), 5);
  EXPECT_TRUE(cursor.next());
  EXPECT_EQ(codeOf([&] { cursor.next(); }), Code::badValue);
  EXPECT_EQ(cursor["Amount"].asInt(), 10);
  EXPECT_EQ(codeOf([&] { (void)cursor.recordCount(); }), Code::badValue);
  cursor.setFilter("Amount <> 0 AND 20 / Amount > 4");
  EXPECT_EQ(cursor.recordCount(), 1u);
  cursor.setIndex("ByCust");
  EXPECT_EQ(codeOf([&] { cursor.setFilter("20 / Amount > 4 AND Cust = 4"); }), Code::badValue);
  cursor.setFilter("Cust = 4 AND 20 / Amount > 4");
  EXPECT_EQ(cursor.recordCount(), 1u);
}

TEST_F(CursorEventsTest, MemosAreReadFromWhereTheyAreNow) {
  SimProcess two(disk_, clock_, settings_, "BERT");
  two.open();
  Cursor mine(database(), "Cust"), theirs(two.database(), "Cust");
  mine.open();
  add(mine, "a");
  mine.edit();
  mine["Notes"] = std::string(3000, 'x');
  EXPECT_EQ(mine["Notes"].asText().size(), 3000u);
  mine.cancel();
  EXPECT_TRUE(mine["Notes"].isNull());
  mine.edit();
  mine["Notes"] = std::string(3000, 'x');
  mine.post();
  theirs.open();
  for (int size : {1, 700, 5000, 600, 0}) {
    theirs.edit();
    theirs["Notes"] = std::string(static_cast<std::size_t>(size), 'y');
    theirs.post();
    add(theirs, "row " + std::to_string(size));
    theirs.first();
    // The row that mine stands on is old, its content is not.
    EXPECT_EQ(mine["Notes"].asText(), std::string(static_cast<std::size_t>(size), 'y'));
    EXPECT_EQ(codeOf([&] { mine.edit(); }), Code::recordChanged);
    mine.rereadRow();
    mine.edit();
    EXPECT_EQ(codeOf([&] { theirs.edit(); }), Code::recordLocked);
    mine.cancel();
  }
  theirs.remove();
  EXPECT_TRUE(mine["Notes"].isNull());
}

TEST_F(CursorEventsTest, DetailsFollowTheirMastersBuffer) {
  Cursor cust(database(), "Cust"), lines(database(), "Line", follows{cust, "ID", "ByCust"}), all(database(), "Line");
  cust.open();
  all.open();
  lines.open();
  EXPECT_TRUE(lines.isEmpty());
  EXPECT_EQ(codeOf([&] { lines.insert(); }), Code::notEditing);
  for (const char* name : {"a", "b"}) add(cust, name);
  for (const int owner : {1, 1, 1, 2}) {
    all.insert();
    all["Cust"] = owner;
    all["Amount"] = 5;
    all.post();
  }
  all.insert();
  all["Amount"] = 9;  // of nobody
  all.post();
  cust.first();
  EXPECT_EQ(lines.recordCount(), 3u);
  // A sum over the lines, kept in the master while it is being edited, does not move the lines.
  cust.edit();
  int steps = 0, sum = 0;
  for (lines.first(); !lines.eof() && ++steps < 10; lines.next()) {
    sum += lines["Amount"].asInt();
    cust["Group"] = sum;
  }
  EXPECT_EQ(sum, 15);
  EXPECT_EQ(steps, 3);
  lines.insert();
  EXPECT_EQ(lines["Cust"].asInt(), 1);
  lines["Amount"] = 6;
  cust.next();  // posts both
  EXPECT_EQ(lines.recordCount(), 1u);
  EXPECT_EQ(all.recordCount(), 6u);
  cust.insert();
  EXPECT_EQ(lines.recordCount(), 1u);  // null matches the line of nobody, and only that
  EXPECT_EQ(lines["Amount"].asInt(), 9);
  cust["ID"] = 2;
  EXPECT_EQ(lines.recordCount(), 1u);
  EXPECT_EQ(lines["Amount"].asInt(), 5);
  cust.cancel();
  cust.first();
  EXPECT_EQ(lines.recordCount(), 4u);
  cust.close();
  EXPECT_TRUE(lines.isEmpty());
}

}  // namespace
}  // namespace quillon::store
