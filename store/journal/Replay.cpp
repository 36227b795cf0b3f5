#include "store/journal/Replay.h"

#include <array>

#include "store/Errors.h"
#include "store/journal/Backoff.h"
#include "store/table/TableFiles.h"
#include "store/vfs/File.h"
#include "store/vfs/FileNames.h"

namespace quillon::store {

struct Replay::Target {
  std::string name;
  std::array<std::unique_ptr<File>, 3> files;
  std::uint64_t fileId = 0;
  std::uint64_t stamp = 0;  // as found in the live area
  std::uint64_t lastCommit = 0;
  bool usable = false;
  bool locked = false;
  std::set<std::uint8_t> missing;  // roles whose file is gone

  File& file(Role role, FileSystem& system, const std::string& folder) {
    if (!files[role]) files[role] = system.open(findFile(system, folder, name + kExtensions[role]), OpenMode::existing);
    return *files[role];
  }
};

Replay::Replay(CommitProtocol& protocol) : protocol_(protocol) {}

Replay::~Replay() = default;  // the handles close, and their locks end

void Replay::onlyPagesOf(const JournalRecord& record) {
  all_ = false;
  for (const JournalPage& page : record.pages)
    wanted_.emplace(record.tables[page.table].fileId, page.role, page.number);
}

bool Replay::wants(const JournalRecord& record, const JournalPage& page) const {
  return all_ || wanted_.count({record.tables[page.table].fileId, page.role, page.number}) > 0;
}

Replay::Target* Replay::target(const JournalTable& table, std::uint64_t commit) {
  auto& slot = targets_[{table.name, table.fileId}];
  if (!slot) {
    slot = std::make_unique<Target>();
    slot->name = table.name;
    slot->fileId = table.fileId;
    std::string why;
    try {
      File& dat = slot->file(kDat, protocol_.environment_.files, protocol_.folder_);
      const bool same = TableFiles::checkIdentity(dat, table.name, kDat) == table.fileId;
      slot->stamp = soundLiveState(dat).value_or(LiveState{table.stampBefore, true, false}).stamp;
      if (!same)
        why = "the file was replaced";
      else if (slot->stamp < table.stampBefore)
        why = "the file is older than the journal";
      else
        slot->usable = true;
    } catch (const StoreError& error) {
      if (error.code() == Code::ioFailed) throw;
      why = error.what();
    }
    if (!slot->usable) {
      slot->files = {};
      protocol_.notes_.push_back("Changes of table '" + table.name + "' in the journal were passed over: " + why);
    }
  }
  slot->lastCommit = commit;
  return slot->usable ? slot.get() : nullptr;
}

void Replay::lockTargets(const JournalSpot& end) {
  JournalRecord record;
  for (JournalSpot spot = protocol_.journal_.startSpot(); spot.offset < end.offset;
       spot = {spot.epoch, record.end(), record.commit}) {
    if (!protocol_.journal_.readRecord(spot, record))
      throw StoreError(Code::damaged, std::string("'") + kJournalName + "' is damaged. Bring back a backup.");
    for (const JournalPage& page : record.pages)
      if (wants(record, page)) target(record.tables[page.table], record.commit);
  }
  for (auto& [key, target] : targets_) {
    if (!target->usable) continue;
    Backoff backoff(protocol_.environment_.clock);
    File& dat = *target->files[kDat];
    while (!dat.lock(kApplyByte, 1, LockMode::exclusive))
      if (!backoff.wait())
        throw StoreError(Code::recordLocked, "Table '" + target->name + "' is being read without end. Try again.");
    target->locked = true;
    writeLiveState(dat, {target->stamp, true, false});
  }
}

void Replay::run(const JournalSpot& end) {
  lockTargets(end);
  JournalRecord record;
  for (JournalSpot spot = protocol_.journal_.startSpot(); spot.offset < end.offset;
       spot = {spot.epoch, record.end(), record.commit}) {
    if (!protocol_.journal_.readRecord(spot, record))
      throw StoreError(Code::damaged, std::string("'") + kJournalName + "' is damaged. Bring back a backup.");
    const auto usable = [&](const JournalPage& page) {
      if (!wants(record, page)) return false;
      const auto& table = record.tables[page.table];
      const auto found = targets_.find({table.name, table.fileId});
      return found != targets_.end() && found->second->usable;
    };
    protocol_.journal_.readPages(record, usable, [&](const JournalPage& page, const std::byte* data) {
      const auto& table = record.tables[page.table];
      writePage(*targets_[{table.name, table.fileId}], page, record.commit, data);
    });
  }
  for (auto& [key, target] : targets_) {
    if (!target->usable) continue;
    File& dat = *target->files[kDat];
    const std::uint64_t stamp = std::max(target->stamp, target->lastCommit);
    if (protocol_.network_)
      for (const auto& file : target->files)
        if (file) file->sync();
    writeLiveState(dat, {stamp, false, false});
    if (protocol_.network_) dat.sync();
    dat.unlock(kApplyByte, 1);
  }
}

// A page never goes back: where the end of the journal is damaged nothing would bring it forward again. Such a page is
// written all the same, since a sync that failed may have forgotten it. One that the record does not fit is left for
// a repair and keeps nothing else from being opened; sound as it may be, it must not be read as the present.
void Replay::writePage(Target& target, const JournalPage& page, std::uint64_t commit, const std::byte* data) {
  if (target.missing.contains(page.role)) return;
  const auto role = static_cast<Role>(page.role);
  try {
    target.file(role, protocol_.environment_.files, protocol_.folder_);
  } catch (const IoError& error) {
    if (error.code() != Code::noSuchTable) throw;
    // One table that needs a repair must not keep the others from being opened.
    target.missing.insert(page.role);
    protocol_.notes_.push_back("Changes of '" + target.name + kExtensions[role] + "' in the journal have no file");
    return;
  }
  File& file = *target.files[role];
  const std::uint64_t place = std::uint64_t{page.number} * kPageSize;
  const auto isSound = [&](const std::byte* bytes) {
    return pageIsSound(bytes, target.fileId ^ page.role, page.number);
  };
  std::array<std::byte, kPageSize> current;
  const bool there = file.read(place, current.data(), kPageSize) == kPageSize;
  const bool done = there && isSound(current.data()) && pageStamp(current.data()) >= commit;
  if (page.whole && !done)
    file.write(place, Bytes(data, kPageSize));
  else if (done || (there && Journal::applyRuns(current.data(), data, page.bytes) && isSound(current.data())))
    file.write(place, current);
  else {
    if (there && file.read(place, current.data(), kPageSize) == kPageSize && isSound(current.data())) {
      current[0] ^= std::byte{0xFF};  // of the checksum
      file.write(place, Bytes(current).first(1));
    }
    protocol_.notes_.push_back("Page " + std::to_string(page.number) + " of '" + target.name + kExtensions[role] +
                               "' does not fit the journal and cannot be brought up to date");
  }
}

void Replay::syncFiles() {
  for (auto& [key, target] : targets_) {
    if (!target->usable) continue;
    // The live area was written last, so every .DAT file is among them.
    for (const auto& file : target->files) {
      if (!file) continue;
      file->sync();
      ++protocol_.syncs_;
    }
  }
}

}  // namespace quillon::store
