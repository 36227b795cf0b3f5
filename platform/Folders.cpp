#include "platform/Folders.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string_view>

#include "base/Errors.h"
#include "base/Text.h"
#include "platform/Account.h"
#include "platform/Descriptor.h"

namespace quillon::platform {
namespace {

constexpr std::string_view kLevels = "/Marrowfield Software/Quillon Enterprise Accounting with Manufacturing/2017.6";
constexpr mode_t kPrivate = 0700;

bool isFolder(const std::string& path) {
  struct stat entry {};
  return ::stat(path.c_str(), &entry) == 0 && S_ISDIR(entry.st_mode);
}

std::string withoutSlashes(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

// The value of an environment variable that must be an absolute path to count.
std::optional<std::string> pathVariable(const char* name) {
  const char* value = std::getenv(name);
  if (!value || *value != '/') return std::nullopt;
  return withoutSlashes(value);
}

std::optional<std::string> below(const std::string& home, const char* name) {
  if (home.empty()) return std::nullopt;
  return home + name;
}

std::optional<std::string> configFolder() {
  if (auto folder = pathVariable("XDG_CONFIG_HOME")) return folder;
  return below(homeFolder(), "/.config");
}

// Takes the quotes and backslashes off, and puts the home folder in: the two forms that user-dirs.dirs may hold.
std::optional<std::string> readUserFolder(std::string_view quoted, const std::string& home) {
  if (quoted.size() < 2 || quoted.front() != '"' || quoted.back() != '"') return std::nullopt;
  std::string path;
  for (std::size_t i = 1; i + 1 < quoted.size(); ++i) {
    if (quoted[i] == '\\' && i + 2 < quoted.size()) ++i;
    path += quoted[i];
  }
  constexpr std::string_view kHome = "$HOME";
  if (path.starts_with(kHome) && (path.size() == kHome.size() || path[kHome.size()] == '/'))
    path.replace(0, kHome.size(), home);
  if (path.empty() || path.front() != '/') return std::nullopt;
  path = withoutSlashes(path);
  if (path == home) return std::nullopt;  // how a user says that there is no such folder
  return path;
}

std::optional<std::string> publicShare() {
  const std::string home = withoutSlashes(homeFolder());
  if (home.empty()) return std::nullopt;
  std::ifstream file(configFolder().value_or(home) + "/user-dirs.dirs");
  std::optional<std::string> found;
  constexpr std::string_view kName = "XDG_PUBLICSHARE_DIR=";
  for (std::string line; std::getline(file, line);) {
    const std::string_view text = trim(line);
    if (text.starts_with(kName)) found = readUserFolder(text.substr(kName.size()), home);
  }
  return found ? found : below(home, "/Public");
}

// A folder in a place where everybody may write: ours by its owner and not by its name, so that nobody can lay one out
// for us to write into.
void claimPrivate(const std::string& path) {
  const std::string refusal = "Could not create folder " + path;
  if (::mkdir(path.c_str(), kPrivate) != 0 && errno != EEXIST) throw Error(refusal);
  const Descriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  struct stat entry {};
  if (!folder || ::fstat(folder.get(), &entry) != 0 || entry.st_uid != ::geteuid())
    throw Error(refusal + ": something of another user has this name");
  if ((entry.st_mode & 0777) != kPrivate && ::fchmod(folder.get(), kPrivate) != 0) throw Error(refusal);
}

std::string made(const std::string& path, mode_t mode) {
  makeFolder(path, mode);
  return path;
}

}  // namespace

std::string settingsFolder() { return made(configFolder().value_or(programFolder()) + std::string(kLevels), kPrivate); }

std::string publicFolder() { return made(publicShare().value_or(programFolder()) + std::string(kLevels), 0777); }

std::string scratchFolder() {
  std::string above = pathVariable("TMPDIR").value_or("/tmp");
  if (!isFolder(above)) above = "/tmp";
  if (!isFolder(above)) return made(programFolder() + "/Priv", kPrivate);
  const std::string own = above + "/quillon-" + std::to_string(::geteuid());
  claimPrivate(own);
  return made(own + std::string(kLevels) + "/Priv", kPrivate);
}

std::string programFolder() { return std::filesystem::read_symlink("/proc/self/exe").parent_path().string(); }

void makeFolder(const std::string& path, mode_t mode) {
  for (std::size_t end = 0; end != std::string::npos;) {
    end = path.find('/', end + 1);
    const std::string level = path.substr(0, end);
    // Asked first: making what is there can be refused as a read-only disk.
    if (!level.empty() && !isFolder(level) && ::mkdir(level.c_str(), mode) != 0 && !isFolder(level))
      throw Error("Could not create folder " + level);
  }
}

}  // namespace quillon::platform
