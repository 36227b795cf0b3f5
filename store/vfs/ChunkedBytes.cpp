#include "store/vfs/ChunkedBytes.h"

#include <algorithm>
#include <cstring>

namespace quillon::store {

std::size_t ChunkedBytes::read(std::uint64_t offset, void* data, std::size_t size) const {
  if (offset >= size_) return 0;
  const std::size_t total = std::min<std::uint64_t>(size, size_ - offset);
  auto* to = static_cast<std::byte*>(data);
  for (std::size_t done = 0; done < total;) {
    const std::size_t within = (offset + done) % kChunk;
    const std::size_t count = std::min(kChunk - within, total - done);
    const auto& chunk = chunks_[(offset + done) / kChunk];
    if (chunk) {
      std::memcpy(to + done, chunk->data() + within, count);
    } else {
      std::memset(to + done, 0, count);
    }
    done += count;
  }
  return total;
}

void ChunkedBytes::write(std::uint64_t offset, Bytes data) {
  if (data.empty()) return;
  if (offset + data.size() > size_) resize(offset + data.size());
  for (std::size_t done = 0; done < data.size();) {
    const std::size_t within = (offset + done) % kChunk;
    const std::size_t count = std::min(kChunk - within, data.size() - done);
    std::memcpy(own((offset + done) / kChunk).data() + within, data.data() + done, count);
    done += count;
  }
}

void ChunkedBytes::resize(std::uint64_t size) {
  const bool cut = size < size_;
  chunks_.resize((size + kChunk - 1) / kChunk);
  size_ = size;
  const std::size_t tail = size % kChunk;
  // What lay behind the new end must read as zeros when the file grows again.
  if (cut && tail != 0 && chunks_.back()) std::memset(own(chunks_.size() - 1).data() + tail, 0, kChunk - tail);
}

bool ChunkedBytes::operator==(const ChunkedBytes& other) const {
  static constexpr Chunk kZeros{};
  if (size_ != other.size_) return false;
  for (std::size_t i = 0; i < chunks_.size(); ++i) {
    const auto& a = chunks_[i];
    const auto& b = other.chunks_[i];
    if (a != b && (a ? *a : kZeros) != (b ? *b : kZeros)) return false;
  }
  return true;
}

ChunkedBytes::Chunk& ChunkedBytes::own(std::size_t index) {
  auto& chunk = chunks_[index];
  if (!chunk) {
    chunk = std::make_shared<Chunk>();
  } else if (chunk.use_count() > 1) {
    chunk = std::make_shared<Chunk>(*chunk);
  }
  return *chunk;
}

}  // namespace quillon::store
