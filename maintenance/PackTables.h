#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

namespace quillon::store {
class Database;
}

namespace quillon::maintenance {

// The tables of a company in the order in which they are packed.
std::span<const char* const> packOrder();

// What could not be saved of a table, in words: how much, and then which. Of lost records their neighbours are told, in
// the order in which they were entered.
struct TableLoss {
  std::string head;  // "JV: 2 records lost"
  std::vector<std::string> details;
};

// Repairs and optimises each table of a company that nobody has open, and keeps the old files beside them. `step` hears
// which table is in work, how far, and how many are done. What a repair could not save is added to `losses`. An
// error ends it; the tables before that one are done.
void packTables(store::Database& company, const std::function<void(const std::string& text, int done)>& step,
                std::vector<TableLoss>& losses);

}  // namespace quillon::maintenance
