#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "store/vfs/File.h"
#include "support/SimContent.h"

namespace quillon::sim {

struct SimState;

// What every call of a killed process raises. Not a std::exception, so that no handler for failures takes it for one.
struct ProcessKilled {
  int process;
};

enum class SimCall : std::uint8_t {
  open,
  create,
  scratch,
  read,
  write,
  writeParts,
  truncate,
  reserve,
  sync,
  lock,
  lockTest,
  look,
  remove,
  rename,
  makeFolder,
  syncFolder,
};
const char* nameOf(SimCall call);
bool changesDisk(SimCall call);  // a power cut before it may leave something else than one behind it

// One call that is about to happen. Closing, unlocking and asking for a size are none: they cannot fail.
struct SimEvent {
  SimCall call;
  const std::string& path;  // of a rename: the old name
  std::uint64_t number;     // from 1 on
  int process;
};

struct Fault {
  enum class Kind : std::uint8_t {
    noSpace,     // calls that need space raise noSpace
    ioFailed,    // any call raises ioFailed; a sync leaves its writes clean but not durable
    shortWrite,  // a write puts down a part from its start, then raises ioFailed
  };
  Kind kind = Kind::ioFailed;
  std::uint64_t at = 0;  // event number
  bool forGood = false;  // from there on every call that the kind fits, else only this one
};

struct SimOptions {
  bool network = false;  // what isNetwork answers
};

// One fate for each pending operation; its number rules which sectors a scattered write loses.
struct CutChoice {
  std::vector<Fate> fates;
  std::uint64_t seed = 0;
};

// A disk under an operating system under some processes, all simulated and repeatable.
//
// Method: names and bytes exist twice, as the processes see them and as the platter has them. Writes and changes of
// length become durable by the file's sync, names (made, renamed, removed) by the folder's; a rename is one step. A
// file that is durable without its name is lost, a durable name of an unsynced file shows what was synced. New folders
// are durable at once. After a power cut every pending operation is there, lost or torn, each by itself and in any
// order.
//
// Copies of the handle share one disk. One thread at a time; threads that pass a baton (Schedule) count as one.
class SimDisk {
 public:
  explicit SimDisk(SimOptions options = {});

  // A new process: its file system, its handles and its locks, which the references keep alive beyond this object.
  std::unique_ptr<store::FileSystem> process();
  int lastProcess() const;  // the number of the newest process, from 0 on
  // The process ends where it stands: its locks vanish, its writes stay as the system saw them, and every later call
  // through its file system and handles raises ProcessKilled (destructors and unlock stay silent).
  void killProcess(int process);
  void killAll();

  // Called before each event; may raise, kill, or let other processes run.
  void beforeEvent(std::function<void(const SimEvent&)> hook);
  std::uint64_t events() const;
  // At event `number`, before it does anything, all processes are killed: the moment of a power cut.
  void stopAt(std::uint64_t number);
  void plan(std::optional<Fault> fault);
  int faultsRaised() const;

  // Operations that a power cut may lose: changes of names first, then file by file.
  std::size_t pendingCount() const;
  std::vector<std::size_t> pendingSectors() const;  // for each: sectors of a write, 0 for anything else
  // The disk as found after a power cut now, everything durable and nobody running. This disk does not change.
  SimDisk imageAfterCut(const CutChoice& choice) const;
  // The same with nothing lost: what the next process sees when the system survived.
  SimDisk settled() const;

  std::vector<std::byte> content(const std::string& path) const;  // as processes see it; raises noSuchTable

 private:
  std::shared_ptr<SimState> state_;
};

// Goes through what a power cut may leave. With few pending operations every combination (a write of two sectors and
// more also torn in both halves); with more all subsets of kept and lost, then chances; else chances only, all kept and
// all lost among them.
class CutChooser {
 public:
  CutChooser(const SimDisk& disk, std::size_t limit, std::uint64_t seed);
  bool exhaustive() const { return exhaustive_; }
  std::size_t count() const { return count_; }
  CutChoice choice(std::size_t index) const;  // index < count()

 private:
  CutChoice byChance(std::size_t index) const;

  std::vector<std::size_t> sectors_;
  std::uint64_t seed_;
  std::size_t subsets_ = 0;  // how many of kept and lost come first
  std::size_t count_ = 0;
  bool exhaustive_ = false;
};

}  // namespace quillon::sim
