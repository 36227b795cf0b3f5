// Changes of one amount that is in no index, found by key, in one transaction: what a posting run does to balances.
#include <random>
#include <vector>

#include "base/Errors.h"
#include "bench/Bench.h"
#include "bench/Shapes.h"
#include "bench/Theirs.h"
#include "bench/Timing.h"

namespace quillon::bench {

void updateMoney(Bench& bench) {
  const std::int64_t count = bench.scaled(100'000);
  const Bench::Items items = bench.items(count);
  std::vector<std::int64_t> keys;
  std::mt19937_64 random(5);
  for (std::int64_t i = 0; i < count; ++i)
    keys.push_back(itemNumber(static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(count))));
  Ours ours(items.folder);
  store::Cursor cursor(ours.database, "Item");
  cursor.open();
  const store::Field price = cursor["Price"];
  Theirs theirs(items.file);
  Prepared update(theirs, "UPDATE Item SET Price = ? WHERE ItemNumber = ?");
  const Pair pair = alternate(
      3, count,
      [&](int round, Stopwatch& watch) {
        watch.start();
        ours.database.startTransaction({"Item"});
        for (const std::int64_t key : keys) {
          if (!cursor.findKey({key})) throw Error("A row is missing");
          cursor.edit();
          price.set(Money::fromRaw(key * 100 + round));
          cursor.post();
        }
        ours.database.commit();
        watch.stop();
        return std::int64_t{0};
      },
      [&](int round, Stopwatch& watch) {
        watch.start();
        theirs.run("BEGIN");
        for (const std::int64_t key : keys) {
          update.bind(1, key * 100 + round);
          update.bind(2, key);
          update.once();
        }
        theirs.run("COMMIT");
        watch.stop();
        return std::int64_t{0};
      });
  bench.report.add({"update-money", pair.ours, pair.theirs, "us a row", 1,
                    std::to_string(count) + " random rows of " + std::to_string(count) + " in a transaction"});
}

}  // namespace quillon::bench
