#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>

#include "store/Errors.h"
#include "support/ChildProcess.h"
#include "support/OfficeCheck.h"
#include "support/OfficeWork.h"
#include "support/Trials.h"

namespace quillon::sim::office {
namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr bool kMemoryIsOurs = false;  // what is freed is kept back for a while
#else
constexpr bool kMemoryIsOurs = true;
#endif
constexpr int kSilence = 120;  // seconds without a word from anybody: something hangs

enum Kind : std::uint32_t { kDone, kRead, kFault, kResolved, kShared, kRefusals };

ChildMessage told(Kind kind, const Worker::Done& done) {
  ChildMessage message;
  message.kind = kind;
  message.seq = done.seq;
  message.number = done.number * kWorks + static_cast<std::int64_t>(done.work);
  return message;
}

Worker::Done doneOf(const ChildMessage& message) {
  return {static_cast<Work>(message.number % kWorks), message.seq, message.number / kWorks};
}

// Real processes on a real folder, with real locks.
//
// Method: writers and readers are forked and run freely; each tells what it has done through a pipe before it does
// anything else. The parent, which never opens the folder itself, kills one of them after a while and forks another in
// its place. Now and then a process is forked that compares the folder with what was told, beside the others or, with
// all of them killed at once, alone. Some writers end by themselves, as people do.
//
// The endurance run has ten of them for a given time: one loads in bulk, some are stopped for a while with all their
// locks in hand and go on, some are killed; of the rest the memory must stay as it is once it is warm.
class Office {
 public:
  struct Staff {
    std::size_t writers, readers, loaders;
    std::size_t lasting;  // so many of each kind live through the whole run
  };
  Office(std::uint64_t seed, const Staff& staff)
      : random_(seed),
        staff_(staff),
        folder_(std::filesystem::temp_directory_path() / ("quillon-processes-" + std::to_string(::getpid()))) {
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
  }

  void open();
  void runUntil(std::uint64_t kills, std::uint64_t commits);
  void endure(std::chrono::seconds howLong);
  void finish(std::uint64_t seed, const char* test);
  void killAll();
  bool checkNow(bool othersWork);

  std::uint64_t kills = 0, stops = 0, commits = 0, reads = 0, checks = 0, doubts = 0, refusals = 0;
  std::vector<std::string> faults;

 private:
  struct Seat {
    std::unique_ptr<ChildProcess> process;
    int worker = 0;
    bool reader = false, loader = false;
    bool lasting = false;
  };
  void start(Seat& seat);
  void take(const Seat& seat, const ChildMessage& message);
  void listen(std::chrono::microseconds howLong);
  void end(Seat& seat);
  void killSome();

  std::map<int, std::int64_t> memory();

