// A damaged table is made anew from what can still be read of it.
#include <algorithm>
#include <array>
#include <set>
#include <utility>

#include "base/Text.h"
#include "store/Errors.h"
#include "store/Session.h"
#include "store/journal/CommitProtocol.h"
#include "store/locks/Holders.h"
#include "store/table/Rebuild.h"
#include "store/table/ReplaceFiles.h"
#include "store/table/Salvage.h"
#include "store/verify/TableVerify.h"
#include "store/vfs/FileNames.h"

namespace quillon::store {
namespace {

constexpr std::size_t kMostTold = 100;
constexpr double kRowsShare = 0.6;  // of the work; the rest are indexes

void tell(std::vector<std::string>& list, const std::string& what) {
  if (list.size() < kMostTold)
    list.push_back(what);
  else if (list.size() == kMostTold)
    list.emplace_back("more of these are not listed");
}

// Fills the new files of one table from the old ones.
class Repair {
 public:
  Repair(Salvage& old, Rebuild& made, RepairReport& report)
      : old_(old), made_(made), report_(report), layout_(made.layout()), row_(layout_) {}

  void copyRows(ProgressSteps& steps) {
    double done = 0;
    old_.eachRow([&](RowId id, std::string_view payload) { copyRow(id, payload); },
                 [&] { steps.reach(kRowsShare * ++done / static_cast<double>(old_.leaves())); });
  }
  std::size_t unfit() const { return unfit_; }

  void setAside(RowId id, RowId kept, const IndexDef& index) {
    const std::string record = made_.recordOf(id);
    const RecordView view(layout_, record);
    std::string text = "record " + std::to_string(id) + " has the same key in " +
                       (index.name.empty() ? std::string("the primary index") : "'" + index.name + "'") +
                       " as record " + std::to_string(kept) + ":";
    const char* before = " ";
    for (int i = 0; i < layout_.fieldCount(); ++i) {
      if (view.isNull(i)) continue;
      text += std::exchange(before, ", ") + layout_.field(i).name + " = " +
              (isBlobType(layout_.field(i).type) ? made_.contentOf(view.blobRef(i)) : view.get(i).toText());
    }
    report_.setAside.push_back(text);
  }

  // Counts the rows that were there and are not here; above the ids of all of them goes on what is inserted later.
  RowId countLost() {
    if (!old_.wholeTree())
      old_.eachKnownRow([&](RowId id) {
        if (!made_.has(id)) lost_.insert(id);
      });
    const std::uint64_t saved = made_.rows() + report_.setAside.size();
    const std::uint64_t missing = old_.rowsExpected() > saved ? old_.rowsExpected() - saved : 0;
    report_.lostRows = std::max<std::uint64_t>(lost_.size(), missing);
    report_.lostIds.assign(lost_.begin(), lost_.end());
    for (const RowId id : lost_) tell(report_.losses, "record " + std::to_string(id) + " is lost");
    return lost_.empty() ? 1 : *lost_.rbegin() + 1;
  }

 private:
  void copyRow(RowId id, std::string_view payload) {
    if (id == 0) return;
    if (!old_.record(payload, record_) || !RecordView::wellFormed(layout_, record_)) {
      ++unfit_;
      if (!made_.has(id)) lost_.insert(id);
      return;
    }
    row_.load(record_);
    contents_.clear();
    const RecordView view(layout_, record_);
    for (int i = 0; i < layout_.fieldCount(); ++i) {
      if (!isBlobType(layout_.field(i).type) || view.isNull(i)) continue;
      if (old_.content(view.blobRef(i), contents_[i].emplace())) continue;
      contents_.erase(i);
      row_.setNull(i);
      ++report_.lostContents;
      tell(report_.losses,
           "the content of '" + layout_.field(i).name + "' of record " + std::to_string(id) + " is lost");
    }
    if (made_.add(id, row_, contents_)) lost_.erase(id);
  }

