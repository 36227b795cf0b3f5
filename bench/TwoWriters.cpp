// Two processes write single durable rows at once, each into a table of its own in the same company.
#include <algorithm>
#include <string>
#include <thread>

#include "bench/Bench.h"
#include "bench/Scratch.h"
#include "bench/Shapes.h"
#include "bench/Theirs.h"
#include "bench/Timing.h"

namespace quillon::bench {
namespace {

using Moment = std::chrono::steady_clock::time_point;

constexpr int kFive = 5;
constexpr std::chrono::milliseconds kGetReady{200};  // both have opened their tables by then

// Writes from `start` on; returns the seconds that it took.
template <typename Target>
double write(const std::vector<Row>& rows, Target& target, Moment start) {
  std::this_thread::sleep_until(start);
  for (const Row& row : rows) insert(target, row);
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double ourSide(const std::string& folder, const char* table, const std::vector<Row>& rows, Moment start) {
  Ours ours(folder);
  store::Cursor cursor(ours.database, table);
  cursor.open();
  return write(rows, cursor, start);
}

double theirSide(const std::string& file, const char* table, const std::vector<Row>& rows, Moment start) {
  Theirs theirs(file);
  Prepared statement(theirs, insertStatement(glHist(kFive, table)));
  return write(rows, statement, start);
}

// Both writers at once; seconds until the slower one is done.
template <typename Side>
double both(Side side, const std::string& place, const std::vector<Row>& rows) {
  const Moment start = std::chrono::steady_clock::now() + kGetReady;
  const std::vector<double> seconds = inProcesses(
      {[&] { return side(place, "First", rows, start); }, [&] { return side(place, "Second", rows, start); }});
  return *std::max_element(seconds.begin(), seconds.end());
}

}  // namespace

void twoWriters(Bench& bench) {
  const std::vector<Row> rows = glHistRows(bench.scaled(1'000));
  const std::string folder = emptyFolder(bench.folder() + "/writers"), file = bench.folder() + "/writers.db";
  {
    Ours ours(folder);
    Theirs theirs(file);
    for (const char* name : {"First", "Second"}) {
      ours.database.createTable(glHist(kFive, name));
      createTheirs(theirs, glHist(kFive, name));
    }
  }
  const Pair pair = alternate(
      3, 2 * static_cast<std::int64_t>(rows.size()),
      [&](int, Stopwatch& watch) {
        watch.add(both(ourSide, folder, rows));
        return std::int64_t{0};
      },
      [&](int, Stopwatch& watch) {
        watch.add(both(theirSide, file, rows));
        return std::int64_t{0};
      });
  const auto rate = [](double microseconds) { return std::to_string(static_cast<int>(1e6 / microseconds)); };
  bench.report.add({"two-writers", pair.ours, pair.theirs, "us a row", 1,
                    "together " + rate(pair.ours) + " and " + rate(pair.theirs) + " rows a second"});
}

}  // namespace quillon::bench
