#pragma once

#include <memory>
#include <string>
#include <vector>

#include "store/vfs/DiskFileSystem.h"
#include "support/ForwardedFile.h"

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
  bool isNamed(const std::string& path, store::File& file) override {
    return disk_.isNamed(path, static_cast<Counted&>(file).inner());
  }
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
  class Counted final : public sim::ForwardedFile {
   public:
    Counted(std::unique_ptr<store::File> file, int& syncs) : ForwardedFile(std::move(file)), syncs_(syncs) {}
    void sync() override { ++syncs_, ForwardedFile::sync(); }

   private:
    int& syncs_;
  };

  store::DiskFileSystem disk_;
};

}  // namespace quillon::bench
