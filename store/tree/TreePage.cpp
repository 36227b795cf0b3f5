#include "store/tree/TreePage.h"

#include <algorithm>
#include <bit>
#include <string>

#include "store/Errors.h"
#include "store/pages/PageFile.h"

namespace quillon::store {
namespace {

static_assert(std::endian::native == std::endian::little);

constexpr std::size_t lengthSize(std::size_t length) { return length < 128 ? 1 : 2; }

std::byte* putLength(std::byte* to, std::size_t length) {
  if (length < 128) {
    *to++ = static_cast<std::byte>(length);
  } else {
    *to++ = static_cast<std::byte>((length & 127) | 128);
    *to++ = static_cast<std::byte>(length >> 7);
  }
  return to;
}

std::byte* putBytes(std::byte* to, std::string_view bytes) {
  if (!bytes.empty()) std::memcpy(to, bytes.data(), bytes.size());
  return to + bytes.size();
}

std::uint64_t bigEndian(const void* at) {
  std::uint64_t value;
  std::memcpy(&value, at, sizeof value);
  return __builtin_bswap64(value);
}

constexpr std::size_t kRowIdSize = 5;
constexpr std::uint64_t kRowIdMask = (std::uint64_t{1} << 40) - 1;

}  // namespace

std::size_t TreeCell::size() const {
  if (child != 0) return 8 + lengthSize(key.size()) + key.size();
  return lengthSize(key.size()) + lengthSize(payload.size()) + key.size() + payload.size();
}

void TreePage::requireSound(unsigned level) const {
  const PageKind kind = pageKind(data_);
  const std::size_t slotsEnd = kTreeSlots + 2 * count();
  const bool sound = kind == (leaf() ? PageKind::leaf : PageKind::inner) && this->level() < kMaxTreeDepth &&
                     (level == kAnyLevel || this->level() == level) && count() > 0 && heapTop() <= kPageSize &&
                     slotsEnd <= heapTop() && dead() <= kPageSize - heapTop();
  if (!sound) raiseDamaged();
}

void TreePage::raiseDamaged() const {
  throw StoreError(Code::damaged, "Page " + std::to_string(pageNumber(data_)) + " of '" + file_->name() +
                                      "' is damaged. Run Pack/Repair on the company, or bring back a backup.");
}

std::uint64_t TreePage::totalRows() const {
  if (leaf()) return count();
  std::uint64_t total = 0;
  for (unsigned i = 0, n = count(); i < n; ++i) total += rows(i);
  return total;
}

// Where a key belongs among a page's entries. Row ids, which are five bytes, shorter and longer keys by up to their
// first eight bytes are compared as numbers: most keys part there, without a call.
template <bool kLeaf>
struct TreePage::Search {
  const TreePage& page;
  std::string_view key;
  std::uint64_t head;  // the key as a number: all of one shorter than eight bytes, or the first eight

  Search(const TreePage& searched, std::string_view sought) : page(searched), key(sought), head(0) {
    if (key.size() >= 8) {
      head = bigEndian(key.data());
    } else {
      for (const char byte : key) head = head << 8 | static_cast<unsigned char>(byte);
    }
  }

  std::string_view keyAt(unsigned index) const {
    if constexpr (!kLeaf) return page.innerCell(index).key;
    const std::size_t at = page.slot(index);
    if (at - kTreeSlots > kTreeRoom - 2) page.raiseDamaged();
    std::size_t size = page.byteAt(at), start = at + 2;
    std::size_t next = page.byteAt(at + 1);
    if (size >= 128) {
      if (start >= kPageSize) page.raiseDamaged();
      size = (size & 127) | next << 7;
      next = page.byteAt(start++);
    }
    start += next >> 7;
    if (start + size > kPageSize) page.raiseDamaged();
    return page.bytes(start, size);
  }

