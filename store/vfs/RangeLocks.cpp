#include "store/vfs/RangeLocks.h"

#include <iterator>

namespace quillon::store {

// The first range that ends behind `offset`.
RangeLocks::Ranges::const_iterator RangeLocks::firstBeyond(const Ranges& ranges, std::uint64_t offset) {
  auto at = ranges.upper_bound(offset);
  if (at != ranges.begin() && std::prev(at)->second.end > offset) --at;
  return at;
}

// Makes `at` a border, so that what lies before and behind it can be changed apart.
void RangeLocks::split(Ranges& ranges, std::uint64_t at) {
  auto next = ranges.lower_bound(at);
  if (next == ranges.begin()) return;
  Range& before = std::prev(next)->second;
  if (before.end <= at) return;
  ranges.emplace_hint(next, at, before);
  before.end = at;
}

bool RangeLocks::lock(Owner owner, std::uint64_t offset, std::uint64_t length, LockMode mode) {
  if (length == 0) return true;
  if (refused(owner, offset, length, mode)) return false;
  unlock(owner, offset, length);
  held_[owner].emplace(offset, Range{offset + length, mode});
  return true;
}

void RangeLocks::unlock(Owner owner, std::uint64_t offset, std::uint64_t length) noexcept {
  const auto mine = held_.find(owner);
  if (mine == held_.end() || length == 0) return;
  Ranges& ranges = mine->second;
  split(ranges, offset);
  split(ranges, offset + length);
  ranges.erase(ranges.lower_bound(offset), ranges.lower_bound(offset + length));
  if (ranges.empty()) held_.erase(mine);
}

bool RangeLocks::refused(Owner owner, std::uint64_t offset, std::uint64_t length, LockMode mode) const {
  for (const auto& [other, ranges] : held_) {
    if (other == owner) continue;
    for (auto at = firstBeyond(ranges, offset); at != ranges.end() && at->first < offset + length; ++at) {
      if (mode == LockMode::exclusive || at->second.mode == LockMode::exclusive) return true;
    }
  }
  return false;
}

}  // namespace quillon::store
