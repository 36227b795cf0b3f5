#include "store/journal/CommitProtocol.h"

#include <algorithm>
#include <set>

#include "store/Errors.h"
#include "store/Planted.h"
#include "store/journal/Backoff.h"
#include "store/journal/Replay.h"
#include "store/table/TableFiles.h"
#include "store/vfs/File.h"
#include "store/vfs/FileNames.h"

namespace quillon::store {
namespace {

constexpr std::size_t kComparedPages = 2048;  // a larger record takes whole pages only
constexpr std::size_t kLongestRuns = 3000;    // more changed bytes than this: the whole page
constexpr int kLongestLookBack = 2000;        // records

}  // namespace

struct CommitProtocol::ChangedPage {
  PageFile* file;
  std::string runs;  // empty: the whole page
};

struct CommitProtocol::Changes {
  std::vector<JournalTable> tables;
  std::vector<JournalPage> pages;
  std::vector<ChangedPage> content;  // of each page
};

class CommitProtocol::CommitLock {
 public:
  explicit CommitLock(CommitProtocol& protocol) : protocol_(protocol) { protocol_.lockCommit(); }
  ~CommitLock() { protocol_.unlockCommit(); }
  CommitLock(const CommitLock&) = delete;
  CommitLock& operator=(const CommitLock&) = delete;