  // Whether the place of `key` lies behind the entry: in a leaf entry < key, in an inner page entry <= key.
  bool behindRest(std::string_view entry, std::size_t same) const {
    const std::size_t common = std::min(entry.size(), key.size());
    const int order = common > same ? std::memcmp(entry.data() + same, key.data() + same, common - same) : 0;
    if (order != 0) return order < 0;
    return kLeaf ? entry.size() < key.size() : entry.size() <= key.size();
  }
  // The eight bytes that end with the key lie in the page: a cell starts behind the slots.
  static std::uint64_t rowIdOf(std::string_view entry) { return bigEndian(entry.data() + kRowIdSize - 8) & kRowIdMask; }
  bool behindRowId(unsigned index) const {
    const std::string_view entry = keyAt(index);
    if (entry.size() != kRowIdSize) return behindBeginning(entry);
    const std::uint64_t number = rowIdOf(entry);
    return kLeaf ? number < head : number <= head;
  }
  // A key that is the beginning of entries (a search by the leading fields of an index): shorter than eight bytes.
  bool behindBeginning(std::string_view entry) const {
    if (entry.size() < 8 || key.empty()) [[unlikely]]
      return behindRest(entry, 0);
    return bigEndian(entry.data()) >> (64 - 8 * key.size()) < head;  // the longer of like ones comes later
  }
  bool behindLong(unsigned index) const {
    const std::string_view entry = keyAt(index);
    if (entry.size() < 8) [[unlikely]]
      return behindRest(entry, 0);
    const std::uint64_t number = bigEndian(entry.data());
    return number != head ? number < head : behindRest(entry, 8);
  }
  bool behind(unsigned index) const {
    if (key.size() == kRowIdSize) return behindRowId(index);
    if (key.size() >= 8) return behindLong(index);
    return behindBeginning(keyAt(index));
  }

  // Cells lie all over the page. Where it is not in the processor's cache, each step of a search would wait for one; so
  // those of the next `steps` steps, whichever way they go, are asked for at once.
  void ask(unsigned low, unsigned high, unsigned steps) const {
    if (low >= high) return;
    const unsigned middle = (low + high) / 2;
    __builtin_prefetch(page.data_ + page.slot(middle) % kPageSize);
    if (steps == 1) return;
    ask(low, middle, steps - 1);
    ask(middle + 1, high, steps - 1);
  }

