#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace quillon::store {
class File;
}

namespace quillon::store::sql {

// Makes a scratch file when the first is needed.
using Scratch = std::function<std::unique_ptr<File>()>;

// Reads a part of a scratch file from its start to its end, through a buffer.
class ScratchReader {
 public:
  ScratchReader(File& file, std::uint64_t start, std::uint64_t end) : file_(file), at_(start), end_(end) {}
  bool atEnd() const { return at_ >= end_; }
  void read(void* data, std::size_t size);  // ioFailed when the file is shorter than was written

 private:
  File& file_;
  std::uint64_t at_, end_;
  std::string buffer_;
  std::size_t used_ = 0;
};

}  // namespace quillon::store::sql
