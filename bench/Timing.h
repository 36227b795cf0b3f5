#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

namespace quillon::bench {

// Adds up the time between its starts and stops.
class Stopwatch {
 public:
  void start() { from_ = std::chrono::steady_clock::now(); }
  void stop() { seconds_ += std::chrono::duration<double>(std::chrono::steady_clock::now() - from_).count(); }
  void add(double seconds) { seconds_ += seconds; }
  double seconds() const { return seconds_; }

 private:
  std::chrono::steady_clock::time_point from_;
  double seconds_ = 0;
};

// What both sides took for one operation, in microseconds.
struct Pair {
  double ours = 0;
  double theirs = 0;
};

// One round of a side: what is to be measured stands between start and stop. Returns a sum over what it read or did.
using Round = std::function<std::int64_t(int round, Stopwatch& watch)>;

// Medians over `rounds` rounds of `operations` operations each, ours and theirs in turn, so that a load that comes and
// goes meets both. Round -1, a warm-up, is not counted. Raises Error when the sides disagree in the sum of a round.
Pair alternate(int rounds, std::int64_t operations, const Round& ours, const Round& theirs);

}  // namespace quillon::bench
