#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

// A page of a table file, 4096 bytes, little-endian:
//
//   0  u64  checksum   XXH3-64 of bytes 8 to the end, with the file's id and the page number mixed in, so that a
//   page
//                      that strayed to another place or another file is found too
//   8  u64  stamp      number of the commit that wrote the page; 0 as created
//  16  u32  number     its place in the file
//  20  u8   kind
//  21  u8   level      of a tree page: 0 for a leaf
//  22  u16  count      of a tree page: its entries
//  24  ...  body
namespace quillon::store {

using PageNo = std::uint32_t;  // 0 is the identification page of a file and serves as "none" elsewhere

inline constexpr std::size_t kPageSize = 4096;
inline constexpr std::size_t kPageBody = 24;

enum class PageKind : std::uint8_t {
  none = 0,
  identity = 1,
  meta = 2,
  schema = 3,
  leaf = 4,
  inner = 5,
  overflow = 6,
  blob = 7,
  free = 8
};

template <typename T>
inline T loadAt(const std::byte* page, std::size_t offset) {
  T value;
  std::memcpy(&value, page + offset, sizeof value);
  return value;
}

template <typename T>
inline void storeAt(std::byte* page, std::size_t offset, T value) {
  std::memcpy(page + offset, &value, sizeof value);
}

inline std::uint64_t pageStamp(const std::byte* page) { return loadAt<std::uint64_t>(page, 8); }
inline PageNo pageNumber(const std::byte* page) { return loadAt<PageNo>(page, 16); }
inline PageKind pageKind(const std::byte* page) { return static_cast<PageKind>(page[20]); }
inline unsigned pageLevel(const std::byte* page) { return static_cast<unsigned>(page[21]); }
inline unsigned pageCount(const std::byte* page) { return loadAt<std::uint16_t>(page, 22); }

// Writes stamp and checksum; the page is then as it goes to the disk.
void sealPage(std::byte* page, std::uint64_t fileId, std::uint64_t stamp);
// Whether checksum and number are those of this place in this file.
bool pageIsSound(const std::byte* page, std::uint64_t fileId, PageNo number);

std::uint64_t hashBytes(const void* data, std::size_t size, std::uint64_t start = 0);

}  // namespace quillon::store
