// How the cost of one look-up, insert and step of a walk grows when the table doubles. The whole table fits into the
// cache, so that the growth is that of the work and not of what fits; inserts are of random keys and end in a rollback,
// because the pages that a commit writes depend on how many rows share one.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "bench/Bench.h"
#include "bench/Shapes.h"
#include "bench/Theirs.h"
#include "bench/Timing.h"

namespace quillon::bench {
namespace {

constexpr std::size_t kWholeTable = std::size_t{512} << 20;

constexpr std::array<const char*, 3> kNames{"doubling-lookup", "doubling-insert", "doubling-walk"};
using Costs = std::array<Pair, kNames.size()>;  // as named

// Both sides with the items table of that many rows open.
struct Sides {
  Sides(Bench& bench, std::int64_t count) : rows(count), items(bench.items(count)) {
    cursor.open();
    const std::int64_t keyCount = bench.scaled(20'000);
    for (std::int64_t i = 0; i < keyCount; ++i) keys.push_back(itemNumber(i * 7919 % rows));
    std::shuffle(keys.begin(), keys.end(), std::mt19937_64(13));
  }
  std::int64_t rows;
  Bench::Items items;
  std::vector<std::int64_t> keys;  // of some rows, each once: with one added they are free
  Ours ours{items.folder, kWholeTable};
  store::Cursor cursor{ours.database, "Item"};
  Theirs theirs{items.file, kWholeTable};
};

Pair measureWalk(Sides& sides) {
  sides.cursor.setIndex("Shelf");
  const store::Field quantity = sides.cursor["Quantity"];
  Prepared all(sides.theirs, "SELECT Quantity FROM Item ORDER BY Shelf");
  return alternate(
      2, sides.rows,
      [&](int, Stopwatch& watch) {
        std::int64_t sum = 0;
        watch.start();
        for (sides.cursor.first(); !sides.cursor.eof(); sides.cursor.next()) sum += quantity.asInt64();
        watch.stop();
        return sum;
      },
      [&](int, Stopwatch& watch) {
        std::int64_t sum = 0;
        watch.start();
        while (all.step()) sum += all.number(0);
        all.reset();
        watch.stop();
        return sum;
      });
}

Pair measureLookup(Sides& sides) {
  sides.cursor.setIndex("");
  const store::Field quantity = sides.cursor["Quantity"];
  Prepared find(sides.theirs, "SELECT Quantity FROM Item WHERE ItemNumber = ?");
  return alternate(
      5, static_cast<std::int64_t>(sides.keys.size()),
      [&](int, Stopwatch& watch) {
        std::int64_t sum = 0;
        watch.start();
        for (const std::int64_t key : sides.keys) sum += sides.cursor.findKey({key}) ? quantity.asInt64() : 0;
        watch.stop();
        return sum;
      },
      [&](int, Stopwatch& watch) {
        std::int64_t sum = 0;
        watch.start();
        for (const std::int64_t key : sides.keys) {
          find.bind(1, key);
          if (find.step()) sum += find.number(0);
          find.reset();
        }
        watch.stop();
        return sum;
      });
}

Pair measureInsert(Sides& sides) {
  Prepared add(sides.theirs, insertStatement(item()));
  std::vector<Row> fresh;
  for (const std::int64_t key : sides.keys) {
    fresh.push_back(itemRow(key / 2, sides.rows));
    fresh.back()[1] = key + 1;
  }
  return alternate(
      3, static_cast<std::int64_t>(fresh.size()),
      [&](int, Stopwatch& watch) {
        sides.ours.database.startTransaction({"Item"});
        watch.start();
        for (const Row& row : fresh) insert(sides.cursor, row);
        watch.stop();
        sides.ours.database.rollback();
        return static_cast<std::int64_t>(sides.cursor.recordCount());
      },
      [&](int, Stopwatch& watch) {
        sides.theirs.run("BEGIN");
        watch.start();
        for (const Row& row : fresh) insert(add, row);
        watch.stop();
        sides.theirs.run("ROLLBACK");
        return sides.rows;
      });
}

}  // namespace

void doubling(Bench& bench) {
  const std::array<std::int64_t, 3> sizes{bench.rows() / 4, bench.rows() / 2, bench.rows()};
  std::vector<Costs> costs;
  for (const std::int64_t size : sizes) {
    Sides sides(bench, size);
    const Pair walked = measureWalk(sides), found = measureLookup(sides);
    costs.push_back({found, measureInsert(sides), walked});
  }
  for (std::size_t task = 0; task < kNames.size(); ++task) {
    for (std::size_t i = 0; i < sizes.size(); ++i)
      bench.report.add({std::string(kNames[task]) + "-" + std::to_string(sizes[i]), costs[i][task].ours,
                        costs[i][task].theirs, "us a row"});
    const Pair &first = costs.front()[task], &last = costs.back()[task];
    char log[32];
    std::snprintf(log, sizeof log, "%.2f", std::log(sizes.back()) / std::log(sizes.front()));
    bench.report.add({std::string(kNames[task]) + "-growth", last.ours / first.ours, last.theirs / first.theirs,
                      "times", 0, std::string("for four times the rows; log n grows ") + log + " times"});
  }
}

}  // namespace quillon::bench
