// Where a cursor stands: rows read ahead in batches, filtered outside every lock, and found again after a change.
#include <algorithm>
#include <array>

#include "store/Cursor.h"
#include "store/CursorParts.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/PassingRows.h"
#include "store/table/Table.h"

namespace quillon::store {
namespace {

constexpr std::size_t kFirstBatch = 4;
constexpr std::size_t kLongestBatch = 256;
constexpr std::size_t kBatchBytes = 256 * 1024;
constexpr std::size_t kTogether = 16;    // records whose pages are asked for at once
constexpr std::int64_t kFreshFor = 100;  // milliseconds that rows read ahead are believed without a look at the table

}  // namespace

// In a live result keys are the place in the list, then the row id.
bool Cursor::inBounds(std::string_view key) const {
  if (list_) return key[0] != '\xFF';
  return key >= low_ && (high_.empty() || key < high_);
}

void Cursor::keyOf(RowId row, std::string_view record, std::string& key) const {
  if (order_ < 0) {
    key.clear();
    if (list_) {
      const auto found = list_->places.find(row);
      const std::uint64_t place = found == list_->places.end() ? ~std::uint64_t{0} : found->second;
      for (int shift = 56; shift >= 0; shift -= 8) key += static_cast<char>(place >> shift);
    }
    KeyCodec::appendRow(key, row);
  } else {
    table_->codec(order_).encode(RecordView(table_->layout(), record), row, key);
  }
}

// Reads a batch of rows from the key `from` on (bounded: from the end of the range instead) into the window.
bool Cursor::fill(bool forward, std::string_view from, bool inclusive, bool bounded) {
  const std::string start(from);  // `from` may look into what is overwritten
  // Batches grow while a walk uses them up; one that own changes overtake is read again and stays small.
  const bool usedUp = window_.forward == forward && !window_.entries.empty() && window_.version == table_->version();
  window_.batch = usedUp ? std::min(window_.batch * 4, kLongestBatch) : kFirstBatch;
  window_.forward = forward;
  window_.at = 0;
  window_.clear();
  if (nothing_) return false;
  if (list_) return fillFromList(forward, start, inclusive, bounded);
  if (filtered_ && filter_)
    passingRows(low_, high_)
        .read(forward, {start, inclusive, bounded}, window_.batch,
              {[&] { window_.clear(); },
               [&](std::string_view key, RowId row, std::string_view record) { window_.add(key, row, record); }});
  else
    fillFromTree(forward, start, inclusive, bounded);
  window_.version = table_->version();
  window_.time = database_->session().environment().clock.milliseconds();
  return !window_.entries.empty();
}

void Cursor::Window::clear() {
  entries.clear();
  bytes.clear();
}

void Cursor::Window::add(std::string_view itsKey, RowId itsRow, std::string_view itsRecord) {
  const auto keyAt = static_cast<std::uint32_t>(bytes.size());
  bytes += itsKey;
  const auto recordAt = static_cast<std::uint32_t>(bytes.size());
  bytes += itsRecord;
  entries.push_back({keyAt, static_cast<std::uint32_t>(itsKey.size()), recordAt,
                     static_cast<std::uint32_t>(itsRecord.size()), itsRow});
}

void Cursor::raiseDamaged(const char* what) const {
  throw StoreError(Code::damaged,
                   "An index of table '" + table_->name() + "' " + what + ". Run Pack/Repair on the company.");
}

void Cursor::fillFromTree(bool forward, const std::string& start, bool inclusive, bool bounded) {
  try {
    table_->read([&] { readTree(forward, start, inclusive, bounded); });
  } catch (...) {
    window_.clear();  // rows may be without their records
    throw;
  }
}

void Cursor::readTree(bool forward, const std::string& start, bool inclusive, bool bounded) {
  window_.clear();
  Tree& tree = order_ < 0 ? table_->rows() : table_->index(order_);
  TreeWalk walk(tree);
  bool found = seekFrom(walk, forward, {start, inclusive, bounded}, low_, high_);
  while (found && window_.entries.size() < window_.batch && window_.bytes.size() < kBatchBytes) {
    const std::size_t from = window_.entries.size();
    const std::size_t most = order_ < 0 ? 1 : std::min(kTogether, window_.batch - from);
    for (; found && window_.entries.size() < from + most; found = forward ? walk.next() : walk.prior()) {
      const std::string_view key = walk.key();
      if (!inBounds(key)) return fillRecords(from);
      if (!window_.entries.empty()) {
        const Window::Entry& last = window_.entries.back();
        requireOrder(forward, std::string_view(window_.bytes).substr(last.key, last.keySize), key, false);
      } else if (!bounded) {
        requireOrder(forward, start, key, inclusive);
      }
      window_.entries.push_back({static_cast<std::uint32_t>(window_.bytes.size()),
                                 static_cast<std::uint32_t>(key.size()), 0, 0, KeyCodec::rowOf(key)});
      window_.bytes += key;
      if (order_ < 0) fillRecord(window_.entries.back(), walk.payload());
    }
    if (order_ >= 0) fillRecords(from);
  }
}

// A walk finds its place again by key: on a tree that is out of order it would go in circles.
void Cursor::requireOrder(bool forward, std::string_view last, std::string_view key, bool mayEqual) const {
  const int moved = key.compare(last);
  if (forward ? moved < 0 : moved > 0) raiseDamaged("has keys that are out of order");
  if (moved == 0 && !mayEqual) raiseDamaged("has a key twice");
}

void Cursor::fillRecord(Window::Entry& entry, std::string_view payload) {
  const std::string_view record = table_->record(payload, scratch_);
  entry.record = static_cast<std::uint32_t>(window_.bytes.size());
  entry.recordSize = static_cast<std::uint32_t>(record.size());
  window_.bytes += record;
}

// The records of the entries from `first` on, of which only the keys are there. In the order of an index they lie apart
// and none is in the processor's cache: their pages are asked for together, so that they are waited for once.
void Cursor::fillRecords(std::size_t first) {
  std::array<std::optional<TreeWalk>, kTogether> walks;
  const auto rowKey = [&](const Window::Entry& entry) {
    return std::string_view(window_.bytes).substr(entry.key, entry.keySize).substr(entry.keySize - KeyCodec::kRowBytes);
  };
  for (std::size_t i = first; i < window_.entries.size(); ++i)
    walks[i - first].emplace(table_->rows()).approach(rowKey(window_.entries[i]));
  for (std::size_t i = first; i < window_.entries.size(); ++i) {
    TreeWalk& walk = *walks[i - first];
    const std::string_view key = rowKey(window_.entries[i]);
    if (!walk.arrive(key) || walk.key() != key) raiseDamaged("names a record that is not there");
    fillRecord(window_.entries[i], walk.payload());
    if (window_.bytes.size() >= kBatchBytes) window_.entries.resize(i + 1);  // the rest is read again
  }
}

bool Cursor::fillFromList(bool forward, std::string_view from, bool inclusive, bool bounded) {
  const auto size = static_cast<std::int64_t>(list_->rows.size());
  std::int64_t place = forward ? 0 : size - 1;
  if (!bounded && !from.empty()) {
    std::uint64_t at = 0;
    for (std::size_t i = 0; i < 8; ++i) at = at << 8 | static_cast<unsigned char>(from[i]);
    place = at >= list_->rows.size() ? size : static_cast<std::int64_t>(at);
    if (!inclusive) place += forward ? 1 : -1;
  }
  const Table::Reading reading(*table_);
  std::string key, record;
  for (; place >= 0 && place < size && window_.entries.size() < window_.batch; place += forward ? 1 : -1) {
    const RowId row = list_->rows[static_cast<std::size_t>(place)];
    if (!table_->readRow(row, record)) continue;
    keyOf(row, record, key);
    window_.add(key, row, record);
  }
  window_.version = table_->version();
  window_.time = database_->session().environment().clock.milliseconds();
  return !window_.entries.empty();
}

// The neighbour of the current row among the rows read ahead, or read now; null at the end.
const Cursor::Window::Entry* Cursor::ahead(bool forward) {
  if (!window_.entries.empty() && window_.forward == forward && window_.at + 1 < window_.entries.size() &&
      window_.version == table_->version()) {
    const Window::Entry& current = window_.entries[window_.at];
    const bool mine = current.row == at_.row && current.keySize == at_.key.size() &&
                      std::string_view(window_.bytes).substr(current.key, current.keySize) == at_.key;
    bool fresh = mine;
    if (mine && !database_->inMemory()) {
      const std::int64_t now = database_->session().environment().clock.milliseconds();
      if (now - window_.time > kFreshFor || database_->session().settings().strictChangeDetection) {
        const Table::Reading reading(*table_);  // notices what others have published
        fresh = window_.version == table_->version();
        window_.time = now;
      }
    }
    if (fresh) return &window_.entries[++window_.at];
  }
  return fill(forward, at_.key, false, false) ? &window_.entries[0] : nullptr;
}

void Cursor::take(const Window::Entry& entry) {
  at_.there = true;
  at_.row = entry.row;
  at_.key.assign(window_.bytes, entry.key, entry.keySize);
  at_.record.assign(window_.bytes, entry.record, entry.recordSize);
  at_.expected.reset();
  at_.ownDeleted = false;
  at_.version = window_.version;
  view_.reset();
  calculated_ = false;
}

void Cursor::stand(RowId row, std::string key, std::string record) {
  at_ = {true, row, std::move(key), std::move(record), std::nullopt, false, table_->version()};
  view_.reset();
  calculated_ = false;
}

// To the next passing row in a direction; without one the row stays.
bool Cursor::step(bool forward) {
  if (!filters()) {
    const Window::Entry* entry = ahead(forward);
    if (entry) take(*entry);
    return entry != nullptr;
  }
  Standing before = at_;
  try {
    while (const Window::Entry* entry = ahead(forward)) {
      take(*entry);
      if (passes()) return true;
    }
  } catch (...) {
    at_ = std::move(before);
    view_.reset();
    calculated_ = false;
    throw;
  }
  at_ = std::move(before);
  view_.reset();
  calculated_ = false;
  return false;
}

bool Cursor::enter(bool forward, std::string_view from, bool inclusive) {
  if (!fill(forward, from, inclusive, from.empty())) {
    at_.there = false;
    return false;
  }
  take(window_.entries[0]);
  if (passes() || step(forward)) return true;
  at_.there = false;
  return false;
}

// Without any row there is no place to come back to.
bool Cursor::firstRow() {
  window_ = {};
  if (enter(true, {}, true)) return true;
  at_.key.clear();
  return false;
}

bool Cursor::lastRow() {
  window_ = {};
  if (enter(false, {}, true)) return true;
  at_.key.clear();
  return false;
}

void Cursor::arrived() {
  view_.reset();
  calculated_ = false;
  tellDetails();
  fire(events.afterScroll);
}

// Stands on the row that it stood on, or where that is gone or out of view on the next one that passes, else at the
// end.
void Cursor::findAgain(const std::string& key) {
  window_ = {};
  std::string record;
  if (at_.there && readStanding(at_.row, record)) {
    std::string now;
    keyOf(at_.row, record, now);
    if (inBounds(now) && !nothing_) {
      stand(at_.row, std::move(now), std::move(record));
      if (passes()) {
        arrived();
        return;
      }
    }
  }
  const std::string from(key.begin(), key.end());  // `key` may be the standing row's own
  bof_ = from.empty();
  eof_ = from.empty() ? !firstRow() : !enter(true, from, true);
  if (eof_ && !lastRow()) bof_ = true;
  arrived();
}

void Cursor::findAgainFrom(const Standing& standing) {
  std::string key;
  if (standing.there) keyOf(standing.row, standing.record, key);
  findAgain(key);
}

bool Cursor::readStanding(RowId row, std::string& record) const {
  bool found = false;
  table_->read([&] { found = table_->readRow(row, record); });
  return found;
}

}  // namespace quillon::store
