// What people of one office do to each other, case by case: in many schedules, or step by step where time plays no
// part.
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "store/Cursor.h"
#include "support/Schedule.h"
#include "support/SimProcess.h"

namespace quillon::sim {
namespace {

using store::Code;
using store::Cursor;
using store::CursorState;
using store::FieldType;
using store::IndexOptions;
using store::TableDef;

constexpr int kRows = 12;

store::Settings settings(int tries, int wait) {
  store::Settings settings;
  settings.lockRetryCount = tries;
  settings.lockWaitTime = wait;
  return settings;
}

class CasesTest : public testing::Test {
 protected:
  CasesTest() {
    disk_.process()->makeFolder(kSharedFolder);
    SimProcess maker(disk_, clock_, {});
    maker.open();
    for (const char* table : {"Voucher", "Other"}) {
      maker.database().createTable(
          TableDef::of(table, {{"ID", FieldType::autoInc}, {"By", FieldType::integer}, {"V", FieldType::integer}},
                       {{"", "ID", IndexOptions::unique}, {"ByBy", "By;ID"}}));
      Cursor cursor(maker.database(), table);
      cursor.open();
      for (int i = 0; i < kRows; ++i) {
        cursor.insert();
        cursor["By"] = 0;
        cursor.post();
      }
    }
  }

