// Moves and places.
#include <algorithm>

#include "store/Cursor.h"
#include "store/CursorParts.h"
#include "store/table/Table.h"

namespace quillon::store {

void Cursor::first() {
  requireOpen();
  leaveRow();
  synchronise();
  firstRow();
  bof_ = true;
  eof_ = !at_.there;
  arrived();
}

void Cursor::last() {
  requireOpen();
  leaveRow();
  synchronise();
  lastRow();
  eof_ = true;
  bof_ = !at_.there;
  arrived();
}

bool Cursor::next() {
  requireOpen();
  leaveRow();
  synchronise();
  if (!at_.there) {
    eof_ = true;
    return false;
  }
  if (!step(true)) {
    eof_ = true;
    return false;
  }
  bof_ = false;
  arrived();
  return true;
}

bool Cursor::prior() {
  requireOpen();
  leaveRow();
  synchronise();
  if (!at_.there || !step(false)) {
    bof_ = true;
    return false;
  }
  eof_ = false;
  arrived();
  return true;
}

std::int64_t Cursor::moveBy(std::int64_t rows) {
  requireOpen();
  leaveRow();
  synchronise();
  if (!at_.there || rows == 0) return 0;
  std::int64_t moved = 0;
  if (filtered_ && events.onFilter) {
    for (; moved < rows && step(true); ++moved) {
    }
    for (; moved > rows && step(false); --moved) {
    }
  } else {
    const auto here = static_cast<std::int64_t>(recordNumber());
    const std::int64_t target = std::clamp<std::int64_t>(here + rows, 1, static_cast<std::int64_t>(recordCount()));
    if (goTo(static_cast<std::uint64_t>(target))) moved = target - here;
  }
  if (moved != 0) bof_ = eof_ = false;
  if (moved < rows) eof_ = true;
  if (moved > rows) bof_ = true;
  if (moved != 0) arrived();
  return moved;
}

bool Cursor::bof() {
  synchronise();
  return bof_ && state_ != CursorState::insert;
}

bool Cursor::eof() {
  synchronise();
  return eof_ && state_ != CursorState::insert;
}

bool Cursor::isEmpty() {
  synchronise();
  return !at_.there && !isEditing();
}

std::uint64_t Cursor::recordCount() {
  synchronise();
  if (nothing_) return 0;
  if (!filtered_ || !events.onFilter) {
    const Table::Reading reading(*table_);
    Tree& tree = order_ < 0 ? table_->rows() : table_->index(order_);
    const std::uint64_t above = high_.empty() ? tree.count() : tree.rank(high_);
    return above - (low_.empty() ? 0 : tree.rank(low_));
  }
  if (isEditing()) leaveRow();
  const Standing before = at_;
  std::uint64_t count = 0;
  for (bool found = firstRow(); found; found = step(true)) ++count;
  at_ = before;
  view_.reset();
  calculated_ = false;
  return count;
}

std::uint64_t Cursor::recordNumber() {
  synchronise();
  if (!at_.there) return 0;
  if (!filtered_ || !events.onFilter) {
    const Table::Reading reading(*table_);
    Tree& tree = order_ < 0 ? table_->rows() : table_->index(order_);
    return tree.rank(at_.key) - (low_.empty() ? 0 : tree.rank(low_)) + 1;
  }
  if (isEditing()) leaveRow();
  const Standing before = at_;
  std::uint64_t number = 0;
  for (bool found = firstRow(); found && at_.key <= before.key; found = step(true)) ++number;
  at_ = before;
  view_.reset();
  calculated_ = false;
  return number;
}

bool Cursor::goTo(std::uint64_t number) {
  requireOpen();
  leaveRow();
  synchronise();
  if (number == 0 || nothing_) return false;
  if (filtered_ && events.onFilter) {
    const Standing before = at_;
    std::uint64_t count = 0;
    for (bool found = firstRow(); found; found = step(true))
      if (++count == number) {
        bof_ = eof_ = false;
        arrived();
        return true;
      }
    at_ = before;
    view_.reset();
    return false;
  }
  std::string key, record;
  {
    const Table::Reading reading(*table_);
    Tree& tree = order_ < 0 ? table_->rows() : table_->index(order_);
    TreeWalk walk(tree);
    const std::uint64_t base = low_.empty() ? 0 : tree.rank(low_);
    if (!walk.seekRank(base + number - 1) || !inBounds(walk.key())) return false;
    key = walk.key();
    if (!table_->readRow(KeyCodec::rowOf(key), record)) return false;
  }
  const RowId row = KeyCodec::rowOf(key);
  stand(row, std::move(key), std::move(record));
  bof_ = eof_ = false;
  arrived();
  return true;
}

Bookmark Cursor::bookmark() {
  synchronise();
  return at_.there ? Bookmark{at_.row, at_.key} : Bookmark{};
}

bool Cursor::goTo(const Bookmark& bookmark) { return goToRow(bookmark.row); }

RowId Cursor::rowId() {
  synchronise();
  return at_.there && state_ != CursorState::insert ? at_.row : 0;
}

bool Cursor::goToRow(RowId row) {
  requireOpen();
  leaveRow();
  synchronise();
  std::string record, key;
  if (row == 0 || nothing_ || !readStanding(row, record)) return false;
  keyOf(row, record, key);
  if (!inBounds(key)) return false;
  Standing before = at_;
  stand(row, std::move(key), std::move(record));
  if (!passes()) {
    at_ = std::move(before);
    view_.reset();
    return false;
  }
  bof_ = eof_ = false;
  arrived();
  return true;
}

}  // namespace quillon::store