  // The first index in [low, high) that is not behind; `test` is one of the above.
  template <typename Test>
  unsigned find(unsigned low, unsigned high, Test test) const {
    constexpr unsigned kStepsAhead = 3, kFew = 16;
    const bool far = kLeaf && high - low > kFew;
    for (unsigned step = 0; low < high; ++step) {
      if (far && step % kStepsAhead == 0) ask(low, high, kStepsAhead);
      const unsigned middle = (low + high) / 2;
      if (test(middle)) {
        low = middle + 1;
      } else {
        high = middle;
      }
    }
    return low;
  }
  // Row ids mostly follow each other closely, so their place can be told from the first and the last.
  unsigned findRowId(unsigned low) const {
    const auto test = [this](unsigned i) { return behindRowId(i); };
    unsigned high = page.count();
    if (high - low < 8) return find(low, high, test);
    const std::string_view first = keyAt(low);
    if (first.size() != kRowIdSize) return find(low, high, test);
    const std::uint64_t from = rowIdOf(first);
    // Without gaps one look tells; the last entry then stays out of the processor's cache.
    if (kLeaf && head > from && head - from < high - low) {
      const unsigned direct = low + static_cast<unsigned>(head - from);
      const std::string_view there = keyAt(direct);
      if (there.size() == kRowIdSize && rowIdOf(there) == head) return direct;
    }
    const std::string_view last = keyAt(high - 1);
    if (last.size() != kRowIdSize) return find(low, high, test);
    const std::uint64_t to = rowIdOf(last);
    if (head <= from || head >= to) return find(low, high, test);
    const auto guess = low + static_cast<unsigned>((head - from) * (high - 1 - low) / (to - from));
    if (test(guess)) {
      low = guess + 1;
      if (!test(low)) return low;
    } else {
      high = guess;
      if (high > low && test(high - 1)) return high;
    }
    return find(low, high, test);
  }
  unsigned find(unsigned low) const {
    if (key.size() == kRowIdSize) return findRowId(low);
    if (key.size() >= 8) return find(low, page.count(), [this](unsigned i) { return behindLong(i); });
    return find(low, page.count(), [this](unsigned i) { return behindBeginning(keyAt(i)); });
  }
};

unsigned TreePage::lowerBound(std::string_view key) const { return Search<true>(*this, key).find(0); }

unsigned TreePage::lowerBoundNearRun(std::string_view key) const {
  const Search<true> search(*this, key);
  const unsigned n = count(), last = lastPlace();
  if (run() > 0 && last < n && search.behind(last) && (last + 1 == n || !search.behind(last + 1))) return last + 1;
  return search.find(0);
}

unsigned TreePage::childFor(std::string_view key) const {
  const Search<false> search(*this, key);
  const unsigned n = count();
  if (n > 1 && search.behind(n - 1)) return n - 1;  // appending
  return search.find(1) - 1;
}

void TreePageEditor::format(unsigned level) {
  out_[21] = static_cast<std::byte>(level);
  setCount(0);
  setHeapTop(kPageSize);
  setDead(0);
  setRun(0, 0);
}

void TreePageEditor::insert(unsigned index, const TreeCell& cell) {
  const std::size_t size = cell.size();
  const unsigned n = count();
  if (kTreeSlots + 2 * (n + 1) + size > heapTop()) {
    compact();
    if (kTreeSlots + 2 * (n + 1) + size > heapTop()) raiseDamaged();
  }
  const std::size_t at = heapTop() - size;
  std::byte* to = out_ + at;
  if (cell.child != 0) {
    storeAt(to, 0, cell.child);
    storeAt(to, 4, cell.rows);
    to = putBytes(putLength(to + 8, cell.key.size()), cell.key);
  } else {
    to = putLength(putLength(to, cell.key.size()), cell.payload.size());
    to = putBytes(putBytes(to, cell.key), cell.payload);
  }
  std::byte* slots = out_ + kTreeSlots + 2 * index;
  std::memmove(slots + 2, slots, 2 * (n - index));
  storeAt(slots, 0, static_cast<std::uint16_t>(at));
  setHeapTop(at);
  setCount(n + 1);
}

void TreePageEditor::remove(unsigned index) {
  const unsigned n = count();
  const std::size_t at = slot(index), size = cellSize(index);
  if (at == heapTop()) {
    setHeapTop(at + size);
  } else {
    setDead(dead() + size);
  }
  std::byte* slots = out_ + kTreeSlots + 2 * index;
  std::memmove(slots, slots + 2, 2 * (n - index - 1));
  setCount(n - 1);
  setRun(0, 0);
}

void TreePageEditor::replace(unsigned index, const TreeCell& cell) {
  const unsigned place = lastPlace();
  const int before = run();
  remove(index);
  insert(index, cell);
  setRun(place, before);
}

void TreePageEditor::truncate(unsigned count) {
  std::size_t removed = 0;
  for (unsigned i = count, n = this->count(); i < n; ++i) removed += cellSize(i);
  setCount(count);
  setDead(dead() + removed);
  setRun(0, 0);
  if (count == 0) {
    setHeapTop(kPageSize);
    setDead(0);
  }
}

void TreePageEditor::setRows(unsigned index, std::uint64_t rows) {
  storeAt(out_, innerOffset(index) + 4, static_cast<std::uint32_t>(rows));
}

void TreePageEditor::setPayload(unsigned index, std::string_view payload) {
  const TreeCell cell = leafCell(index);
  if (!payload.empty()) std::memmove(out_ + (cell.payload.data() - bytes(0, 0).data()), payload.data(), payload.size());
}

void TreePageEditor::noteInsert(unsigned index, unsigned lastPlace, int run) {
  constexpr int kEnough = 1000;  // the count stops there: it must not wrap
  if (index == lastPlace + 1 && run >= 0) {
    run = std::min(run + 1, kEnough);
  } else if (index == lastPlace && run <= 0) {
    run = std::max(run - 1, -kEnough);
  } else {
    run = index == lastPlace + 1 ? 1 : index == lastPlace ? -1 : 0;
  }
  setRun(index, run);
}

void TreePageEditor::setRun(unsigned lastPlace, int run) {
  storeAt(out_, 28, static_cast<std::uint16_t>(lastPlace));
  storeAt(out_, 30, static_cast<std::int16_t>(run));
}

void TreePageEditor::compact() {
  std::byte cells[kPageSize];
  const unsigned n = count();
  const std::size_t slotsEnd = kTreeSlots + 2 * n;
  std::size_t top = kPageSize;
  for (unsigned i = 0; i < n; ++i) {
    const std::size_t size = cellSize(i);
    if (top - slotsEnd < size) raiseDamaged();  // cells that overlap
    top -= size;
    std::memcpy(cells + top, data_ + slot(i), size);
  }
  std::size_t at = kPageSize;
  for (unsigned i = 0; i < n; ++i) {
    at -= cellSize(i);  // of the old bytes, which stand until the copy below
    storeAt(out_, kTreeSlots + 2 * i, static_cast<std::uint16_t>(at));
  }
  std::memcpy(out_ + top, cells + top, kPageSize - top);
  setHeapTop(top);
  setDead(0);
}

}  // namespace quillon::store
