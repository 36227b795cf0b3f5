#pragma once

#include <set>

#include "store/vfs/RangeLocks.h"
#include "support/SimDisk.h"

namespace quillon::sim {

// The inside of a SimDisk, for SimDisk.cpp and SimFiles.cpp only.
struct SimNode {
  std::uint64_t number = 0;
  SimContent content;
  store::RangeLocks locks;
};
using SimNodePtr = std::shared_ptr<SimNode>;
using SimNames = std::map<std::string, SimNodePtr>;

class SimFile;

struct SimState {
  struct NameChange {
    std::string from, to;  // empty: made, removed
    SimNodePtr node;
  };
  struct Process {
    bool alive = true;
    std::set<SimFile*> files;
  };

  SimOptions options;
  SimNames names, durableNames;
  std::vector<NameChange> changes;  // not durable yet
  std::set<std::string> folders;    // without a slash at the end
  std::vector<Process> processes;
  std::uint64_t nodes = 0;
  std::uint64_t events = 0;
  std::uint64_t stopAt = std::numeric_limits<std::uint64_t>::max();
  std::function<void(const SimEvent&)> beforeEvent;
  std::optional<Fault> fault;
  int faultsRaised = 0;

  void requireAlive(int process) const;
  void kill(int process);
  // Counts the event, runs the hook and raises the planned fault. Returns true for a write that shall end short.
  bool event(int process, SimCall call, const std::string& path);
  void change(std::string from, std::string to, SimNodePtr node);
  void syncNames(const std::string& folder);
  std::vector<SimNodePtr> nodesOnDisk() const;  // those a cut may leave a name for, by number
};

std::unique_ptr<store::FileSystem> makeSimFileSystem(std::shared_ptr<SimState> state, int process);
void dropLocks(SimFile& file);

}  // namespace quillon::sim
