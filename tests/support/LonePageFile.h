#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <string>
#include <utility>

#include "store/Errors.h"
#include "store/pages/PageFile.h"
#include "store/vfs/MemoryFileSystem.h"

namespace quillon::sim {

// A number from the environment, for seeds and numbers of trials.
inline std::uint64_t fromEnvironment(const char* name, std::uint64_t otherwise) {
  const char* text = std::getenv(name);
  return text ? std::strtoull(text, nullptr, 10) : otherwise;
}

// A file in memory on a disk that can be full.
class BoundedFile final : public store::File {
 public:
  // Growth beyond `limit` bytes raises noSpace; the limit may change at any time.
  BoundedFile(std::unique_ptr<store::File> file, const std::uint64_t& limit) : file_(std::move(file)), limit_(limit) {}
  std::size_t read(std::uint64_t offset, void* data, std::size_t size) override {
    return file_->read(offset, data, size);
  }
  void write(std::uint64_t offset, store::Bytes data) override { file_->write(offset, data); }
  void writeParts(std::uint64_t offset, std::span<const store::Bytes> parts) override {
    file_->writeParts(offset, parts);
  }
  std::uint64_t size() override { return file_->size(); }
  void truncate(std::uint64_t size) override { file_->truncate(size); }
  void reserve(std::uint64_t size) override {
    if (size > limit_) throw store::IoError(store::Code::noSpace, "full", 28);
    file_->reserve(size);
  }
  void sync() override {}
  bool lock(std::uint64_t, std::uint64_t, store::LockMode) override { return true; }
  void unlock(std::uint64_t, std::uint64_t) noexcept override {}
  bool lockedByOther(std::uint64_t, std::uint64_t, store::LockMode) override { return false; }

 private:
  std::unique_ptr<store::File> file_;
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
