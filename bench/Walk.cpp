// A walk over all rows by an index in an order that has nothing to do with theirs: each row is a page of its own.
#include "bench/Bench.h"
#include "bench/Shapes.h"
#include "bench/Theirs.h"
#include "bench/Timing.h"

namespace quillon::bench {

void walkOrdered(Bench& bench) {
  const Bench::Items items = bench.items();
  Ours ours(items.folder);
  store::Cursor cursor(ours.database, "Item");
  cursor.open();
  cursor.setIndex("Shelf");
  const store::Field quantity = cursor["Quantity"], price = cursor["Price"];
  Theirs theirs(items.file);
  // The weight of a row's place makes the sum depend on the order; equal shelves are in the order of entry.
  Prepared select(theirs, "SELECT Quantity, Price FROM Item ORDER BY Shelf, ItemID");
  const Pair pair = alternate(
      3, bench.rows(),
      [&](int, Stopwatch& watch) {
        std::int64_t sum = 0, place = 0;
        watch.start();
        for (cursor.first(); !cursor.eof(); cursor.next())
          sum += (quantity.asInt64() + price.asMoney().raw()) * (++place & 15);
        watch.stop();
        return sum;
      },
      [&](int, Stopwatch& watch) {
        std::int64_t sum = 0, place = 0;
        watch.start();
        while (select.step()) sum += (select.number(0) + select.number(1)) * (++place & 15);
        select.reset();
        watch.stop();
        return sum;
      });
  bench.report.add({"walk-ordered", pair.ours, pair.theirs, "us a row", 0.5,
                    std::to_string(bench.rows()) + " rows by Shelf, reading Quantity and Price"});
}

}  // namespace quillon::bench
