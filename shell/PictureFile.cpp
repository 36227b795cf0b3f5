#include "shell/PictureFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

#include "base/Errors.h"

namespace quillon::shell {
namespace {

constexpr std::uintmax_t kLargest = 10'000'000;
constexpr std::string_view kBeginnings[] = {"\x89PNG\r\n\x1a\n", "\xff\xd8\xff", "BM"};

[[noreturn]] void refuse(const std::string& path, const std::string& why) {
  throw Error("Unable to load picture '" + path + "'...\r" + why);
}

}  // namespace

std::string readPicture(const std::string& path) {
  std::error_code unknown;
  // Reading from what is no file might never end.
  if (std::filesystem::exists(path, unknown) && !std::filesystem::is_regular_file(path, unknown))
    refuse(path, "It is not a file.");
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  if (!file) refuse(path, std::string("It cannot be read: ") + std::strerror(errno ? errno : EIO) + ".");
  if (std::filesystem::file_size(path, unknown) > kLargest && !unknown)
    refuse(path, "It is too large: at most 10 MB fit.");
  std::string bytes{std::istreambuf_iterator<char>(file), {}};
  if (file.bad()) refuse(path, "It cannot be read to its end.");
  if (std::ranges::none_of(kBeginnings, [&](std::string_view begin) { return bytes.starts_with(begin); }))
    refuse(path, "It is not a picture. Choose a PNG, JPEG or BMP file.");
  return bytes;
}

}  // namespace quillon::shell
