// A company with two large tables that a bad disk has damaged, repaired and then optimized table by table.
#include <string>

#include "base/Errors.h"
#include "bench/Bench.h"
#include "bench/Ours.h"
#include "bench/PeakMemory.h"
#include "bench/Scratch.h"
#include "bench/Shapes.h"
#include "bench/Timing.h"
#include "store/Verify.h"
#include "store/pages/Page.h"
#include "store/schema/CreateCompany.h"

namespace quillon::bench {
namespace {

constexpr const char* kTables[] = {"Large1", "Large2"};

void fill(const std::string& folder, std::int64_t rows) {
  Ours ours(folder);
  store::createCompanyTables(ours.database);
  for (const char* table : kTables) {
    ours.database.createTable(glHist(kAllGlHistIndexes, table));
    store::Cursor cursor(ours.database, table);
    cursor.open();
    ours.database.startTransaction({table});
    for (const Row& row : glHistRows(rows / 2)) insert(cursor, row);
    ours.database.commit();
  }
}

// A page of records and one of an index in each table.
void damage(const std::string& folder) {
  store::DiskFileSystem files;
  for (const std::string table : kTables)
    for (const char* extension : {".DAT", ".IDX"}) {
      const auto file = files.open(folder + "/" + table + extension, store::OpenMode::existing);
      const std::uint64_t pages = file->size() / store::kPageSize;
      file->write(pages / 2 * store::kPageSize + 1000, std::as_bytes(std::span("damage")));
    }
}

std::string mebibytes(const std::string& folder) {
  constexpr std::uint64_t kMiB = 1 << 20;
  std::uint64_t bytes = 0;
  for (const char* extension : {".DAT", ".IDX", ".BLB"}) bytes += bytesOf(folder, extension);
  return std::to_string((bytes + kMiB / 2) / kMiB) + " MiB";
}

std::uint64_t rowsIn(const std::string& folder) {
  Ours ours(folder);
  std::uint64_t rows = 0;
  for (const char* table : kTables) {
    store::Cursor cursor(ours.database, table);
    cursor.open();
    rows += cursor.recordCount();
  }
  return rows;
}

void measure(Bench& bench, const char* name, const std::string& folder,
             const std::function<void(store::Database&, const std::string& table)>& deed) {
  const std::string before = mebibytes(folder);
  Stopwatch watch;
  watch.start();
  const double peak = inProcesses({[&] {
    forgetPeak();
    Ours ours(folder);
    for (const std::string& table : ours.database.tableNames()) deed(ours.database, table);
    return peakMemory();
  }})[0];
  watch.stop();
  bench.report.add({name,
                    watch.seconds(),
                    {},
                    "s",
                    0,
                    "79 tables, two of 16 indexes: " + before + " before, " + mebibytes(folder) + " after with " +
                        std::to_string(rowsIn(folder)) + " of " + std::to_string(bench.rows()) + " rows; peak " +
                        std::to_string(static_cast<int>(peak)) + " MiB"});
}

}  // namespace

void maintain(Bench& bench) {
  const std::string folder = emptyFolder(bench.folder() + "/maintain");
  fill(folder, bench.rows());
  damage(folder);
  measure(bench, "repair", folder,
          [](store::Database& database, const std::string& table) { database.repairTable(table); });
  for (const std::string table : kTables)
    for (const char* extension : {".DAT", ".IDX", ".BLB"})
      store::DiskFileSystem().remove(folder + "/" + table + extension + store::kDamagedSuffix);
  measure(bench, "optimize", folder, [](store::Database& database, const std::string& table) {
    database.optimizeTable(table, {.keepOld = false});
  });
  Ours ours(folder);
  if (!store::verifyOpen(ours.database).clean()) throw Error("The repaired tables are not sound");
  emptyFolder(folder);
}

}  // namespace quillon::bench
