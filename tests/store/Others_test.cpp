#include "store/journal/Journal.h"
#include "support/TroubledCompany.h"

namespace quillon::store {
namespace {

using namespace trouble;
using testing::HasSubstr;

class OthersTest : public CompanyTest {
 protected:
  OthersTest() : anna_(sit("ANNA")), bert_(sit("BERT")) {
    for (Cursor* cursor : {&annas_, &berts_}) cursor->open();
  }
  void expectHeld(const std::optional<StoreError>& error, Code code) {
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), code) << error->what();
    EXPECT_THAT(error->what(), HasSubstr("'Cust'"));
    EXPECT_THAT(error->what(), HasSubstr("ANNA on PC"));
    expectWorks(bert_->database, "Items", "beside the lock");
  }

  std::unique_ptr<Seat> anna_, bert_;
  Cursor annas_{anna_->database, "Cust"}, berts_{bert_->database, "Cust"};
};

TEST_F(OthersTest, LocksOfOthersAreToldWithTheirHolder) {
  annas_.edit();
  expectHeld(errorOf([&] { berts_.edit(); }), Code::recordLocked);
  EXPECT_EQ(berts_.state(), CursorState::browse);
  annas_["Name"] = "Changed";
  annas_.post();
  const auto changed = errorOf([&] { berts_.edit(); });
  expectClear(changed, Code::recordChanged, "'Cust'");
  EXPECT_EQ(changed->number(), 8708);
  berts_.refresh();
  berts_.edit();
  berts_["Name"] = "name5";
  const auto twice = errorOf([&] { berts_.post(); });
  ASSERT_TRUE(twice);
  EXPECT_EQ(twice->number(), 9729);
  EXPECT_THAT(twice->what(), HasSubstr("'Cust'"));
  EXPECT_THAT(twice->what(), HasSubstr("'Name'"));
  EXPECT_EQ(berts_.state(), CursorState::edit);
  berts_["Name"] = "Free";
  berts_.post();
  EXPECT_TRUE(annas_.locate("Name", {"Free"}));

  annas_.lockTable();
  expectHeld(errorOf([&] { berts_.edit(); }), Code::recordLocked);
  expectHeld(errorOf([&] { bert_->database.startTransaction({"Items", "Cust"}); }), Code::recordLocked);
  EXPECT_FALSE(bert_->database.inTransaction());
  annas_.unlockTable();

  fill(berts_, "waits");
  anna_->database.startTransaction({"Cust"});
  expectHeld(errorOf([&] { berts_.post(); }), Code::recordLocked);
  EXPECT_EQ(berts_.state(), CursorState::insert);
  anna_->database.rollback();
  berts_.post();
  EXPECT_EQ(annas_.recordCount(), 151u);
}

TEST_F(OthersTest, ExclusiveOpensAreToldAsInUse) {
  annas_.close();
  berts_.close();
  annas_.setExclusive(true);
  annas_.open();
  const auto refused = errorOf([&] { berts_.open(); });
  expectHeld(refused, Code::tableInUse);
  EXPECT_EQ(refused->number(), 11013);
  EXPECT_FALSE(berts_.isOpen());
  annas_.close();
  berts_.open();
  EXPECT_EQ(errorOf([&] { annas_.open(); })->number(), 11013);
  EXPECT_EQ(errorOf([&] { bert_->database.emptyTable("Cust"); })->number(), 11013);
  EXPECT_EQ(errorOf([&] { anna_->database.emptyTable("Cust"); })->number(), 11013);
  EXPECT_EQ(errorOf([&] { bert_->database.dropTable("Cust"); })->number(), 11013);
  berts_.close();
  annas_.open();
  EXPECT_EQ(annas_.recordCount(), 150u);
}

TEST_F(OthersTest, AComputerThatHangsWhileItSavesIsToldAfterAMinute) {
  const auto journal = tool_->open(std::string(kFolder) + "/" + kJournalName, OpenMode::existing);
  ASSERT_TRUE(journal->lock(kCommitByte, 1, LockMode::exclusive));
  fill(berts_, "held up");
  expectClear(errorOf([&] { berts_.post(); }), Code::recordLocked, "company", "commit lock");
  EXPECT_EQ(berts_.state(), CursorState::insert);
  EXPECT_EQ(annas_.recordCount(), 150u);
  journal->unlock(kCommitByte, 1);
  berts_.post();
  EXPECT_EQ(annas_.recordCount(), 151u);
}

TEST_F(OthersTest, AComputerThatHangsWhileItReadsIsToldByTheTableThatItReads) {
  const auto dat = tool_->open(std::string(kFolder) + "/Cust.DAT", OpenMode::existing);
  ASSERT_TRUE(dat->lock(kApplyByte, 1, LockMode::shared));
  fill(berts_, "committed");
  berts_.post();  // the journal has it; the pages come later
  EXPECT_EQ(annas_.recordCount(), 150u);
  expectClear(errorOf([&] { berts_.refresh(); }), Code::recordLocked, "'Cust'");
  // Whoever saves has to bring the pages in first, whatever the table.
  Cursor items(bert_->database, "Items");
  expectClear(errorOf([&] { items.open(); }), Code::recordLocked, "'Cust'");
  dat->unlock(kApplyByte, 1);
  berts_.refresh();
  EXPECT_TRUE(berts_.locate("Name", {"committed"}));
  EXPECT_TRUE(annas_.locate("Name", {"committed"}));
}

}  // namespace
}  // namespace quillon::store
