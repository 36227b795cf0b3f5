// Keyed look-ups: a random key of the unique index, two fields of the row that it finds.
#include <random>
#include <vector>

#include "base/Errors.h"
#include "bench/Bench.h"
#include "bench/Shapes.h"
#include "bench/Theirs.h"
#include "bench/Timing.h"

namespace quillon::bench {
namespace {

enum class Hold { alone, held };

void lookup(Bench& bench, Hold hold, const char* name, double aim) {
  const Bench::Items items = bench.items();
  const std::int64_t count = bench.scaled(100'000);
  std::vector<std::int64_t> keys;
  std::mt19937_64 random(3);
  for (std::int64_t i = 0; i < count; ++i)
    keys.push_back(itemNumber(static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(bench.rows()))));
  Ours ours(items.folder);
  store::Cursor cursor(ours.database, "Item");
  cursor.open();
  if (hold == Hold::held) cursor.lockTable();
  const store::Field quantity = cursor["Quantity"], price = cursor["Price"];
  Theirs theirs(items.file);
  Prepared select(theirs, "SELECT Quantity, Price FROM Item WHERE ItemNumber = ?");
  if (hold == Hold::held) theirs.run("BEGIN");
  const Pair pair = alternate(
      5, count,
      [&](int, Stopwatch& watch) {
        std::int64_t sum = 0;
        watch.start();
        for (const std::int64_t key : keys) {
          if (!cursor.findKey({key})) throw Error("A row is missing");
          sum += quantity.asInt64() + price.asMoney().raw();
        }
        watch.stop();
        return sum;
      },
      [&](int, Stopwatch& watch) {
        std::int64_t sum = 0;
        watch.start();
        for (const std::int64_t key : keys) {
          select.bind(1, key);
          if (!select.step()) throw Error("A row is missing");
          sum += select.number(0) + select.number(1);
          select.reset();
        }
        watch.stop();
        return sum;
      });
  bench.report.add({name, pair.ours, pair.theirs, "us a look-up", aim,
                    std::to_string(bench.rows()) + " rows, reading Quantity and Price"});
}

}  // namespace

void lookupAlone(Bench& bench) { lookup(bench, Hold::alone, "lookup-alone", 0.5); }
void lookupHeld(Bench& bench) { lookup(bench, Hold::held, "lookup-held", 1); }

}  // namespace quillon::bench
