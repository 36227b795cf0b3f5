#include "store/Planted.h"

#include <cstdlib>
#include <iterator>
#include <string_view>

namespace quillon::store {
namespace {

constexpr std::string_view kNames[] = {
    "skippedSync", "skippedFolderSync", "swappedWrites",  "notReplayed",   "appliedOneByOne", "holeInTableLock",
    "earlyUnlock", "shortWriteIgnored", "noChecksumTest", "tornTailTaken", "rowIdsReused",    "staleRead",
};
static_assert(std::size(kNames) == static_cast<std::size_t>(Bug::staleRead) + 1);

// The one that QUILLON_BUG names; none without it. A name that is not known ends the program.
int chosen() {
  const char* name = std::getenv("QUILLON_BUG");
  if (name == nullptr) return -1;
  for (std::size_t i = 0; i < std::size(kNames); ++i)
    if (kNames[i] == name) return static_cast<int>(i);
  std::abort();
}

}  // namespace

bool planted(Bug bug) {
  static const int kChosen = chosen();
  return static_cast<int>(bug) == kChosen;
}

}  // namespace quillon::store
