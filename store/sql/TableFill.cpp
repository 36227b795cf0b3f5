#include "store/sql/TableFill.h"

namespace quillon::store::sql {
namespace {

constexpr std::size_t kMostUnpublished = 1024;  // pages

}  // namespace

TableFill::TableFill(Table& table)
    : table_(table), change_(std::in_place, table.database(), table), buffer_(table.layout()) {
  if (table_.rowCount() > 0) table_.removeAll();
}

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
  if (table_.files().file(kDat).dirtyPages() + table_.files().file(kBlb).dirtyPages() < kMostUnpublished) return;
  change_->done(rows_);
  change_.emplace(table_.database(), table_);
  rows_ = 0;
}

void TableFill::finish() { change_->done(rows_); }

}  // namespace quillon::store::sql
