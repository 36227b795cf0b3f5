#pragma once

#include <sys/types.h>

#include "store/vfs/File.h"

namespace quillon::store {

// An open file of the real disk. Owns the descriptor; `path` serves messages only. A file whose name is gone from the
// disk tells so when it is asked for its size (ioFailed), which every publish does: nothing is saved into a removed
// folder.
class DiskFile final : public File {
 public:
  DiskFile(int descriptor, std::string path, bool named = true)
      : fd_(descriptor), path_(std::move(path)), named_(named) {}
  ~DiskFile() override;

  std::size_t read(std::uint64_t offset, void* data, std::size_t size) override;
  void write(std::uint64_t offset, Bytes data) override;
  void writeParts(std::uint64_t offset, std::span<const Bytes> parts) override;
  std::uint64_t size() override;
  void truncate(std::uint64_t size) override;
  // Sets space aside behind the present end only; holes that an earlier truncate left stay holes.
  void reserve(std::uint64_t size) override;
  void sync() override;
  bool lock(std::uint64_t offset, std::uint64_t length, LockMode mode) override;
  void unlock(std::uint64_t offset, std::uint64_t length) noexcept override;
  bool lockedByOther(std::uint64_t offset, std::uint64_t length, LockMode mode) override;
  bool is(dev_t device, ino_t number);  // the file of that number

 private:
  [[noreturn]] void raise(const char* verb) const;  // from errno
  void writeZeros(std::uint64_t from, std::uint64_t to);

  int fd_;
  dev_t device_ = 0;
  ino_t number_ = 0;  // 0: not looked up yet
  std::string path_;
  bool named_;  // false: scratch that never has a name
};

}  // namespace quillon::store
