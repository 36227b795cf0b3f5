// Counts of random ranges, and the k-th row for random k: what a grid's scroll bar asks.
#include <algorithm>
#include <random>
#include <vector>

#include "bench/Bench.h"
#include "bench/Shapes.h"
#include "bench/Theirs.h"
#include "bench/Timing.h"

namespace quillon::bench {
namespace {

std::vector<std::int64_t> randomPlaces(std::int64_t count, std::int64_t below) {
  std::mt19937_64 random(11);
  std::vector<std::int64_t> places;
  for (std::int64_t i = 0; i < count; ++i)
    places.push_back(static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(below)));
  return places;
}

}  // namespace

void countRange(Bench& bench) {
  const Bench::Items items = bench.items();
  const std::vector<std::int64_t> places = randomPlaces(2 * bench.scaled(100), bench.rows());
  Ours ours(items.folder);
  store::Cursor cursor(ours.database, "Item");
  cursor.open();
  Theirs theirs(items.file);
  Prepared select(theirs, "SELECT COUNT(*) FROM Item WHERE ItemNumber BETWEEN ? AND ?");
  const auto ranges = [&](const auto& count) {
    std::int64_t sum = 0;
    for (std::size_t i = 0; i + 1 < places.size(); i += 2) {
      const auto [low, high] = std::minmax(places[i], places[i + 1]);
      sum += count(itemNumber(low), itemNumber(high));
    }
    return sum;
  };
  const Pair pair = alternate(
      3, static_cast<std::int64_t>(places.size() / 2),
      [&](int, Stopwatch& watch) {
        watch.start();
        const std::int64_t sum = ranges([&](std::int64_t low, std::int64_t high) {
          cursor.setRange({low}, {high});
          return static_cast<std::int64_t>(cursor.recordCount());
        });
        watch.stop();
        return sum;
      },
      [&](int, Stopwatch& watch) {
        watch.start();
        const std::int64_t sum = ranges([&](std::int64_t low, std::int64_t high) {
          select.bind(1, low);
          select.bind(2, high);
          select.step();
          const std::int64_t count = select.number(0);
          select.reset();
          return count;
        });
        watch.stop();
        return sum;
      });
  bench.report.add(
      {"count-range", pair.ours, pair.theirs, "us a range", 1, "random ranges of ItemNumber, set and counted"});
}

void goToKth(Bench& bench) {
  const Bench::Items items = bench.items();
  const std::vector<std::int64_t> places = randomPlaces(bench.scaled(50), bench.rows());
  Ours ours(items.folder);
  store::Cursor cursor(ours.database, "Item");
  cursor.open();
  const store::Field quantity = cursor["Quantity"];
  Theirs theirs(items.file);
  Prepared select(theirs, "SELECT Quantity FROM Item ORDER BY ItemNumber LIMIT 1 OFFSET ?");
  const Pair pair = alternate(
      3, static_cast<std::int64_t>(places.size()),
      [&](int, Stopwatch& watch) {
        std::int64_t sum = 0;
        watch.start();
        for (const std::int64_t place : places) {
          cursor.goTo(static_cast<std::uint64_t>(place) + 1);
          sum += quantity.asInt64();
        }
        watch.stop();
        return sum;
      },
      [&](int, Stopwatch& watch) {
        std::int64_t sum = 0;
        watch.start();
        for (const std::int64_t place : places) {
          select.bind(1, place);
          select.step();
          sum += select.number(0);
          select.reset();
        }
        watch.stop();
        return sum;
      });
  bench.report.add({"goto-kth", pair.ours, pair.theirs, "us a row", 1, "the k-th row by ItemNumber, random k"});
}

}  // namespace quillon::bench
