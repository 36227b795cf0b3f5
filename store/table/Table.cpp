#include "store/table/Table.h"

#include <algorithm>

#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/Planted.h"
#include "store/journal/Backoff.h"
#include "store/journal/CommitProtocol.h"
#include "store/vfs/File.h"

namespace quillon::store {
namespace {

constexpr std::size_t kMostForgotten = 4000;  // pages; with more it is cheaper to forget them all
constexpr int kTriesToReplay = 100;
constexpr int kStandBacks = 20;  // a reader lets an announced writer pass that often

}  // namespace

Table::Table(Database& database, std::string name)
    : database_(database),
      files_(database.files(), database.session().cache(), database.folder(), std::move(name)),
      locks_(files_.lockFile()) {
  static std::uint64_t given = 0;  // all store calls are on one thread
  number_ = ++given;
}

Table::~Table() = default;

void Table::load() {
  Reading reading(*this);
  schema_ = files_.readSchema();
  schemaStamp_ = files_.stamp();
  definition_ = TableDef::decode(std::as_bytes(std::span(schema_)));
  layout_ = std::make_unique<RecordLayout>(definition_);
  TableMeta& meta = files_.meta();
  rows_ = std::make_unique<Tree>(files_.file(kDat), meta.rows);
  for (std::size_t i = 0; i < definition_.indexes.size(); ++i) {
    codecs_.emplace_back(definition_, definition_.indexes[i]);
    indexes_.push_back(std::make_unique<Tree>(files_.file(kIdx), meta.indexes[i]));
  }
  blobs_ = std::make_unique<BlobStore>(files_.file(kBlb), meta.blobs);
  keys_.resize(codecs_.size());
  oldKeys_.resize(codecs_.size());
  for (std::size_t i = 0; i < definition_.fields.size(); ++i)
    if (definition_.fields[i].type == FieldType::autoInc) autoIncField_ = static_cast<int>(i);
  if (!database_.inMemory()) files_.setSpill([this] { return database_.session().spill(database_.folder()); });
}

bool Table::isAsLoaded() {
  bool same = true;
  read([&] {
    if (files_.stamp() == schemaStamp_) return;
    for (const Role role : {kDat, kIdx, kBlb}) files_.file(role).measure();
    same = files_.readSchema() == schema_;
  });
  if (same) schemaStamp_ = files_.stamp();
  return same;
}

void Table::beginReading() {
  if (readers_ > 0 || steady_ || database_.inMemory() || locks_.holdsWrite() || locks_.heldExclusively()) {
    if (readers_ == 0 && files_.metaStale()) refreshUnderLock();
    ++readers_;
    return;
  }
  Backoff backoff(database_.session().environment().clock);
  for (int standBacks = 0;; ++standBacks) {
    if (tryBeginReading(standBacks < kStandBacks)) return;
    if (!backoff.wait())
      throw StoreError(Code::recordLocked, "Table '" + name() +
                                               "' is being saved by another user without end. Try again; "
                                               "look for a computer that hangs.");
  }
}

bool Table::tryBeginReading(bool standBack, bool mayReplay) {
  if (readers_ > 0 || steady_ || database_.inMemory() || locks_.holdsWrite() || locks_.heldExclusively()) {
    beginReading();
    return true;
  }
  CommitProtocol& protocol = *database_.protocol();
  for (int tries = 0; tries < kTriesToReplay; ++tries) {
    if (protocol.needsReplay()) {
      if (!mayReplay) return false;
      protocol.catchUp();
    }
    if (!files_.tryApply(LockMode::shared)) return false;
    try {
      const LiveState live = soundLiveState(files_.lockFile()).value_or(LiveState{0, true, false});
      if (live.waiting && standBack && files_.lockFile().lockedByOther(kApplyIntentByte, 1, LockMode::shared)) {
        files_.releaseApply();
        return false;
      }
      if (!live.applying) {
        refresh(live);
        applyHeld_ = true;
        readers_ = 1;
        return true;
      }
    } catch (...) {
      files_.releaseApply();
      throw;
    }
    // The writer died between its journal record and the end of its pages.
    files_.releaseApply();
    if (!mayReplay) return false;
    protocol.catchUp();
  }
  throw StoreError(Code::headerDamaged,
                   "The header of table '" + name() + "' is damaged. Run Pack/Repair on the company.");
}

void Table::setSteady(bool steady) {
  steady_ = steady;
  const bool alone = database_.inMemory() || locks_.holdsWrite() || locks_.heldExclusively();
  for (const Role role : {kDat, kIdx, kBlb}) files_.file(role).setUnlocked(steady && !alone);
}

bool Table::beginUnlocked() {
  if (readers_ > 0 || steady_ || database_.inMemory() || locks_.holdsWrite() || locks_.heldExclusively()) return false;
  // On a network the lock is what makes this machine look at the file again.
  if (database_.protocol()->onNetwork() || database_.protocol()->needsReplay() || files_.metaStale()) return false;
  try {
    const LiveState live = files_.readLive();
    if (!planted(Bug::staleRead) && (live.applying || live.stamp != files_.stamp())) return false;
  } catch (const StoreError&) {
    return false;  // caught half written; under the lock it shows what it is
  }
  readers_ = 1;
  for (const Role role : {kDat, kIdx, kBlb}) files_.file(role).setUnlocked(true);
  return true;
}

void Table::endUnlocked() noexcept {
  readers_ = 0;
  for (const Role role : {kDat, kIdx, kBlb}) files_.file(role).setUnlocked(false);
}

void Table::endReading() noexcept {
  if (--readers_ > 0 || !applyHeld_) return;
  applyHeld_ = false;
  files_.releaseApply();
}

void Table::refreshUnderLock() {
  if (!database_.inMemory()) {
    database_.protocol()->catchUp();
    const LiveState live = files_.readLive();
    if (live.applying)
      throw StoreError(Code::headerDamaged, "Table '" + name() +
                                                "' was left half saved and nothing tells how it goes on. "
                                                "Run Pack/Repair on the company.");
    refresh(live);
  } else if (files_.metaStale()) {
    files_.loadMeta();
  }
}

void Table::refresh(const LiveState& live) {
  if (live.stamp != files_.stamp()) {
    CommitProtocol& protocol = *database_.protocol();
    ++version_;
    std::vector<std::pair<std::uint8_t, PageNo>> pages;
    JournalSpot spot = files_.spot;
    const bool known = files_.stamp() < live.stamp && protocol.changedSince(spot, files_.fileId(), live.stamp, pages) &&
                       pages.size() < kMostForgotten;
    if (known) {
      for (const auto& [role, number] : pages) files_.file(static_cast<Role>(role)).forget(number);
      files_.setStamp(live.stamp);
      files_.setMetaStale();
    } else {
      spot = protocol.appliedSpot();
      files_.forget(live.stamp);
    }
    files_.spot = spot;
  }
  if (files_.metaStale()) files_.loadMeta();
}

void Table::discardChanges() noexcept {
  if (!files_.metaStale() && !planted(Bug::rowIdsReused)) rowFloor_ = std::max(rowFloor_, files_.meta().nextRow);
  files_.discard();
  gathered = 0;
  doomed = touched = false;
  ++version_;
}

std::string Table::readBlob(const BlobRef& ref) { return blobs_->get(ref); }

void Table::attach(Cursor* cursor) { cursors_.push_back(cursor); }

void Table::detach(Cursor* cursor) { std::erase(cursors_, cursor); }

void Table::rowChanged(RowId row, const std::string* record) {
  ++version_;
  for (Cursor* cursor : cursors_) cursor->ownChange(row, record);
}

void Table::everythingChanged(bool cancelEdits) {
  ++version_;
  for (Cursor* cursor : cursors_) cursor->ownRollback(cancelEdits);
}

}  // namespace quillon::store
