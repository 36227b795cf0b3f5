// The bytes by which a page differs from what stood there, as runs.
#include <cstring>

#include "store/journal/Journal.h"

namespace quillon::store {
namespace {

void putShort(std::string& out, std::size_t value) {
  const auto number = static_cast<std::uint16_t>(value);
  out.append(reinterpret_cast<const char*>(&number), sizeof number);
}

}  // namespace

std::string Journal::changedRuns(const std::byte* before, const std::byte* after) {
  std::string out;
  constexpr std::size_t kWord = 8, kLine = 64;
  for (std::size_t at = 0; at < kPageSize;) {
    const std::size_t size = at % kLine == 0 && std::memcmp(before + at, after + at, kLine) == 0 ? kLine : kWord;
    if (size == kLine || std::memcmp(before + at, after + at, kWord) == 0) {
      at += size;
      continue;
    }
    std::size_t end = at + kWord;
    // Equal stretches shorter than a run's own head are not worth a new run.
    for (std::size_t look = end; look < kPageSize && look < end + 2 * kWord; look += kWord)
      if (std::memcmp(before + look, after + look, kWord) != 0) end = look + kWord;
    putShort(out, at);
    putShort(out, end - at);
    out.append(reinterpret_cast<const char*>(after) + at, end - at);
    at = end;
  }
  return out;
}

bool Journal::applyRuns(std::byte* page, const std::byte* data, std::uint32_t bytes) {
  for (std::uint32_t at = 0; at < bytes;) {
    if (bytes - at < 4) return false;
    const auto offset = loadAt<std::uint16_t>(data, at);
    const auto length = loadAt<std::uint16_t>(data, at + 2);
    if (length > bytes - at - 4 || offset + length > kPageSize) return false;
    std::memcpy(page + offset, data + at + 4, length);
    at += 4u + length;
  }
  return true;
}

}  // namespace quillon::store
