#include "support/SimDisk.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <map>

#include "store/vfs/IoErrors.h"
#include "support/SimState.h"

namespace quillon::sim {
namespace {

struct CallKind {
  const char* name;
  bool needsSpace, changesDisk;
};

constexpr CallKind kCalls[] = {
    {"open", false, false},  {"create", true, true},     {"scratch", true, false},   {"read", false, false},
    {"write", true, true},   {"writeParts", true, true}, {"truncate", false, true},  {"reserve", true, true},
    {"sync", true, true},    {"lock", false, false},     {"lockTest", false, false}, {"look", false, false},
    {"remove", false, true}, {"rename", true, true},     {"makeFolder", true, true}, {"syncFolder", true, true},
};
static_assert(std::size(kCalls) == static_cast<std::size_t>(SimCall::syncFolder) + 1);

const CallKind& kindOf(SimCall call) { return kCalls[static_cast<std::size_t>(call)]; }

bool isWrite(SimCall call) { return call == SimCall::write || call == SimCall::writeParts; }

bool fits(Fault::Kind kind, SimCall call) {
  if (kind == Fault::Kind::noSpace) return kindOf(call).needsSpace;
  return kind == Fault::Kind::ioFailed || isWrite(call);
}

void applyChange(SimNames& names, const SimState::NameChange& change) {
  if (!change.from.empty()) names.erase(change.from);
  if (!change.to.empty()) names[change.to] = change.node;
}

}  // namespace

const char* nameOf(SimCall call) { return kindOf(call).name; }
bool changesDisk(SimCall call) { return kindOf(call).changesDisk; }

void SimState::requireAlive(int process) const {
  if (!processes[static_cast<std::size_t>(process)].alive) throw ProcessKilled{process};
}

void SimState::kill(int process) {
  Process& killed = processes[static_cast<std::size_t>(process)];
  killed.alive = false;
  for (SimFile* file : killed.files) dropLocks(*file);
}

bool SimState::event(int process, SimCall call, const std::string& path) {
  requireAlive(process);
  const std::uint64_t number = ++events;
  if (number >= stopAt) {
    for (std::size_t i = 0; i < processes.size(); ++i) kill(static_cast<int>(i));
  } else if (beforeEvent) {
    beforeEvent({call, path, number, process});
  }
  requireAlive(process);
  if (!fault || !fits(fault->kind, call)) return false;
  if (fault->forGood ? number < fault->at : number != fault->at) return false;
  ++faultsRaised;
  if (fault->kind == Fault::Kind::shortWrite) return true;
  throw store::ioError(nameOf(call), path, fault->kind == Fault::Kind::noSpace ? ENOSPC : EIO);
}

void SimState::change(std::string from, std::string to, SimNodePtr node) {
  changes.push_back({std::move(from), std::move(to), std::move(node)});
  applyChange(names, changes.back());
}

void SimState::syncNames(const std::string& folder) {
  std::vector<NameChange> rest;
  for (NameChange& change : changes) {
    const bool here = (!change.from.empty() && store::folderOf(change.from) == folder) ||
                      (!change.to.empty() && store::folderOf(change.to) == folder);
    if (here) {
      applyChange(durableNames, change);
    } else {
      rest.push_back(std::move(change));
    }
  }
  changes = std::move(rest);
}

std::vector<SimNodePtr> SimState::nodesOnDisk() const {
  std::map<std::uint64_t, SimNodePtr> found;
  for (const auto& [path, node] : durableNames) found.emplace(node->number, node);
  for (const NameChange& change : changes) {
    if (!change.to.empty()) found.emplace(change.node->number, change.node);
  }
  std::vector<SimNodePtr> nodesFound;
  for (auto& [number, node] : found) nodesFound.push_back(std::move(node));
  return nodesFound;
}

SimDisk::SimDisk(SimOptions options) : state_(std::make_shared<SimState>()) { state_->options = options; }

std::unique_ptr<store::FileSystem> SimDisk::process() {
  state_->processes.emplace_back();
  return makeSimFileSystem(state_, lastProcess());
}

int SimDisk::lastProcess() const { return static_cast<int>(state_->processes.size()) - 1; }
void SimDisk::killProcess(int process) { state_->kill(process); }
void SimDisk::killAll() {
  for (int i = 0; i <= lastProcess(); ++i) state_->kill(i);
}

void SimDisk::beforeEvent(std::function<void(const SimEvent&)> hook) { state_->beforeEvent = std::move(hook); }
std::uint64_t SimDisk::events() const { return state_->events; }
void SimDisk::stopAt(std::uint64_t number) { state_->stopAt = number; }
void SimDisk::plan(std::optional<Fault> fault) { state_->fault = fault; }
int SimDisk::faultsRaised() const { return state_->faultsRaised; }

std::size_t SimDisk::pendingCount() const {
  std::size_t count = state_->changes.size();
  for (const SimNodePtr& node : state_->nodesOnDisk()) count += node->content.pendingCount();
  return count;
}

std::vector<std::size_t> SimDisk::pendingSectors() const {
  std::vector<std::size_t> all(state_->changes.size(), 0);
  for (const SimNodePtr& node : state_->nodesOnDisk()) {
    const auto sectors = node->content.pendingSectors();
    all.insert(all.end(), sectors.begin(), sectors.end());
  }
  return all;
}

SimDisk SimDisk::imageAfterCut(const CutChoice& choice) const {
  SimDisk image(state_->options);
  SimState& to = *image.state_;
  SeededRandom random(choice.seed);
  std::size_t next = 0;
  SimNames names = state_->durableNames;
  for (const auto& change : state_->changes) {
    if (choice.fates.at(next++) == Fate::kept) applyChange(names, change);
  }
  std::map<const SimNode*, SimNodePtr> found;
  for (const SimNodePtr& node : state_->nodesOnDisk()) {
    const std::size_t count = node->content.pendingCount();
    const auto fates = std::span(choice.fates).subspan(next, count);
    next += count;
    found[node.get()] =
        std::make_shared<SimNode>(SimNode{++to.nodes, SimContent(node->content.afterCut(fates, random)), {}});
  }
  for (const auto& [path, node] : names) to.names.emplace(path, found.at(node.get()));
  to.durableNames = to.names;
  to.folders = state_->folders;
  return image;
}

SimDisk SimDisk::settled() const { return imageAfterCut({std::vector<Fate>(pendingCount(), Fate::kept), 0}); }

std::vector<std::byte> SimDisk::content(const std::string& path) const {
  const auto at = state_->names.find(path);
  if (at == state_->names.end()) throw store::ioError("read", path, ENOENT);
  const ChunkedBytes& bytes = at->second->content.current();
  std::vector<std::byte> copy(bytes.size());
  bytes.read(0, copy.data(), copy.size());
  return copy;
}

}  // namespace quillon::sim
