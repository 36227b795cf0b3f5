#include "store/vfs/DiskFileSystem.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "store/vfs/DiskFile.h"
#include "store/vfs/IoErrors.h"

namespace quillon::store {
namespace {

constexpr mode_t kFileMode = 0666;  // the umask decides; others of the office share the files

constexpr std::uint32_t kNetworkKinds[] = {
    0x6969,      // NFS
    0x517B,      // SMB
    0xFF534D42,  // CIFS
    0xFE534D42,  // SMB2
    0x73757245,  // Coda
    0x5346414F,  // AFS
    0x6B414653,  // AFS of the kernel
    0x01021997,  // 9P
    0x00C36400,  // Ceph
    0x65735546,  // FUSE: mostly remote, and nothing says when it is not
};

std::string orHere(const std::string& folder) { return folder.empty() ? "." : folder; }

int openRetrying(const std::string& path, int flags, mode_t mode = 0) {
  int fd = ::open(path.c_str(), flags | O_CLOEXEC, mode);
  while (fd < 0 && errno == EINTR) fd = ::open(path.c_str(), flags | O_CLOEXEC, mode);
  return fd;
}

bool isFolder(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

std::unique_ptr<File> DiskFileSystem::open(const std::string& path, OpenMode mode) {
  int flags = O_RDWR;
  if (mode != OpenMode::existing) flags |= O_CREAT;
  if (mode == OpenMode::createNew) flags |= O_EXCL;
  const int fd = openRetrying(path, flags, kFileMode);
  if (fd < 0) {
    const int error = errno;
    const bool making = mode == OpenMode::createNew || (mode == OpenMode::create && ::access(path.c_str(), F_OK) != 0);
    throw ioError(making ? "make" : "open", path, error, making ? Missing::folder : Missing::file);
  }
  auto file = std::make_unique<DiskFile>(fd, path);
  struct stat status {};
  if (::fstat(fd, &status) != 0) throw ioError("open", path, errno);
  if (!S_ISREG(status.st_mode))
    throw IoError(Code::ioFailed, "Unable to open '" + baseName(path) + "': it is not a file.", 0);
  if ((status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) throw ioError("open", path, EACCES);
  return file;
}

std::unique_ptr<File> DiskFileSystem::openScratch(const std::string& folder) {
  const std::string place = orHere(folder);
  int fd = openRetrying(place, O_TMPFILE | O_RDWR, S_IRUSR | S_IWUSR);
  if (fd < 0 && (errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL)) {
    std::string name = place + "/scratch-XXXXXX";
    fd = ::mkostemp(name.data(), O_CLOEXEC);
    if (fd >= 0) ::unlink(name.c_str());
  }
  if (fd < 0) throw ioError("make a scratch file in", folder, errno, Missing::folder);
  return std::make_unique<DiskFile>(fd, place + "/scratch", false);
}

bool DiskFileSystem::exists(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) == 0) return S_ISREG(status.st_mode);
  if (errno == ENOENT || errno == ENOTDIR) return false;
  throw ioError("look for", path, errno);
}

bool DiskFileSystem::isNamed(const std::string& path, File& file) {
  struct stat named {};
  if (::stat(path.c_str(), &named) != 0) {
    if (errno == ENOENT || errno == ENOTDIR) return false;
    throw ioError("look for", path, errno);
  }
  return dynamic_cast<DiskFile&>(file).is(named.st_dev, named.st_ino);
}

void DiskFileSystem::remove(const std::string& path) {
  if (::unlink(path.c_str()) != 0 && errno != ENOENT && errno != ENOTDIR) throw ioError("delete", path, errno);
}

void DiskFileSystem::rename(const std::string& from, const std::string& to) {
  if (::rename(from.c_str(), to.c_str()) == 0) return;
  const int error = errno;
  const bool targetMissing = error == ENOENT && !isFolder(orHere(folderOf(to)));
  throw ioError("rename", targetMissing ? to : from, error, targetMissing ? Missing::folder : Missing::file);
}

bool DiskFileSystem::folderExists(const std::string& folder) { return isFolder(orHere(folder)); }

void DiskFileSystem::makeFolder(const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(orHere(folder), error);
  if (!error || isFolder(orHere(folder))) return;
  struct stat status {};
  if (::stat(folder.c_str(), &status) == 0)
    throw IoError(Code::noSuchFolder,
                  "Unable to make the folder '" + baseName(folder) + "': it is a file. Choose another name.",
                  error.value());
  throw ioError("make the folder", folder, error.value(), Missing::folder);
}

std::vector<std::string> DiskFileSystem::list(const std::string& folder) {
  namespace fs = std::filesystem;
  std::error_code error;
  std::vector<std::string> names;
  for (fs::directory_iterator at(orHere(folder), error), end; !error && at != end; at.increment(error)) {
    std::error_code gone;  // a file removed meanwhile is simply not listed
    if (at->is_regular_file(gone)) names.push_back(at->path().filename().string());
  }
  if (error) throw ioError("read the folder", folder, error.value(), Missing::folder);
  std::sort(names.begin(), names.end());
  return names;
}

void DiskFileSystem::syncFolder(const std::string& folder) {
  const int fd = openRetrying(orHere(folder), O_RDONLY | O_DIRECTORY);
  if (fd < 0) throw ioError("save the folder", folder, errno, Missing::folder);
  int result = ::fsync(fd);
  while (result != 0 && errno == EINTR) result = ::fsync(fd);
  const int error = result == 0 ? 0 : errno;
  ::close(fd);
  if (error != 0 && error != EINVAL) throw ioError("save the folder", folder, error, Missing::folder);
}

void DiskFileSystem::syncFiles(const std::string& folder, std::span<const std::string> names) {
  constexpr std::size_t kFewFiles = 8;  // up to here one by one, which leaves what others have written alone
  if (names.size() <= kFewFiles) return FileSystem::syncFiles(folder, names);
  const int fd = openRetrying(orHere(folder), O_RDONLY | O_DIRECTORY);
  if (fd < 0) throw ioError("save the folder", folder, errno, Missing::folder);
  const int error = ::syncfs(fd) == 0 ? 0 : errno;
  ::close(fd);
  if (error != 0) throw ioError("save the folder", folder, error, Missing::folder);
}

bool DiskFileSystem::isNetwork(const std::string& folder) {
  struct statfs status {};
  if (::statfs(orHere(folder).c_str(), &status) != 0) throw ioError("read the folder", folder, errno, Missing::folder);
  const auto kind = static_cast<std::uint32_t>(status.f_type);
  return std::find(std::begin(kNetworkKinds), std::end(kNetworkKinds), kind) != std::end(kNetworkKinds);
}

}  // namespace quillon::store
