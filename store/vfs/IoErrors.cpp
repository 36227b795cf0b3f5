#include "store/vfs/IoErrors.h"

#include <cerrno>
#include <system_error>

namespace quillon::store {
namespace {

struct Reason {
  int error;
  Code code;
  std::string_view text;
};

constexpr Reason kReasons[] = {
    {EEXIST, Code::tableExists, "there is a file of this name already. Choose another name or remove that file."},
    {EACCES, Code::accessDenied, "access is denied. Ask for the right to read and write this file and its folder."},
    {EPERM, Code::accessDenied, "access is denied. Ask for the right to read and write this file and its folder."},
    {EROFS, Code::accessDenied, "the disk is read-only. Make it writable or use another folder."},
    {ENOSPC, Code::noSpace, "the disk is full. Free some space and try again."},
    {EDQUOT, Code::noSpace, "your share of the disk is used up. Free some space and try again."},
    {EMFILE, Code::ioFailed, "too many files are open. Close some windows and try again."},
    {ENFILE, Code::ioFailed, "this computer has too many files open. Close other programs and try again."},
    {EIO, Code::ioFailed, "the disk reports a fault. Check the disk or the connection to it and try again."},
    {ESTALE, Code::ioFailed, "the connection to its folder was lost. Close the company and open it again."},
    {ENOLCK, Code::ioFailed,
     "this folder does not keep locks and cannot be shared. Move the company to another folder."},
    {EOPNOTSUPP, Code::ioFailed, "this folder does not support that. Move the company to another folder."},
};

constexpr Reason kMissingFile{ENOENT, Code::noSuchTable, "it is not there. Check the folder and its backups."};
constexpr Reason kMissingFolder{ENOENT, Code::noSuchFolder,
                                "the folder is not there. Check its name and the connection to it."};

}  // namespace

std::string baseName(std::string_view path) {
  while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
  const auto slash = path.rfind('/');
  return std::string(slash == std::string_view::npos || path.size() == 1 ? path : path.substr(slash + 1));
}

std::string folderOf(std::string_view path) {
  const auto slash = path.rfind('/');
  if (slash == std::string_view::npos) return {};
  return std::string(path.substr(0, slash == 0 ? 1 : slash));
}

IoError ioError(std::string_view verb, std::string_view path, int systemError, Missing missing) {
  const std::string start = "Unable to " + std::string(verb) + " '" + baseName(path) + "': ";
  const auto raise = [&](const Reason& r) { return IoError(r.code, start + std::string(r.text), systemError); };
  if (systemError == ENOENT || systemError == ENOTDIR)
    return raise(missing == Missing::file ? kMissingFile : kMissingFolder);
  for (const Reason& reason : kReasons) {
    if (reason.error == systemError) return raise(reason);
  }
  return {
      Code::ioFailed,
      start + std::generic_category().message(systemError) + ". Check the disk or the connection to it and try again.",
      systemError};
}

}  // namespace quillon::store
