#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "store/Errors.h"
#include "store/vfs/File.h"

namespace quillon::sim {

// A handle whose every change of locks can be watched, and refused with an error.
class WatchedFile final : public store::File {
 public:
  explicit WatchedFile(std::unique_ptr<store::File> file) : file_(std::move(file)) {}
  void onChange(std::function<void()> hook) { hook_ = std::move(hook); }
  void raiseAtLock(int number) { raiseAt_ = number; }  // 1: the next; 0: none
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
    if (raiseAt_ > 0 && --raiseAt_ == 0) throw store::IoError(store::Code::ioFailed, "no lock", 5);
    const bool done = file_->lock(offset, length, mode);
    if (hook_) hook_();
    return done;
  }
  void unlock(std::uint64_t offset, std::uint64_t length) noexcept override {
    file_->unlock(offset, length);
    if (hook_) hook_();
  }
  bool lockedByOther(std::uint64_t offset, std::uint64_t length, store::LockMode mode) override {
    return file_->lockedByOther(offset, length, mode);
  }

 private:
  std::unique_ptr<store::File> file_;
  std::function<void()> hook_;
  int raiseAt_ = 0;
};

}  // namespace quillon::sim
