#include "reports/OutputFile.h"

#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "base/Errors.h"
#include "platform/SystemError.h"

namespace quillon::reports {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBuffer = 1 << 18;

// What stands at the end of links, so that they go on leading to it.
std::string targetOf(const std::string& path) {
  std::error_code unreadable;
  const fs::file_status status = fs::status(path, unreadable);
  if (!fs::exists(status)) return path;
  if (!fs::is_regular_file(status)) throw Error("Could not write '" + path + "': something else has this name");
  if (::access(path.c_str(), W_OK) != 0) throw platform::systemError("write", path, errno);
  return fs::canonical(path).string();
}

// Short, since the target's own name may be as long as the disk allows.
std::string unfinishedOf(const std::string& target) {
  return (fs::path(target).parent_path() / (".quillon-" + std::to_string(::getpid()) + ".new")).string();
}

}  // namespace

OutputFile::OutputFile(const std::string& path)
    : target_(targetOf(path)), unfinished_(unfinishedOf(target_)), file_(target_, unfinished_) {
  buffer_.reserve(kBuffer);
}

void OutputFile::write(std::string_view bytes) {
  size_ += bytes.size();
  if (buffer_.size() + bytes.size() > kBuffer) {
    file_.write(buffer_);
    buffer_.clear();
  }
  if (bytes.size() > kBuffer)
    file_.write(bytes);
  else
    buffer_ += bytes;
}

void OutputFile::finish() {
  file_.write(buffer_);
  buffer_.clear();
  file_.putInPlace();
  const std::string folder = fs::path(target_).parent_path().string();
  platform::syncFolder(folder.empty() ? "." : folder);
}

}  // namespace quillon::reports
