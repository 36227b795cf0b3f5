// The table locks of several processes on one file against a model of the rules.

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "store/Errors.h"
#include "store/locks/TableLocks.h"
#include "store/vfs/DiskFileSystem.h"
#include "store/vfs/MemoryFileSystem.h"
#include "support/LockModel.h"
#include "support/SeededRandom.h"
#include "support/WatchedFile.h"

namespace quillon::store {
namespace {

using sim::WatchedFile;
using sim::locks::Answer;
using sim::locks::Held;
using sim::locks::kOwners;
using sim::locks::kProcesses;
using sim::locks::kRows;
using sim::locks::LockModel;
using sim::locks::ModelledProcess;
using sim::locks::Operation;
using sim::locks::Verb;
using WriteKind = TableLocks::WriteKind;

std::vector<std::uint64_t> probedBytes() {
  std::vector<std::uint64_t> bytes{kOpenByte, kApplyByte, kApplyIntentByte, kWriteByte, kTransactionByte};
  for (const RowId row : kRows) bytes.push_back(kRecordBase + row);
  bytes.push_back(kRecordBase + 2000);  // a row that nobody locks by itself
  bytes.push_back(kRecordBase + kRecordCount);
  return bytes;
}

struct Tally {
  std::uint64_t operations = 0;
  std::uint64_t deaths = 0;
  std::uint64_t raised = 0;
  std::map<std::pair<Verb, Answer>, std::uint64_t> answers;

  std::uint64_t count(Answer answer) const {
    std::uint64_t sum = 0;
    for (const auto& [key, count] : answers) sum += key.second == answer ? count : 0;
    return sum;
  }
};

// Method: three processes, each a handle with its TableLocks, do one operation after another, as chance has it; some
// die, some calls of the file raise. The model says what must be answered. After each step every handle, and one that
// locks nothing, asks the file about each byte: so each process holds there what the model says and nothing else.
// Within a step, whatever is held before and behind it must be held after each single call of the file.
class Trial {
 public:
  Trial(FileSystem& files, const std::string& path, std::uint64_t seed, Tally& tally)
      : files_(files), path_(path), random_(seed), tally_(tally), probe_(files.open(path, OpenMode::create)) {
    for (int p = 0; p < kProcesses; ++p) start(p);
  }

  void run(int steps) {
    while (steps > 0 && !testing::Test::HasFailure()) {
      const Operation o = choose();
      if (!model_.possible(o)) continue;
      step(o);
      if (random_.oneIn(200)) die(static_cast<int>(random_.below(kProcesses)));
      compare();
      --steps;
    }
  }

 private:
  struct Process {
    std::unique_ptr<WatchedFile> file;
    std::unique_ptr<TableLocks> locks;
  };

  Process& at(int process) { return processes_.at(static_cast<std::size_t>(process)); }
  const void* owner(const Operation& o) const {
    return &owners_.at(static_cast<std::size_t>(o.process * kOwners + o.owner));
  }

  void start(int p) {
    at(p).locks.reset();
    at(p).file = std::make_unique<WatchedFile>(files_.open(path_, OpenMode::create));
    at(p).locks = std::make_unique<TableLocks>(*at(p).file);
    model_[p] = {};
  }

  void die(int p) {
    start(p);
    ++tally_.deaths;
  }

  // Crowded and calm times, and one process busier than the others, so that the rare locks are granted too.
  Operation choose() {
    constexpr std::array kTries{Verb::open,   Verb::open,  Verb::record, Verb::record,
                                Verb::record, Verb::table, Verb::write};
    constexpr std::array kReleases{Verb::close, Verb::releaseRecord, Verb::releaseTable, Verb::releaseWrite};
    if (random_.oneIn(60)) {
      releases_ = random_.below(95);
      busy_ = random_.below(kProcesses);
    }
    const bool release = random_.percent(releases_);
    const Verb verb = release ? kReleases[random_.below(kReleases.size())] : kTries[random_.below(kTries.size())];
    const std::size_t process = random_.percent(60) ? busy_ : random_.below(kProcesses);
    Operation o{};
    for (int attempt = 0; attempt < (release ? 20 : 1); ++attempt) {
      o = {verb, static_cast<int>(process), static_cast<int>(random_.below(kOwners)),
           kRows[random_.below(kRows.size())], random_.percent(40)};
      if (model_.possible(o)) break;
    }
    return o;
  }

