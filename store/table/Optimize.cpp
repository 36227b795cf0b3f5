// A table is made anew from its rows, smaller and in order.
#include <optional>

#include "base/Text.h"
#include "store/Errors.h"
#include "store/Session.h"
#include "store/table/Rebuild.h"
#include "store/verify/TableVerify.h"
#include "store/vfs/FileNames.h"

namespace quillon::store {
namespace {

// Of the work; the rest are indexes.
constexpr double kCheckedShare = 0.3, kCopiedShare = 0.7;

[[noreturn]] void raiseDamaged(const std::string& table, const std::string& fault) {
  throw StoreError(Code::damaged, "Table '" + table + "' is damaged and was left as it is: " + fault +
                                      ". Run Pack/Repair on the company.");
}

// What is made anew is made from the records; a fault in what is thrown away for it must not go unnoticed.
void check(Table& table, ProgressSteps& steps) {
  std::optional<std::string> first;
  TableVerify(
      table,
      [&](const std::string& fault) {
        if (!first) first = fault;
      },
      [&](int percent) { steps.reach(kCheckedShare * percent / 100); })
      .run();
  if (first) raiseDamaged(table.name(), *first);
}

void copyRows(Table& source, Rebuild& target, ProgressSteps& steps) {
  const RecordLayout& layout = source.layout();
  RowBuffer row(target.layout());
  BlobContents contents;
  std::string scratch;
  const auto count = static_cast<double>(source.rowCount());
  double done = 0;
  TreeWalk walk(source.rows());
  for (bool found = walk.first(); found; found = walk.next()) {
    const std::string_view record = source.record(walk.payload(), scratch);
    const RecordView view(layout, record);
    row.load(record);
    contents.clear();
    for (int i = 0; i < layout.fieldCount(); ++i)
      if (isBlobType(layout.field(i).type) && !view.isNull(i)) contents[i] = source.readBlob(view.blobRef(i));
    target.add(Table::rowOfKey(walk.key()), row, contents);
    steps.reach(kCheckedShare + (kCopiedShare - kCheckedShare) * ++done / count);
  }
}

}  // namespace

void Database::refuseOpenHere(const std::string& name, const char* deed) const {
  if (!isOpenHere(name)) return;
  throw StoreError(Code::tableInUse, "Table '" + name + "' is in use by this program and cannot be " + deed +
                                         ". Close the windows that show it.");
}

std::uint64_t Database::bytesOf(const std::string& name) {
  std::uint64_t bytes = 0;
  for (const char* extension : kExtensions) {
    const std::string path = findFile(files_, folder_, name + extension);
    if (files_.exists(path)) bytes += files_.open(path, OpenMode::existing)->size();
  }
  return bytes;
}

OptimizeReport Database::optimizeTable(std::string_view name, const OptimizeOptions& options) {
  refuseInTransaction();
  settle();
  OptimizeReport report;
  report.table = findName(name);
  refuseOpenHere(report.table, "optimized");
  const int marker = 0;
  Table& table = openTable(name, &marker, true);
  try {
    const Table::Reading reading(table);
    ProgressSteps steps(session_.settings().progressSteps, options.progress);
    check(table, steps);
    Rebuild rebuild(*this, report.table, table.definition(), newFileId(report.table, table.files().fileId()));
    copyRows(table, rebuild, steps);
    rebuild.buildIndexes(
        [&](RowId row, RowId kept, int) {
          raiseDamaged(report.table,
                       "records " + std::to_string(kept) + " and " + std::to_string(row) + " have the same key");
        },
        [&](double share) { steps.reach(kCopiedShare + (1 - kCopiedShare) * share); });
    rebuild.finish(table.files().meta().nextRow, table.files().meta().autoInc);
    report.rows = rebuild.rows();
    report.bytesBefore = bytesOf(report.table);
    report.replaced = rebuild.bytes() <= report.bytesBefore && !rebuild.isAsBefore();
    if (report.replaced) rebuild.install(options.keepOld ? kOldSuffix : "");
    report.bytesAfter = report.replaced ? rebuild.bytes() : report.bytesBefore;
    steps.reach(1);
  } catch (...) {
    closeTable(table, &marker);
    throw;
  }
  closeTable(table, &marker);
  if (report.replaced) endStandBy(report.table);  // or the old files would stay on the disk, nameless
  return report;
}

}  // namespace quillon::store
