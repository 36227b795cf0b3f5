#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// The only way from the store to the disk. Three implementations: the real disk (DiskFileSystem), memory
// (MemoryFileSystem), and a simulated disk in the tests that loses unsynced writes and fails on demand.
namespace quillon::store {

enum class LockMode { shared, exclusive };

using Bytes = std::span<const std::byte>;

// One open file. Calls raise IoError (noSpace, accessDenied, ioFailed) unless told otherwise.
class File {
 public:
  File() = default;
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  virtual ~File() = default;  // closes; every lock of this handle ends

  // Reads `size` bytes at `offset`; returns how many were there: fewer only at the end of the file.
  virtual std::size_t read(std::uint64_t offset, void* data, std::size_t size) = 0;
  // Writes all of `data` at `offset`, or raises; after a raise any part may have been written.
  virtual void write(std::uint64_t offset, Bytes data) = 0;
  // Writes the parts one behind the other from `offset` on; same promise as `write`.
  virtual void writeParts(std::uint64_t offset, std::span<const Bytes> parts) = 0;
  virtual std::uint64_t size() = 0;
  // Cuts the file, or lengthens it with zeros without reserving the space.
  virtual void truncate(std::uint64_t size) = 0;
  // Makes the file at least `size` bytes long, new bytes zero, with the space set aside on the disk.
  virtual void reserve(std::uint64_t size) = 0;
  // Everything written so far, and the length, survives a power loss once this returns.
  virtual void sync() = 0;

  // Byte-range locks, advisory, owned by this handle (two handles on one file, also of one process, are two owners).
  // They may lie behind the end of the file. `lock` never waits: false when another owner is in the way. Locking a
  // range again with another mode converts it as one step; if that fails the old lock stays.
  virtual bool lock(std::uint64_t offset, std::uint64_t length, LockMode mode) = 0;
  virtual void unlock(std::uint64_t offset, std::uint64_t length) noexcept = 0;
  // Whether another owner holds a lock that would refuse `mode` there.
  virtual bool lockedByOther(std::uint64_t offset, std::uint64_t length, LockMode mode) = 0;
};

enum class OpenMode {
  existing,   // raises noSuchTable when it is not there
  create,     // makes it when it is not there
  createNew,  // raises tableExists when it is there
};

// Paths are absolute or relative as the system takes them, parts joined by '/'.
class FileSystem {
 public:
  FileSystem() = default;
  FileSystem(const FileSystem&) = delete;
  FileSystem& operator=(const FileSystem&) = delete;
  virtual ~FileSystem() = default;

  virtual std::unique_ptr<File> open(const std::string& path, OpenMode mode) = 0;
  // A private file without a name in `folder`; it vanishes with its handle.
  virtual std::unique_ptr<File> openScratch(const std::string& folder) = 0;
  virtual bool exists(const std::string& path) = 0;
  // Whether `path` names the file that `file`, opened here, is a handle of: not when it was removed, or another one was
  // put in its place.
  virtual bool isNamed(const std::string& path, File& file) = 0;
  virtual void remove(const std::string& path) = 0;                         // no error when it is not there
  virtual void rename(const std::string& from, const std::string& to) = 0;  // replaces `to`
  virtual bool folderExists(const std::string& folder) = 0;
  virtual void makeFolder(const std::string& folder) = 0;  // parents too; no error when it is there
  virtual std::vector<std::string> list(
      const std::string& folder) = 0;  // names of plain files, sorted; raises noSuchFolder
  // Names made, renamed or removed in `folder` so far survive a power loss once this returns.
  virtual void syncFolder(const std::string& folder) = 0;
  // The contents of these files of `folder`, as written so far, survive a power loss once this returns (not their
  // names). At once where the system can, which is what makes two hundred new files affordable.
  virtual void syncFiles(const std::string& folder, std::span<const std::string> names) {
    for (const std::string& name : names) open(folder + "/" + name, OpenMode::existing)->sync();
  }
  // Whether `folder` lies on another machine, so that its other users do not share this machine's page cache.
  virtual bool isNetwork(const std::string& folder) = 0;
};

}  // namespace quillon::store
