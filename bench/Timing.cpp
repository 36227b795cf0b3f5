#include "bench/Timing.h"

#include <algorithm>
#include <string>
#include <vector>

#include "base/Errors.h"

namespace quillon::bench {
namespace {

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

}  // namespace

Pair alternate(int rounds, std::int64_t operations, const Round& ours, const Round& theirs) {
  std::vector<double> mine, other;
  for (int round = -1; round < rounds; ++round) {
    Stopwatch ourWatch, theirWatch;
    const std::int64_t ourSum = ours(round, ourWatch);
    const std::int64_t theirSum = theirs(round, theirWatch);
    if (ourSum != theirSum)
      throw Error("The two sides did not do the same: " + std::to_string(ourSum) + " and " + std::to_string(theirSum));
    if (round < 0) continue;
    mine.push_back(ourWatch.seconds() * 1e6 / static_cast<double>(operations));
    other.push_back(theirWatch.seconds() * 1e6 / static_cast<double>(operations));
  }
  return {median(std::move(mine)), median(std::move(other))};
}

}  // namespace quillon::bench
