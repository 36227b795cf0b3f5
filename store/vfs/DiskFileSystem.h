#pragma once

#include "store/vfs/File.h"

namespace quillon::store {

// The real disk. Stateless: any number may exist, and files outlive the system that opened them.
//
// Files are opened for reading and writing; a file that nobody may write (no write bit at all) raises accessDenied even
// for an administrator. Locks are open-file-description locks: they belong to the handle, end with it and with the
// process, and work between machines where the share keeps locks; where it does not, lock raises ioFailed saying so.
class DiskFileSystem final : public FileSystem {
 public:
  std::unique_ptr<File> open(const std::string& path, OpenMode mode) override;
  std::unique_ptr<File> openScratch(const std::string& folder) override;
  bool exists(const std::string& path) override;
  bool isNamed(const std::string& path, File& file) override;
  void remove(const std::string& path) override;
  void rename(const std::string& from, const std::string& to) override;
  bool folderExists(const std::string& folder) override;
  void makeFolder(const std::string& folder) override;
  std::vector<std::string> list(const std::string& folder) override;
  // A file system that has no such operation for folders (some shares) is taken to keep its names by itself.
  void syncFolder(const std::string& folder) override;
  void syncFiles(const std::string& folder, std::span<const std::string> names) override;
  bool isNetwork(const std::string& folder) override;
};

}  // namespace quillon::store
