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
  bof_ = eof_ = false;  // rows may have come behind what was the end
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
  bof_ = eof_ = false;
  arrived();
  return true;
}

std::int64_t Cursor::moveBy(std::int64_t rows) {
  requireOpen();
  leaveRow();
  synchronise();
  if (!at_.there || rows == 0) return 0;
  std::int64_t moved = 0;
  if (filters() || list_) {
    for (; moved < rows && step(true); ++moved) {
    }
    for (; moved > rows && step(false); --moved) {
    }
    if (moved != 0) bof_ = eof_ = false;
    if (moved != 0) arrived();
  } else {
    constexpr std::int64_t kFar = std::int64_t{1} << 41;
    const auto count = static_cast<std::int64_t>(recordCount());
    const auto number = static_cast<std::int64_t>(recordNumber());
    // Where the row itself is gone, the one behind it has its number and is one step away.
    const bool gone = rows > 0 && !isAt(static_cast<std::uint64_t>(number));
    const std::int64_t here = gone ? number - 1 : number;
    const std::int64_t target = std::min(std::max<std::int64_t>(here + std::clamp(rows, -kFar, kFar), 1), count);
    if (target >= 1 && target != here && goTo(static_cast<std::uint64_t>(target))) moved = target - here;
  }
  if (!isOpen()) return moved;
  if (moved < rows) eof_ = true;
  if (moved > rows) bof_ = true;
  return moved;
}

// Whether the row that the cursor stands on is still the one of that number.
bool Cursor::isAt(std::uint64_t number) {
  const Table::Reading reading(*table_);
  Tree& tree = order_ < 0 ? table_->rows() : table_->index(order_);
  TreeWalk walk(tree);
  return walk.seekRank((low_.empty() ? 0 : tree.rank(low_)) + number - 1) && walk.key() == at_.key;
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
  if (!filters()) {
    if (list_) return list_->rows.size() - list_->gone;
    const Table::Reading reading(*table_);
    const Ranks bounds = ranks();
    return bounds.high - bounds.low;
  }
  if (const std::optional<std::uint64_t> passing = countPassing(high_)) return *passing;
  const Aside aside(*this);
  std::uint64_t count = 0;
  for (bool found = firstRow(); found; found = step(true)) ++count;
  return count;
}

Cursor::Ranks Cursor::ranks() const {
  Tree& tree = order_ < 0 ? table_->rows() : table_->index(order_);
  const std::uint64_t high = high_.empty() ? tree.count() : tree.rank(high_);
  return {std::min(high, low_.empty() ? 0 : tree.rank(low_)), high};
}

std::uint64_t Cursor::recordNumber() {
  synchronise();
  if (!at_.there) return 0;
  if (!filters()) {
    if (list_) return list_->places[at_.row] + 1;
    const Table::Reading reading(*table_);
    Tree& tree = order_ < 0 ? table_->rows() : table_->index(order_);
    return tree.rank(at_.key) - (low_.empty() ? 0 : tree.rank(low_)) + 1;
  }
  const std::string mine = at_.key;
  if (const std::optional<std::uint64_t> passing = countPassing(mine + '\0')) return *passing;
  const Aside aside(*this);
  std::uint64_t number = 0;
  for (bool found = firstRow(); found && at_.key <= mine; found = step(true)) ++number;
  return number;
}

bool Cursor::goTo(std::uint64_t number) {
  requireOpen();
  leaveRow();
  synchronise();
  if (!seek(number)) return false;
  bof_ = eof_ = false;
  arrived();
  return true;
}

// To the row of that number; without one the row stays.
bool Cursor::seek(std::uint64_t number) {
  if (number == 0 || nothing_) return false;
  if (list_ && !filters()) return number <= list_->rows.size() && standOn(list_->rows[number - 1]);
  if (filters()) {
    Standing before = at_;
    std::uint64_t count = 0;
    for (bool found = firstRow(); found; found = step(true))
      if (++count == number) return true;
    at_ = std::move(before);
    view_.reset();
    calculated_ = false;
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
  return true;
}

double Cursor::depth() {
  synchronise();
  if (!at_.there || nothing_) return 0;
  std::uint64_t above = 0, all = 0;
  if (list_) {
    above = list_->places[at_.row];
    all = list_->rows.size();
  } else {
    const Table::Reading reading(*table_);
    Tree& tree = order_ < 0 ? table_->rows() : table_->index(order_);
    const Ranks bounds = ranks();
    above = tree.rank(at_.key) - bounds.low;
    all = bounds.high - bounds.low;
  }
  return all > 1 ? static_cast<double>(above) / static_cast<double>(all - 1) : 0;
}

bool Cursor::goToDepth(double depth) {
  requireOpen();
  leaveRow();
  synchronise();
  if (nothing_) return false;
  const auto placeOf = [depth](std::uint64_t count) {
    return static_cast<std::uint64_t>(std::clamp(depth, 0.0, 1.0) * static_cast<double>(count > 0 ? count - 1 : 0));
  };
  std::string key;
  if (list_) {
    if (list_->rows.empty()) return false;
    keyOf(list_->rows[placeOf(list_->rows.size())], {}, key);
  } else {
    const Table::Reading reading(*table_);
    const Ranks bounds = ranks();
    TreeWalk walk(order_ < 0 ? table_->rows() : table_->index(order_));
    if (!walk.seekRank(bounds.low + placeOf(bounds.high - bounds.low))) return false;
    key = walk.key();
  }
  window_ = {};
  if (!enter(true, key, true) && !lastRow()) return false;
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
  if (!standOn(row)) return false;
  bof_ = eof_ = false;
  arrived();
  return true;
}

// On that row where it is in view; otherwise the row stays.
bool Cursor::standOn(RowId row) {
  std::string record, key;
  if (row == 0 || nothing_ || !readStanding(row, record)) return false;
  keyOf(row, record, key);
  if (!inBounds(key)) return false;
  Standing before = at_;
  stand(row, std::move(key), std::move(record));
  if (passes()) return true;
  at_ = std::move(before);
  view_.reset();
  calculated_ = false;
  return false;
}

}  // namespace quillon::store