  SimDisk disk_;
  SimClock clock_;
};

// Two people post all unposted vouchers at once, by a filter or by a range. A posted one falls out of it, so the walk
// calls Next only where the other one was in the way. Nothing is posted twice and nothing forgotten.
TEST_F(CasesTest, WalksThatPushRowsOutOfTheirFilterMeetEachRowOnce) {
  for (std::uint64_t seed = 1; seed <= 120; ++seed) {
    SimDisk disk = disk_.settled();
    SimClock clock;
    std::map<int, int> posted;
    Schedule schedule(clock, seed);
    schedule.watch(disk);
    for (int who = 1; who <= 2; ++who)
      schedule.add([&, who] {
        SimProcess process(disk, clock, settings(2, 1));
        process.open();
        Cursor cursor(process.database(), "Voucher");
        if (seed % 2 == 0) {
          cursor.events.onFilter = [&] { return cursor["By"].asInt() == 0; };
          cursor.setFiltered(true);
        }
        cursor.setIndex("ByBy");
        cursor.open();
        if (seed % 2 != 0) cursor.setRange({0}, {0});
        std::set<int> met;
        while (!cursor.isEmpty()) {
          for (cursor.first(); !cursor.eof();) {
            const int id = cursor["ID"].asInt();
            const Code code = codeOf([&] {
              cursor.edit();
              cursor["By"] = who;
              cursor.post();
            });
            if (code == Code{}) {
              EXPECT_TRUE(met.insert(id).second);
              ++posted[id];
              continue;
            }
            EXPECT_TRUE(code == Code::recordLocked || code == Code::recordChanged) << static_cast<int>(code);
            cursor.cancel();
            cursor.next();
          }
          clock.sleep(500);
          cursor.refresh();
        }
      });
    schedule.run();
    EXPECT_NO_THROW(schedule.rethrow());
    EXPECT_EQ(posted.size(), static_cast<std::size_t>(kRows));
    for (const auto& [id, times] : posted) EXPECT_EQ(times, 1) << id;
    ASSERT_FALSE(HasFailure()) << "seed " << seed;
  }
}

// An Edit waits for the end of another's transaction as long as its tries last, and then takes what was committed; a
// reader waits for nothing.
TEST_F(CasesTest, EditWaitsForATransactionThatEndsWithinTheTries) {
  for (const int milliseconds : {40, 400}) {
    for (std::uint64_t seed = 1; seed <= 30; ++seed) {
      SimDisk disk = disk_.settled();
      SimClock clock;
      Schedule schedule(clock, seed);
      schedule.watch(disk);
      bool started = false;
      schedule.add([&] {
        SimProcess process(disk, clock, settings(10, 10));
        process.open();
        Cursor cursor(process.database(), "Voucher");
        cursor.open();
        process.database().startTransaction({"Voucher"});
        cursor.last();
        cursor.edit();
        cursor["V"] = 7;
        cursor.post();
        started = true;
        clock.sleep(milliseconds * 1000);
        process.database().commit();
      });
      schedule.add([&] {
        SimProcess process(disk, clock, settings(10, 10));
        process.open();
        Cursor cursor(process.database(), "Voucher");
        cursor.open();
        while (!started) clock.sleep(1000);
        const auto before = clock.milliseconds();
        EXPECT_EQ(cursor.lookup("ID", {kRows}, "V").asInt(), 0);
        EXPECT_LE(clock.milliseconds() - before, 10);
        const Code code = codeOf([&] { cursor.edit(); });
        EXPECT_EQ(code, milliseconds < 100 ? Code{} : Code::recordLocked);
        EXPECT_EQ(cursor.state(), code == Code{} ? CursorState::edit : CursorState::browse);
        EXPECT_EQ(cursor.lookup("ID", {kRows}, "V").asInt(), code == Code{} ? 7 : 0);
        cursor.cancel();
      });
      schedule.run();
      EXPECT_NO_THROW(schedule.rethrow());
      ASSERT_FALSE(HasFailure()) << "seed " << seed << ", " << milliseconds << " ms";
    }
  }
}

TEST_F(CasesTest, ARollbackLeavesNoTraceButSpentRowIds) {
  SimProcess mine(disk_, clock_, settings(1, 1)), theirs(disk_, clock_, settings(1, 1));
  mine.open();
  theirs.open();
  Cursor cursor(mine.database(), "Voucher"), second(mine.database(), "Voucher"), outside(mine.database(), "Other"),
      other(theirs.database(), "Voucher");
  for (Cursor* each : {&cursor, &second, &outside, &other}) each->open();
  mine.database().startTransaction({"Voucher"});
  cursor.insert();
  cursor.post();
  const store::RowId spent = cursor.rowId();
  const store::Bookmark mark = cursor.bookmark();
  EXPECT_EQ(cursor["ID"].asInt(), kRows + 1);
  outside.edit();
  outside["V"] = 3;
  outside.post();
  second.last();
  EXPECT_EQ(second.rowId(), spent);
  second.edit();
  EXPECT_EQ(other.recordCount(), std::uint64_t{kRows});
  mine.database().rollback();
  EXPECT_EQ(second.state(), CursorState::browse);
  EXPECT_EQ(outside["V"].asInt(), 3);
  EXPECT_FALSE(cursor.goTo(mark));
  cursor.insert();
  cursor.post();
  EXPECT_EQ(cursor["ID"].asInt(), kRows + 1);
  EXPECT_NE(cursor.rowId(), spent);
  EXPECT_FALSE(second.goTo(mark));
  // A commit leaves cursors in edit, with their locks.
  mine.database().startTransaction({"Voucher"});
  cursor.first();
  cursor.edit();
  cursor["V"] = 5;
  mine.database().commit();
  EXPECT_EQ(cursor.state(), CursorState::edit);
  other.first();
  EXPECT_EQ(codeOf([&] { other.edit(); }), Code::recordLocked);
  EXPECT_EQ(codeOf([&] { other.lockTable(); }), Code::recordLocked);
  cursor.post();
  other.rereadRow();
  EXPECT_EQ(other["V"].asInt(), 5);
  EXPECT_EQ(codeOf([&] { other.edit(); }), Code{});
}

TEST_F(CasesTest, WholeTableOperationsNeedTheTableToThemselves) {
  SimProcess mine(disk_, clock_, settings(1, 1)), theirs(disk_, clock_, settings(1, 1));
  mine.open();
  theirs.open();
  const auto empty = [&] { mine.database().emptyTable("Voucher"); };
  const auto drop = [&] { mine.database().dropTable("voucher.DAT"); };
  for (SimProcess* holder : {&mine, &theirs}) {
    Cursor cursor(holder->database(), "Voucher");
    cursor.open();
    EXPECT_EQ(codeOf(empty), Code::tableInUse);
    EXPECT_EQ(codeOf(drop), Code::tableInUse);
    EXPECT_EQ(cursor.recordCount(), std::uint64_t{kRows});
  }
  EXPECT_EQ(codeOf(empty), Code{});
  Cursor cursor(theirs.database(), "Voucher");
  cursor.open();
  EXPECT_TRUE(cursor.isEmpty());
  cursor.insert();
  cursor.post();
  EXPECT_EQ(cursor["ID"].asInt(), 1);
  cursor.close();
  EXPECT_EQ(codeOf(drop), Code{});
  EXPECT_EQ(codeOf([&] { cursor.open(); }), Code::noSuchTable);
}

}  // namespace
}  // namespace quillon::sim
