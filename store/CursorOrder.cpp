// Order and limits.
#include "store/Cursor.h"
#include "store/CursorParts.h"
#include "store/Errors.h"
#include "store/table/Table.h"

namespace quillon::store {

void Cursor::setIndex(std::string_view name) {
  if (!isOpen()) {
    wantedIndex_ = name;
    rowOrder_ = false;
    return;
  }
  const int position = table_->definition().indexPosition(name);
  if (position < 0 && !name.empty())
    throw StoreError(Code::noSuchIndex, "Table '" + table_->name() + "' has no index '" + std::string(name) + "'.");
  leaveRow();
  synchronise();
  wantedIndex_ = name;
  rowOrder_ = false;
  order_ = position;
  low_.clear();
  high_.clear();
  ranged_ = false;
  window_ = {};
  linked_ = false;
  if (link_) applyLink();
  findAgainFrom(at_);
}

void Cursor::setRowOrder() {
  if (link_) throw StoreError(Code::noSuchIndex, "'" + name_ + "' follows a master and keeps the order of its index.");
  rowOrder_ = true;
  wantedIndex_.clear();
  if (!isOpen()) return;
  leaveRow();
  synchronise();
  order_ = -1;
  low_.clear();
  high_.clear();
  ranged_ = false;
  findAgainFrom(at_);
}

std::string Cursor::indexName() const {
  requireOpen();
  return order_ < 0 ? std::string() : table_->definition().indexes[static_cast<std::size_t>(order_)].name;
}

void Cursor::setRange(std::vector<Value> start, std::vector<Value> end) {
  requireOpen();
  leaveRow();
  if (order_ < 0) throw StoreError(Code::noSuchIndex, "A range on '" + name_ + "' needs an index.");
  if (link_) throw StoreError(Code::noSuchIndex, "'" + name_ + "' follows a master and can have no range of its own.");
  std::string low, high;
  const KeyCodec& codec = table_->codec(order_);
  codec.encodePrefix(start, low);
  codec.encodePrefix(end, high);
  // In a descending field the larger value comes first, whichever of the two was named first.
  const auto& parts = table_->definition().indexes[static_cast<std::size_t>(order_)].parts;
  std::size_t differs = 0;
  while (differs < start.size() && differs < end.size() && start[differs] == end[differs]) ++differs;
  if (differs < start.size() && differs < end.size() && parts[differs].descending && high < low) std::swap(low, high);
  low_ = std::move(low);
  high_ = KeyCodec::successor(std::move(high));
  ranged_ = true;
  findAgain_ = false;
  first();
}

void Cursor::cancelRange() {
  requireOpen();
  leaveRow();
  low_.clear();
  high_.clear();
  ranged_ = nothing_ = linked_ = false;
  if (link_) applyLink();
  findAgain(at_.key);
}

}  // namespace quillon::store
