// What a row of the ledger's history takes on the disk, and how much memory a walk over a large table takes.
#include <string>

#include "base/Errors.h"
#include "bench/Bench.h"
#include "bench/PeakMemory.h"
#include "bench/Scratch.h"
#include "bench/Shapes.h"
#include "bench/Theirs.h"

namespace quillon::bench {
namespace {

constexpr double kMiB = 1 << 20;

}  // namespace

void space(Bench& bench) {
  const store::TableDef table = glHist(kAllGlHistIndexes);
  const std::vector<Row> rows = glHistRows(bench.scaled(100'000));
  const auto count = static_cast<double>(rows.size());
  const std::string folder = emptyFolder(bench.folder() + "/space"),
                    other = emptyFolder(bench.folder() + "/space.lite");
  {
    Ours ours(folder);
    ours.database.createTable(table);
    store::Cursor cursor(ours.database, "GLHist");
    cursor.open();
    ours.database.startTransaction({"GLHist"});
    for (const Row& row : rows) insert(cursor, row);
    ours.database.commit();
    Theirs theirs(other + "/glhist.db");
    createTheirs(theirs, table);
    Prepared statement(theirs, insertStatement(table));
    theirs.run("BEGIN");
    for (const Row& row : rows) insert(statement, row);
    theirs.run("COMMIT; PRAGMA wal_checkpoint(TRUNCATE)");
  }
  double tables = 0;
  for (const char* part : {".DAT", ".IDX", ".BLB"}) tables += static_cast<double>(bytesOf(folder, part));
  const double theirs = static_cast<double>(bytesOf(other));
  bench.report.add({"bytes-per-row", tables / count, theirs / count, "bytes", 0, "16 indexes, the table's files"});
  bench.report.add({"journal-size",
                    (static_cast<double>(bytesOf(folder)) - tables) / kMiB,
                    {},
                    "MiB",
                    0,
                    "one for the company, emptied by the last to close"});
  emptyFolder(folder);
  emptyFolder(other);
}

void memory(Bench& bench) {
  constexpr double kTimes = 10;
  const Bench::Items items = bench.items();
  const double bytes = static_cast<double>(bytesOf(items.folder, ".DAT") + bytesOf(items.folder, ".IDX"));
  const auto cache = static_cast<std::size_t>(bytes / kTimes);
  const double ours = inProcesses({[&] {
    forgetPeak();
    Ours side(items.folder, cache);
    store::Cursor cursor(side.database, "Item");
    cursor.open();
    cursor.setIndex("Shelf");
    std::int64_t rows = 0;
    for (cursor.first(); !cursor.eof(); cursor.next()) ++rows;
    if (rows != bench.rows()) throw Error("The walk missed rows");
    return peakMemory();
  }})[0];
  const double theirs = inProcesses({[&] {
    forgetPeak();
    Theirs side(items.file, cache);
    Prepared select(side, "SELECT Quantity, Price FROM Item ORDER BY Shelf");
    std::int64_t rows = 0;
    while (select.step()) ++rows;
    if (rows != bench.rows()) throw Error("The walk missed rows");
    return peakMemory();
  }})[0];
  const auto mebibytes = [](double size) { return std::to_string(static_cast<int>(size / kMiB + 0.5)); };
  bench.report.add({"peak-memory", ours, theirs, "MiB", 0,
                    "process walking " + mebibytes(bytes) + " MiB with a cache of a tenth, " +
                        mebibytes(static_cast<double>(cache)) + " MiB"});
}

}  // namespace quillon::bench
