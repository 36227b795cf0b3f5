#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

#include "store/Errors.h"
#include "store/pages/PageFile.h"
#include "store/vfs/MemoryFileSystem.h"
#include "support/ForwardedFile.h"

namespace quillon::sim {

// A number from the environment, for seeds and numbers of trials.
inline std::uint64_t fromEnvironment(const char* name, std::uint64_t otherwise) {
  const char* text = std::getenv(name);
  return text ? std::strtoull(text, nullptr, 10) : otherwise;
}

// A file in memory on a disk that can be full.
class BoundedFile final : public ForwardedFile {
 public:
  // Growth beyond `limit` bytes raises noSpace; the limit may change at any time.
  BoundedFile(std::unique_ptr<store::File> file, const std::uint64_t& limit)
      : ForwardedFile(std::move(file)), limit_(limit) {}
  void reserve(std::uint64_t size) override {
    if (size > limit_) throw store::IoError(store::Code::noSpace, "full", 28);
    ForwardedFile::reserve(size);
  }

 private:
  const std::uint64_t& limit_;
};

// One page file with nobody else around, committed and undone as a table does it, but without journal and locks.
class LonePageFile {
 public:
  explicit LonePageFile(std::size_t cachePages = 100000) : cache_(cachePages) {
    file.setSpill([this] { return &spill_; });
  }

  void commit() {
    const auto numbers = file.dirtyNumbers();
    ++stamp_;
    for (const store::PageNo number : numbers)
      store::sealPage(file.dirtyPage(number).page.writable(), file.fileId(), stamp_);
    file.writeInPlace(numbers);
    file.published();
    saved_ = space;
  }
  void undo() {
    file.discard();
    space = saved_;
  }

 private:
  store::MemoryFileSystem files_;
  store::PageCache cache_;
  store::SpillFile spill_{files_.openScratch("")};
  std::uint64_t stamp_ = 0;
  store::PageSpace saved_;

 public:
  std::uint64_t diskLimit = ~std::uint64_t{0};
  store::PageSpace space;
  store::PageFile file{cache_, std::make_unique<BoundedFile>(files_.open("T.DAT", store::OpenMode::create), diskLimit),
                       "T.DAT", 0x51, space};
};

}  // namespace quillon::sim
