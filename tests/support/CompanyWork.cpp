#include "support/CompanyWork.h"

#include "store/Errors.h"
#include "store/journal/CommitProtocol.h"

namespace quillon::sim {
namespace {

store::Environment environmentFor(store::FileSystem& files, SimClock& clock, int process) {
  return {files, clock, "USER" + std::to_string(process), "PC", process + 1};
}

bool isWholeTable(Deed deed) {
  return deed == Deed::emptyTable || deed == Deed::dropTable || deed == Deed::repairTable ||
         deed == Deed::optimizeTable;
}

bool isWatched(const Task& task) { return task.table == "Cust" || task.table == "Det"; }

}  // namespace

Worker::Worker(SimDisk disk, SimClock& clock, store::Settings settings)
    : disk_(std::move(disk)),
      clock_(clock),
      settings_(std::move(settings)),
      files_(disk_.process()),
      process_(disk_.lastProcess()) {}

Worker::~Worker() { close(); }

void Worker::open() {
  clock_.advance(1000);  // so that two openings give different ids
  session_ = std::make_unique<store::Session>(environmentFor(*files_, clock_, process_), settings_);
  database_ = std::make_unique<store::Database>(*session_, kModelFolder);
}

void Worker::close() {
  unwatch();
  database_.reset();
  session_.reset();
}

void Worker::watch() {
  if (!watched_.empty()) return;
  for (const char* table : {"Cust", "Det"}) {
    auto cursor = std::make_unique<store::Cursor>(*database_, table);
    cursor->open();
    watched_.push_back(std::move(cursor));
  }
}

void Worker::unwatch() { watched_.clear(); }

void Worker::run(const Task& task) {
  posted_ = 0;
  if (!isOpen()) open();
  if (isWholeTable(task.deed) && isWatched(task))
    unwatch();
  else if (database_->exists("Cust") && database_->exists("Det"))
    watch();
  switch (task.deed) {
    case Deed::post:
    case Deed::lockedGroup:
      return changeAll(task);
    case Deed::bulkGroup: {
      const store::Database::BulkScope bulk(*database_);
      changeAll(task);
      return database_->settle();
    }
    case Deed::transaction:
    case Deed::rolledBack:
      return transact(task);
    case Deed::takeNumber:
      return takeNumber(task);
    case Deed::emptyTable:
      return database_->emptyTable(task.table);
    case Deed::createTable:
      return database_->createTable(modelDefinition(task.table));
    case Deed::dropTable:
      return database_->dropTable(task.table);
    case Deed::repairTable:
      if (!database_->repairTable(task.table, {.evenIfSound = true}).lossless())
        throw store::StoreError(store::Code::damaged, "the repair of a sound table lost something");
      return;
    case Deed::optimizeTable:
      database_->optimizeTable(task.table);
      return;
    case Deed::checkpoint:
      return database_->protocol()->checkpoint();
    case Deed::reopen:
      close();
      return open();
  }
}

void Worker::post(store::Cursor& cursor) {
  try {
    cursor.post();
  } catch (const store::StoreError&) {
    stayedInEdit_ = cursor.isEditing();
    throw;
  }
}

void Worker::change(store::Cursor& cursor, const RowChange& change) {
  stayedInEdit_ = true;
  if (change.kind == RowChange::Kind::insert) {
    cursor.insert();
    putRow(cursor, change.row);
    post(cursor);
  } else {
    cursor.goTo(change.position + 1);
    if (change.kind == RowChange::Kind::remove) {
      cursor.remove();
    } else {
      cursor.edit();
      putRow(cursor, change.row);
      post(cursor);
    }
  }
  ++posted_;
}

void Worker::changeAll(const Task& task) {
  std::map<std::string, std::unique_ptr<store::Cursor>> cursors;
  for (const RowChange& next : task.changes) {
    auto& cursor = cursors[next.table];
    if (!cursor) {
      cursor = std::make_unique<store::Cursor>(*database_, next.table);
      cursor->setRowOrder();
      cursor->open();
      if (task.deed == Deed::lockedGroup) cursor->lockTable();
    }
    change(*cursor, next);
    if (task.pauses) clock_.advance(600'000);
  }
  if (task.deed != Deed::lockedGroup) return;
  for (auto& [name, cursor] : cursors) cursor->unlockTable();
}

void Worker::transact(const Task& task) {
  try {
    database_->startTransaction({"Det", "Cust"});
    changeAll(task);
    task.deed == Deed::transaction ? database_->commit() : database_->rollback();
  } catch (const store::StoreError&) {
    if (database_->inTransaction()) database_->rollback();
    throw;
  }
}

void Worker::takeNumber(const Task& task) {
  store::Cursor control(*database_, "Ctl");
  control.setExclusive(true);
  control.open();
  change(control, task.changes.front());
  control.flush();
}

SimDisk companyDisk(const Workload& work, SimOptions options) {
  options.network = work.network;
  SimDisk disk(options);
  disk.process()->makeFolder(kModelFolder);
  if (work.fresh) return disk;
  SimClock clock;
  Worker maker(disk, clock, work.settings);
  maker.open();
  for (const auto& [name, table] : work.start.tables) {
    maker.database().createTable(modelDefinition(name));
    const store::Database::BulkScope bulk(maker.database());
    store::Cursor cursor(maker.database(), name);
    cursor.open();
    for (const ModelRow& row : table.rows) {
      cursor.insert();
      putRow(cursor, row);
      cursor.post();
    }
    maker.database().settle();
  }
  if (!work.leftOpen) maker.close();
  if (work.restored) disk.process()->remove(std::string(kModelFolder) + "/" + store::kJournalName);
  return disk.settled();
}

}  // namespace quillon::sim
