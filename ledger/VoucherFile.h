#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace quillon::store {
class Database;
}

namespace quillon::ledger {

inline constexpr const char* kImportTable = "\\Memory\\JVDataImport";

// Makes the import's table in memory anew. An import that still runs has it open: Error, in its words.
void makeImportTable(store::Database& database);
void dropImportTable(store::Database& database);

// Raises what is wrong with a line of the file: "Line 7: ...".
[[noreturn]] void refuseLine(std::uint64_t line, const std::string& what);

// Loads a text file of voucher lines into that table: UTF-8, fields separated by tabs, the first line with the names of
// the fields Account, SubAccount1, SubAccount2, SubAccount3 and Amount in any order and case; fields may stand in
// quotation marks, and a row may leave out empty ones at its end. Error names line and field; the table is then to be
// dropped. Gives the line of each row. `progress` hears of bytes.
std::vector<std::uint64_t> loadVoucherFile(
    store::Database& database, const std::string& path,
    const std::function<void(std::uint64_t done, std::uint64_t total)>& progress);

}  // namespace quillon::ledger