  Salvage& old_;
  Rebuild& made_;
  RepairReport& report_;
  const RecordLayout& layout_;
  RowBuffer row_;
  BlobContents contents_;
  std::string record_;
  std::set<RowId> lost_;
  std::size_t unfit_ = 0;
};

[[noreturn]] void raiseNoDefinition(const std::string& table) {
  throw StoreError(Code::headerDamaged, "The definition of table '" + table +
                                            "' is destroyed and cannot be had from elsewhere. Bring back a backup.");
}

bool isOfAnother(const TableDef& found, const RepairOptions& options) {
  return options.definition && !equalFolded(found.name, options.definition->name);
}

std::string ofAnother(const std::string& name, const TableDef& found) {
  return "'" + name + kExtensions[kDat] + "' is the file of a table '" + found.name + "'";
}

}  // namespace

// What a check finds in the table; it also brings an interrupted replacement of its files to its end.
std::vector<std::string> Database::faultsOf(const RepairOptions& options, RepairReport& report) {
  const std::string& name = report.table;
  std::vector<std::string> faults;
  const int marker = 0;
  Table* table = nullptr;
  try {
    table = &openTable(name, &marker, true);
    if (isOfAnother(table->definition(), options)) tell(faults, ofAnother(name, table->definition()));
    report.rows = TableVerify(
                      *table, [&](const std::string& what) { tell(faults, what); }, [](int) {})
                      .run()
                      .rows;
  } catch (const StoreError& error) {
    if (table) closeTable(*table, &marker);
    constexpr std::array kDamage = {Code::headerDamaged, Code::damaged, Code::foreign};
    if (std::find(kDamage.begin(), kDamage.end(), error.code()) == kDamage.end()) throw;
    tell(faults, error.what());
    return faults;
  } catch (...) {
    if (table) closeTable(*table, &marker);
    throw;
  }
  closeTable(*table, &marker);
  return faults;
}

RepairReport Database::repairTable(std::string_view name, const RepairOptions& options) {
  refuseInTransaction();
  settle();
  RepairReport report;
  report.table = findName(name);
  if (report.table.empty()) return repairLost(plainName(name), options);
  refuseOpenHere(report.table, "repaired");
  report.bytesBefore = report.bytesAfter = bytesOf(report.table);
  report.faults = faultsOf(options, report);
  if (report.faults.empty() && !options.evenIfSound) return report;

  endStandBy(report.table);  // or the old files would stay on the disk, nameless
  // Not as a table: it may not be one that can be opened.
  const std::string path = findFile(files_, folder_, report.table + kExtensions[kDat]);
  const auto lockFile = files_.open(path, OpenMode::existing);
  TableLocks locks(*lockFile);
  takeLock(report.table, LockKind::exclusiveOpen, 0, [&] { return locks.tryOpen(this, true); });
  auto dat = files_.open(path, OpenMode::existing);
  // While the lock was waited for the table was replaced: then ours is on a file without a name.
  if (!dat->lockedByOther(kOpenByte, 1, LockMode::shared)) return repairTable(name, options);
  noteLock(report.table, LockKind::exclusiveOpen, 0);
  try {
    if (protocol_) protocol_->catchUp();
    rebuildFrom(std::move(dat), options, report);
  } catch (...) {
    forgetLock(report.table, LockKind::exclusiveOpen, 0);
    throw;
  }
  forgetLock(report.table, LockKind::exclusiveOpen, 0);
  return report;
}

// An empty file takes the place of the .DAT file, so that what goes on is the repair of a table of which nothing is
// left.
RepairReport Database::repairLost(const std::string& wanted, const RepairOptions& options) {
  const bool named = options.definition && equalFolded(options.definition->name, wanted);
  const std::string name = named ? options.definition->name : wanted;  // as it is spelled
  const auto leaves = [&](Role role) { return files_.exists(findFile(files_, folder_, name + kExtensions[role])); };
  if (inMemory() || (!options.definition && !leaves(kIdx) && !leaves(kBlb)))
    throw StoreError(Code::noSuchTable, "Table '" + name + "' is not in the folder '" + folder_ + "'.");
  if (!options.definition) raiseNoDefinition(name);
  const std::string path = folder_ + "/" + name + kExtensions[kDat];
  {
    const CommitProtocol::Quiet alone(*protocol_, CommitProtocol::Quiet::Journal::asItIs);
    if (!exists(name)) files_.open(path, OpenMode::createNew);
  }
  try {
    RepairReport report = repairTable(name, options);
    report.faults.assign({"'" + name + kExtensions[kDat] + "' is missing"});
    return report;
  } catch (...) {
    try {
      const CommitProtocol::Quiet alone(*protocol_, CommitProtocol::Quiet::Journal::asItIs);
      if (files_.exists(path) && files_.open(path, OpenMode::existing)->size() == 0) files_.remove(path);
    } catch (const StoreError&) {
      // An empty file is as good as none to the next repair.
    }
    throw;
  }
}

void Database::rebuildFrom(std::unique_ptr<File> dat, const RepairOptions& options, RepairReport& report) {
  const std::string& name = report.table;
  ProgressSteps steps(session_.settings().progressSteps, options.progress);
  const Salvage::Lost lost = [&](const std::string& what) { tell(report.losses, what); };
  std::optional<Salvage> salvage;
  salvage.emplace(files_, session_.cache(), folder_, name, std::move(dat), lost);
  std::optional<TableDef> definition = salvage->definition();
  if (definition && isOfAnother(*definition, options)) {
    const std::string fault = ofAnother(name, *definition);
    if (std::ranges::count(report.faults, fault) == 0) report.faults.push_back(fault);
    report.losses.clear();  // what is missing in the other's file is no loss of this table
    salvage.emplace(files_, session_.cache(), folder_, name, files_.openScratch(folder_), lost);
    definition.reset();
  }
  Salvage& old = *salvage;
  if (definition && options.definition && *definition != *options.definition)
    tell(report.losses, "the definition in '" + name + ".DAT' is not the one that table '" + name + "' should have");
  const bool given = !definition && options.definition;
  if (given) definition = *options.definition;
  if (!definition) raiseNoDefinition(name);
  Rebuild made(*this, name, *definition, newFileId(name, old.fileId()));
  Repair repair(old, made, report);
  repair.copyRows(steps);
  // Records that do not fit tell that the table was defined otherwise.
  if (given && repair.unfit() > made.rows()) raiseNoDefinition(name);
  made.buildIndexes(
      [&](RowId row, RowId kept, int index) {
        repair.setAside(row, kept, definition->indexes[static_cast<std::size_t>(index)]);
      },
      [&](double share) { steps.reach(kRowsShare + (1 - kRowsShare) * share); });
  const RowId beyondLost = repair.countLost();
  const bool numbers = old.headerSound();
  made.finish(numbers ? old.meta().nextRow : beyondLost, numbers ? old.meta().autoInc : 0);
  report.rows = made.rows();
  report.bytesAfter = made.bytes();
  if (!report.lossless() && report.bytesBefore > 0)
    report.keptAs = freeSuffix(files_, folder_ + "/" + name + kExtensions[kDat], kDamagedSuffix);
  made.install(report.keptAs);
  report.rebuilt = true;
  steps.reach(1);
}

}  // namespace quillon::store
