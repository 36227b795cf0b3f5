#pragma once

#include <memory>
#include <string>
#include <vector>

#include "store/vfs/DiskFileSystem.h"

namespace quillon::bench {

// The disk, counting how often something is forced onto it.
class CountedDisk final : public store::FileSystem {
 public:
  int syncs = 0;

  std::unique_ptr<store::File> open(const std::string& path, store::OpenMode mode) override {
    return std::make_unique<Counted>(disk_.open(path, mode), syncs);
  }
  std::unique_ptr<store::File> openScratch(const std::string& folder) override { return disk_.openScratch(folder); }
  bool exists(const std::string& path) override { return disk_.exists(path); }
  void remove(const std::string& path) override { disk_.remove(path); }
  void rename(const std::string& from, const std::string& to) override { disk_.rename(from, to); }
  bool folderExists(const std::string& folder) override { return disk_.folderExists(folder); }
  void makeFolder(const std::string& folder) override { disk_.makeFolder(folder); }
  std::vector<std::string> list(const std::string& folder) override { return disk_.list(folder); }
  void syncFolder(const std::string& folder) override { ++syncs, disk_.syncFolder(folder); }
  void syncFiles(const std::string& folder, std::span<const std::string> names) override {
    ++syncs, disk_.syncFiles(folder, names);
  }
  bool isNetwork(const std::string& folder) override { return disk_.isNetwork(folder); }

 private:
  class Counted final : public store::File {
   public:
    Counted(std::unique_ptr<store::File> file, int& syncs) : file_(std::move(file)), syncs_(syncs) {}
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
    void sync() override { ++syncs_, file_->sync(); }
    bool lock(std::uint64_t offset, std::uint64_t length, store::LockMode mode) override {
      return file_->lock(offset, length, mode);
    }
    void unlock(std::uint64_t offset, std::uint64_t length) noexcept override { file_->unlock(offset, length); }
    bool lockedByOther(std::uint64_t offset, std::uint64_t length, store::LockMode mode) override {
      return file_->lockedByOther(offset, length, mode);
    }

   private:
    std::unique_ptr<store::File> file_;
    int& syncs_;
  };

  store::DiskFileSystem disk_;
};

}  // namespace quillon::bench
