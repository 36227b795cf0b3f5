#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "store/Database.h"
#include "store/RecordCodec.h"
#include "store/sql/Datum.h"
#include "store/table/Table.h"

namespace quillon::store::sql {

// Fills a table in memory that nobody else reads with rows, in order. Rows that are there go. After a failure it holds
// any part of them.
class TableFill {
 public:
  explicit TableFill(Table& table);
  // Values in the order of the fields, of types that the fields hold.
  void add(const std::vector<Datum>& row);
  void finish();

 private:
  Table& table_;
  std::optional<Database::Change> change_;  // ended and begun again now and then, so that little is unpublished
  RowBuffer buffer_;
  BlobContents contents_;
  std::string record_;
  int rows_ = 0;
};

}  // namespace quillon::store::sql
