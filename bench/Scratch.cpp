#include "bench/Scratch.h"

#include <linux/magic.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <filesystem>

#include "base/Errors.h"

namespace quillon::bench {

Scratch::Scratch() : owner_(::getpid()) {
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
  path_ = (program.parent_path().parent_path() / "bench.XXXXXX").string();
  if (::mkdtemp(path_.data()) == nullptr) throw Error("No folder can be made beside the program: " + path_);
  struct statfs kind {};
  if (::statfs(path_.c_str(), &kind) == 0 && kind.f_type == TMPFS_MAGIC) {
    std::filesystem::remove(path_);
    throw Error("The build folder lies in memory; its syncs cost nothing. Build on a disk.");
  }
}

Scratch::~Scratch() {
  std::error_code ignored;
  if (::getpid() == owner_) std::filesystem::remove_all(path_, ignored);
}

std::string emptyFolder(const std::string& path) {
  std::filesystem::remove_all(path);
  std::filesystem::create_directories(path);
  return path;
}

std::uint64_t bytesOf(const std::string& folder, const std::string& ending) {
  std::uint64_t total = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    if (entry.path().string().ends_with(ending)) total += entry.file_size();
  return total;
}

}  // namespace quillon::bench
