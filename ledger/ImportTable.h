#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "store/Value.h"

namespace quillon::store {
class Cursor;
class Database;
}  // namespace quillon::store

namespace quillon::ledger {

// A column of a file, and of the table that it is loaded into.
struct ImportColumn {
  enum class Kind { text, amount, year };
  std::string name;
  Kind kind = Kind::text;
  int digits = 0;    // characters of a text, digits of an amount
  int decimals = 0;  // of an amount, of its digits
  bool required = true;
};

// Raises what is wrong with a line of a file: "Line 7: ...".
[[noreturn]] void refuseLine(std::uint64_t line, const std::string& what);

// A table in memory that a text file is loaded into before anything of it is used; dropped at its end.
class ImportTable {
 public:
  // Makes it anew. An import that still runs has it open: Error with the words `busy`.
  ImportTable(store::Database& database, std::string name, std::vector<ImportColumn> columns, const std::string& busy);
  ~ImportTable();
  ImportTable(const ImportTable&) = delete;
  ImportTable& operator=(const ImportTable&) = delete;

  // Loads a file: UTF-8, fields separated by tabs, the first line with their names in any order and case, amounts with
  // a decimal point; fields may stand in quotation marks, and a row may leave out empty ones at its end. Columns that
  // are not ours are left out. Error names line and field. Gives the line of each row; `progress` hears of bytes.
  std::vector<std::uint64_t> load(const std::string& path,
                                  const std::function<void(std::uint64_t done, std::uint64_t total)>& progress);

  // "\"\\Memory\\Name\"": for statements.
  std::string quotedName() const;

 private:
  static constexpr std::size_t kMissing = static_cast<std::size_t>(-1);
  std::vector<std::size_t> readHeader(const std::vector<std::string>& names) const;
  void addRow(store::Cursor& rows, const std::vector<std::string>& cells, const std::vector<std::size_t>& places,
              std::uint64_t line) const;

  store::Database& database_;
  std::string name_;
  std::vector<ImportColumn> columns_;
};

}  // namespace quillon::ledger
