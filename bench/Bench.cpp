#include "bench/Bench.h"

#include <algorithm>
#include <filesystem>

#include "bench/Ours.h"
#include "bench/Shapes.h"
#include "bench/Theirs.h"

namespace quillon::bench {

std::int64_t Bench::scaled(std::int64_t full) const {
  constexpr std::int64_t kFullRows = 1'000'000, kLeast = 20;
  return std::max(std::min(full, kLeast), std::min(full, full * rows_ / kFullRows));
}

Bench::Items Bench::items(std::int64_t rows) {
  const Items result{folder_ + "/items" + std::to_string(rows), folder_ + "/items" + std::to_string(rows) + ".db"};
  if (!filled_.insert(rows).second) return result;
  std::filesystem::create_directories(result.folder);
  Ours ours(result.folder);
  ours.database.createTable(item());
  store::Cursor cursor(ours.database, "Item");
  cursor.open();
  Theirs theirs(result.file);
  createTheirs(theirs, item());
  Prepared statement(theirs, insertStatement(item()));
  ours.database.startTransaction({"Item"});
  theirs.run("BEGIN");
  for (std::int64_t at = 0; at < rows; ++at) {
    const Row row = itemRow(at, rows);
    insert(cursor, row);
    insert(statement, row);
  }
  ours.database.commit();
  theirs.run("COMMIT");
  return result;
}

}  // namespace quillon::bench
