#include "store/vfs/MemoryFileSystem.h"

#include <cerrno>

#include "store/vfs/ChunkedBytes.h"
#include "store/vfs/IoErrors.h"
#include "store/vfs/RangeLocks.h"

namespace quillon::store {

constexpr std::uint64_t kMostInMemory = std::uint64_t{16} << 20;  // of a file that has scratch to go to

struct MemoryContent {
  ChunkedBytes bytes;
  RangeLocks locks;
  std::shared_ptr<const std::function<std::unique_ptr<File>()>> scratch;
  std::unique_ptr<File> aside;  // then the bytes are there

  void makeRoom(std::uint64_t size) {
    if (aside || !scratch || size <= kMostInMemory) return;
    auto file = (*scratch)();
    if (!file) {
      scratch.reset();
      return;
    }
    std::vector<std::byte> part(std::size_t{1} << 20);
    for (std::uint64_t at = 0; at < bytes.size(); at += part.size())
      file->write(at, Bytes(part).first(bytes.read(at, part.data(), part.size())));
    aside = std::move(file);
    bytes.resize(0);
  }
};

namespace {

class MemoryFile final : public File {
 public:
  explicit MemoryFile(std::shared_ptr<MemoryContent> content) : content_(std::move(content)) {}
  ~MemoryFile() override { content_->locks.unlockAll(this); }

  std::size_t read(std::uint64_t offset, void* data, std::size_t size) override {
    return content_->aside ? content_->aside->read(offset, data, size) : content_->bytes.read(offset, data, size);
  }
  void write(std::uint64_t offset, Bytes data) override {
    content_->makeRoom(offset + data.size());
    content_->aside ? content_->aside->write(offset, data) : content_->bytes.write(offset, data);
  }
  void writeParts(std::uint64_t offset, std::span<const Bytes> parts) override {
    for (const Bytes part : parts) {
      write(offset, part);
      offset += part.size();
    }
  }
  std::uint64_t size() override { return content_->aside ? content_->aside->size() : content_->bytes.size(); }
  void truncate(std::uint64_t size) override {
    content_->makeRoom(size);
    content_->aside ? content_->aside->truncate(size) : content_->bytes.resize(size);
  }
  void reserve(std::uint64_t size) override {
    if (size > this->size()) truncate(size);
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

  bool is(const std::shared_ptr<MemoryContent>& content) const { return content_ == content; }

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
  return std::make_unique<MemoryFile>(files_[path] = newContent());
}

std::unique_ptr<File> MemoryFileSystem::openScratch(const std::string& folder) {
  needFolder("make a scratch file in", folder);
  return std::make_unique<MemoryFile>(std::make_shared<MemoryContent>());
}

void MemoryFileSystem::setScratch(std::function<std::unique_ptr<File>()> scratch) {
  scratch_ = std::make_shared<const std::function<std::unique_ptr<File>()>>(std::move(scratch));
}

std::shared_ptr<MemoryContent> MemoryFileSystem::newContent() const {
  auto content = std::make_shared<MemoryContent>();
  content->scratch = scratch_;
  return content;
}

bool MemoryFileSystem::exists(const std::string& path) { return files_.contains(path); }

bool MemoryFileSystem::isNamed(const std::string& path, File& file) {
  const auto at = files_.find(path);
  return at != files_.end() && dynamic_cast<MemoryFile&>(file).is(at->second);
}

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
