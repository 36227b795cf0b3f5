#pragma once

#include <string>

#include "store/vfs/File.h"

namespace quillon::store {

// The files of another file system whose names end with a suffix, under their names without it: what is made here
// stands beside the files of the same name and never in their place.
class SuffixedFiles final : public FileSystem {
 public:
  // `files` must outlive this.
  SuffixedFiles(FileSystem& files, std::string suffix) : files_(files), suffix_(std::move(suffix)) {}

  std::unique_ptr<File> open(const std::string& path, OpenMode mode) override {
    return files_.open(path + suffix_, mode);
  }
  std::unique_ptr<File> openScratch(const std::string& folder) override { return files_.openScratch(folder); }
  bool exists(const std::string& path) override { return files_.exists(path + suffix_); }
  bool isNamed(const std::string& path, File& file) override { return files_.isNamed(path + suffix_, file); }
  void remove(const std::string& path) override { files_.remove(path + suffix_); }
  void rename(const std::string& from, const std::string& to) override { files_.rename(from + suffix_, to + suffix_); }
  bool folderExists(const std::string& folder) override { return files_.folderExists(folder); }
  void makeFolder(const std::string& folder) override { files_.makeFolder(folder); }
  std::vector<std::string> list(const std::string& folder) override;
  void syncFolder(const std::string& folder) override { files_.syncFolder(folder); }
  void syncFiles(const std::string& folder, std::span<const std::string> names) override;
  bool isNetwork(const std::string& folder) override { return files_.isNetwork(folder); }

 private:
  FileSystem& files_;
  std::string suffix_;
};

}  // namespace quillon::store
