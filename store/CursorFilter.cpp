// The filter: a text, a handler, or both.
#include "base/Text.h"
#include "store/Cursor.h"
#include "store/PassingRows.h"
#include "store/table/Table.h"

namespace quillon::store {

std::unique_ptr<RowFilter> Cursor::boundFilter(const std::string& text) {
  return trim(text).empty() ? nullptr : std::make_unique<RowFilter>(*this, text);
}

void Cursor::setFilter(std::string text) {
  if (!isOpen()) {
    filterText_ = std::move(text);
    return;
  }
  std::unique_ptr<RowFilter> filter = boundFilter(text);
  if (filtered_) leaveRow();
  filter_ = std::move(filter);
  filterText_ = std::move(text);
  if (filtered_) first();
}

void Cursor::setFiltered(bool filtered) {
  if (!isOpen()) {
    filtered_ = filtered;
    return;
  }
  leaveRow();
  filtered_ = filtered;
  first();
}

// Of the row that the cursor stands on.
bool Cursor::passes() {
  if (!filtered_) return true;
  if (filter_ && !filter_->passes(at_.row, at_.record)) return false;
  return !events.onFilter || events.onFilter();
}

PassingRows Cursor::passingRows(std::string low, std::string high) const {
  return {*table_, order_, *filter_, std::move(low), std::move(high)};
}

// Counts on records alone where the filter asks for nothing else.
std::optional<std::uint64_t> Cursor::countPassing(std::string high) {
  if (list_ || !filter_ || events.onFilter || !filter_->readsRecordsOnly()) return std::nullopt;
  return passingRows(low_, std::move(high)).count();
}

}  // namespace quillon::store
