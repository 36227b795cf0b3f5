#include "store/PassingRows.h"

#include <algorithm>

#include "store/Errors.h"
#include "store/table/RowReader.h"
#include "store/table/Table.h"

namespace quillon::store {
namespace {

constexpr std::size_t kChunk = 1024;           // rows looked at in one read, before others may write
constexpr std::size_t kEnough = 256;           // rows looked at after which what was found is given
constexpr std::size_t kFromCandidates = 64;    // rows given at least, now that all candidates are in order
constexpr std::size_t kCountChunk = 4096;      // the same for a count
constexpr std::uint64_t kCandidates = 16'384;  // brought into an order at most
constexpr std::uint64_t kMostIds = 1'000'000;  // kept at a time for a count

}  // namespace

bool seekFrom(TreeWalk& walk, bool forward, const PassingRows::From& from, std::string_view low,
              std::string_view high) {
  if (forward) {
    bool found = walk.seek(from.bounded || from.key < low ? low : std::string_view(from.key));
    if (found && !from.inclusive && !from.bounded && walk.key() == from.key) found = walk.next();
    return found;
  }
  if (from.bounded || (!high.empty() && from.key >= high)) return high.empty() ? walk.last() : walk.seekBefore(high);
  return (from.inclusive && walk.seek(from.key) && walk.key() == from.key) || walk.seekBefore(from.key);
}

PassingRows::PassingRows(Table& table, int order, RowFilter& filter, std::string low, std::string high)
    : table_(table), order_(order), filter_(filter), low_(std::move(low)), high_(std::move(high)) {
  if (order_ < 0) return;
  const RowFilter::Range& range = filter_.range(order_);
  nothing_ = range.nothing;
  low_ = std::max(low_, range.low);
  if (!range.high.empty()) high_ = high_.empty() ? range.high : std::min(high_, range.high);
}

void PassingRows::keyOf(RowId row, std::string_view record, std::string& key) const {
  key.clear();
  if (order_ < 0)
    KeyCodec::appendRow(key, row);
  else
    table_.codec(order_).encode(RecordView(table_.layout(), record), row, key);
}

// An error of a row that is only read ahead is raised when its turn comes.
PassingRows::Test PassingRows::test(RowId row, std::string_view record, std::size_t added) {
  try {
    return filter_.mayPass(row, record) ? Test::passes : Test::fails;
  } catch (const StoreError& error) {
    if (added == 0 || error.code() == Code::changedMeanwhile) throw;
    return Test::raises;
  }
}

void PassingRows::read(bool forward, From from, std::size_t most, const Sink& sink) {
  if (nothing_) return sink.clear();
  for (int round = 0;; ++round) {
    bool read = false;
    if (round < 2) table_.read([&] { read = readCandidates(forward, from, round == 0 ? most : 0, sink); });
    if (read) return;
    Chunk chunk;
    table_.read([&] { chunk = walk(forward, from, most, sink); });
    if (chunk.added > 0 || chunk.ended) return;
    from = {std::move(chunk.last), false, false};
  }
}

PassingRows::Chunk PassingRows::walk(bool forward, const From& from, std::size_t most, const Sink& sink) {
  sink.clear();
  Chunk chunk;
  TreeWalk walk(order_ < 0 ? table_.rows() : table_.index(order_));
  RowReader rows(table_);
  std::size_t looked = 0;
  for (bool found = seekFrom(walk, forward, from, low_, high_);; found = forward ? walk.next() : walk.prior()) {
    if (!found || !inside(walk.key())) {
      chunk.ended = true;
      return chunk;
    }
    if (chunk.added == most || looked++ >= (chunk.added > 0 ? kEnough : kChunk)) return chunk;
    const RowId row = KeyCodec::rowOf(walk.key());
    const std::string_view record = order_ < 0 ? table_.record(walk.payload(), scratch_) : rows.read(row);
    const Test result = test(row, record, chunk.added);
    if (result == Test::raises) return chunk;
    if (result == Test::passes) {
      sink.add(walk.key(), row, record);
      ++chunk.added;
    } else if (chunk.added == 0) {
      chunk.last = walk.key();
    }
  }
}

std::uint64_t PassingRows::between(int order, std::string_view low, std::string_view high) {
  Tree& tree = order < 0 ? table_.rows() : table_.index(order);
  const std::uint64_t above = high.empty() ? tree.count() : tree.rank(high);
  return above - std::min(above, low.empty() ? 0 : tree.rank(low));
}

int PassingRows::narrowest(std::uint64_t& rows) {
  int found = -1;
  const int indexes = static_cast<int>(table_.definition().indexes.size());
  for (int i = 0; i < indexes; ++i) {
    const RowFilter::Range& range = filter_.range(i);
    if (i == order_ || !range.narrowed) continue;
    const std::uint64_t count = range.nothing ? 0 : between(i, range.low, range.high);
    if (found >= 0 && count >= rows) continue;
    found = i;
    rows = count;
  }
  return found;
}

std::vector<RowId> PassingRows::idsOf(int index, std::string_view low, std::string_view high) {
  std::vector<RowId> ids;
  TreeWalk walk(index < 0 ? table_.rows() : table_.index(index));
  for (bool found = walk.seek(low); found && (high.empty() || walk.key() < high); found = walk.next())
    ids.push_back(KeyCodec::rowOf(walk.key()));
  return ids;
}

// The next rows from another index, where it leaves fewer than a walk would look at: all the rows ahead, or so many as
// have `wanted` passing ones among them if every candidate passes. False: it does not.
bool PassingRows::readCandidates(bool forward, const From& from, std::size_t wanted, const Sink& sink) {
  sink.clear();
  std::uint64_t count = 0;
  const int index = narrowest(count);
  if (index < 0 || count > kCandidates) return false;
  const std::string_view low = forward && !from.bounded ? std::max(from.key, low_) : low_;
  const std::string_view high = forward || from.bounded ? high_ : from.key;
  const std::uint64_t ahead = between(order_, low, high);
  if (2 * count > (wanted > 0 && count > wanted ? ahead / count * wanted : ahead)) return false;
  const RowFilter::Range& range = filter_.range(index);
  if (range.nothing) return true;
  RowReader rows(table_);
  std::vector<std::string> keys;
  for (const RowId row : idsOf(index, range.low, range.high)) {
    std::string& key = keys.emplace_back();
    keyOf(row, rows.read(row), key);
    const bool reached =
        from.bounded || (forward ? key > from.key : key < from.key) || (from.inclusive && key == from.key);
    if (!inside(key) || !reached) keys.pop_back();
  }
  std::sort(keys.begin(), keys.end());
  if (!forward) std::reverse(keys.begin(), keys.end());
  std::size_t added = 0;
  for (const std::string& key : keys) {
    const RowId row = KeyCodec::rowOf(key);
    const std::string_view record = rows.read(row);
    const Test result = test(row, record, added);
    if (result == Test::raises) break;
    if (result == Test::fails) continue;
    sink.add(key, row, record);
    if (++added == std::max(wanted, kFromCandidates)) break;
  }
  return true;
}

std::uint64_t PassingRows::count() {
  if (nothing_) return 0;
  std::vector<RowId> ids;
  bool byIds = false, inOrder = false;
  table_.read([&] {
    std::uint64_t candidates = 0;
    const int index = narrowest(candidates);
    const std::uint64_t inRange = between(order_, low_, high_);
    inOrder = index < 0 || inRange <= candidates;
    // By row id, records are read one behind the other.
    byIds = std::min(inOrder ? inRange : candidates, kMostIds) < table_.rowCount() / 3;
    if (!byIds || (!inOrder && candidates == 0)) return;
    ids = inOrder ? idsOf(order_, low_, high_) : idsOf(index, filter_.range(index).low, filter_.range(index).high);
  });
  return byIds ? countOf(ids, inOrder) : countAll();
}

bool PassingRows::counts(RowId row, std::string_view record, bool inOrder) {
  if (!inOrder && (!low_.empty() || !high_.empty())) {
    keyOf(row, record, key_);
    if (!inside(key_)) return false;
  }
  return filter_.mayPass(row, record);
}

std::uint64_t PassingRows::countOf(std::vector<RowId>& ids, bool inOrder) {
  std::sort(ids.begin(), ids.end());
  std::uint64_t count = 0;
  for (std::size_t from = 0; from < ids.size(); from += kCountChunk) {
    std::uint64_t found = 0;
    table_.read([&] {
      found = 0;
      std::string record;
      for (std::size_t i = from; i < std::min(from + kCountChunk, ids.size()); ++i)
        found += table_.readRow(ids[i], record) && counts(ids[i], record, inOrder);
    });
    count += found;
  }
  return count;
}

std::uint64_t PassingRows::countAll() {
  std::uint64_t count = 0;
  for (std::string from;;) {
    std::uint64_t found = 0;
    std::string next;
    table_.read([&] {
      found = 0;
      next.clear();
      std::size_t looked = 0;
      TreeWalk walk(table_.rows());
      for (bool there = walk.seek(from); there; there = walk.next()) {
        if (looked++ == kCountChunk) {
          next = walk.key();
          return;
        }
        found += counts(KeyCodec::rowOf(walk.key()), table_.record(walk.payload(), scratch_), false);
      }
    });
    count += found;
    if (next.empty()) return count;
    from = std::move(next);
  }
}

}  // namespace quillon::store
