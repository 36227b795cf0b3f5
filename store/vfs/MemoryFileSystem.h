#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "store/vfs/File.h"

namespace quillon::store {

struct MemoryContent;

// Files that live in memory, for the database in memory and for tests. They end with the last handle and the system;
// a handle may outlive the system and a removed name. Nothing here waits, and sync does nothing.
// A file that grows beyond 16 MiB goes on in a scratch file where one can be made.
// For one thread. The folders "" and "/" are always there; paths are compared letter by letter.
class MemoryFileSystem final : public FileSystem {
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
  void syncFolder(const std::string& folder) override;
  bool isNetwork(const std::string& folder) override;
  // Makes scratch files for what is made from now on; null from it: there is no place for one.
  void setScratch(std::function<std::unique_ptr<File>()> scratch);

 private:
  void needFolder(const std::string& verb, const std::string& folder);

  std::shared_ptr<MemoryContent> newContent() const;

  std::map<std::string, std::shared_ptr<MemoryContent>> files_;
  std::shared_ptr<const std::function<std::unique_ptr<File>()>> scratch_;
  std::set<std::string> folders_;
};

}  // namespace quillon::store
