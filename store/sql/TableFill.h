#pragma once

#include <string>
#include <vector>

#include "store/Database.h"
#include "store/RecordCodec.h"
#include "store/sql/Datum.h"
#include "store/table/Table.h"

namespace quillon::store::sql {

// Fills a table in memory with rows, in order, as one change.
class TableFill {
 public:
  explicit TableFill(Table& table);
  // Values in the order of the fields, of types that the fields hold.
  void add(const std::vector<Datum>& row);
  void finish();

 private:
  Table& table_;
  Database::Change change_;
  RowBuffer buffer_;
  BlobContents contents_;
  std::string record_;
  int rows_ = 0;
};

}  // namespace quillon::store::sql
