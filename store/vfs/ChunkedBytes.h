#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "store/vfs/File.h"

namespace quillon::store {

// The bytes of a file in memory, in chunks of 4096 that copies share until one of them writes: a copy costs a pointer
// per chunk, growth never moves bytes. Chunks never written read as zeros and take no memory.
// Copies that share chunks belong to one thread at a time.
class ChunkedBytes {
 public:
  static constexpr std::size_t kChunk = 4096;

  std::uint64_t size() const { return size_; }
  // How many of `size` bytes lie before the end; these are put into `data`.
  std::size_t read(std::uint64_t offset, void* data, std::size_t size) const;
  void write(std::uint64_t offset, Bytes data);  // lengthens as needed, a gap reads as zeros
  void resize(std::uint64_t size);
  bool operator==(const ChunkedBytes& other) const;  // the same bytes

 private:
  using Chunk = std::array<std::byte, kChunk>;
  Chunk& own(std::size_t index);  // made, or parted from the copies

  std::vector<std::shared_ptr<Chunk>> chunks_;
  std::uint64_t size_ = 0;
};

}  // namespace quillon::store
