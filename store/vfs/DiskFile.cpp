#include "store/vfs/DiskFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "store/Planted.h"
#include "store/vfs/IoErrors.h"

namespace quillon::store {
namespace {

template <class Call>
auto retried(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

off_t fileOffset(std::uint64_t value) { return static_cast<off_t>(value); }

struct flock range(std::uint64_t offset, std::uint64_t length, short type) {
  struct flock lock {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = fileOffset(offset);
  lock.l_len = fileOffset(length);
  return lock;  // l_pid stays 0, which the open-file-description calls ask for
}

short typeOf(LockMode mode) { return mode == LockMode::shared ? F_RDLCK : F_WRLCK; }

// A folder that keeps no locks answers with one of several numbers; all mean the same to a person.
int lockError(int error) { return error == EIO || error == ESTALE ? error : ENOLCK; }

}  // namespace

DiskFile::~DiskFile() { ::close(fd_); }

void DiskFile::raise(const char* verb) const { throw ioError(verb, path_, errno); }

std::size_t DiskFile::read(std::uint64_t offset, void* data, std::size_t size) {
  auto* to = static_cast<std::byte*>(data);
  std::size_t done = 0;
  while (done < size) {
    const ssize_t got = retried([&] { return ::pread(fd_, to + done, size - done, fileOffset(offset + done)); });
    if (got < 0) raise("read");
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

void DiskFile::write(std::uint64_t offset, Bytes data) {
  while (!data.empty()) {
    const ssize_t put = retried([&] { return ::pwrite(fd_, data.data(), data.size(), fileOffset(offset)); });
    if (put == 0) errno = ENOSPC;  // a regular file that takes nothing and names no error
    if (put <= 0) raise("write");
    if (planted(Bug::shortWriteIgnored)) return;
    data = data.subspan(static_cast<std::size_t>(put));
    offset += static_cast<std::uint64_t>(put);
  }
}

void DiskFile::writeParts(std::uint64_t offset, std::span<const Bytes> parts) {
  constexpr std::size_t kBatch = 64;
  std::array<struct iovec, kBatch> batch{};
  std::size_t next = 0;  // first part that is not wholly written
  std::size_t done = 0;  // bytes of it that are
  while (next < parts.size()) {
    int count = 0;
    for (std::size_t i = next; i < parts.size() && i - next < kBatch; ++i) {
      const Bytes rest = parts[i].subspan(i == next ? done : 0);
      batch[i - next] = {const_cast<std::byte*>(rest.data()), rest.size()};
      ++count;
    }
    const ssize_t put = retried([&] { return ::pwritev(fd_, batch.data(), count, fileOffset(offset)); });
    const bool nothing =
        std::all_of(batch.begin(), batch.begin() + count, [](const auto& v) { return v.iov_len == 0; });
    if (put == 0 && !nothing) errno = ENOSPC;
    if (put < 0 || (put == 0 && !nothing)) raise("write");
    offset += static_cast<std::uint64_t>(put);
    auto left = static_cast<std::size_t>(put);
    while (next < parts.size() && left >= parts[next].size() - done) {
      left -= parts[next].size() - done;
      done = 0;
      ++next;
    }
    done += left;
  }
}

std::uint64_t DiskFile::size() {
  struct stat status {};
  if (::fstat(fd_, &status) != 0) raise("read");
  if (named_ && status.st_nlink == 0) {
    errno = ESTALE;
    raise("read");
  }
  return static_cast<std::uint64_t>(status.st_size);
}

void DiskFile::truncate(std::uint64_t size) {
  if (retried([&] { return ::ftruncate(fd_, fileOffset(size)); }) != 0) raise("write");
}

void DiskFile::reserve(std::uint64_t size) {
  const std::uint64_t present = this->size();
  if (size <= present) return;
  if (retried([&] { return ::fallocate(fd_, 0, fileOffset(present), fileOffset(size - present)); }) == 0) return;
  if (errno != EOPNOTSUPP && errno != ENOSYS) raise("write");
  try {
    writeZeros(present, size);
  } catch (const IoError&) {
    (void)!::ftruncate(fd_, fileOffset(present));  // gives back what was taken in vain
    throw;
  }
}

bool DiskFile::is(dev_t device, ino_t number) {
  if (number_ == 0) {
    struct stat status {};
    if (::fstat(fd_, &status) != 0) raise("look for");
    device_ = status.st_dev;
    number_ = status.st_ino;
  }
  return device_ == device && number_ == number;
}

void DiskFile::writeZeros(std::uint64_t from, std::uint64_t to) {
  static constexpr std::array<std::byte, 65536> kZeros{};
  while (from < to) {
    const std::size_t count = std::min<std::uint64_t>(kZeros.size(), to - from);
    write(from, Bytes(kZeros).first(count));
    from += count;
  }
}

// fdatasync also flushes the length, since without it the data could not be read back; it leaves out only file times.
void DiskFile::sync() {
  if (retried([&] { return ::fdatasync(fd_); }) != 0) raise("save");
}

bool DiskFile::lock(std::uint64_t offset, std::uint64_t length, LockMode mode) {
  if (length == 0) return true;  // the system would take 0 as "to the end of the world"
  struct flock wanted = range(offset, length, typeOf(mode));
  if (retried([&] { return ::fcntl(fd_, F_OFD_SETLK, &wanted); }) == 0) return true;
  if (errno == EAGAIN || errno == EACCES) return false;
  errno = lockError(errno);
  raise("lock");
}

void DiskFile::unlock(std::uint64_t offset, std::uint64_t length) noexcept {
  if (length == 0) return;
  struct flock freed = range(offset, length, F_UNLCK);
  retried([&] { return ::fcntl(fd_, F_OFD_SETLK, &freed); });
}

bool DiskFile::lockedByOther(std::uint64_t offset, std::uint64_t length, LockMode mode) {
  if (length == 0) return false;
  struct flock asked = range(offset, length, typeOf(mode));
  if (retried([&] { return ::fcntl(fd_, F_OFD_GETLK, &asked); }) != 0) {
    errno = lockError(errno);
    raise("lock");
  }
  return asked.l_type != F_UNLCK;
}

}  // namespace quillon::store