 private:
  CommitProtocol& protocol_;
};

CommitProtocol::CommitProtocol(const Environment& environment, std::string folder)
    : environment_(environment),
      folder_(std::move(folder)),
      journal_(environment.files, folder_, newJournalId(environment, folder_)),
      network_(environment.files.isNetwork(folder_)) {
  CommitLock lock(*this);
  if (journal_.file().lock(kCompanyOpenByte, 1, LockMode::exclusive)) {
    journal_.recoverHead();
    // Whoever made a file may have died before its name was safe.
    environment_.files.syncFolder(folder_);
    recoverAll();
  } else {
    journal_.readHead();
    journal_.requireNewestHead();
  }
  if (!journal_.file().lock(kCompanyOpenByte, 1, LockMode::shared))
    throw StoreError(Code::tableInUse, "The company folder is being opened or closed by another user. Try again.");
  catchUpLocked();
}

CommitProtocol::~CommitProtocol() {
  try {
    CommitLock lock(*this);
    if (journal_.file().lock(kCompanyOpenByte, 1, LockMode::exclusive)) {
      catchUpLocked();
      checkpointLocked();
      journal_.shrink();
    }
    // Before the commit lock: who opens next under it must not find us half gone.
    journal_.file().unlock(kCompanyOpenByte, 1);
  } catch (...) {
    // The journal stays as it is; whoever opens the folder next brings it in.
  }
}

void CommitProtocol::lockCommit() {
  Backoff backoff(environment_.clock);
  while (!journal_.file().lock(kCommitByte, 1, LockMode::exclusive))
    if (!backoff.wait())
      throw StoreError(Code::recordLocked,
                       "Another user's program has been saving to this company for over a minute. Try again; if it "
                       "stays so, look for a computer that is asleep or hangs.");
}

void CommitProtocol::unlockCommit() noexcept { journal_.file().unlock(kCommitByte, 1); }

void CommitProtocol::recoverAll() {
  last_ = journal_.startSpot();
  JournalRecord record;
  while (journal_.readRecord(last_, record) && (planted(Bug::tornTailTaken) || journal_.recordIsWhole(record)))
    last_ = {last_.epoch, record.end(), record.commit};
  // It must be safe before a page is changed on its word, or a record is written behind it.
  journal_.secure(journal_.startSpot(), last_);
  const JournalSpot applied = journal_.readApplied();
  if (applied.offset > last_.offset && applied.epoch == last_.epoch)
    notes_.push_back("The journal is damaged: changes behind commit " + std::to_string(last_.commit) +
                     " cannot be read from it any more");
  if (last_ != journal_.startSpot()) {
    Replay replay(*this);
    replay.run(last_);
    replay.syncFiles();
  }
  // Also when there was nothing to bring in: this folder may be a copy, and its stamps must not be taken for those of
  // the original.
  journal_.startEpoch(last_.commit, newJournalId(environment_, folder_));
  last_ = journal_.startSpot();
}

void CommitProtocol::catchUpLocked() {
  last_ = journal_.readApplied();
  JournalRecord record;
  JournalSpot end = last_;
  std::unique_ptr<Replay> replay;
  while (journal_.readRecord(end, record) && journal_.recordIsWhole(record)) {
    if (!replay) replay = std::make_unique<Replay>(*this);
    replay->onlyPagesOf(record);
    end = {end.epoch, record.end(), record.commit};
  }
  if (replay) {
    journal_.secure(last_, end);
    ++syncs_;
    if (!planted(Bug::notReplayed)) replay->run(end);
    journal_.writeApplied(end);
    last_ = end;
  }
  needsReplay_ = false;
}

void CommitProtocol::catchUp() {
  JournalRecord record;
  if (!needsReplay_ && !journal_.readRecord(journal_.readApplied(), record)) return;
  CommitLock lock(*this);
  catchUpLocked();
}

JournalSpot CommitProtocol::appliedSpot() { return journal_.readApplied(); }

bool CommitProtocol::changedSince(JournalSpot& spot, std::uint64_t fileId, std::uint64_t stamp,
                                  std::vector<std::pair<std::uint8_t, PageNo>>& pages) {
  journal_.readApplied();
  if (spot.epoch != journal_.epoch()) return false;
  JournalRecord record;
  for (int looked = 0; looked < kLongestLookBack && journal_.readRecord(spot, record); ++looked) {
    for (const JournalPage& page : record.pages)
      if (record.tables[page.table].fileId == fileId) pages.emplace_back(page.role, page.number);
    spot = {spot.epoch, record.end(), record.commit};
    if (record.commit == stamp) return true;
  }
  return false;
}

void CommitProtocol::checkpoint() {
  CommitLock lock(*this);
  catchUpLocked();
  checkpointLocked();
}

void CommitProtocol::checkpointLocked(bool evenIfEmpty) {
  if (journal_.bytesUsed(last_) == 0 && !evenIfEmpty) return;
  if (journal_.rewrite()) {
    // A page may be left half written: should this end half way, everything counts as not applied.
    journal_.writeApplied(journal_.startSpot());
    Replay(*this).run(last_);
    journal_.writeApplied(last_);
  }
  syncTables();
  try {
    journal_.startEpoch(last_.commit, newJournalId(environment_, folder_));
  } catch (const StoreError&) {
    if (journal_.epoch() != last_.epoch) last_ = journal_.startSpot();
    throw;
  }
  syncs_ += 1;
  last_ = journal_.startSpot();
}

void CommitProtocol::syncTables() {
  std::set<std::pair<std::string, std::uint8_t>> touched;
  JournalRecord record;
  for (JournalSpot spot = journal_.startSpot(); spot.offset < last_.offset && journal_.readRecord(spot, record);
       spot = {spot.epoch, record.end(), record.commit}) {
    for (const JournalPage& page : record.pages) touched.emplace(record.tables[page.table].name, page.role);
    // The live area is written with every publish.
    for (const JournalTable& table : record.tables) touched.emplace(table.name, kDat);
  }
  try {
    for (const auto& [name, role] : touched) {
      const std::string path = findFile(environment_.files, folder_, name + kExtensions[role]);
      if (!environment_.files.exists(path)) continue;
      environment_.files.open(path, OpenMode::existing)->sync();
      ++syncs_;
    }
  } catch (const IoError&) {
    journal_.setRewrite();
    throw;
  }
}

void CommitProtocol::prepare(std::span<TableFiles* const> tables, std::uint64_t commit) {
  for (TableFiles* table : tables) {
    TableMeta& meta = table->meta();
    if (meta.epochKey != journal_.epochKey()) {
      meta.epochKey = journal_.epochKey();
      meta.adoptedAt = table->stamp();
    }
    table->storeMeta(commit);
  }
}

// The bytes by which a page differs from its committed state; empty where the whole page must go into the journal.
std::string CommitProtocol::runsOf(PageFile& file, const PageFile::Dirty& dirty, PageNo number, std::uint64_t imaged) {
  if (dirty.fresh) return {};
  std::array<std::byte, kPageSize> read;
  const std::byte* before = dirty.base;
  if (!before) {
    file.readCommitted(number, read.data());
    before = read.data();
  }
  if (pageStamp(before) <= imaged) return {};
  std::string runs = Journal::changedRuns(before, dirty.page.data());
  if (runs.size() > kLongestRuns) runs.clear();
  return runs;
}

// Seals the changed pages and says what the journal has to hold of each.
CommitProtocol::Changes CommitProtocol::collect(std::span<TableFiles* const> tables, std::uint64_t commit) {
  std::size_t total = 0;
  for (TableFiles* table : tables)
    for (const Role role : {kDat, kIdx, kBlb}) total += table->file(role).dirtyPages();
  Changes changes;
  changes.pages.reserve(total);
  changes.content.reserve(total);
  for (TableFiles* table : tables) {
    const std::uint64_t imaged = table->meta().adoptedAt;
    for (const Role role : {kDat, kIdx, kBlb}) {
      PageFile& file = table->file(role);
      for (const PageNo number : file.dirtyNumbers()) {
        const PageFile::Dirty dirty = file.dirtyPage(number);
        sealPage(dirty.page.writable(), file.fileId(), commit);
        std::string runs = total <= kComparedPages ? runsOf(file, dirty, number, imaged) : std::string();
        changes.pages.push_back({static_cast<std::uint16_t>(changes.tables.size()), role, runs.empty(), number,
                                 static_cast<std::uint32_t>(runs.empty() ? kPageSize : runs.size())});
        changes.content.push_back({&file, std::move(runs)});
      }
    }
    changes.tables.push_back({table->name(), table->fileId(), table->stamp()});
  }
  return changes;
}

void CommitProtocol::publish(std::span<TableFiles* const> changed) {
  if (broken_)
    throw StoreError(Code::outcomeUnknown,
                     "An earlier change may not have been saved. Close the company and open it again.");
  std::vector<TableFiles*> tables(changed.begin(), changed.end());
  std::sort(tables.begin(), tables.end(), [](const auto* a, const auto* b) { return a->name() < b->name(); });
  CommitLock lock(*this);
  catchUpLocked();
  if (journal_.bytesUsed(last_) > limit_) {
    try {
      checkpointLocked();
    } catch (const IoError&) {
      // The journal grows on; the next publish tries again.
    }
  }
  std::uint64_t commit = last_.commit;
  for (const TableFiles* table : tables) commit = std::max(commit, table->stamp());
  ++commit;
  // Whoever made a table may have died before its names were safe, and a row is not safer than its table.
  if (std::any_of(tables.begin(), tables.end(), [](const auto* table) { return table->stamp() == 0; }))
    environment_.files.syncFolder(folder_);
  prepare(tables, commit);

  const Changes changes = collect(tables, commit);
  PageRef held;
  try {
    last_ = journal_.append(last_, commit, changes.tables, changes.pages, [&](std::size_t i) {
      const ChangedPage& page = changes.content[i];
      if (!page.runs.empty()) return reinterpret_cast<const std::byte*>(page.runs.data());
      held = page.file->read(changes.pages[i].number);
      return held.data();
    });
  } catch (const StoreError& error) {
    broken_ = error.code() == Code::outcomeUnknown;
    throw;
  }
  held = PageRef();
  ++syncs_;
  try {
    apply(tables, commit);
    journal_.writeApplied(last_);
  } catch (const StoreError&) {
    // Committed all the same. What we hold in memory may not be what stands in the files, so it goes.
    needsReplay_ = true;
    for (TableFiles* table : tables) {
      table->discard();
      table->forget(table->stamp());
    }
  }
}

void CommitProtocol::waitForApply(TableFiles& table) {
  if (table.tryApply(LockMode::exclusive)) return;
  File& file = table.lockFile();
  // Readers that come after this mark stand back, so that a stream of them cannot hold a commit up.
  const bool announced = file.lock(kApplyIntentByte, 1, LockMode::exclusive);
  LiveState live = table.readLive();
  live.waiting = true;
  table.writeLive(live);
  Backoff backoff(environment_.clock);
  bool got = false;
  while (!(got = table.tryApply(LockMode::exclusive)) && backoff.wait()) {
  }
  if (announced) file.unlock(kApplyIntentByte, 1);
  if (!got) throw StoreError(Code::recordLocked, "Table '" + table.name() + "' is being read without end.");
}

void CommitProtocol::apply(std::span<TableFiles* const> tables, std::uint64_t commit) {
  if (planted(Bug::appliedOneByOne) && tables.size() > 1) {
    for (std::size_t i = 0; i < tables.size(); ++i) apply(tables.subspan(i, 1), commit);
    return;
  }
  struct Held {
    std::vector<TableFiles*> tables;
    ~Held() {
      for (TableFiles* table : tables) table->releaseApply();
    }
  } held;
  for (TableFiles* table : tables) {
    waitForApply(*table);
    held.tables.push_back(table);
  }
  for (TableFiles* table : tables) {
    const bool swapped = planted(Bug::swappedWrites);
    table->writeLive({swapped ? commit : table->stamp(), !swapped, false});
    if (network_) table->lockFile().sync();
  }
  for (TableFiles* table : tables)
    for (const Role role : {kDat, kIdx, kBlb}) {
      PageFile& file = table->file(role);
      if (file.dirtyPages() == 0) continue;
      file.writeInPlace(file.dirtyNumbers());
      if (network_) file.file().sync();
    }
  for (TableFiles* table : tables) {
    table->writeLive({commit, false, false});
    if (network_) table->lockFile().sync();
  }
  for (TableFiles* table : tables) {
    table->published(commit);
    table->spot = last_;
  }
}

CommitProtocol::Quiet::Quiet(CommitProtocol& protocol, Journal journal) : protocol_(protocol) {
  protocol_.lockCommit();
  try {
    protocol_.catchUpLocked();
    if (journal == Journal::emptied) protocol_.checkpointLocked(true);
  } catch (...) {
    protocol_.unlockCommit();
    throw;
  }
}

CommitProtocol::Quiet::~Quiet() { protocol_.unlockCommit(); }

}  // namespace quillon::store
