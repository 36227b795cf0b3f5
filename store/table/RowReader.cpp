#include "store/table/RowReader.h"

#include <algorithm>

#include "store/Errors.h"

namespace quillon::store {
namespace {

bool areNear(RowId row, RowId last) {
  constexpr RowId kNear = 4;  // ids ahead; some are of deleted rows
  return last != 0 && ((row > last && row - last <= kNear) || row + 1 == last);
}

}  // namespace

bool RowReader::moveTo(RowId row) {
  return (row > last_ ? at_->next() : at_->prior()) && KeyCodec::rowOf(at_->key()) == row;
}

void RowReader::approach(std::size_t slot, RowId row) {
  key_.clear();
  KeyCodec::appendRow(key_, row);
  if (!walks_[slot]) walks_[slot].emplace(table_.rows());
  walks_[slot]->approach(key_);
}

void RowReader::arrive(std::size_t slot, RowId row) {
  key_.clear();
  KeyCodec::appendRow(key_, row);
  at_ = &*walks_[slot];
  half_ = slot < kTogether ? 0 : kTogether;
  if (!at_->arrive(key_) || at_->key() != key_)
    throw StoreError(Code::damaged, "An index of table '" + table_.name() +
                                        "' names a record that is not there. Run Pack/Repair on the company.");
}

std::string_view RowReader::read(RowId row) {
  if (!areNear(row, last_) || !moveTo(row)) {
    approach(half_, row);
    arrive(half_, row);
  }
  last_ = row;
  return table_.record(at_->payload(), scratch_);
}

bool RowReader::readEach(std::span<const RowId> rows, const Each& each) {
  while (!rows.empty()) {
    const auto now = rows.first(std::min(rows.size(), kTogether));
    rows = rows.subspan(now.size());
    const std::size_t half = kTogether - half_;  // where the one that is read from now does not stand
    RowId before = last_;
    for (std::size_t i = 0; i < now.size(); before = now[i++])
      if (!areNear(now[i], before)) approach(half + i, now[i]);
    for (std::size_t i = 0; i < now.size(); ++i) {
      if (!areNear(now[i], last_)) {
        arrive(half + i, now[i]);
      } else if (!moveTo(now[i])) {
        approach(half + i, now[i]);
        arrive(half + i, now[i]);
      }
      last_ = now[i];
      if (!each(now[i], table_.record(at_->payload(), scratch_))) return false;
    }
  }
  return true;
}

}  // namespace quillon::store
