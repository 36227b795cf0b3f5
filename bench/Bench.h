#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "bench/Report.h"

namespace quillon::bench {

// What all measurements share: where, how large, and where the figures go. Between measurements nothing is open, so
// that one may fork.
class Bench {
 public:
  Bench(std::string folder, std::int64_t rows, Report& to) : report(to), folder_(std::move(folder)), rows_(rows) {}

  Report& report;
  const std::string& folder() const { return folder_; }
  std::int64_t rows() const { return rows_; }
  // A count that is `full` with a million rows and shrinks with them.
  std::int64_t scaled(std::int64_t full) const;

  // The items table with that many rows, filled at the first call: a folder for ours, a file for theirs.
  struct Items {
    std::string folder, file;
  };
  Items items(std::int64_t rows);
  Items items() { return items(rows_); }

 private:
  std::string folder_;
  std::int64_t rows_;
  std::set<std::int64_t> filled_;
};

// The measurements.
void lookupAlone(Bench& bench);
void lookupHeld(Bench& bench);
void walkOrdered(Bench& bench);
void insertGlHist(Bench& bench);
void insertFive(Bench& bench);
void insertDurable(Bench& bench);
void updateMoney(Bench& bench);
void countRange(Bench& bench);
void goToKth(Bench& bench);
void twoWriters(Bench& bench);
void space(Bench& bench);
void memory(Bench& bench);
void doubling(Bench& bench);
void maintain(Bench& bench);

// Runs each work in a process of its own, all at once, and returns the numbers that they returned. Raises Error when
// one failed.
std::vector<double> inProcesses(const std::vector<std::function<double()>>& works);

}  // namespace quillon::bench
