#pragma once

#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

#include "support/SimClock.h"
#include "support/SimDisk.h"

namespace quillon::sim {

// Runs a few simulated processes, one at a time, and changes between them only at yield points, so that a run repeats
// exactly from its seed or its list.
//
// Method: each process is a thread, but only the one that holds the baton runs. At a yield point (an event of the disk,
// a sleep) the schedule picks who goes on among those that do not sleep. A yield point takes 20 microseconds, so that
// sleepers wake up among the steps of the others; when all sleep, the time jumps to the first that wakes.
class Schedule {
 public:
  Schedule(SimClock& clock, std::uint64_t seed);
  // `picks` names the process that runs from each yield point on, the first entry who starts. Where it names one that
  // cannot run, or has ended, the present process goes on (the first that can when it sleeps or is done).
  Schedule(SimClock& clock, std::vector<int> picks);
  Schedule(const Schedule&) = delete;
  Schedule& operator=(const Schedule&) = delete;
  ~Schedule();

  // Each event of `disk` becomes a yield point, as long as this schedule lives.
  void watch(SimDisk& disk);
  // Before `run`. `onKill` runs in the moment of death: drop the locks of the simulated process there. Returns its
  // number, from 0 on.
  int add(std::function<void()> body, std::function<void()> onKill = {});
  // The process dies at its yield point `number` (from 1 on), before the event there happens. Before `run`.
  void killAt(int process, std::uint64_t number);
  // The process dies when it would run next. From a running body.
  void kill(int process);
  // Runs all bodies to their ends. Once.
  void run();

  // Lets others run. In a thread that is no running process of this schedule it does nothing.
  void yieldPoint();

  bool killed(int process) const { return processes_[at(process)]->killed; }
  std::exception_ptr error(int process) const { return processes_[at(process)]->error; }
  void rethrow() const;  // the first error of any process
  std::uint64_t yieldPoints(int process) const { return processes_[at(process)]->yields; }
  const std::vector<int>& trace() const { return trace_; }  // who ran from each yield point on: fit for `picks`

 private:
  struct Process {
    std::function<void()> body;
    std::function<void()> onKill;
    std::thread thread;
    std::thread::id id;
    std::condition_variable turn;
    std::int64_t wakes = 0;  // microseconds
    std::uint64_t yields = 0;
    std::uint64_t killAt = 0;
    bool dying = false, killed = false, done = false;
    std::exception_ptr error;
  };
  static constexpr std::int64_t kStep = 20;

  static std::size_t at(int process) { return static_cast<std::size_t>(process); }
  void sleep(std::int64_t microseconds);
  bool isRunning(std::thread::id id) const;
  void pass(std::int64_t microseconds);
  void live(int self);
  void handOver(std::unique_lock<std::mutex>& hold, int self);
  int pick();
  std::vector<int> runnable();

  SimClock& clock_;
  SeededRandom random_;
  std::vector<int> picks_;
  bool listed_ = false;
  std::size_t stayChance_ = 0;  // percent
  std::vector<SimDisk> watched_;
  std::vector<std::unique_ptr<Process>> processes_;
  std::mutex mutex_;
  std::condition_variable finished_;
  int current_ = -1;
  bool over_ = false;
  std::vector<int> trace_;
};

}  // namespace quillon::sim
