#include "store/vfs/MemoryFileSystem.h"

#include <cerrno>

#include "store/vfs/ChunkedBytes.h"
#include "store/vfs/IoErrors.h"
#include "store/vfs/RangeLocks.h"

namespace quillon::store {

struct MemoryContent {
  ChunkedBytes bytes;
  RangeLocks locks;
};

namespace {

class MemoryFile final : public File {
 public:
  explicit MemoryFile(std::shared_ptr<MemoryContent> content) : content_(std::move(content)) {}
  ~MemoryFile() override { content_->locks.unlockAll(this); }

  std::size_t read(std::uint64_t offset, void* data, std::size_t size) override {
    return content_->bytes.read(offset, data, size);
  }
  void write(std::uint64_t offset, Bytes data) override { content_->bytes.write(offset, data); }
  void writeParts(std::uint64_t offset, std::span<const Bytes> parts) override {
    for (const Bytes part : parts) {
      content_->bytes.write(offset, part);
      offset += part.size();
    }
  }
  std::uint64_t size() override { return content_->bytes.size(); }
  void truncate(std::uint64_t size) override { content_->bytes.resize(size); }
  void reserve(std::uint64_t size) override {
    if (size > content_->bytes.size()) content_->bytes.resize(size);
  }
  void sync() override {}
  bool lock(std::uint64_t offset, std::uint64_t length, LockMode mode) override {
    return content_->locks.lock(this, offset, length, mode);
  }
  void unlock(std::uint64_t offset, std::uint64_t length) noexcept override {
    content_->locks.unlock(this, offset, length);
  }
  bool lockedByOther(std::uint64_t offset, std::uint64_t length, LockMode mode) override {
    return content_->locks.refused(this, offset, length, mode);
  }

 private:
  std::shared_ptr<MemoryContent> content_;
};

std::string withoutSlash(std::string folder) {
  while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
  return folder;
}

}  // namespace

std::unique_ptr<File> MemoryFileSystem::open(const std::string& path, OpenMode mode) {
  const auto at = files_.find(path);
  if (at != files_.end()) {
    if (mode == OpenMode::createNew) throw ioError("make", path, EEXIST);
    return std::make_unique<MemoryFile>(at->second);
  }
  if (mode == OpenMode::existing) throw ioError("open", path, ENOENT);
  needFolder("make a file in", folderOf(path));
  return std::make_unique<MemoryFile>(files_[path] = std::make_shared<MemoryContent>());
}

std::unique_ptr<File> MemoryFileSystem::openScratch(const std::string& folder) {
  needFolder("make a scratch file in", folder);
  return std::make_unique<MemoryFile>(std::make_shared<MemoryContent>());
}

bool MemoryFileSystem::exists(const std::string& path) { return files_.contains(path); }

void MemoryFileSystem::remove(const std::string& path) { files_.erase(path); }

void MemoryFileSystem::rename(const std::string& from, const std::string& to) {
  const auto at = files_.find(from);
  if (at == files_.end()) throw ioError("rename", from, ENOENT);
  needFolder("rename into", folderOf(to));
  auto content = at->second;
  files_.erase(at);
  files_[to] = std::move(content);
}

bool MemoryFileSystem::folderExists(const std::string& folder) {
  const std::string name = withoutSlash(folder);
  return name.empty() || name == "/" || folders_.contains(name);
}

void MemoryFileSystem::makeFolder(const std::string& folder) {
  for (std::string name = withoutSlash(folder); !folderExists(name); name = folderOf(name)) {
    if (exists(name)) throw ioError("make the folder", name, EEXIST);
    folders_.insert(name);
  }
}

std::vector<std::string> MemoryFileSystem::list(const std::string& folder) {
  needFolder("read", folder);
  const std::string name = withoutSlash(folder);
  std::vector<std::string> names;
  for (const auto& [path, content] : files_) {
    if (folderOf(path) == name) names.push_back(baseName(path));
  }
  return names;
}

void MemoryFileSystem::syncFolder(const std::string& folder) { needFolder("save", folder); }

bool MemoryFileSystem::isNetwork(const std::string& folder) {
  needFolder("read", folder);
  return false;
}

void MemoryFileSystem::needFolder(const std::string& verb, const std::string& folder) {
  if (!folderExists(folder)) throw ioError(verb, folder, ENOENT, Missing::folder);
}

}  // namespace quillon::store
