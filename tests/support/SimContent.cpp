#include "support/SimContent.h"

#include <algorithm>

namespace quillon::sim {

void SimContent::record(Kind kind, std::uint64_t offset, Bytes data) {
  if (!tracked_) return;
  Operation operation{kind, State::dirty, offset, nullptr};
  if (kind == Kind::write) operation.data = std::make_shared<const std::vector<std::byte>>(data.begin(), data.end());
  operations_.push_back(std::move(operation));
}

void SimContent::write(std::uint64_t offset, Bytes data) {
  if (data.empty()) return;
  current_.write(offset, data);
  record(Kind::write, offset, data);
}

void SimContent::truncate(std::uint64_t size) {
  current_.resize(size);
  record(Kind::truncate, size, {});
}

void SimContent::reserve(std::uint64_t size) {
  if (size <= current_.size()) return;
  current_.resize(size);
  record(Kind::reserve, size, {});
}

void SimContent::sync() {
  const auto isClean = [](const Operation& o) { return o.state == State::clean; };
  if (std::none_of(operations_.begin(), operations_.end(), isClean)) {
    durable_ = current_;
    operations_.clear();
    return;
  }
  for (Operation& operation : operations_) {
    if (operation.state == State::dirty) operation.state = State::synced;
  }
  for (std::size_t i = operations_.size(); i-- > 0;) {
    if (isClean(operations_[i]) && overtaken(i))
      operations_.erase(operations_.begin() + static_cast<std::ptrdiff_t>(i));
  }
  // What was synced behind an operation in doubt stays in its order behind it; the rest is settled.
  const auto firstClean = std::find_if(operations_.begin(), operations_.end(), isClean);
  for (auto at = operations_.begin(); at != firstClean; ++at) apply(durable_, *at);
  operations_.erase(operations_.begin(), firstClean);
}

void SimContent::failSync() {
  for (Operation& operation : operations_) {
    if (operation.state == State::dirty) operation.state = State::clean;
  }
}

// Whether later synced operations leave nothing of the one at `index` to be seen, whichever way it went.
bool SimContent::overtaken(std::size_t index) const {
  const Operation& old = operations_[index];
  std::vector<std::pair<std::uint64_t, std::uint64_t>> open{{old.offset, old.end()}};
  for (std::size_t i = index + 1; i < operations_.size(); ++i) {
    const Operation& later = operations_[i];
    if (later.state != State::synced) continue;
    if (later.kind == Kind::truncate &&
        (later.offset == 0 || (old.kind == Kind::write && later.offset <= old.offset))) {
      return true;
    }
    if (later.kind != Kind::write || old.kind != Kind::write) continue;
    std::vector<std::pair<std::uint64_t, std::uint64_t>> rest;
    for (const auto& [from, to] : open) {
      if (from < std::min(to, later.offset)) rest.emplace_back(from, std::min(to, later.offset));
      if (std::max(from, later.end()) < to) rest.emplace_back(std::max(from, later.end()), to);
    }
    open = std::move(rest);
    if (open.empty()) return true;
  }
  return false;
}

std::size_t SimContent::pendingCount() const {
  return static_cast<std::size_t>(std::count_if(operations_.begin(), operations_.end(),
                                                [](const Operation& o) { return o.state != State::synced; }));
}

std::vector<std::size_t> SimContent::pendingSectors() const {
  std::vector<std::size_t> counts;
  for (const Operation& o : operations_) {
    if (o.state == State::synced) continue;
    counts.push_back(o.kind == Kind::write ? (o.end() + kSector - 1) / kSector - o.offset / kSector : 0);
  }
  return counts;
}

ChunkedBytes SimContent::afterCut(std::span<const Fate> fates, SeededRandom& random) const {
  ChunkedBytes bytes = durable_;
  std::size_t next = 0;
  for (const Operation& operation : operations_) {
    const Fate fate = operation.state == State::synced ? Fate::kept : fates[next++];
    if (fate == Fate::lost) continue;
    if (fate == Fate::kept || operation.kind != Kind::write) {
      apply(bytes, operation);
    } else {
      tear(bytes, operation, fate, random);
    }
  }
  return bytes;
}

void SimContent::apply(ChunkedBytes& bytes, const Operation& operation) {
  if (operation.kind == Kind::write) {
    bytes.write(operation.offset, *operation.data);
  } else if (operation.kind == Kind::truncate || operation.offset > bytes.size()) {
    bytes.resize(operation.offset);
  }
}

void SimContent::tear(ChunkedBytes& bytes, const Operation& operation, Fate fate, SeededRandom& random) {
  const Bytes data = *operation.data;
  const std::uint64_t first = operation.offset / kSector;
  const std::uint64_t count = (operation.end() + kSector - 1) / kSector - first;
  if (fate != Fate::head && operation.end() > bytes.size()) bytes.resize(operation.end());
  for (std::uint64_t i = 0; i < count; ++i) {
    const bool inHead = i < (count + 1) / 2;
    const bool arrived = fate == Fate::scattered ? random.oneIn(2) : inHead == (fate == Fate::head);
    if (!arrived) continue;
    const std::uint64_t from = std::max(operation.offset, (first + i) * kSector);
    const std::uint64_t to = std::min(operation.end(), (first + i + 1) * kSector);
    bytes.write(from, data.subspan(from - operation.offset, to - from));
  }
}

}  // namespace quillon::sim
