#pragma once

#include <functional>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "support/CompanyWork.h"
#include "support/SeededRandom.h"
#include "support/SimDisk.h"

// What every disk image that a cut, a kill or a fault may leave is held against.
namespace quillon::sim {

using Allowed = std::vector<const CompanyState*>;

// The states that a cut inside the task may leave.
Allowed allowedDuring(const Task& task);

// What is wrong with the company as this worker sees it: contents that are none of the allowed states, an index that
// does not fit, a finding of the verifier. `found` gets the state that it is in.
std::optional<std::string> checkOpen(Worker& worker, const Allowed& allowed, const CompanyState** found = nullptr);

// Opens the image and checks it, writes a little more and reads that back. `deep`: then also cuts the power once more,
// with everything unsynced lost, and looks for what was written last.
std::optional<std::string> checkImage(SimDisk image, const Workload& work, const Allowed& allowed, bool deep,
                                      std::uint64_t seed);

// A digest of all files but the notes of lock holders.
std::uint64_t digestOf(const SimDisk& image);

// Power cuts at one moment of a disk: up to `limit` images, those seen before under the same allowed states left out.
class Cuts {
 public:
  Cuts(const Workload& work, std::uint64_t seed) : work_(work), seed_(seed), random_(seed) {}
  std::optional<std::string> at(const SimDisk& disk, const Allowed& allowed, std::size_t limit);
  // The same, with each image cut again while it is recovered, and some of those images again.
  std::optional<std::string> recovering(const SimDisk& disk, const Allowed& allowed, std::size_t limit);
  std::uint64_t images() const { return images_; }
  std::uint64_t repeated() const { return repeated_; }

 private:
  bool isNew(const SimDisk& image, const Allowed& allowed);
  std::optional<std::string> recover(SimDisk disk, const Allowed& allowed, int depth);

  const Workload& work_;
  std::uint64_t seed_;
  SeededRandom random_;
  std::uint64_t images_ = 0, repeated_ = 0;
  std::unordered_set<std::uint64_t> seen_;
};

}  // namespace quillon::sim
