#include "support/TroubledCompany.h"

namespace quillon::store {
namespace {

using namespace trouble;
using sim::Fault;
using sim::SimDisk;
using testing::AnyOf;
using testing::HasSubstr;

// Runs an action of a fresh process with the disk failing at its first, second, ... step, once or from there on, until
// it needs no more steps. `undone` and `done` look at the state afterwards in the same process.
struct FaultRun {
  std::function<void(Seat&)> prepare, act, undone, retry, done;
};

class FullDiskTest : public CompanyTest {
 protected:
  void run(const char* name, const FaultRun& plan);
  int refused_ = 0;
};

void FullDiskTest::run(const char* name, const FaultRun& plan) {
  const SimDisk whole = disk_.settled();
  for (const bool forGood : {false, true}) {
    bool needed = true;
    for (std::uint64_t step = 1; needed; ++step) {
      disk_ = whole.settled();
      const std::string when = std::string(name) + ", step " + std::to_string(step) + (forGood ? " and on" : "");
      {
        const auto seat = sit();
        plan.prepare(*seat);
        disk_.plan(Fault{Fault::Kind::noSpace, disk_.events() + step, forGood});
        const auto error = errorOf([&] { plan.act(*seat); });
        disk_.plan({});
        needed = disk_.faultsRaised() > 0;
        if (error) {
          ++refused_;
          const bool unknown = error->code() == Code::outcomeUnknown;
          EXPECT_TRUE(unknown || error->code() == Code::noSpace) << when << ": " << error->what();
          EXPECT_THAT(error->what(), AnyOf(HasSubstr("Free some space"), HasSubstr("Close the company"))) << when;
          if (unknown) continue;  // told by the next one who opens the folder, whom expectSound is
          plan.undone(*seat);
          expectWorks(seat->database, "Items", when);
          const auto again = errorOf([&] { plan.retry(*seat); });
          EXPECT_FALSE(again) << when << ", again: " << again->what();
        }
        plan.done(*seat);
        expectWorks(seat->database, "Cust", when);
        for (const Finding& finding : verifyOpen(seat->database).findings)
          ADD_FAILURE() << when << ": " << finding.table << ": " << finding.text;
      }
      expectSound(when);
      ASSERT_FALSE(HasFailure()) << when;
      ASSERT_LT(step, 500u);
    }
  }
  EXPECT_GT(refused_, 4) << name;
}

TEST_F(FullDiskTest, APostIsThereOrNot) {
  std::unique_ptr<Cursor> cursor;
  const auto has = [&](Seat& seat, bool wanted) {
    Cursor look(seat.database, "Cust");
    look.open();
    EXPECT_EQ(look.locate("Name", {"Full"}), wanted);
    EXPECT_EQ(look.recordCount(), wanted ? 151u : 150u);
  };
  run("post", {.prepare =
                   [&](Seat& seat) {
                     cursor = std::make_unique<Cursor>(seat.database, "Cust");
                     cursor->open();
                     fill(*cursor, "Full");
                     cursor->operator[]("Notes") = std::string(200'000, 'x');
                   },
               .act = [&](Seat&) { cursor->post(); },
               .undone =
                   [&](Seat& seat) {
                     EXPECT_EQ(cursor->state(), CursorState::insert);
                     has(seat, false);
                   },
               .retry = [&](Seat&) { cursor->post(); },
               .done =
                   [&](Seat& seat) {
                     has(seat, true);
                     cursor.reset();
                   }});
}

TEST_F(FullDiskTest, ATransactionIsThereOrNot) {
  const auto post = [](Seat& seat) {
    for (const char* table : {"Cust", "Items"}) {
      Cursor cursor(seat.database, table);
      cursor.open();
      for (int i = 0; i < 30; ++i) {
        fill(cursor, "Full" + std::to_string(i));
        cursor.post();
      }
    }
  };
  const auto expectCounts = [](Seat& seat, std::uint64_t count) {
    EXPECT_EQ(countOf(seat.database, "Cust"), count);
    EXPECT_EQ(countOf(seat.database, "Items"), count);
  };
  const auto whole = [&](Seat& seat) {
    seat.database.startTransaction({"Cust", "Items"});
    post(seat);
    seat.database.commit();
  };
  run("commit", {.prepare = [](Seat&) {},
                 .act = whole,
                 .undone =
                     [&](Seat& seat) {
                       if (seat.database.inTransaction()) seat.database.rollback();
                       expectCounts(seat, 150);
                     },
                 .retry = whole,
                 .done = [&](Seat& seat) { expectCounts(seat, 180); }});
}

TEST_F(FullDiskTest, ATableIsMadeOrNot) {
  const auto make = [](Seat& seat) { seat.database.createTable(definition("New")); };
  run("createTable", {.prepare = [](Seat&) {},
                      .act = make,
                      .undone = [](Seat& seat) { EXPECT_FALSE(seat.database.exists("New")); },
                      .retry = make,
                      .done = [](Seat& seat) { expectWorks(seat.database, "New", "made"); }});
}

}  // namespace
}  // namespace quillon::store
