#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "reports/OutputFile.h"
#include "store/Value.h"

namespace quillon::reports {

// The filter of a save dialog for such a file.
inline constexpr const char* kTableFilter = "Excel files (*.xlsx)|*.xlsx|Text files (*.txt)|*.txt";

// Rows for other programs to read, in one of two forms by the file's name: a workbook (.xlsx), in which numbers are
// numbers and dates are dates; or a text in UTF-8, with tabs between the values, a decimal point in amounts and the
// columns' names in the first line.
//
// The file appears whole with `finish`, or not at all. Error when it cannot be written.
class TableFile {
 public:
  TableFile(const std::string& path, std::string title, std::vector<std::string> columns);
  ~TableFile();

  // A value for each column.
  void add(std::span<const store::Value> row);
  void finish();

 private:
  struct Book;
  void addText(std::span<const store::Value> row);
  void addCells(std::span<const store::Value> row);
  void flush(std::size_t least);

  OutputFile file_;
  std::string title_, out_;
  std::vector<std::string> names_;  // of a sheet's columns
  std::unique_ptr<Book> book_;      // none: a text
  std::uint32_t row_ = 0;
};

}  // namespace quillon::reports
