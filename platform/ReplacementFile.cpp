#include "platform/ReplacementFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <utility>

#include "platform/SystemError.h"

namespace quillon::platform {

void writeAll(const Descriptor& file, std::string_view bytes, const std::string& name) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(file.get(), bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw systemError("write", name, errno);
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void syncFile(const Descriptor& file, const std::string& name) {
  if (::fsync(file.get()) != 0) throw systemError("write", name, errno);
}

void syncFolder(const std::string& folder) {
  const Descriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // Some network disks cannot sync a folder and say so by EINVAL; there is nothing more that we could do.
  if (!opened || (::fsync(opened.get()) != 0 && errno != EINVAL)) throw systemError("write to folder", folder, errno);
}

ReplacementFile::ReplacementFile(std::string target, std::string beside, mode_t mode)
    : target_(std::move(target)),
      beside_(std::move(beside)),
      file_(::open(beside_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, mode)) {
  if (!file_) throw systemError("write", target_, errno);
}

ReplacementFile::~ReplacementFile() {
  if (!placed_) ::unlink(beside_.c_str());
}

void ReplacementFile::putInPlace() {
  syncFile(file_, target_);
  if (std::rename(beside_.c_str(), target_.c_str()) != 0) throw systemError("write", target_, errno);
  placed_ = true;
}

}  // namespace quillon::platform
