// The traps of table locks, one by one.

#include "store/locks/TableLocks.h"

#include <gtest/gtest.h>

#include "store/vfs/MemoryFileSystem.h"
#include "support/WatchedFile.h"

namespace quillon::store {
namespace {

using Answer = TableLocks::Answer;
using WriteKind = TableLocks::WriteKind;

class TableLocksTest : public testing::Test {
 protected:
  bool free(std::uint64_t byte, LockMode mode = LockMode::exclusive) { return !probe_->lockedByOther(byte, 1, mode); }
  static std::uint64_t row(RowId id) { return kRecordBase + id; }

  MemoryFileSystem files_;
  std::unique_ptr<File> probe_ = files_.open("T.DAT", OpenMode::create);
  std::unique_ptr<File> hereFile_ = files_.open("T.DAT", OpenMode::create);
  std::unique_ptr<File> thereFile_ = files_.open("T.DAT", OpenMode::create);
  TableLocks here_{*hereFile_};
  TableLocks there_{*thereFile_};
  const int a_ = 0, b_ = 0, c_ = 0;
};

TEST_F(TableLocksTest, ATableLockLeavesNoHoleAndNoRest) {
  ASSERT_EQ(here_.tryRecord(&a_, 5), Answer::granted);
  ASSERT_EQ(here_.tryTable(&b_), Answer::granted);
  ASSERT_EQ(here_.tryRecord(&a_, 9), Answer::granted);  // own cursors pass an own table lock
  here_.releaseRecord(&a_, 5);
  EXPECT_EQ(there_.tryRecord(&c_, 5), Answer::heldElsewhere) << "a hole where the record lock was";
  here_.releaseTable(&b_);
  EXPECT_EQ(there_.tryRecord(&c_, 9), Answer::heldElsewhere) << "the record lock went with the table lock";
  EXPECT_EQ(there_.tryRecord(&c_, 8), Answer::granted);
  EXPECT_EQ(there_.tryRecord(&c_, 10), Answer::granted);
  EXPECT_EQ(there_.tryRecord(&c_, 5), Answer::granted);
  EXPECT_EQ(here_.tryTable(&b_), Answer::heldElsewhere);
  EXPECT_EQ(there_.tryRecord(&c_, 9), Answer::heldElsewhere) << "a refused table lock must not free own records";
  EXPECT_TRUE(free(kWriteByte) && free(kTransactionByte));
}

TEST_F(TableLocksTest, TableAndTransactionShareTheirBytes) {
  ASSERT_EQ(here_.tryWrite(WriteKind::transaction), Answer::granted);
  ASSERT_EQ(here_.tryTable(&a_), Answer::granted);
  ASSERT_EQ(here_.tryTable(&a_), Answer::granted);
  here_.releaseWrite(WriteKind::transaction);
  EXPECT_TRUE(there_.inTransactionElsewhere());
  EXPECT_EQ(there_.tryWrite(WriteKind::post), Answer::heldElsewhere);
  ASSERT_EQ(here_.tryWrite(WriteKind::transaction), Answer::granted);
  here_.releaseTable(&a_);
  EXPECT_FALSE(free(row(1))) << "counted: one is left";
  here_.releaseTable(&a_);
  EXPECT_TRUE(free(row(1)));
  EXPECT_TRUE(there_.inTransactionElsewhere());
  EXPECT_EQ(there_.tryTable(&c_), Answer::heldElsewhere);
  here_.releaseWrite(WriteKind::transaction);
  EXPECT_EQ(there_.tryTable(&c_), Answer::granted);
}

TEST_F(TableLocksTest, APostIsNoTransactionAndARefusedOneLeavesNoTrace) {
  ASSERT_EQ(here_.tryWrite(WriteKind::post), Answer::granted);
  EXPECT_FALSE(there_.inTransactionElsewhere());
  EXPECT_EQ(there_.tryWrite(WriteKind::transaction), Answer::heldElsewhere);
  EXPECT_FALSE(here_.inTransactionElsewhere()) << "the refused transaction kept its first byte";
  EXPECT_EQ(there_.tryTable(&c_), Answer::heldElsewhere);
  EXPECT_FALSE(here_.inTransactionElsewhere());
  EXPECT_TRUE(free(row(1)));
}

TEST_F(TableLocksTest, AnExclusiveOpenStepsDownWithoutAGap) {
  ASSERT_EQ(here_.tryOpen(&a_, false), Answer::granted);
  ASSERT_EQ(here_.tryOpen(&b_, true), Answer::granted);
  EXPECT_EQ(here_.tryOpen(&c_, true), Answer::heldHere);
  EXPECT_EQ(there_.tryOpen(&c_, false), Answer::heldElsewhere);
  here_.close(&b_);
  EXPECT_FALSE(free(kOpenByte)) << "the ordinary cursor is still there";
  EXPECT_EQ(there_.tryOpen(&c_, true), Answer::heldElsewhere);
  EXPECT_EQ(there_.tryOpen(&c_, false), Answer::granted);
  EXPECT_EQ(here_.tryOpen(&b_, true), Answer::heldElsewhere);
  EXPECT_TRUE(free(kOpenByte, LockMode::shared)) << "a refused exclusive open leaves the shared one";
  EXPECT_FALSE(here_.heldExclusively());
}

// A close that cannot convert may bar others for longer, but must neither raise nor let them in.
TEST_F(TableLocksTest, AStepDownThatFailsStaysOnTheSafeSide) {
  sim::WatchedFile file(files_.open("T.DAT", OpenMode::create));
  TableLocks locks(file);
  ASSERT_EQ(locks.tryOpen(&a_, true), Answer::granted);
  ASSERT_EQ(locks.tryOpen(&b_, false), Answer::granted);
  file.raiseAtLock(1);
  locks.close(&a_);
  EXPECT_EQ(there_.tryOpen(&c_, true), Answer::heldElsewhere);
  EXPECT_EQ(locks.tryOpen(&a_, true), Answer::granted);
  locks.close(&a_);
  EXPECT_EQ(there_.tryOpen(&c_, false), Answer::granted);
  locks.close(&b_);
  there_.close(&c_);
  EXPECT_TRUE(free(kOpenByte));
}

TEST_F(TableLocksTest, CloseFreesTheOwnersLocksOnly) {
  ASSERT_EQ(here_.tryOpen(&a_, false), Answer::granted);
  ASSERT_EQ(here_.tryOpen(&b_, false), Answer::granted);
  ASSERT_EQ(here_.tryTable(&a_), Answer::granted);
  ASSERT_EQ(here_.tryTable(&a_), Answer::granted);
  ASSERT_EQ(here_.tryRecord(&a_, 1), Answer::granted);
  ASSERT_EQ(here_.tryRecord(&b_, 2), Answer::granted);
  EXPECT_EQ(here_.tryRecord(&b_, 1), Answer::heldHere);
  EXPECT_TRUE(here_.recordHeldHere(1, &b_));
  EXPECT_FALSE(here_.recordHeldHere(1, &a_));
  here_.close(&a_);
  EXPECT_EQ(there_.tryRecord(&c_, 1), Answer::granted);
  EXPECT_EQ(there_.tryRecord(&c_, 2), Answer::heldElsewhere);
  EXPECT_TRUE(here_.holdsRecord(&b_, 2));
  EXPECT_EQ(there_.tryWrite(WriteKind::transaction), Answer::granted);
}

#ifndef NDEBUG
using TableLocksDeathTest = TableLocksTest;

TEST_F(TableLocksDeathTest, ReleasingWhatIsNotHeldIsAFault) {
  ASSERT_EQ(here_.tryRecord(&a_, 1), Answer::granted);
  EXPECT_DEATH(here_.releaseRecord(&b_, 1), "");
  EXPECT_DEATH(here_.releaseTable(&a_), "");
  EXPECT_DEATH(here_.releaseWrite(WriteKind::post), "");
  EXPECT_DEATH(here_.close(&a_), "");
}
#endif

}  // namespace
}  // namespace quillon::store
