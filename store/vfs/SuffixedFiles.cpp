#include "store/vfs/SuffixedFiles.h"

namespace quillon::store {

std::vector<std::string> SuffixedFiles::list(const std::string& folder) {
  std::vector<std::string> names;
  for (const std::string& name : files_.list(folder))
    if (name.ends_with(suffix_)) names.push_back(name.substr(0, name.size() - suffix_.size()));
  return names;
}

void SuffixedFiles::syncFiles(const std::string& folder, std::span<const std::string> names) {
  std::vector<std::string> there;
  for (const std::string& name : names) there.push_back(name + suffix_);
  files_.syncFiles(folder, there);
}

}  // namespace quillon::store
