#pragma once

#include <map>
#include <set>

#include "store/vfs/File.h"

namespace quillon::store {

struct MemoryContent;

// Files that live in memory, for the database in memory and for tests. They end with the last handle and the system;
// a handle may outlive the system and a removed name. Nothing here waits, and sync does nothing.
// For one thread. The folders "" and "/" are always there; paths are compared letter by letter.
class MemoryFileSystem final : public FileSystem {
 public:
  std::unique_ptr<File> open(const std::string& path, OpenMode mode) override;
  std::unique_ptr<File> openScratch(const std::string& folder) override;
  bool exists(const std::string& path) override;
  void remove(const std::string& path) override;
  void rename(const std::string& from, const std::string& to) override;
  bool folderExists(const std::string& folder) override;
  void makeFolder(const std::string& folder) override;
  std::vector<std::string> list(const std::string& folder) override;
  void syncFolder(const std::string& folder) override;
  bool isNetwork(const std::string& folder) override;

 private:
  void needFolder(const std::string& verb, const std::string& folder);

  std::map<std::string, std::shared_ptr<MemoryContent>> files_;
  std::set<std::string> folders_;
};

}  // namespace quillon::store