  void step(const Operation& o) {
    const Answer expected = isTry(o.verb) ? model_.answer(o) : Answer::granted;
    LockModel after = model_;
    if (expected == Answer::granted) after.grant(o);
    WatchedFile& file = *at(o.process).file;
    file.onChange([&] { compareKept(model_[o.process], after[o.process]); });
    if (isTry(o.verb) && random_.oneIn(30)) file.raiseAtLock(1 + static_cast<int>(random_.below(3)));
    ++tally_.operations;
    try {
      const Answer got = perform(o);
      EXPECT_EQ(got, expected) << name(o);
      if (isTry(o.verb)) ++tally_.answers[{o.verb, got}];
      model_ = after;
    } catch (const IoError&) {
      ++tally_.raised;
    }
    file.raiseAtLock(0);
    file.onChange({});
    last_ = name(o);
  }

  Answer perform(const Operation& o) {
    TableLocks& locks = *at(o.process).locks;
    const WriteKind kind = o.flag ? WriteKind::transaction : WriteKind::post;
    switch (o.verb) {
      case Verb::open:
        return locks.tryOpen(owner(o), o.flag);
      case Verb::record:
        return locks.tryRecord(owner(o), o.row);
      case Verb::table:
        return locks.tryTable(owner(o));
      case Verb::write:
        return locks.tryWrite(kind);
      case Verb::close:
        locks.close(owner(o));
        break;
      case Verb::releaseRecord:
        locks.releaseRecord(owner(o), o.row);
        break;
      case Verb::releaseTable:
        locks.releaseTable(owner(o));
        break;
      case Verb::releaseWrite:
        locks.releaseWrite(kind);
        break;
    }
    return Answer::granted;
  }

  static std::string name(const Operation& o) {
    constexpr std::array kNames{"open",  "close",        "record", "releaseRecord",
                                "table", "releaseTable", "write",  "releaseWrite"};
    return std::string(kNames.at(static_cast<std::size_t>(o.verb))) + " process " + std::to_string(o.process) +
           " owner " + std::to_string(o.owner) + " row " + std::to_string(o.row) +
           (o.flag ? " exclusive/transaction" : "");
  }

  void compareKept(const ModelledProcess& before, const ModelledProcess& after) {
    for (const std::uint64_t byte : bytes_) {
      const Held kept = std::min(before.on(byte), after.on(byte));
      if (kept == Held::no) continue;
      EXPECT_TRUE(probe_->lockedByOther(byte, 1, kept == Held::exclusive ? LockMode::shared : LockMode::exclusive))
          << "a moment without the lock on byte " << byte << ", after " << last_;
    }
  }

  void compare() {
    for (int p = 0; p <= kProcesses; ++p) {
      for (const std::uint64_t byte : bytes_) compareByte(p, byte);
    }
    const int p = static_cast<int>(random_.below(kProcesses));
    TableLocks& locks = *at(p).locks;
    EXPECT_EQ(locks.inTransactionElsewhere(), others(p, kTransactionByte) != Held::no) << last_;
    EXPECT_EQ(locks.recordHeldElsewhere(kRows[0]), others(p, kRecordBase + kRows[0]) != Held::no) << last_;
    EXPECT_EQ(locks.isOpen(), !model_[p].openers.empty()) << last_;
    EXPECT_EQ(locks.openers(), model_[p].openers.size()) << last_;
    EXPECT_EQ(locks.heldExclusively(), model_[p].exclusive()) << last_;
    EXPECT_EQ(locks.holdsTable(), model_[p].hasTable()) << last_;
    EXPECT_EQ(locks.holdsWrite(), model_[p].writes()) << last_;
  }

  // What all processes but `p` hold on a byte.
  Held others(int p, std::uint64_t byte) const {
    Held held = Held::no;
    for (int other = 0; other < kProcesses; ++other) {
      if (other != p) held = std::max(held, model_[other].on(byte));
    }
    return held;
  }

