#include "store/sql/TableFill.h"

namespace quillon::store::sql {

TableFill::TableFill(Table& table) : table_(table), change_(table.database(), table), buffer_(table.layout()) {}

void TableFill::add(const std::vector<Datum>& row) {
  buffer_.clear();
  contents_.clear();
  for (std::size_t i = 0; i < row.size(); ++i) {
    if (row[i].isNull()) continue;
    const int field = static_cast<int>(i);
    if (isBlobType(table_.layout().field(field).type))
      contents_[field] = contentOf(row[i]);
    else
      buffer_.set(field, valueOf(row[i]));
  }
  table_.insertRow(buffer_, contents_, record_);
  ++rows_;
}

void TableFill::finish() { change_.done(rows_); }

}  // namespace quillon::store::sql