  SeededRandom random_;
  Staff staff_;
  std::string folder_;
  Books books_;
  std::vector<Seat> seats_;
  int workers_ = 0;
  std::chrono::steady_clock::time_point heard_ = std::chrono::steady_clock::now();
};

void Office::open() {
  ChildProcess maker([&](const ChildPipe&) {
    store::DiskFileSystem files;
    store::Session session({files, store::systemClock(), "MAKER", "PC", ::getpid()});
    store::Database database(session, folder_);
    makeCompany(database);
  });
  if (!maker.finish([&](const ChildMessage& message) { faults.push_back(message.text); }))
    faults.push_back("the company could not be made");
  seats_.resize(staff_.writers + staff_.readers + staff_.loaders);
  for (std::size_t i = 0; i < seats_.size(); ++i) {
    const std::size_t number = i < staff_.writers ? i : i - staff_.writers;
    seats_[i].reader = i >= staff_.writers && number < staff_.readers;
    seats_[i].loader = i >= staff_.writers + staff_.readers;
    seats_[i].lasting = seats_[i].loader ? staff_.lasting > 0 : number < staff_.lasting;
    start(seats_[i]);
  }
}

void Office::start(Seat& seat) {
  seat.worker = ++workers_;
  const std::uint64_t seed = random_.next();
  // A few leave by themselves after some work.
  const std::size_t most = !seat.lasting && random_.oneIn(4) ? 1 + random_.below(200) : 1'000'000'000;
  if (!seat.reader) books_.persons[seat.worker];
  seat.process = std::make_unique<ChildProcess>([&](const ChildPipe& pipe) {
    Worker worker(folder_, seat.worker, seed);
    for (std::size_t i = 0; i < most; ++i) {
      if (seat.reader) {
        worker.readOnce();
        pipe.tell(told(kRead, {}));
      } else {
        pipe.tell(told(kDone, seat.loader ? worker.load() : worker.workOnce()));
      }
    }
    pipe.tell(told(kRefusals, {Work::post, 0, static_cast<std::int64_t>(worker.refusals())}));
  });
}

void Office::take(const Seat& seat, const ChildMessage& message) {
  heard_ = std::chrono::steady_clock::now();
  switch (message.kind) {
    case kDone:
      ++commits;
      books_.note(seat.worker, doneOf(message));
      break;
    case kRead:
      ++reads;
      break;
    case kRefusals:
      refusals += static_cast<std::uint64_t>(doneOf(message).number);
      break;
    default:
      faults.push_back((seat.reader ? "reader: " : "writer: ") + std::string(message.text));
  }
}

void Office::listen(std::chrono::microseconds howLong) {
  const auto until = std::chrono::steady_clock::now() + howLong;
  do {
    std::vector<pollfd> waits;
    for (const Seat& seat : seats_) waits.push_back({seat.process->descriptor(), POLLIN, 0});
    ::poll(waits.data(), waits.size(), 1);
    for (Seat& seat : seats_) {
      if (seat.process->drain([&](const ChildMessage& message) { take(seat, message); })) continue;
      if (!seat.process->endedWell()) faults.push_back("worker " + std::to_string(seat.worker) + " ended badly");
      end(seat);
      start(seat);
    }
  } while (std::chrono::steady_clock::now() < until && faults.empty());
  if (std::chrono::steady_clock::now() - heard_ > std::chrono::seconds(kSilence)) faults.push_back("nobody gets on");
}

// Its process has ended by itself or by force; what it had begun is in doubt only in the second case.
void Office::end(Seat& seat) {
  if (seat.reader) return;
  if (seat.process->endedWell()) {
    books_.persons[seat.worker].settled = true;
  } else {
    ++books_.sharedDoubts;
  }
}

void Office::killSome() {
  Seat& seat = seats_[random_.below(seats_.size())];
  if (seat.lasting) return;
  seat.process->kill([&](const ChildMessage& message) { take(seat, message); });
  end(seat);
  ++kills;
  start(seat);
}

void Office::killAll() {
  // One after the other, as fast as it goes: the last ones still meet what the first left behind.
  for (Seat& seat : seats_) {
    seat.process->kill([&](const ChildMessage& message) { take(seat, message); });
    end(seat);
    ++kills;
  }
}

bool Office::checkNow(bool othersWork) {
  ChildProcess checker([&](const ChildPipe& pipe) {
    const Found found = check(folder_, books_, othersWork);
    for (const std::string& fault : found.faults) {
      ChildMessage message;
      message.kind = kFault;
      message.setText(fault);
      pipe.tell(message);
    }
    for (const auto& [worker, done] : found.resolved) {
      ChildMessage message = told(kResolved, done);
      message.setText(std::to_string(worker));
      pipe.tell(message);
    }
    pipe.tell(told(kShared, {Work::post, 0, found.shared}));
  });
  const bool ended = checker.finish([&](const ChildMessage& message) {
    if (message.kind == kResolved) {
      ++doubts;
      books_.persons[std::stoi(message.text)].done.push_back(doneOf(message));
    } else if (message.kind == kShared && !othersWork) {
      books_.sharedBase = doneOf(message).number;
      books_.sharedTold = books_.sharedDoubts = 0;
    } else if (message.kind != kShared) {
      faults.push_back(message.text);
    }
  });
  if (!ended && faults.empty()) faults.push_back("a check ended badly");
  if (!othersWork)
    for (auto& [worker, person] : books_.persons) person.settled = true;
  ++checks;
  heard_ = std::chrono::steady_clock::now();
  return faults.empty();
}

void Office::runUntil(std::uint64_t mostKills, std::uint64_t mostCommits) {
  while (faults.empty() && (kills < mostKills || commits < mostCommits)) {
    // Enough work between two kills, and moments of every length.
    const bool late = kills * mostCommits > commits * mostKills;
    listen(std::chrono::microseconds(random_.below(late ? 120'000 : 30'000)));
    if (late && commits < mostCommits) continue;
    killSome();
    if (random_.oneIn(12)) checkNow(true);
    if (random_.oneIn(15)) {
      killAll();
      if (!checkNow(false)) return;
      for (Seat& seat : seats_) start(seat);
    }
  }
}

// Of those that live through the run.
std::map<int, std::int64_t> Office::memory() {
  std::map<int, std::int64_t> bytes;
  for (const Seat& seat : seats_)
    if (seat.lasting) bytes[seat.worker] = seat.process->residentBytes();
  return bytes;
}

void Office::endure(std::chrono::seconds howLong) {
  const auto start = std::chrono::steady_clock::now();
  const auto passed = [&] { return std::chrono::steady_clock::now() - start; };
  std::map<int, std::int64_t> warm;
  while (faults.empty() && passed() < howLong) {
    if (warm.empty() && passed() > howLong / 2) warm = memory();
    listen(std::chrono::milliseconds(random_.below(80)));
    ChildProcess& sleeper = *seats_[random_.below(seats_.size())].process;
    sleeper.stop();
    ++stops;
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(random_.below(200));
    while (faults.empty() && std::chrono::steady_clock::now() < until) listen(std::chrono::milliseconds(5));
    sleeper.goOn();
    if (random_.oneIn(3)) killSome();
  }
  constexpr std::int64_t kGrowth = 8 << 20;
  for (const auto& [worker, bytes] : memory()) {
    std::cout << "worker " << worker << ": " << (warm[worker] >> 10) << " KiB half way, " << (bytes >> 10)
              << " KiB at the end\n";
    if (kMemoryIsOurs && bytes > warm[worker] + kGrowth)
      faults.push_back("the memory of worker " + std::to_string(worker) + " grows");
  }
}

void Office::finish(std::uint64_t seed, const char* test) {
  killAll();
  if (faults.empty()) checkNow(false);
  std::cout << "killed " << kills << ", stopped " << stops << ", commits told " << commits << ", reads " << reads
            << ", checks " << checks << ", in doubt and there " << doubts << ", refusals told " << refusals << "\n";
  for (const std::string& fault : faults) ADD_FAILURE() << fault;
  if (testing::Test::HasFailure()) {
    std::cout << Trials::repeating(seed, "test_store_processes", test)
              << "\n(the processes run freely, so that it may take a few runs); the folder is left: " << folder_
              << "\n";
  } else {
    std::filesystem::remove_all(folder_);
  }
}

TEST(Processes, LoseNothingWhenTheyAreKilled) {
  const Trials trials = Trials::fromEnvironment();
  const std::uint64_t kills = trials.aim(250, 500), commits = trials.aim(25'000, 50'000);
  const std::uint64_t seed = trials.seed.value_or(static_cast<std::uint64_t>(::getpid()));
  Office office(seed, {4, 2, 0, 0});
  office.open();
  office.runUntil(kills, commits);
  office.finish(seed, "Processes.LoseNothing*");
  EXPECT_GE(office.kills, kills);
  EXPECT_GE(office.commits, commits);
  EXPECT_GE(office.reads, commits / 20);
  EXPECT_GE(office.checks, 1 + kills / 25);
}

// For QUILLON_SECONDS, else for 8 seconds or, at length, ten minutes.
TEST(Processes, TenOfThemEndure) {
  const Trials trials = Trials::fromEnvironment();
  const char* given = std::getenv("QUILLON_SECONDS");
  const std::uint64_t seconds =
      given ? std::strtoull(given, nullptr, 10) : std::max(trials.aim(8, 600), std::uint64_t{2});
  const std::uint64_t seed = trials.seed.value_or(static_cast<std::uint64_t>(::getpid()));
  Office office(seed, {6, 3, 1, 2});
  office.open();
  office.endure(std::chrono::seconds(seconds));
  office.finish(seed, "Processes.TenOfThemEndure");
  EXPECT_GE(office.commits, seconds * 5);
  EXPECT_GE(office.reads, seconds);
  EXPECT_GE(office.stops, seconds);
  EXPECT_GE(office.kills, 10 + seconds / 4);
}

}  // namespace
}  // namespace quillon::sim::office
