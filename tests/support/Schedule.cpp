#include "support/Schedule.h"

#include <algorithm>

namespace quillon::sim {

Schedule::Schedule(SimClock& clock, std::uint64_t seed) : clock_(clock), random_(seed) {
  // Some seeds change at almost every point, others let a process run far: faults hide in both.
  constexpr std::size_t kStays[] = {0, 50, 80, 95};
  stayChance_ = kStays[random_.below(std::size(kStays))];
  clock_.onSleep([this](std::int64_t microseconds) { sleep(microseconds); });
}

Schedule::Schedule(SimClock& clock, std::vector<int> picks) : Schedule(clock, std::uint64_t{0}) {
  picks_ = std::move(picks);
  listed_ = true;
}

Schedule::~Schedule() {
  clock_.onSleep({});
  for (SimDisk& disk : watched_) disk.beforeEvent({});
}

void Schedule::watch(SimDisk& disk) {
  disk.beforeEvent([this](const SimEvent&) { yieldPoint(); });
  watched_.push_back(disk);
}

int Schedule::add(std::function<void()> body, std::function<void()> onKill) {
  processes_.push_back(std::make_unique<Process>());
  processes_.back()->body = std::move(body);
  processes_.back()->onKill = std::move(onKill);
  return static_cast<int>(processes_.size()) - 1;
}

void Schedule::killAt(int process, std::uint64_t number) { processes_[at(process)]->killAt = number; }

void Schedule::kill(int process) {
  Process& victim = *processes_[at(process)];
  victim.dying = true;
  victim.wakes = 0;
}

void Schedule::run() {
  std::unique_lock hold(mutex_);
  for (int i = 0; at(i) < processes_.size(); ++i) {
    processes_[at(i)]->thread = std::thread([this, i] { live(i); });
  }
  current_ = pick();
  over_ = current_ < 0;
  if (!over_) processes_[at(current_)]->turn.notify_one();
  finished_.wait(hold, [this] { return over_; });
  hold.unlock();
  for (auto& process : processes_) process->thread.join();
}

void Schedule::live(int self) {
  Process& me = *processes_[at(self)];
  std::unique_lock hold(mutex_);
  me.id = std::this_thread::get_id();
  me.turn.wait(hold, [&] { return current_ == self; });
  hold.unlock();
  try {
    if (!me.dying) {
      me.body();
    } else {
      me.killed = true;
      if (me.onKill) me.onKill();
    }
  } catch (const ProcessKilled&) {
    me.killed = true;
  } catch (...) {
    me.error = std::current_exception();
  }
  hold.lock();
  me.done = true;
  current_ = pick();
  over_ = current_ < 0;
  if (over_) {
    finished_.notify_one();
  } else {
    processes_[at(current_)]->turn.notify_one();
  }
}

bool Schedule::isRunning(std::thread::id id) const {
  return current_ >= 0 && !processes_[at(current_)]->done && processes_[at(current_)]->id == id;
}

void Schedule::yieldPoint() { pass(0); }

void Schedule::sleep(std::int64_t microseconds) {
  std::unique_lock hold(mutex_);
  const bool inside = isRunning(std::this_thread::get_id());
  hold.unlock();
  if (inside) {
    pass(std::max<std::int64_t>(microseconds, 1));
  } else {
    clock_.advance(microseconds);
  }
}

void Schedule::pass(std::int64_t microseconds) {
  std::unique_lock hold(mutex_);
  if (!isRunning(std::this_thread::get_id())) return;
  const int self = current_;
  Process& me = *processes_[at(self)];
  if (++me.yields == me.killAt) me.dying = true;
  if (!me.dying && !me.killed) {
    clock_.advance(kStep);
    me.wakes = clock_.microseconds() + microseconds;
    handOver(hold, self);
  }
  if (!me.dying && !me.killed) return;
  hold.unlock();
  if (!me.killed && me.onKill) me.onKill();
  me.killed = true;
  throw ProcessKilled{self};
}

void Schedule::handOver(std::unique_lock<std::mutex>& hold, int self) {
  current_ = pick();
  if (current_ == self) return;
  processes_[at(current_)]->turn.notify_one();
  processes_[at(self)]->turn.wait(hold, [&] { return current_ == self; });
}

// Who goes on; -1 when all are done.
int Schedule::pick() {
  const std::vector<int> ready = runnable();
  if (ready.empty()) return -1;
  const auto canRun = [&](int process) { return std::find(ready.begin(), ready.end(), process) != ready.end(); };
  int chosen = canRun(current_) ? current_ : ready.front();
  if (listed_) {
    if (trace_.size() < picks_.size() && canRun(picks_[trace_.size()])) chosen = picks_[trace_.size()];
  } else if (!canRun(current_) || !random_.percent(stayChance_)) {
    chosen = ready[random_.below(ready.size())];
  }
  trace_.push_back(chosen);
  return chosen;
}

std::vector<int> Schedule::runnable() {
  std::vector<int> ready;
  std::int64_t first = -1;
  for (const auto& process : processes_) {
    if (!process->done && (first < 0 || process->wakes < first)) first = process->wakes;
  }
  if (first < 0) return ready;
  if (first > clock_.microseconds()) clock_.advance(first - clock_.microseconds());
  for (int i = 0; at(i) < processes_.size(); ++i) {
    const Process& process = *processes_[at(i)];
    if (!process.done && process.wakes <= clock_.microseconds()) ready.push_back(i);
  }
  return ready;
}

void Schedule::rethrow() const {
  for (const auto& process : processes_) {
    if (process->error) std::rethrow_exception(process->error);
  }
}

}  // namespace quillon::sim
