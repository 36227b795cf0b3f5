#pragma once

#include <string>

namespace quillon::store {

class FileSystem;

// The path of a file in a folder, whose name may be spelled in another case there (a folder that came from a system
// without cases). Where there is none, the path that it would have. Does not raise for a missing folder.
std::string findFile(FileSystem& files, const std::string& folder, const std::string& name);

}  // namespace quillon::store
