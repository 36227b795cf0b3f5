// The heads of the journal and its `applied` mark, and what to go by when one of them is damaged.
#include <array>
#include <utility>

#include "store/Environment.h"
#include "store/Errors.h"
#include "store/journal/Journal.h"
#include "store/vfs/File.h"

namespace quillon::store {
namespace {

constexpr std::uint64_t kHeadMagic = 0x314C4E4A4E4C5551;  // "QULNJNL1"
constexpr std::uint32_t kVersion = 1;
constexpr std::size_t kHeadSize = 64;
constexpr std::uint64_t kHeadPlace[2] = {0, 4096};
constexpr std::uint64_t kAppliedPlace = 8192;

}  // namespace

std::uint64_t newJournalId(const Environment& environment, const std::string& folder) {
  const std::int64_t parts[] = {environment.clock.unixSeconds(), environment.clock.milliseconds(), environment.process};
  return hashBytes(parts, sizeof parts, hashBytes(folder.data(), folder.size())) | 1;
}

void Journal::writeHead(const Head& head) {
  std::array<std::byte, kHeadSize> bytes{};
  storeAt(bytes.data(), 0, kHeadMagic);
  storeAt(bytes.data(), 8, kVersion);
  storeAt<std::uint32_t>(bytes.data(), 12, head.rewrite ? 1 : 0);
  storeAt(bytes.data(), 16, head.companyId);
  storeAt(bytes.data(), 24, head.epoch);
  storeAt(bytes.data(), 32, head.checkpointCommit);
  storeAt(bytes.data(), 40, head.key);
  storeAt(bytes.data(), 56, hashBytes(bytes.data(), 56));
  file_->write(kHeadPlace[head.epoch % 2], bytes);
}

// Of the two heads the sound one with the higher epoch. `damaged`: one is neither sound nor unwritten.
std::optional<Journal::Head> Journal::newestHead(bool* damaged) {
  std::optional<Head> best;
  bool newer = false;
  for (const std::uint64_t place : kHeadPlace) {
    std::array<std::byte, kHeadSize> bytes{};
    file_->read(place, bytes.data(), kHeadSize);
    if (loadAt<std::uint64_t>(bytes.data(), 0) != kHeadMagic ||
        loadAt<std::uint64_t>(bytes.data(), 56) != hashBytes(bytes.data(), 56)) {
      if (damaged && bytes != std::array<std::byte, kHeadSize>{}) *damaged = true;
      continue;
    }
    newer = newer || loadAt<std::uint32_t>(bytes.data(), 8) > kVersion;
    const Head head{loadAt<std::uint64_t>(bytes.data(), 16), loadAt<std::uint64_t>(bytes.data(), 24),
                    loadAt<std::uint64_t>(bytes.data(), 32), loadAt<std::uint32_t>(bytes.data(), 12) != 0,
                    loadAt<std::uint64_t>(bytes.data(), 40)};
    if (!best || head.epoch > best->epoch) best = head;
  }
  if (newer)
    throw StoreError(Code::newerFormat, std::string("'") + kJournalName +
                                            "' was written by a later version of this program. Use that version.");
  return best;
}

void Journal::raiseDamaged(const char* advice) {
  throw StoreError(Code::headerDamaged, std::string("The header of '") + kJournalName +
                                            "' is damaged, and changes that were saved last may stand there alone. " +
                                            advice);
}

void Journal::readHead() {
  const std::optional<Head> found = newestHead();
  // Room for records is made only after the first head is safe, so a short file without a head never held a commit.
  if (!found && file_->size() <= kJournalStart) return makeAnew();
  if (!found) raiseDamaged("Close the company everywhere and open it again.");
  head_ = *found;
}

void Journal::makeAnew() {
  head_ = {head_.companyId, 1, 0, false, head_.key};
  file_->truncate(0);
  file_->truncate(kJournalStart);
  writeHead(head_);
  file_->sync();
}

bool Journal::isNewer(std::uint64_t companyId, std::uint64_t epoch) const {
  return companyId == head_.companyId && epoch > head_.epoch;
}

// An epoch that has begun has left the older ones nothing to bring in: the tables were synced before. So of what can be
// read the newest epoch counts, and where that has only `applied` to tell it, it must have had no record.
void Journal::recoverHead() {
  constexpr const char* kAdvice = "Close the company everywhere and repair its folder, or bring back a backup.";
  bool damaged = false;
  const std::optional<Head> found = newestHead(&damaged);
  if (!found && file_->size() <= kJournalStart) return makeAnew();
  const std::optional<Head> record = headOfFirstRecord();
  const std::optional<Applied> applied = soundApplied();
  // Nothing tells whether the damaged one was newer.
  if (found && damaged && !(record && record->epoch >= found->epoch) &&
      !(applied && applied->spot.epoch >= found->epoch))
    raiseDamaged(kAdvice);
  if (!found && !record && (!applied || holdsRecord())) raiseDamaged(kAdvice);
  if (found)
    head_ = *found;
  else
    head_ = {record ? record->companyId : applied->companyId, 0, 0, true, head_.key};
  if (record && isNewer(record->companyId, record->epoch)) head_ = *record;
  if (!applied || !isNewer(applied->companyId, applied->spot.epoch)) return;
  if (applied->spot.offset != kJournalStart) raiseDamaged(kAdvice);
  // The start of that epoch may have failed, and the one before have gone on.
  if (lastCommit() > applied->spot.commit) return;
  head_ = {head_.companyId, applied->spot.epoch, applied->spot.commit, true, head_.key};
}

// Readable or not.
bool Journal::holdsRecord() {
  std::array<std::byte, kRecordHead> bytes{};
  file_->read(kJournalStart, bytes.data(), bytes.size());
  return bytes != std::array<std::byte, kRecordHead>{};
}

std::uint64_t Journal::lastCommit() {
  JournalSpot spot = startSpot();
  for (JournalRecord record; readRecord(spot, record) && recordIsWhole(record);)
    spot = {spot.epoch, record.end(), record.commit};
  return spot.commit;
}

void Journal::requireNewestHead() {
  const std::optional<Head> record = headOfFirstRecord();
  if (record && isNewer(record->companyId, record->epoch))
    raiseDamaged("Close the company everywhere and open it again.");
}

// What the first record tells of the head that it was written under. Whether pages are to be written again is not
// known, so they are.
std::optional<Journal::Head> Journal::headOfFirstRecord() {
  std::array<std::byte, kRecordHead> bytes{};
  file_->read(kJournalStart, bytes.data(), bytes.size());
  if (loadAt<std::uint64_t>(bytes.data(), 0) != kRecordMagic) return {};
  const Head told{loadAt<std::uint64_t>(bytes.data(), 8), loadAt<std::uint64_t>(bytes.data(), 16),
                  loadAt<std::uint64_t>(bytes.data(), 32), true, head_.key};
  const Head read = std::exchange(head_, told);
  JournalRecord record;
  const bool sound = readRecord(startSpot(), record);
  head_ = read;
  if (!sound) return {};
  return told;
}

std::optional<Journal::Applied> Journal::soundApplied() {
  std::array<std::byte, 40> bytes{};
  if (file_->read(kAppliedPlace, bytes.data(), bytes.size()) != bytes.size() ||
      loadAt<std::uint64_t>(bytes.data(), 32) != hashBytes(bytes.data(), 32))
    return {};
  return Applied{loadAt<std::uint64_t>(bytes.data(), 0),
                 {loadAt<std::uint64_t>(bytes.data(), 8), loadAt<std::uint64_t>(bytes.data(), 16),
                  loadAt<std::uint64_t>(bytes.data(), 24)}};
}

JournalSpot Journal::readApplied() {
  for (int tries = 0; tries < 2; ++tries) {
    const std::optional<Applied> applied = soundApplied();
    if (!applied || applied->companyId != head_.companyId) return startSpot();
    if (applied->spot.epoch == head_.epoch) return applied->spot;
    if (applied->spot.epoch < head_.epoch) return startSpot();
    readHead();
    // Where records were applied there was a head.
    if (applied->spot.epoch > head_.epoch && applied->spot.offset != kJournalStart)
      raiseDamaged("Close the company everywhere and open it again.");
  }
  return startSpot();
}

void Journal::writeApplied(const JournalSpot& spot) {
  std::array<std::byte, 40> bytes{};
  storeAt(bytes.data(), 0, head_.companyId);
  storeAt(bytes.data(), 8, spot.epoch);
  storeAt(bytes.data(), 16, spot.offset);
  storeAt(bytes.data(), 24, spot.commit);
  storeAt(bytes.data(), 32, hashBytes(bytes.data(), 32));
  file_->write(kAppliedPlace, bytes);
}

// `applied` goes first, since others learn from it to read the head again; while it fits no head nothing counts as
// applied, which is harmless. The head that can be read decides which epoch it is, safe or not: the tables are synced,
// so after a power loss either head will do, until the first append, which writes the head again (see append).
void Journal::startEpoch(std::uint64_t checkpointCommit, std::uint64_t drawn) {
  const std::uint64_t parts[] = {drawn, head_.key, head_.epoch};
  const Head head{head_.companyId, head_.epoch + 1, checkpointCommit, false, hashBytes(parts, sizeof parts)};
  writeApplied({head.epoch, kJournalStart, checkpointCommit});
  try {
    writeHead(head);
  } catch (const IoError&) {
    readHead();
    throw;
  }
  head_ = head;
  file_->sync();
}

void Journal::setRewrite() {
  head_.rewrite = true;
  writeHead(head_);
}

bool Journal::rewrite() {
  std::array<std::byte, kHeadSize> bytes{};
  if (file_->read(kHeadPlace[head_.epoch % 2], bytes.data(), kHeadSize) == kHeadSize &&
      loadAt<std::uint64_t>(bytes.data(), 24) == head_.epoch)
    head_.rewrite = head_.rewrite || loadAt<std::uint32_t>(bytes.data(), 12) != 0;
  return head_.rewrite;
}

}  // namespace quillon::store
