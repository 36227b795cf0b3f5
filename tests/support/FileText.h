#pragma once

#include <string>
#include <string_view>

#include "store/vfs/File.h"

namespace quillon::sim {

// All bytes of a file that is there.
inline std::string loadFile(store::FileSystem& files, const std::string& path) {
  const auto file = files.open(path, store::OpenMode::existing);
  std::string bytes(file->size(), '\0');
  file->read(0, bytes.data(), bytes.size());
  return bytes;
}

// The file then has these bytes and no others; it is made where it is missing.
inline void saveFile(store::FileSystem& files, const std::string& path, std::string_view bytes) {
  const auto file = files.open(path, store::OpenMode::create);
  file->truncate(0);
  file->write(0, std::as_bytes(std::span(bytes)));
}

}  // namespace quillon::sim
