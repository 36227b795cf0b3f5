// Inserts into the ledger's history: many in one transaction with its commit, and single ones that each reach the disk.
#include <string>

#include "bench/Bench.h"
#include "bench/Scratch.h"
#include "bench/Shapes.h"
#include "bench/Theirs.h"
#include "bench/Timing.h"
#include "store/journal/CommitProtocol.h"

namespace quillon::bench {
namespace {

constexpr std::int64_t kRows = 100'000;
constexpr int kFive = 5;

void insertMany(Bench& bench, int indexes, const char* name) {
  const store::TableDef table = glHist(indexes);
  const std::vector<Row> rows = glHistRows(bench.scaled(kRows));
  const std::string folder = bench.folder() + "/insert";
  const Pair pair = alternate(
      3, static_cast<std::int64_t>(rows.size()),
      [&](int, Stopwatch& watch) {
        Ours ours(emptyFolder(folder));
        ours.database.createTable(table);
        store::Cursor cursor(ours.database, "GLHist");
        cursor.open();
        watch.start();
        ours.database.startTransaction({"GLHist"});
        for (const Row& row : rows) insert(cursor, row);
        ours.database.commit();
        watch.stop();
        return static_cast<std::int64_t>(cursor.recordCount());
      },
      [&](int, Stopwatch& watch) {
        Theirs theirs(emptyFolder(folder) + "/glhist.db");
        createTheirs(theirs, table);
        Prepared statement(theirs, insertStatement(table));
        watch.start();
        theirs.run("BEGIN");
        for (const Row& row : rows) insert(statement, row);
        theirs.run("COMMIT");
        watch.stop();
        Prepared count(theirs, "SELECT COUNT(*) FROM GLHist");
        count.step();
        return count.number(0);
      });
  emptyFolder(folder);
  bench.report.add({name, pair.ours, pair.theirs, "us a row", 1,
                    std::to_string(rows.size()) + " rows in a transaction, " + std::to_string(indexes) + " indexes"});
}

}  // namespace

void insertGlHist(Bench& bench) { insertMany(bench, kAllGlHistIndexes, "insert-glhist"); }
void insertFive(Bench& bench) { insertMany(bench, kFive, "insert-5"); }

void insertDurable(Bench& bench) {
  constexpr int kRounds = 4;
  const store::TableDef table = glHist(kFive);
  const std::int64_t count = bench.scaled(2'000) / kRounds;
  const std::vector<Row> rows = glHistRows(count);
  const std::string folder = emptyFolder(bench.folder() + "/durable");
  Ours ours(folder);
  ours.database.createTable(table);
  store::Cursor cursor(ours.database, "GLHist");
  cursor.open();
  Theirs theirs(folder + "/glhist.db");
  createTheirs(theirs, table);
  Prepared statement(theirs, insertStatement(table));
  const std::uint64_t before = ours.database.protocol()->syncs();
  const Pair pair = alternate(
      kRounds, count,
      [&](int, Stopwatch& watch) {
        watch.start();
        for (const Row& row : rows) insert(cursor, row);
        watch.stop();
        return std::int64_t{0};
      },
      [&](int, Stopwatch& watch) {
        watch.start();
        for (const Row& row : rows) insert(statement, row);
        watch.stop();
        return std::int64_t{0};
      });
  const double syncs = static_cast<double>(ours.database.protocol()->syncs() - before);
  bench.report.add({"insert-durable", pair.ours, pair.theirs, "us a row", 1,
                    std::to_string(kRounds * count) + " single commits, 5 indexes"});
  bench.report.add({"syncs-per-post", syncs / static_cast<double>((kRounds + 1) * count), {}, "syncs a single Post"});
}

}  // namespace quillon::bench
