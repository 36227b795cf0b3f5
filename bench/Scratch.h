#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>

namespace quillon::bench {

// A new folder beside this program's own, on the disk that is built on; gone with everything in it at the end, but not
// at that of a forked process. Raises Error when that is no disk.
class Scratch {
 public:
  Scratch();
  ~Scratch();
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
  const std::string& path() const { return path_; }

 private:
  std::string path_;
  pid_t owner_;
};

// Makes an empty folder, removing what was there.
std::string emptyFolder(const std::string& path);

// Bytes of the files in a folder whose names end with `ending`.
std::uint64_t bytesOf(const std::string& folder, const std::string& ending = {});

}  // namespace quillon::bench
