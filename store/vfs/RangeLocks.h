#pragma once

#include <cstdint>
#include <map>

#include "store/vfs/File.h"

namespace quillon::store {

// The byte-range locks on one file, between its owners: the rules of File::lock for files that the system does not
// keep. Keeps: an owner holds each byte in at most one mode; an exclusive byte has one owner.
class RangeLocks {
 public:
  using Owner = const void*;  // compared only

  bool lock(Owner owner, std::uint64_t offset, std::uint64_t length, LockMode mode);
  void unlock(Owner owner, std::uint64_t offset, std::uint64_t length) noexcept;
  void unlockAll(Owner owner) noexcept { held_.erase(owner); }
  bool refused(Owner owner, std::uint64_t offset, std::uint64_t length, LockMode mode) const;

 private:
  struct Range {
    std::uint64_t end;
    LockMode mode;
  };
  using Ranges = std::map<std::uint64_t, Range>;  // by first byte; apart from each other

  static Ranges::const_iterator firstBeyond(const Ranges& ranges, std::uint64_t offset);
  static void split(Ranges& ranges, std::uint64_t at);

  std::map<Owner, Ranges> held_;
};

}  // namespace quillon::store