  void compareByte(int p, std::uint64_t byte) {
    File& file = p == kProcesses ? *probe_ : *at(p).file;
    const Held held = others(p, byte);
    EXPECT_EQ(file.lockedByOther(byte, 1, LockMode::exclusive), held != Held::no)
        << byte << " from " << p << ", " << last_;
    EXPECT_EQ(file.lockedByOther(byte, 1, LockMode::shared), held == Held::exclusive)
        << byte << " from " << p << ", " << last_;
  }

  FileSystem& files_;
  std::string path_;
  sim::SeededRandom random_;
  Tally& tally_;
  std::unique_ptr<File> probe_;
  std::array<char, kProcesses * kOwners> owners_{};
  std::array<Process, kProcesses> processes_;
  LockModel model_;
  std::vector<std::uint64_t> bytes_ = probedBytes();
  std::string last_;
  std::size_t releases_ = 50;  // percent
  std::size_t busy_ = 0;
};

std::uint64_t setting(const char* name, std::uint64_t otherwise) {
  const char* text = std::getenv(name);
  return text == nullptr ? otherwise : std::strtoull(text, nullptr, 10);
}

constexpr int kSteps = 1000;
constexpr std::uint64_t kTrials = 120;
static_assert(kTrials * kSteps >= 100'000);

void runTrials(FileSystem& files, const std::string& path, std::uint64_t trials) {
  const std::uint64_t firstSeed = setting("QUILLON_SEED", 1);
  Tally tally;
  for (std::uint64_t i = 0; i < trials; ++i) {
    Trial(files, path, firstSeed + i, tally).run(kSteps);
    ASSERT_FALSE(testing::Test::HasFailure()) << "repeat with QUILLON_SEED=" << firstSeed + i << " QUILLON_TRIALS=1";
  }
  std::cout << tally.operations << " operations, " << tally.count(Answer::granted) << " granted, "
            << tally.count(Answer::heldElsewhere) << " refused for others, " << tally.count(Answer::heldHere)
            << " refused for own, " << tally.raised << " raised, " << tally.deaths << " deaths\n";
  EXPECT_GE(tally.operations, trials * kSteps);
  if (trials < 10) return;  // repeating a failure, too short for what follows
  for (const Verb verb : {Verb::open, Verb::record, Verb::table, Verb::write}) {
    EXPECT_GE(tally.answers[std::pair(verb, Answer::granted)], trials * 10) << "verb " << static_cast<int>(verb);
    EXPECT_GE(tally.answers[std::pair(verb, Answer::heldElsewhere)], trials * 10) << "verb " << static_cast<int>(verb);
  }
}

TEST(TableLocksModel, InMemory) {
  MemoryFileSystem files;
  runTrials(files, "T.DAT", setting("QUILLON_TRIALS", kTrials));
}

// The same with the system's own locks.
TEST(TableLocksModel, OnDisk) {
  std::string folder = (std::filesystem::temp_directory_path() / "locks-XXXXXX").string();
  ASSERT_NE(::mkdtemp(folder.data()), nullptr);
  DiskFileSystem files;
  runTrials(files, folder + "/T.DAT", (setting("QUILLON_TRIALS", kTrials) + 11) / 12);
  std::filesystem::remove_all(folder);
}

// A close that cannot convert may bar others for longer, but must neither raise nor let them in.
TEST(TableLocks, AStepDownThatFailsStaysOnTheSafeSide) {
  MemoryFileSystem files;
  WatchedFile file(files.open("T.DAT", OpenMode::create)), other(files.open("T.DAT", OpenMode::create));
  TableLocks here(file), there(other);
  const int a = 0, b = 0, c = 0;
  ASSERT_EQ(here.tryOpen(&a, true), Answer::granted);
  ASSERT_EQ(here.tryOpen(&b, false), Answer::granted);
  file.raiseAtLock(1);
  here.close(&a);
  EXPECT_EQ(there.tryOpen(&c, true), Answer::heldElsewhere);
  EXPECT_EQ(here.tryOpen(&a, true), Answer::granted);
  here.close(&a);
  EXPECT_EQ(there.tryOpen(&c, false), Answer::granted);
}

}  // namespace
}  // namespace quillon::store
