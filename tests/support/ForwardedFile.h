#pragma once

#include <memory>
#include <span>
#include <utility>

#include "store/vfs/File.h"

namespace quillon::sim {

// A file that passes everything on to another; derived classes step in where they have something to say.
class ForwardedFile : public store::File {
 public:
  explicit ForwardedFile(std::unique_ptr<store::File> file) : file_(std::move(file)) {}
  std::size_t read(std::uint64_t offset, void* data, std::size_t size) override {
    return file_->read(offset, data, size);
  }
  void write(std::uint64_t offset, store::Bytes data) override { file_->write(offset, data); }
  void writeParts(std::uint64_t offset, std::span<const store::Bytes> parts) override {
    file_->writeParts(offset, parts);
  }
  std::uint64_t size() override { return file_->size(); }
  void truncate(std::uint64_t size) override { file_->truncate(size); }
  void reserve(std::uint64_t size) override { file_->reserve(size); }
  void sync() override { file_->sync(); }
  bool lock(std::uint64_t offset, std::uint64_t length, store::LockMode mode) override {
    return file_->lock(offset, length, mode);
  }
  void unlock(std::uint64_t offset, std::uint64_t length) noexcept override { file_->unlock(offset, length); }
  bool lockedByOther(std::uint64_t offset, std::uint64_t length, store::LockMode mode) override {
    return file_->lockedByOther(offset, length, mode);
  }
  store::File& inner() { return *file_; }

 private:
  std::unique_ptr<store::File> file_;
};

}  // namespace quillon::sim
