#include "store/table/ReplaceFiles.h"

#include <optional>
#include <vector>

#include "store/Errors.h"
#include "store/table/TableFiles.h"
#include "store/vfs/File.h"
#include "store/vfs/FileNames.h"

namespace quillon::store {
namespace {

// None: there is no such file, or its first page does not tell.
std::optional<std::uint64_t> idOf(FileSystem& files, const std::string& path, const std::string& name, Role role) {
  try {
    if (!files.exists(path)) return {};
    return TableFiles::checkIdentity(*files.open(path, OpenMode::existing), name, role);
  } catch (const IoError& error) {
    if (error.code() == Code::noSuchTable) return {};
    throw;
  } catch (const StoreError&) {
    return {};
  }
}

}  // namespace

void replaceFiles(FileSystem& files, const std::string& folder, const std::string& name) {
  const std::string dat = name + kExtensions[kDat];
  files.rename(folder + "/" + dat + kNewSuffix, findFile(files, folder, dat));
  finishReplacing(files, folder, name);
}

bool finishReplacing(FileSystem& files, const std::string& folder, const std::string& name) {
  const auto id = idOf(files, findFile(files, folder, name + kExtensions[kDat]), name, kDat);
  if (!id) return false;
  bool begun = false;
  for (const Role role : {kIdx, kBlb}) {
    const std::string waiting = findFile(files, folder, name + kExtensions[role] + kNewSuffix);
    if (idOf(files, waiting, name, role) != id) continue;
    // The .DAT file's name must be safe before its old companions lose theirs.
    if (!begun) files.syncFolder(folder);
    begun = true;
    files.rename(waiting, findFile(files, folder, name + kExtensions[role]));
  }
  if (begun) files.syncFolder(folder);
  return begun;
}

void copyFile(FileSystem& files, const std::string& from, const std::string& to) {
  constexpr std::size_t kPart = std::size_t{1} << 20;
  const auto source = files.open(from, OpenMode::existing);
  files.remove(to);
  const auto target = files.open(to, OpenMode::createNew);
  std::vector<std::byte> bytes(kPart);
  for (std::uint64_t at = 0;;) {
    const std::size_t part = source->read(at, bytes.data(), bytes.size());
    if (part == 0) return;
    target->write(at, Bytes(bytes).first(part));
    at += part;
  }
}

std::string freeSuffix(FileSystem& files, const std::string& path, const std::string& suffix) {
  std::string free = suffix;
  for (int number = 2; files.exists(path + free); ++number) free = suffix + std::to_string(number);
  return free;
}

void keepFiles(FileSystem& files, const std::string& folder, const std::string& name, const std::string& suffix) {
  const std::string kept = folder + "/" + name + kExtensions[kDat] + suffix;
  files.remove(kept);
  files.syncFolder(folder);
  std::vector<std::string> written;
  for (const Role role : {kBlb, kIdx, kDat}) {
    const std::string file = name + kExtensions[role];
    const std::string from = findFile(files, folder, file);
    const std::string to = file + suffix + (role == kDat ? kNewSuffix : "");
    if (!files.exists(from)) {
      files.remove(folder + "/" + to);
      continue;
    }
    copyFile(files, from, folder + "/" + to);
    written.push_back(to);
  }
  files.syncFiles(folder, written);
  files.syncFolder(folder);
  files.rename(kept + kNewSuffix, kept);
  files.syncFolder(folder);
}

}  // namespace quillon::store
