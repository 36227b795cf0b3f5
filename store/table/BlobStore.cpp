#include "store/table/BlobStore.h"

#include <algorithm>

#include "store/Errors.h"

namespace quillon::store {
namespace {

bool isTaken(const std::byte* page, std::uint32_t block) {
  return (static_cast<unsigned>(page[kBlobTaken]) >> (block % 8) & 1u) != 0;
}

void setTaken(std::byte* page, std::uint32_t block, bool taken) {
  const auto bit = static_cast<std::byte>(1u << (block % 8));
  page[kBlobTaken] = taken ? page[kBlobTaken] | bit : page[kBlobTaken] & ~bit;
}

bool isBlobBlock(const PageRef& page, std::uint32_t block) {
  return block % 8 != 0 && pageKind(page.data()) == PageKind::blob;
}

void fill(std::byte* block, std::uint32_t next, std::span<const std::byte> bytes) {
  storeAt(block, 0, next);
  storeAt(block, 4, static_cast<std::uint16_t>(bytes.size()));
  storeAt<std::uint16_t>(block, 6, 0);
  if (!bytes.empty()) std::memcpy(block + 8, bytes.data(), bytes.size());
}

}  // namespace

void BlobStore::raiseDamaged() const {
  throw StoreError(Code::damaged, "A text or picture in '" + file_.name() +
                                      "' is damaged. Run Pack/Repair on the company, or bring back a backup.");
}

BlobRef BlobStore::put(std::span<const std::byte> content) {
  if (content.size() > kMaxBlob)
    throw StoreError(Code::limitReached, "A text or picture for '" + file_.name() + "' is longer than 2 GB.");
  if (content.empty()) return {};
  std::vector<std::uint32_t> blocks;
  blocks.reserve(blobBlocks(content.size()));
  PageRef before;
  try {
    for (std::size_t at = 0; at < content.size(); at += kBlobData) {
      std::uint32_t block = 0;
      PageRef page = take(block);
      setTaken(page.writable(), block, true);
      fill(page.writable() + blobOffset(block), 0, content.subspan(at, std::min(kBlobData, content.size() - at)));
      if (before) storeAt(before.writable(), blobOffset(blocks.back()), block);
      blocks.push_back(block);
      before = std::move(page);
    }
  } catch (...) {
    give(blocks);
    throw;
  }
  return {blocks.front(), static_cast<std::uint32_t>(content.size()), hashBytes(content.data(), content.size())};
}

PageRef BlobStore::take(std::uint32_t& block) {
  if (space_.freeHead == 0) return takeFresh(block);
  block = space_.freeHead;
  PageRef page = file_.write(blobPage(block));
  if (!isBlobBlock(page, block) || isTaken(page.data(), block) || space_.freeBlocks == 0)
    throw StoreError(Code::damaged, "The list of free blocks of '" + file_.name() +
                                        "' is damaged. Run Pack/Repair on the company, or bring back a backup.");
  space_.freeHead = loadAt<std::uint32_t>(page.data(), blobOffset(block));
  --space_.freeBlocks;
  return page;
}

// The first block of a page that this makes; the other six become free.
PageRef BlobStore::takeFresh(std::uint32_t& block) {
  constexpr PageNo kMaxPage = (PageNo{1} << 29) - 1;  // so that the ids of its blocks have room
  PageRef page = file_.allocate(PageKind::blob);
  if (page.number() > kMaxPage) {
    file_.release(page.number());
    throw StoreError(Code::limitReached, "'" + file_.name() + "' has reached the largest size of a table file (2 TB).");
  }
  block = page.number() * 8 + 1;
  for (std::uint32_t other = block + 6; other > block; --other) {
    storeAt(page.writable(), blobOffset(other), space_.freeHead);
    space_.freeHead = other;
  }
  space_.freeBlocks += 6;
  return page;
}

// The page of a block that must be taken and hold as many bytes, the last of its chain exactly when they do not fill
// it.
PageRef BlobStore::readTaken(std::uint32_t block, std::size_t bytes) {
  PageRef page = file_.read(blobPage(block));
  if (!isBlobBlock(page, block) || !isTaken(page.data(), block)) raiseDamaged();
  if (loadAt<std::uint16_t>(page.data(), blobOffset(block) + 4) != bytes) raiseDamaged();
  return page;
}

std::string BlobStore::get(const BlobRef& ref) {
  constexpr std::uint32_t kTrusted = 1 << 20;  // no room is made for a length that may be nonsense
  std::string content;
  content.reserve(std::min(ref.length, kTrusted));
  std::uint32_t block = ref.firstBlock;
  while (content.size() < ref.length) {
    const std::size_t bytes = std::min<std::size_t>(kBlobData, ref.length - content.size());
    const PageRef page = readTaken(block, bytes);
    const std::byte* at = page.data() + blobOffset(block);
    content.append(reinterpret_cast<const char*>(at + 8), bytes);
    block = loadAt<std::uint32_t>(at, 0);
  }
  const bool whole = block == 0 && (ref.length == 0 || hashBytes(content.data(), content.size()) == ref.hash);
  if (!whole) raiseDamaged();
  return content;
}

void BlobStore::drop(const BlobRef& ref) {
  std::vector<std::uint32_t> blocks;
  std::uint32_t block = ref.firstBlock;
  for (std::size_t left = ref.length; left > 0;) {
    const std::size_t bytes = std::min(kBlobData, left);
    const PageRef page = readTaken(block, bytes);
    blocks.push_back(block);
    block = loadAt<std::uint32_t>(page.data(), blobOffset(block));
    left -= bytes;
  }
  if (block != 0) raiseDamaged();  // so that it has not come back to itself either: no block is freed twice
  give(blocks);
}

// Makes the blocks free so that the next contents take them in their old order.
void BlobStore::give(const std::vector<std::uint32_t>& blocks) {
  for (auto block = blocks.rbegin(); block != blocks.rend(); ++block) {
    const PageRef page = file_.write(blobPage(*block));
    fill(page.writable() + blobOffset(*block), space_.freeHead, {});
    setTaken(page.writable(), *block, false);
    space_.freeHead = *block;
    ++space_.freeBlocks;
  }
}

}  // namespace quillon::store
