#include <algorithm>
#include <cerrno>

#include "store/vfs/IoErrors.h"
#include "support/SimState.h"

namespace quillon::sim {

using store::LockMode;
using store::Missing;
using store::OpenMode;

class SimFile final : public store::File {
 public:
  SimFile(std::shared_ptr<SimState> state, SimNodePtr node, int process, std::string path)
      : state_(std::move(state)), node_(std::move(node)), process_(process), path_(std::move(path)) {
    owner().files.insert(this);
  }
  ~SimFile() override {
    owner().files.erase(this);
    dropLocks();
  }

  std::size_t read(std::uint64_t offset, void* data, std::size_t size) override {
    event(SimCall::read);
    return node_->content.current().read(offset, data, size);
  }
  void write(std::uint64_t offset, Bytes data) override { put(SimCall::write, offset, data); }
  void writeParts(std::uint64_t offset, std::span<const Bytes> parts) override {
    std::vector<std::byte> whole;  // one call of the system: it tears at sectors, not between parts
    for (const Bytes part : parts) whole.insert(whole.end(), part.begin(), part.end());
    put(SimCall::writeParts, offset, whole);
  }
  std::uint64_t size() override {
    state_->requireAlive(process_);
    return node_->content.current().size();
  }
  void truncate(std::uint64_t size) override {
    event(SimCall::truncate);
    node_->content.truncate(size);
  }
  void reserve(std::uint64_t size) override {
    event(SimCall::reserve);
    node_->content.reserve(size);
  }
  void sync() override {
    try {
      event(SimCall::sync);
    } catch (const store::IoError&) {
      node_->content.failSync();
      throw;
    }
    node_->content.sync();
  }
  bool lock(std::uint64_t offset, std::uint64_t length, LockMode mode) override {
    event(SimCall::lock);
    return node_->locks.lock(this, offset, length, mode);
  }
  void unlock(std::uint64_t offset, std::uint64_t length) noexcept override {
    if (owner().alive) node_->locks.unlock(this, offset, length);
  }
  bool lockedByOther(std::uint64_t offset, std::uint64_t length, LockMode mode) override {
    event(SimCall::lockTest);
    return node_->locks.refused(this, offset, length, mode);
  }
  void dropLocks() { node_->locks.unlockAll(this); }
  bool is(const SimNodePtr& node) const { return node_ == node; }

 private:
  SimState::Process& owner() { return state_->processes[static_cast<std::size_t>(process_)]; }
  bool event(SimCall call) { return state_->event(process_, call, path_); }
  void put(SimCall call, std::uint64_t offset, Bytes data) {
    if (offset > kLargest) throw store::ioError("write", path_, EFBIG);
    if (!event(call)) {
      node_->content.write(offset, data);
      return;
    }
    node_->content.write(offset, data.first(data.empty() ? 0 : state_->events * 7919 % data.size()));
    throw store::ioError("write", path_, EIO);
  }

  static constexpr std::uint64_t kLargest = std::uint64_t{1} << 30;
  std::shared_ptr<SimState> state_;
  SimNodePtr node_;
  int process_;
  std::string path_;
};

void dropLocks(SimFile& file) { file.dropLocks(); }

namespace {

std::string withoutSlash(std::string folder) {
  while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
  return folder;
}

class SimFileSystem final : public store::FileSystem {
 public:
  SimFileSystem(std::shared_ptr<SimState> state, int process) : state_(std::move(state)), process_(process) {}

  std::unique_ptr<store::File> open(const std::string& path, OpenMode mode) override {
    const bool making = mode == OpenMode::createNew || (mode == OpenMode::create && !state_->names.contains(path));
    event(making ? SimCall::create : SimCall::open, path);
    const auto at = state_->names.find(path);  // only now: others may have run during the event
    if (at != state_->names.end()) {
      if (mode == OpenMode::createNew) throw store::ioError("make", path, EEXIST);
      return handle(at->second, path);
    }
    if (mode == OpenMode::existing) throw store::ioError("open", path, ENOENT);
    needFolder("make a file in", store::folderOf(path));
    auto node = std::make_shared<SimNode>();
    node->number = ++state_->nodes;
    state_->change({}, path, node);
    return handle(std::move(node), path);
  }
  std::unique_ptr<store::File> openScratch(const std::string& folder) override {
    const std::string name = withoutSlash(folder) + "/scratch.scratch";
    event(SimCall::scratch, name);
    needFolder("make a scratch file in", folder);
    return handle(std::make_shared<SimNode>(SimNode{0, SimContent(false), {}}), name);
  }
  bool exists(const std::string& path) override {
    event(SimCall::look, path);
    return state_->names.contains(path);
  }
  bool isNamed(const std::string& path, store::File& file) override {
    event(SimCall::look, path);
    const auto at = state_->names.find(path);
    return at != state_->names.end() && dynamic_cast<SimFile&>(file).is(at->second);
  }
  void remove(const std::string& path) override {
    event(SimCall::remove, path);
    const auto at = state_->names.find(path);
    if (at != state_->names.end()) state_->change(path, {}, at->second);
  }
  void rename(const std::string& from, const std::string& to) override {
    event(SimCall::rename, from);
    const auto at = state_->names.find(from);
    if (at == state_->names.end()) throw store::ioError("rename", from, ENOENT);
    needFolder("rename into", store::folderOf(to));
    if (from != to) state_->change(from, to, at->second);
  }
  bool folderExists(const std::string& folder) override {
    event(SimCall::look, folder);
    return isFolder(folder);
  }
  void makeFolder(const std::string& folder) override {
    event(SimCall::makeFolder, folder);
    for (std::string name = withoutSlash(folder); !isFolder(name); name = store::folderOf(name)) {
      if (state_->names.contains(name)) throw store::ioError("make the folder", name, EEXIST);
      state_->folders.insert(name);
    }
  }
  std::vector<std::string> list(const std::string& folder) override {
    event(SimCall::look, folder);
    needFolder("read", folder);
    const std::string name = withoutSlash(folder);
    std::vector<std::string> names;
    for (const auto& [path, node] : state_->names) {
      if (store::folderOf(path) == name) names.push_back(store::baseName(path));
    }
    return names;
  }
  void syncFolder(const std::string& folder) override {
    event(SimCall::syncFolder, folder);
    needFolder("save", folder);
    state_->syncNames(withoutSlash(folder));
  }
  bool isNetwork(const std::string& folder) override {
    state_->requireAlive(process_);
    needFolder("read", folder);
    return state_->options.network;
  }

 private:
  void event(SimCall call, const std::string& path) { state_->event(process_, call, path); }
  std::unique_ptr<store::File> handle(SimNodePtr node, const std::string& path) {
    return std::make_unique<SimFile>(state_, std::move(node), process_, path);
  }
  bool isFolder(const std::string& folder) const {
    const std::string name = withoutSlash(folder);
    return name.empty() || name == "/" || state_->folders.contains(name);
  }
  void needFolder(const char* verb, const std::string& folder) const {
    if (!isFolder(folder)) throw store::ioError(verb, folder, ENOENT, Missing::folder);
  }

  std::shared_ptr<SimState> state_;
  int process_;
};

}  // namespace

std::unique_ptr<store::FileSystem> makeSimFileSystem(std::shared_ptr<SimState> state, int process) {
  return std::make_unique<SimFileSystem>(std::move(state), process);
}

}  // namespace quillon::sim
