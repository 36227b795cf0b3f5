#include "store/pages/Page.h"

#include <xxhash.h>

#include "store/Planted.h"

namespace quillon::store {
namespace {

std::uint64_t checksumOf(const std::byte* page, std::uint64_t fileId, PageNo number) {
  return XXH3_64bits_withSeed(page + 8, kPageSize - 8, fileId ^ (std::uint64_t{number} << 32 | number));
}

}  // namespace

void sealPage(std::byte* page, std::uint64_t fileId, std::uint64_t stamp) {
  storeAt(page, 8, stamp);
  storeAt(page, 0, checksumOf(page, fileId, pageNumber(page)));
}

bool pageIsSound(const std::byte* page, std::uint64_t fileId, PageNo number) {
  return pageNumber(page) == number &&
         (planted(Bug::noChecksumTest) || loadAt<std::uint64_t>(page, 0) == checksumOf(page, fileId, number));
}

std::uint64_t hashBytes(const void* data, std::size_t size, std::uint64_t start) {
  return XXH3_64bits_withSeed(data, size, start);
}

}  // namespace quillon::store
