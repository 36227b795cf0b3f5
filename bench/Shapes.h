#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "store/Cursor.h"
#include "store/Schema.h"
#include "store/Value.h"

namespace quillon::bench {

class Prepared;
class Theirs;

using Row = std::vector<store::Value>;  // by field; null where nothing is set

// The ledger's history: a narrow row with many indexes.
inline constexpr int kAllGlHistIndexes = 16;
store::TableDef glHist(int indexes, std::string name = "GLHist");
// Vouchers of three lines over a year, in the order of their dates, on 60 accounts; few lines have a subaccount.
std::vector<Row> glHistRows(std::int64_t count);

// Items: ItemNumber is unique and has the primary index, Shelf has one in an order unrelated to that of the rows.
// Quantity and Price are in no index.
store::TableDef item();
// Row `at` of `count`. The number is even; odd ones are free.
Row itemRow(std::int64_t at, std::int64_t count);
constexpr std::int64_t itemNumber(std::int64_t at) { return 2 * at; }

// The same table on their side. The automatic number is their row id; the other indexes have the same fields.
void createTheirs(Theirs& side, const store::TableDef& table);
std::string insertStatement(const store::TableDef& table);

void insert(store::Cursor& cursor, const Row& row);
void insert(Prepared& statement, const Row& row);

}  // namespace quillon::bench
