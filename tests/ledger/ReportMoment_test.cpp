// Figures that a report reads from several tables belong together.
#include <gtest/gtest.h>

#include <set>

#include "ledger/MakeReports.h"
#include "reports/Bands.h"
#include "reports/Report.h"
#include "support/PostedBooks.h"
#include "support/Schedule.h"
#include "support/SimProcess.h"
#include "support/Trials.h"

namespace quillon::ledger {
namespace {

// While another clerk posts, every report's lines lead from the opening to the balance.
TEST(ReportMoment, IsOneForAllFiguresWhileOthersPost) {
  const sim::Trials trials = sim::Trials::fromEnvironment();
  const std::uint64_t seed = trials.seed.value_or(1);
  SCOPED_TRACE(sim::Trials::repeating(seed, "test_ledger", "ReportMoment.*"));
  sim::SimDisk disk;
  sim::SimClock clock;
  sim::SimDesktop desktop;
  disk.process()->makeFolder(sim::kSharedFolder);
  {
    sim::SimProcess books(disk, clock, {});
    books.open();
    sim::makeBooks(books.database());
  }
  const auto files = disk.process(), others = disk.process();
  sim::Clerk reader(*files, clock, sim::kSharedFolder, desktop, 98),
      poster(*others, clock, sim::kSharedFolder, desktop, 99);
  constexpr int kVouchers = 40;
  std::set<Money> seen;
  bool posting = true;
  sim::Schedule schedule(clock, seed);
  schedule.watch(disk);
  schedule.add([&] {
    for (int i = 0; i < kVouchers; ++i) {
      poster.write({.period = {2025, 3},
                    .source = "AR",
                    .transType = "Pmt",
                    .date = Date(2025, 3, 1),
                    .lines = {sim::lineOf(1, Money::fromRaw(5)), sim::lineOf(2, Money::fromRaw(-5))}});
      EXPECT_TRUE(poster.postAll().ok) << poster.person.takeHeard();
    }
    posting = false;
  });
  schedule.add([&] {
    for (int i = 0; posting && i < 10 * kVouchers; ++i) {
      const ReportPtr report = makeTrptGeneralLedgerSummary(reader.session);
      reports::Bands bands(reader.session.app().formats());
      report->tell(bands, {.values = {{"year", store::Value(2025)}}});
      const auto figure = [&](std::size_t column) { return bands.columns.at(column).value().asMoney(); };
      for (bool found = report->first(); found; found = report->next()) {
        EXPECT_EQ(figure(2) + figure(3) - figure(4), figure(5));
        seen.insert(figure(5));
      }
    }
  });
  schedule.run();
  schedule.rethrow();
  EXPECT_GT(seen.size(), 20u) << "the two did not meet";
}

}  // namespace
}  // namespace quillon::ledger
