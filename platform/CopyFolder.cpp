#include "platform/CopyFolder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <vector>

#include "platform/Descriptor.h"
#include "platform/Folders.h"
#include "platform/ReplacementFile.h"
#include "platform/SystemError.h"

namespace quillon::platform {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kPiece = 1 << 20;
constexpr std::uint64_t kMegabyte = 1'000'000;
constexpr const char* kStaging = "/.quillon-copying";

struct SourceFile {
  std::string name;
  std::uint64_t size;
};

std::vector<SourceFile> filesOf(const std::string& folder) {
  std::vector<SourceFile> files;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    std::error_code vanished;
    if (!entry->is_regular_file(vanished)) continue;
    const auto size = entry->file_size(vanished);
    if (!vanished) files.push_back({entry->path().filename().string(), size});
  }
  if (error) throw systemError("read folder", folder, error.value());
  std::sort(files.begin(), files.end(), [](const SourceFile& a, const SourceFile& b) { return a.name < b.name; });
  return files;
}

void needSpace(const std::string& folder, std::uint64_t bytes) {
  struct statvfs disk {};
  if (::statvfs(folder.c_str(), &disk) != 0) throw systemError("write to folder", folder, errno);
  const std::uint64_t free = std::uint64_t{disk.f_bavail} * disk.f_frsize;
  if (bytes <= free) return;
  throw Error("There is not enough space in '" + folder + "': " + std::to_string(bytes / kMegabyte + 1) +
              " MB are needed and " + std::to_string(free / kMegabyte) + " MB are free");
}

// The hidden folder, ours while its lock is held; emptied and removed in the end.
class Staging {
 public:
  explicit Staging(const std::string& destination) : path_(destination + kStaging) {
    makeFolder(path_, 0700);
    folder_ = Descriptor(::open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!folder_) throw systemError("write to folder", path_, errno);
    // A network disk that cannot lock a folder says so by another number; nothing else can be done there.
    if (::flock(folder_.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
      throw Error("Another copy into '" + destination + "' is being made");
    owned_ = true;
    clear();
  }
  ~Staging() {
    if (!owned_) return;
    clear();
    ::rmdir(path_.c_str());
  }
  Staging(const Staging&) = delete;
  Staging& operator=(const Staging&) = delete;

  std::string pathOf(const std::string& name) const { return path_ + "/" + name; }
  const std::string& path() const { return path_; }

 private:
  void clear() {
    std::error_code ignored;
    for (fs::directory_iterator entry(path_, ignored), end; !ignored && entry != end; entry.increment(ignored)) {
      std::error_code kept;
      fs::remove(entry->path(), kept);
    }
  }

  std::string path_;
  Descriptor folder_;
  bool owned_ = false;
};

// An error in writing calls the copy `target`.
void copyFile(const std::string& from, const std::string& to, const std::string& target,
              const std::function<void(std::size_t)>& copied) {
  const Descriptor source(::open(from.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat entry {};
  if (!source || ::fstat(source.get(), &entry) != 0) throw systemError("read", from, errno);
  const Descriptor copy(::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  if (!copy) throw systemError("write", target, errno);
  std::string piece(kPiece, '\0');
  for (;;) {
    const ssize_t count = ::read(source.get(), piece.data(), piece.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw systemError("read", from, errno);
    if (count == 0) break;
    writeAll(copy, {piece.data(), static_cast<std::size_t>(count)}, target);
    copied(static_cast<std::size_t>(count));
  }
  const timespec times[] = {entry.st_atim, entry.st_mtim};
  ::futimens(copy.get(), times);  // a disk that keeps no times is no reason to have no copy
  syncFile(copy, target);
}

}  // namespace

void copyFolder(const std::string& from, const std::string& to,
                const std::function<void(const CopyProgress&)>& progress) {
  const std::vector<SourceFile> files = filesOf(from);
  makeFolder(to);
  if (fs::equivalent(from, to)) throw Error("'" + from + "' cannot be copied onto itself");
  CopyProgress state;
  for (const SourceFile& file : files) state.total += file.size;

  const Staging staging(to);
  needSpace(to, state.total);
  for (const SourceFile& file : files) {
    state.file = file.name;
    const auto copied = [&](std::size_t count) {
      state.done += count;
      if (progress) progress(state);
    };
    copied(0);
    copyFile(from + "/" + file.name, staging.pathOf(file.name), to + "/" + file.name, copied);
  }
  syncFolder(staging.path());
  for (const SourceFile& file : files) {
    const std::string target = to + "/" + file.name;
    if (std::rename(staging.pathOf(file.name).c_str(), target.c_str()) != 0) throw systemError("write", target, errno);
  }
  syncFolder(to);
}

}  // namespace quillon::platform
