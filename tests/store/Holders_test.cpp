// Naming the person in the way: right while the holder lives, silent about the dead, harmless where it cannot work.

#include "store/locks/Holders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "store/vfs/MemoryFileSystem.h"
#include "support/SimClock.h"

namespace quillon::store {
namespace {

class HoldersTest : public testing::Test {
 protected:
  HoldersTest() { files_.makeFolder("Co"); }

  std::unique_ptr<Holders> process(const std::string& user, const std::string& machine,
                                   const std::string& folder = "Co") {
    return std::make_unique<Holders>(Environment{files_, clock_, user, machine, 77}, folder);
  }
  static NotedLock record(RowId row) { return {LockKind::record, Holders::tableHash("JV"), row}; }
  static NotedLock whole(LockKind kind, std::string_view table = "JV") { return {kind, Holders::tableHash(table), 0}; }
  static std::string userOf(const std::optional<Holder>& holder) { return holder ? holder->user : "(nobody)"; }

  MemoryFileSystem files_;
  sim::SimClock clock_;
};

TEST_F(HoldersTest, NamesTheOtherProcessWhileItLivesAndHolds) {
  auto anna = process("ANNA", "PC-7");
  auto bert = process("BERT", "PC-8");
  auto carl = process("CARL", "PC-9");
  const std::int64_t since = clock_.unixSeconds();
  anna->note(record(5));
  clock_.advance(60'000'000);
  bert->note(record(6));
  const auto found = carl->find(record(5));
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->user, "ANNA");
  EXPECT_EQ(found->machine, "PC-7");
  EXPECT_EQ(found->process, 77);
  EXPECT_EQ(found->since, since);
  EXPECT_EQ(userOf(carl->find(record(6))), "BERT");
  EXPECT_EQ(userOf(carl->find(record(7))), "(nobody)");
  EXPECT_EQ(userOf(anna->find(record(5))), "(nobody)") << "one's own lock is no other's";
  anna->forget(record(5));
  EXPECT_EQ(userOf(carl->find(record(5))), "(nobody)");
  bert.reset();
  EXPECT_EQ(userOf(carl->find(record(6))), "(nobody)") << "the dead hold nothing";
  auto dora = process("DORA", "PC-8");
  EXPECT_EQ(userOf(carl->find(record(6))), "(nobody)") << "nor does who comes into their place";
}

TEST_F(HoldersTest, FindsWhateverStandsInTheWay) {
  auto anna = process("ANNA", "");
  auto bert = process("BERT", "");
  auto carl = process("CARL", "");
  anna->note(whole(LockKind::write));
  EXPECT_EQ(userOf(carl->find(record(1))), "ANNA") << "an edit waits for a transaction";
  bert->note(record(1));
  EXPECT_EQ(userOf(carl->find(record(1))), "BERT") << "the record's own holder comes first";
  EXPECT_EQ(userOf(carl->find(whole(LockKind::table))), "ANNA");
  anna->forget(whole(LockKind::write));
  EXPECT_EQ(userOf(carl->find(whole(LockKind::table))), "BERT");
  EXPECT_EQ(userOf(carl->find(whole(LockKind::write))), "(nobody)") << "a record lock bars no write";
  anna->note(whole(LockKind::exclusiveOpen, "gltransactions"));
  EXPECT_EQ(userOf(carl->find(whole(LockKind::exclusiveOpen, "GLTransactions"))), "ANNA");
  EXPECT_EQ(userOf(carl->find(whole(LockKind::exclusiveOpen, "GLTransaction"))), "(nobody)");
}

TEST_F(HoldersTest, MoreThanEightMoveUpAsOthersGo) {
  auto anna = process("ANNA", "");
  auto carl = process("CARL", "");
  for (RowId row = 1; row <= 20; ++row) anna->note(record(row));
  for (RowId row = 1; row <= 8; ++row) EXPECT_EQ(userOf(carl->find(record(row))), "ANNA") << row;
  anna->note(record(2));
  anna->forget(record(2));
  EXPECT_EQ(userOf(carl->find(record(2))), "ANNA") << "noted twice, forgotten once";
  for (RowId row = 1; row <= 12; ++row) anna->forget(record(row));
  for (RowId row = 1; row <= 12; ++row) EXPECT_EQ(userOf(carl->find(record(row))), "(nobody)") << row;
  for (RowId row = 13; row <= 20; ++row) EXPECT_EQ(userOf(carl->find(record(row))), "ANNA") << row;
  for (RowId row = 13; row <= 20; ++row) anna->forget(record(row));
  EXPECT_EQ(userOf(carl->find(whole(LockKind::table))), "(nobody)");
}

TEST_F(HoldersTest, WordsAreForAPerson) {
  ASSERT_EQ(::setenv("TZ", "UTC+2", 1), 0);
  ::tzset();
  auto anna = process("ANNA", "PC-7");
  auto carl = process("CARL", "");
  anna->note(record(5));  // at 22:13:20 UTC
  EXPECT_EQ(inTheWay(carl.get(), record(5)), "ANNA on PC-7 since 20:13");
  clock_.advance(24LL * 3'600'000'000);
  EXPECT_EQ(inTheWay(carl.get(), record(5)), "ANNA on PC-7 since 2023-11-14 20:13");
  EXPECT_EQ(inTheWay(carl.get(), record(6)), "another user");
  EXPECT_EQ(inTheWay(nullptr, record(5)), "another user");
  std::string name;
  for (int i = 0; i < 60; ++i) name += "\xE2\x82\xAC";  // three bytes each
  auto euro = process(name, name);
  euro->note(record(9));
  const auto found = carl->find(record(9));
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->user, name.substr(0, 120));
  EXPECT_EQ(found->machine, name.substr(0, 63));
  ::unsetenv("TZ");
  ::tzset();
}

TEST_F(HoldersTest, AnExclusiveOpenNamesThoseInTheFolder) {
  const NotedLock open = whole(LockKind::exclusiveOpen);
  auto anna = process("ANNA", "PC-7");
  EXPECT_EQ(inTheWay(anna.get(), open), "another user");
  auto bert = process("BERT", "PC-8");
  EXPECT_EQ(inTheWay(anna.get(), open), "BERT on PC-8");
  auto again = process("BERT", "PC-8");
  EXPECT_EQ(inTheWay(anna.get(), open), "BERT on PC-8") << "two programs of one person";
  auto carl = process("CARL", "");
  EXPECT_EQ(inTheWay(anna.get(), open), "one of BERT on PC-8 and CARL");
  auto dora = process("DORA", ""), emil = process("EMIL", "");
  EXPECT_EQ(inTheWay(anna.get(), open), "one of BERT on PC-8, CARL, DORA and 1 more");
  EXPECT_EQ(inTheWay(anna.get(), record(1)), "another user");
  bert.reset();
  again.reset();
  carl->note(open);
  EXPECT_THAT(inTheWay(anna.get(), open), testing::StartsWith("CARL since"));
}

TEST_F(HoldersTest, AMissingFolderOrAFullHouseOnlyMeansNoNames) {
  auto nowhere = process("ANNA", "", "None");
  nowhere->note(record(1));
  nowhere->forget(record(1));
  EXPECT_EQ(userOf(nowhere->find(record(1))), "(nobody)");
  std::vector<std::unique_ptr<Holders>> house;
  for (int i = 0; i < 251; ++i) house.push_back(process("USER" + std::to_string(i), ""));
  house[249]->note(record(3));
  house[250]->note(record(4));
  EXPECT_EQ(userOf(house[250]->find(record(3))), "USER249") << "who has no slot can still ask";
  EXPECT_EQ(userOf(house[0]->find(record(4))), "(nobody)");
}

}  // namespace
}  // namespace quillon::store
