#pragma once

#include <string_view>

#include "store/pages/Page.h"

// A page of a tree, behind the 24 bytes that every page has (kind leaf or inner, level, count):
//
//  24  u16  heapTop    lowest byte used by a cell; 4096 when there is none
//  26  u16  dead       bytes of removed cells between heapTop and the end
//  28  u16  lastPlace  index of the entry inserted last
//  30  i16  run        inserts in a row that landed just behind (above 0) or just before (below 0) the one before them
//  32  u16  slots[count]: offset of each entry's cell, in key order
//  ...      free
//  heapTop  cells, in any order, up to the end of the page
//
// A length is one byte below 128, otherwise two: the low seven bits with the high bit set, then the rest.
//
//   leaf cell   length of key, length of payload, key, payload
//   inner cell  u32 child, u32 entries in the child's subtree, length of key, key
//
// All keys below an inner entry are at or above its key and below the key of the next entry. The key of entry 0 is
// never looked at: it stands for the lowest of all.
namespace quillon::store {

class PageFile;

inline constexpr std::size_t kTreeSlots = 32;
inline constexpr std::size_t kTreeRoom = kPageSize - kTreeSlots;  // bytes for slots and cells
inline constexpr unsigned kMaxTreeDepth = 16;

// An entry as it is to be put into a page; looks at its bytes.
struct TreeCell {
  std::string_view key;
  std::string_view payload;  // of a leaf
  PageNo child = 0;          // of an inner page, whose cells have one
  std::uint32_t rows = 0;

  std::size_t size() const;  // in the page, without its slot
};

// Reads a page. Whatever the bytes are, nothing outside the page is read: an entry that leaves it raises `damaged`.
class TreePage {
 public:
  // The page must have passed `requireSound` before anything else is asked.
  TreePage(const std::byte* data, const PageFile& file) : data_(data), file_(&file) {}

  static constexpr unsigned kAnyLevel = ~0u;
  // Raises `damaged` unless header and level are those of a tree page with entries.
  void requireSound(unsigned level = kAnyLevel) const;
  [[noreturn]] void raiseDamaged() const;

  bool leaf() const { return pageLevel(data_) == 0; }
  unsigned level() const { return pageLevel(data_); }
  unsigned count() const { return pageCount(data_); }
  unsigned heapTop() const { return loadAt<std::uint16_t>(data_, 24); }
  unsigned dead() const { return loadAt<std::uint16_t>(data_, 26); }
  unsigned lastPlace() const { return loadAt<std::uint16_t>(data_, 28); }
  int run() const { return loadAt<std::int16_t>(data_, 30); }
  std::size_t used() const { return kPageSize - heapTop() - dead() + 2 * count(); }
  bool fits(std::size_t cellSize) const { return used() + cellSize + 2 <= kTreeRoom; }

  unsigned slot(unsigned index) const { return loadAt<std::uint16_t>(data_, kTreeSlots + 2 * index); }
  TreeCell cell(unsigned index) const { return leaf() ? leafCell(index) : innerCell(index); }
  inline TreeCell leafCell(unsigned index) const;
  inline TreeCell innerCell(unsigned index) const;
  std::size_t cellSize(unsigned index) const { return cell(index).size(); }
  std::string_view key(unsigned index) const { return cell(index).key; }
  inline PageNo child(unsigned index) const;
  inline std::uint32_t rows(unsigned index) const;
  std::uint64_t totalRows() const;  // in the subtree

  // Leaf: the first entry at or above `key`; count() when there is none.
  unsigned lowerBound(std::string_view key) const;
  // The same, trying the place first where the last insert would go on.
  unsigned lowerBoundNearRun(std::string_view key) const;
  // Inner: the entry below which `key` belongs.
  unsigned childFor(std::string_view key) const;
  bool holds(unsigned index, std::string_view key) const { return index < count() && leafCell(index).key == key; }

 protected:
  template <bool kLeaf>
  struct Search;
  unsigned byteAt(std::size_t offset) const { return static_cast<unsigned>(data_[offset]); }
  std::string_view bytes(std::size_t offset, std::size_t size) const {
    return {reinterpret_cast<const char*>(data_ + offset), size};
  }
  inline std::size_t innerOffset(unsigned index) const;

  const std::byte* data_;
  const PageFile* file_;
};

// Changes a page that is part of the overlay. The caller has made sure that there is room.
class TreePageEditor : public TreePage {
 public:
  TreePageEditor(std::byte* data, const PageFile& file) : TreePage(data, file), out_(data) {}

  void format(unsigned level);  // of a page of zeros
  void insert(unsigned index, const TreeCell& cell);
  void append(const TreeCell& cell) { insert(count(), cell); }
  void remove(unsigned index);
  void replace(unsigned index, const TreeCell& cell);
  void truncate(unsigned count);
  void setRows(unsigned index, std::uint64_t rows);
  void addRows(unsigned index, int change) { setRows(index, rows(index) + static_cast<std::uint64_t>(change)); }
  void setPayload(unsigned index, std::string_view payload);  // of the same size
  // Tells that the entry at `index` was just inserted, and what the run was before.
  void noteInsert(unsigned index, unsigned lastPlace, int run);
  void noteInsert(unsigned index) { noteInsert(index, lastPlace(), run()); }

 private:
  void compact();
  void setCount(unsigned count) { storeAt(out_, 22, static_cast<std::uint16_t>(count)); }
  void setHeapTop(std::size_t top) { storeAt(out_, 24, static_cast<std::uint16_t>(top)); }
  void setDead(std::size_t dead) { storeAt(out_, 26, static_cast<std::uint16_t>(dead)); }
  void setRun(unsigned lastPlace, int run);

  std::byte* out_;
};

inline TreeCell TreePage::leafCell(unsigned index) const {
  const std::size_t at = slot(index);
  if (at - kTreeSlots > kTreeRoom - 2) raiseDamaged();
  std::size_t keySize = byteAt(at), payloadSize = byteAt(at + 1), start = at + 2;
  if ((keySize | payloadSize) >= 128) {
    if (keySize >= 128) {
      if (start >= kPageSize) raiseDamaged();
      keySize = (keySize & 127) | payloadSize << 7;
      payloadSize = byteAt(start++);
    }
    if (payloadSize >= 128) {
      if (start >= kPageSize) raiseDamaged();
      payloadSize = (payloadSize & 127) | std::size_t{byteAt(start++)} << 7;
    }
  }
  if (start + keySize + payloadSize > kPageSize) raiseDamaged();
  return {bytes(start, keySize), bytes(start + keySize, payloadSize)};
}

inline std::size_t TreePage::innerOffset(unsigned index) const {
  const std::size_t at = slot(index);
  if (at - kTreeSlots > kTreeRoom - 9) raiseDamaged();
  return at;
}

inline TreeCell TreePage::innerCell(unsigned index) const {
  const std::size_t at = innerOffset(index);
  std::size_t keySize = byteAt(at + 8), start = at + 9;
  if (keySize >= 128) {
    if (start >= kPageSize) raiseDamaged();
    keySize = (keySize & 127) | std::size_t{byteAt(start++)} << 7;
  }
  if (start + keySize > kPageSize) raiseDamaged();
  return {bytes(start, keySize), {}, loadAt<PageNo>(data_, at), loadAt<std::uint32_t>(data_, at + 4)};
}

inline PageNo TreePage::child(unsigned index) const { return loadAt<PageNo>(data_, innerOffset(index)); }
inline std::uint32_t TreePage::rows(unsigned index) const {
  return loadAt<std::uint32_t>(data_, innerOffset(index) + 4);
}

}  // namespace quillon::store
