#pragma once

#include <time.h>

#include <cstdint>
#include <functional>

namespace quillon::bench {

// Adds up the time between its starts and stops: on the wall or, for a machine that others keep busy, the time that
// this process had of the processor (waits for the disk, and other processes' work, are no part of that).
class Stopwatch {
 public:
  void start() { from_ = now(); }
  void stop() { seconds_ += now() - from_; }
  void add(double seconds) { seconds_ += seconds; }
  double seconds() const { return seconds_; }

  inline static clockid_t clock = CLOCK_MONOTONIC;

 private:
  static double now() {
    timespec time{};
    ::clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
  }

  double from_ = 0;
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
