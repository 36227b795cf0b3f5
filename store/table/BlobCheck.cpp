#include "store/table/BlobCheck.h"

#include "store/Errors.h"

namespace quillon::store {

BlobCheck::BlobCheck(PageFile& file, const BlobSpace& space, std::uint32_t pages, Fault fault)
    : file_(file), space_(space), fault_(std::move(fault)), uses_(std::size_t{pages} * 8) {}

bool BlobCheck::told(const std::string& what) {
  if (fault_) fault_("'" + file_.name() + "': " + what);
  return false;
}

bool BlobCheck::mark(std::uint32_t block, Use use) {
  const std::string name = "block " + std::to_string(block);
  if (block % 8 == 0 || block >= uses_.size()) return told(name + " does not exist");
  if (uses_[block] != Use::unknown) return told(name + " is used twice");
  if (pageKind(file_.read(blobPage(block)).data()) != PageKind::blob)
    return told(name + " is not in a page of contents");
  uses_[block] = use;
  return true;
}

bool BlobCheck::content(const BlobRef& ref) {
  try {
    std::uint32_t block = ref.firstBlock;
    for (std::size_t left = blobBlocks(ref.length); left > 0; --left) {
      if (!mark(block, Use::content)) return false;
      block = loadAt<std::uint32_t>(file_.read(blobPage(block)).data(), blobOffset(block));
    }
    BlobSpace none;
    BlobStore(file_, none).get(ref);
    return true;
  } catch (const StoreError& error) {
    return told(error.what());
  }
}

void BlobCheck::checkFree() {
  std::uint32_t met = 0;
  try {
    for (std::uint32_t block = space_.freeHead; block != 0; ++met) {
      if (!mark(block, Use::free)) return;
      block = loadAt<std::uint32_t>(file_.read(blobPage(block)).data(), blobOffset(block));
    }
  } catch (const StoreError& error) {
    told(error.what());
    return;
  }
  if (met != space_.freeBlocks) told("the count of free blocks is wrong");
}

void BlobCheck::finish() {
  checkFree();
  for (PageNo number = 1; number < uses_.size() / 8; ++number) {
    try {
      checkPage(number);
    } catch (const StoreError& error) {
      told(error.what());
    }
  }
}

void BlobCheck::checkPage(PageNo number) {
  const PageRef page = file_.read(number);
  if (pageKind(page.data()) == PageKind::free) return;
  if (pageKind(page.data()) != PageKind::blob) {
    told("page " + std::to_string(number) + " is no page of contents");
    return;
  }
  const auto taken = static_cast<unsigned>(page.data()[kBlobTaken]);
  for (std::uint32_t place = 1; place < 8; ++place) {
    const std::uint32_t block = number * 8 + place;
    const std::string name = "block " + std::to_string(block);
    if (uses_[block] == Use::unknown) {
      told(name + " is lost");
    } else if ((taken >> place & 1u) != (uses_[block] == Use::content ? 1u : 0u)) {
      told(name + " is not marked as it is used");
    }
  }
}

}  // namespace quillon::store
