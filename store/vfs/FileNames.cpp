#include "store/vfs/FileNames.h"

#include "base/Text.h"
#include "store/vfs/File.h"

namespace quillon::store {

std::string findFile(FileSystem& files, const std::string& folder, const std::string& name) {
  std::string path = folder + "/" + name;
  if (files.exists(path) || !files.folderExists(folder)) return path;
  for (const std::string& there : files.list(folder))
    if (equalFolded(there, name)) return folder + "/" + there;
  return path;
}

}  // namespace quillon::store
