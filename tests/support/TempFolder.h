#pragma once

#include <unistd.h>

#include <filesystem>
#include <stdexcept>
#include <string>

namespace quillon::sim {

// A new folder that goes with the object, with all that is in it.
class TempFolder {
 public:
  TempFolder() : path_((std::filesystem::temp_directory_path() / "quillon-test-XXXXXX").string()) {
    if (::mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no temporary folder " + path_);
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace quillon::sim
