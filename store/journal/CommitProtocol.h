#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "store/Environment.h"
#include "store/journal/Journal.h"
#include "store/pages/PageFile.h"

namespace quillon::store {

class TableFiles;

// How changed pages become what everybody reads, and how that survives a kill or a power cut. One for each open folder.
//
// A publish: commit lock; replay what a dead writer left; one journal record, synced (that is the commit); apply locks
// of its tables in name order; pages in place; stamps raised; `applied` moved on. An error after the sync is no error
// of the publish: the pages are replayed from the journal before anyone here reads again.
//
// Keeps: a table file is only written while its apply lock is held exclusively, by a publish or a replay under the
// commit lock.
class CommitProtocol {
 public:
  // Opens or makes the journal and, as the first process in the folder, brings everything in it into the files.
  CommitProtocol(const Environment& environment, std::string folder);
  ~CommitProtocol();  // as the last process, empties the journal; never raises

  // Publishes the overlays of these tables, whose write locks are held, as one. On return they are committed and the
  // overlays are clean pages. StoreError: nothing is committed (the caller discards), but for outcomeUnknown, after
  // which every later publish is refused with the same code.
  void publish(std::span<TableFiles* const> tables);

  // Brings records that stand in the journal only into the files. Cheap when there are none. Called without apply
  // locks.
  void catchUp();
  // Pages of a table may not be believed before `catchUp`: a publish of our own could not finish.
  bool needsReplay() const { return needsReplay_; }

  bool onNetwork() const { return network_; }

  // Empties the journal: all table files synced. Called without apply locks.
  void checkpoint();
  JournalSpot appliedSpot();
  // Pages of the table changed by records behind `spot` up to `stamp`; moves `spot` there. False: the journal does not
  // reach back that far.
  bool changedSince(JournalSpot& spot, std::uint64_t fileId, std::uint64_t stamp,
                    std::vector<std::pair<std::uint8_t, PageNo>>& pages);

  // Holds the commit lock for an operation that makes or takes away files; where files go, the journal must hold
  // nothing of theirs any more.
  class Quiet {
   public:
    enum class Journal { asItIs, emptied };
    Quiet(CommitProtocol& protocol, Journal journal);
    ~Quiet();
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;

   private:
    CommitProtocol& protocol_;
  };

  // Syncs so far, for measuring.
  std::uint64_t syncs() const { return syncs_; }
  // What recovery skipped and why; empty in a sound company.
  const std::vector<std::string>& notes() const { return notes_; }
  void setJournalLimit(std::uint64_t bytes) { limit_ = bytes; }

 private:
  friend class Replay;
  void lockCommit();
  void unlockCommit() noexcept;
  class CommitLock;
  struct ChangedPage;
  struct Changes;
  void recoverAll();
  void catchUpLocked();
  // An empty journal may be so in the system's memory only, where the sync of its head failed.
  void checkpointLocked(bool evenIfEmpty = false);
  void syncTables();
  static std::string runsOf(PageFile& file, const PageFile::Dirty& dirty, PageNo number, std::uint64_t imaged);
  Changes collect(std::span<TableFiles* const> tables, std::uint64_t commit);
  void prepare(std::span<TableFiles* const> tables, std::uint64_t commit);
  void apply(std::span<TableFiles* const> tables, std::uint64_t commit);
  void waitForApply(TableFiles& table);

  Environment environment_;
  std::string folder_;
  Journal journal_;
  JournalSpot last_;  // the journal's end, true while the commit lock is held
  std::uint64_t limit_ = std::uint64_t{32} << 20;
  std::uint64_t syncs_ = 0;
  std::vector<std::string> notes_;
  bool needsReplay_ = false;
  bool broken_ = false;
  bool network_ = false;
};

}  // namespace quillon::store
