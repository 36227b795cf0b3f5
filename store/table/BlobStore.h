#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "store/RecordCodec.h"
#include "store/pages/PageFile.h"

// A page of contents of memo, blob and graphic fields (kind blob), in eight blocks of 512 bytes. Block 0 is the page's
// own:
//
//    0  page header, 24 bytes
//   24  u8   taken: bit s is set while block s (1 to 7) is part of a content
//
// Blocks 1 to 7 hold contents or are free. A block's id is page * 8 + place in the page.
//
//    0  u32  next block of the content, or of the free blocks; 0 ends
//    4  u16  bytes of content here: 504 in all but the last block; 0 when free
//    6  u16  0
//    8  504 bytes
namespace quillon::store {

inline constexpr std::size_t kBlobBlock = 512;
inline constexpr std::size_t kBlobData = 504;
inline constexpr std::size_t kBlobTaken = kPageBody;
inline constexpr std::uint64_t kMaxBlob = std::uint64_t{1} << 31;  // bytes of one content

// The free blocks, chained. Lives in the table's meta page; changes with the overlay.
struct BlobSpace {
  std::uint32_t freeHead = 0;
  std::uint32_t freeBlocks = 0;
};

inline constexpr std::size_t blobBlocks(std::uint64_t length) { return (length + kBlobData - 1) / kBlobData; }
inline constexpr PageNo blobPage(std::uint32_t block) { return block / 8; }
inline constexpr std::size_t blobOffset(std::uint32_t block) { return block % 8 * kBlobBlock; }

// The contents in one file. Blocks that a content leaves are used for later ones; pages are not given back.
// Calls are made under the locks that PageFile asks for.
//
// Errors: `damaged` when a chain is not that of its reference; `limitReached`; those of PageFile. A put that raises has
// given its blocks back; a drop that raises because of damage has changed nothing.
class BlobStore {
 public:
  // `space` must outlive this.
  BlobStore(PageFile& file, BlobSpace& space) : file_(file), space_(space) {}
  BlobStore(const BlobStore&) = delete;
  BlobStore& operator=(const BlobStore&) = delete;

  BlobRef put(std::span<const std::byte> content);  // an empty content takes no block
  std::string get(const BlobRef& ref);              // verified against the length and the hash of the reference
  void drop(const BlobRef& ref);

 private:
  PageRef take(std::uint32_t& block);
  PageRef takeFresh(std::uint32_t& block);
  PageRef readTaken(std::uint32_t block, std::size_t bytes);
  void give(const std::vector<std::uint32_t>& blocks);
  [[noreturn]] void raiseDamaged() const;

  PageFile& file_;
  BlobSpace& space_;
};

}  // namespace quillon::store
