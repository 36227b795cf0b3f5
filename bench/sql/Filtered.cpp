// Cursors with a filter text, beside SELECTs with the same WHERE.
#include <functional>

#include "bench/Theirs.h"
#include "bench/Timing.h"
#include "bench/sql/Compare.h"
#include "bench/sql/Ledger.h"
#include "store/Cursor.h"

namespace quillon::bench {
namespace {

constexpr int kRounds = 5;

struct Filter {
  std::string name, ours, theirs;  // theirs holds ten-thousandths
  std::string index, order;        // of ours and theirs
  std::string note;
};

// One thing that a list does with its cursor, giving a number that theirs gives too.
struct Action {
  const char* name;
  std::function<std::int64_t(store::Cursor&)> ours;
  std::string columns, tail;  // of theirs: SELECT columns FROM GLHist WHERE filter tail
};

std::int64_t sumOf(store::Cursor& cursor) {
  std::int64_t sum = 0;
  for (cursor.first(); !cursor.eof(); cursor.next()) sum += cursor["GLHistID"].asInt64();
  return sum;
}

std::vector<Action> actions(const Filter& filter) {
  const auto ordered = [&](const char* way) {
    return " ORDER BY " + filter.order + way + ", GLHistID" + way + " LIMIT 1";
  };
  const auto id = [](store::Cursor& cursor) { return cursor["GLHistID"].asInt64(); };
  return {
      {"open",
       [id](store::Cursor& cursor) {
         cursor.close();
         cursor.open();
         return id(cursor);
       },
       "GLHistID", ordered("")},
      {"next",
       [id](store::Cursor& cursor) {
         cursor.next();
         return id(cursor);
       },
       "GLHistID", ordered("") + " OFFSET 1"},
      {"last",
       [id](store::Cursor& cursor) {
         cursor.last();
         return id(cursor);
       },
       "GLHistID", ordered(" DESC")},
      {"locate",
       [id](store::Cursor& cursor) {
         cursor.locate("GLAccountID", {1590});
         return id(cursor);
       },
       "GLHistID", " AND GLAccountID = 1590" + ordered("")},
      {"count", [](store::Cursor& cursor) { return static_cast<std::int64_t>(cursor.recordCount()); }, "COUNT(*)", ""},
      {"walk", sumOf, "SUM(GLHistID)", ""}};
}

void compare(Bench& bench, const Filter& filter, const Action& action) {
  const Ledger place = ledger(bench);
  Ours ours(place.folder);
  store::Cursor holder(ours.database, "GLHist"), cursor(ours.database, "GLHist");
  holder.open();  // the table stays open
  cursor.setIndex(filter.index);
  cursor.setFilter(filter.ours);
  cursor.setFiltered(true);
  cursor.open();
  Theirs theirs(place.file);
  Prepared select(theirs, "SELECT " + action.columns + " FROM GLHist WHERE " + filter.theirs + action.tail);
  const Pair pair = alternate(
      kRounds, 1,
      [&](int, Stopwatch& watch) {
        cursor.first();
        watch.start();
        const std::int64_t result = action.ours(cursor);
        watch.stop();
        return result;
      },
      [&](int, Stopwatch& watch) {
        watch.start();
        select.step();
        const std::int64_t result = select.number(0);
        watch.stop();
        select.reset();
        return result;
      });
  constexpr double kMilli = 1000;
  bench.report.add({filter.name + "-" + action.name, pair.ours / kMilli, pair.theirs / kMilli, "ms", 1, filter.note});
}

}  // namespace

void filtered(Bench& bench) {
  const Filter filters[] = {
      {"filter", "Amount > 9980", "Amount > 99800000", "", "GLHistID", "one row in 1,000 passes, no index for it"},
      {"filter-index", "CustomerID = 77 AND Amount > 0", "CustomerID = 77 AND Amount > 0", "TransDate", "TransDate",
       "a customer's sales, an index of another order for them"}};
  for (const Filter& filter : filters)
    for (const Action& action : actions(filter)) compare(bench, filter, action);
}

}  // namespace quillon::bench
