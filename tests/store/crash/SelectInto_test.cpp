// SELECT ... INTO leaves the table that was there, or none, or all of the new one.
//
// Method: the statement runs once on a simulated disk to count its events; then for each of them it runs again and its
// process ends there, with the system (a power cut, with what was not safe kept, lost or torn) or without it. Who comes
// next must see one of the two, sound, and can run the statement.
#include <gtest/gtest.h>

#include <set>

#include "store/Cursor.h"
#include "store/Errors.h"
#include "store/Query.h"
#include "support/SimProcess.h"

namespace quillon::sim {
namespace {

constexpr int kRows = 40;
constexpr const char* kInto = "SELECT N, N * 2 AS D, M INTO Copy FROM T ORDER BY N";

void run(SimProcess& process, const std::string& text) { store::Query(process.database(), text).execute(); }

// "none", or the rows and columns; a mixture of two tables is neither's.
std::string seen(SimProcess& process) {
  if (!process.database().exists("Copy")) return "none";
  store::Query query(process.database(), "SELECT * FROM Copy");
  query.open();
  std::string text = query.fieldCount() == 3 ? "new" : "old";
  int rows = 0;
  for (; !query.eof(); query.next(), ++rows)
    if (query.fieldCount() == 3 && query.field(2).value().toText() != std::string(2000, 'm')) text += " damaged";
  return text + " " + std::to_string(rows);
}

SimDisk company(bool replaces) {
  SimDisk disk;
  SimClock clock;
  disk.process()->makeFolder(kSharedFolder);
  SimProcess process(disk, clock, {});
  process.open();
  run(process, "CREATE TABLE T (N INTEGER, M MEMO)");
  {
    store::Database::BulkScope bulk(process.database());
    store::Cursor cursor(process.database(), "T");
    cursor.open();
    for (int i = 0; i < kRows; ++i) {
      cursor.append();
      cursor["N"] = i;
      cursor["M"] = std::string(2000, 'm');
      cursor.post();
    }
  }
  if (replaces) run(process, "CREATE TABLE Copy (Old INTEGER PRIMARY KEY)");
  if (replaces) run(process, "INSERT INTO Copy VALUES (1), (2)");
  process.close();
  return disk.settled();
}

class SelectInto : public testing::TestWithParam<bool> {};

TEST_P(SelectInto, IsThereAsAWholeOrNotAtAll) {
  const SimDisk books = company(GetParam());
  const std::string before = GetParam() ? "old 2" : "none", after = "new " + std::to_string(kRows);
  SimClock clock;
  std::set<std::string> met;
  std::uint64_t start = 0, end = 0;
  const auto attempt = [&](SimDisk& disk, std::uint64_t at) {
    SimProcess process(disk, clock, {});
    process.open();
    start = disk.events();
    if (at > 0) disk.stopAt(at);
    try {
      run(process, kInto);
    } catch (const ProcessKilled&) {
    }
    end = disk.events();
  };
  {
    SimDisk disk = books.settled();
    attempt(disk, 0);
  }
  for (std::uint64_t at = start + 1, last = end; at <= last; ++at) {
    SimDisk disk = books.settled();
    attempt(disk, at);
    const CutChooser cuts(disk, 3, at);
    for (std::size_t i = 0; i <= cuts.count(); ++i) {
      SimDisk left = i == cuts.count() ? disk.settled() : disk.imageAfterCut(cuts.choice(i));
      SCOPED_TRACE("ended at event " + std::to_string(at) + ", cut " + std::to_string(i));
      SimProcess heir(left, clock, {});
      heir.open();
      const std::string found = seen(heir);
      ASSERT_TRUE(found == before || found == after) << found;
      met.insert(found);
      if (at % 5 != 0) continue;
      run(heir, kInto);
      ASSERT_EQ(seen(heir), after);
      heir.close();
    }
  }
  EXPECT_EQ(met.size(), 2u);
}

INSTANTIATE_TEST_SUITE_P(OverATable, SelectInto, testing::Bool());

// A disk that fails, or a value that does not fit, leaves the old table and nothing beside it.
TEST(SelectInto, LeavesWhatWasThereWhereItFails) {
  SimDisk disk = company(true);
  SimClock clock;
  SimProcess process(disk, clock, {});
  process.open();
  disk.plan(Fault{.kind = Fault::Kind::noSpace, .at = disk.events() + 20, .forGood = true});
  EXPECT_THROW(run(process, kInto), store::StoreError);
  EXPECT_GT(disk.faultsRaised(), 0);
  disk.plan({});
  EXPECT_EQ(seen(process), "old 2");
  EXPECT_THROW(run(process, "SELECT N / (N - 25) AS D INTO Copy FROM T"), store::StoreError);
  EXPECT_EQ(seen(process), "old 2");
  run(process, kInto);
  EXPECT_EQ(seen(process), "new " + std::to_string(kRows));
}

}  // namespace
}  // namespace quillon::sim
