#include "store/verify/TableVerify.h"

#include <algorithm>

#include "store/Database.h"
#include "store/Errors.h"
#include "store/tree/Tree.h"

namespace quillon::store {
namespace {

// The payload of a row and its overflow pages, told here a second time: a checker that shares the code of what it
// checks shares its faults.
//   0 record     or     1 u32 first page, u32 length
//   overflow page: u32 next page, u32 bytes used, data
constexpr std::size_t kOverflowNext = kPageBody;
constexpr std::size_t kOverflowUsed = kPageBody + 4;
constexpr std::size_t kOverflowData = kPageBody + 8;

}  // namespace

void TableVerify::Keys::add(std::string_view key) {
  ++count;
  sum += hashBytes(key.data(), key.size());
}

TableVerify::TableVerify(Table& table, FileVerify::Tell tell, std::function<void(int)> percent)
    : table_(table), tell_(std::move(tell)), percent_(std::move(percent)) {}

TableReport TableVerify::run() {
  const Table::Reading reading(table_);
  meta_ = table_.files().meta();
  const LiveState live =
      table_.database().inMemory() ? LiveState{meta_.stamp, false, false} : table_.files().readLive();
  for (const Role role : {kDat, kIdx, kBlb})
    files_[role] = std::make_unique<FileVerify>(table_.files().file(role), role, meta_.space[role], live.stamp, tell_);
  checkHeader(live);
  checkPages();
  checkRows();
  for (int i = 0; i < static_cast<int>(table_.definition().indexes.size()); ++i) checkIndex(i);
  // Without all rows nobody knows which contents are used.
  if (rowsSound_ && files_[kBlb]->inReach()) blobs_->finish();
  files_[kBlb]->useAll(PageKind::blob);
  for (const auto& file : files_) file->finish();
  percent_(100);
  TableReport report{table_.name(), rows_, 0};
  for (const auto& file : files_) report.pages += file->pages();
  return report;
}

void TableVerify::checkHeader(const LiveState& live) {
  FileVerify& dat = *files_[kDat];
  if (live.applying) dat.tell("is marked as being written, and nobody writes it");
  if (live.stamp != meta_.stamp)
    dat.tell("is at commit " + std::to_string(live.stamp) + ", its header is of " + std::to_string(meta_.stamp));
  for (std::size_t i = table_.definition().indexes.size(); i < kMaxIndexes; ++i)
    if (meta_.indexes[i] != 0) dat.tell("has the tree of an index that is not defined");
}

void TableVerify::checkPages() {
  std::uint64_t total = 0, done = 0;
  int last = -1;
  for (const auto& file : files_) total += file->pages();
  for (const auto& file : files_)
    file->checkPages([&](std::uint32_t pages) {
      done += pages;
      const int percent = static_cast<int>(done * 50 / total);
      if (percent != last) percent_(last = percent);
    });
}

void TableVerify::useSchema() {
  FileVerify& dat = *files_[kDat];
  dat.use(1);  // meta
  constexpr std::size_t kPart = kPageSize - kPageBody - 4;
  PageNo next = meta_.schema;
  for (std::size_t left = meta_.schemaBytes; left > 0; left -= std::min(left, kPart)) {
    if (!dat.use(next) || dat.isBad(next)) return;
    next = loadAt<PageNo>(dat.file().read(next).data(), kPageBody);
  }
}

void TableVerify::checkRows() {
  useSchema();
  wanted_.resize(table_.definition().indexes.size());
  blobs_.emplace(files_[kBlb]->file(), meta_.blobs, files_[kBlb]->pages(),
                 [this](const std::string& what) { tell_(contentOf_.empty() ? what : contentOf_ + ": " + what); });
  rowsSound_ =
      files_[kDat]->checkTree(meta_.rows, [this](auto key, auto payload) { checkRow(key, payload); }) && rowsSound_;
  if (highest_ > meta_.autoInc)
    tellRow(highestRow_, "has the automatic number " + std::to_string(highest_) + ", the header is at " +
                             std::to_string(meta_.autoInc));
}

void TableVerify::tellRow(RowId row, const std::string& what) {
  files_[kDat]->tell("record " + std::to_string(row) + " " + what);
}

void TableVerify::checkRow(std::string_view key, std::string_view payload) {
  ++rows_;
  if (key.size() != KeyCodec::kRowBytes) {
    rowsSound_ = files_[kDat]->tell("the key of a record has " + std::to_string(key.size()) + " bytes");
    return;
  }
  const RowId row = Table::rowOfKey(key);
  if (row == 0 || row >= meta_.nextRow)
    tellRow(row, "is not below the next row number " + std::to_string(meta_.nextRow));
  if (!recordOf(payload, row)) {
    rowsSound_ = false;
    return;
  }
  if (!RecordView::wellFormed(table_.layout(), record_)) {
    tellRow(row, "is not well formed");
    rowsSound_ = false;
    return;
  }
  const RecordView view(table_.layout(), record_);
  for (std::size_t i = 0; i < wanted_.size(); ++i) {
    table_.codec(static_cast<int>(i)).encode(view, row, key_);
    wanted_[i].add(key_);
  }
  checkContents(view, row);
}

void TableVerify::checkContents(const RecordView& view, RowId row) {
  const RecordLayout& layout = table_.layout();
  for (int i = 0; i < layout.fieldCount(); ++i) {
    const FieldDef& field = layout.field(i);
    if (field.type == FieldType::autoInc && !view.isNull(i) && view.integer(i) > highest_) {
      highest_ = view.integer(i);
      highestRow_ = row;
    }
    if (!isBlobType(field.type) || view.isNull(i)) continue;
    contentOf_ = "the content of '" + field.name + "' of record " + std::to_string(row);
    blobs_->content(view.blobRef(i));
    contentOf_.clear();
  }
}

bool TableVerify::recordOf(std::string_view payload, RowId row) {
  const auto refuse = [&](const char* what) {
    tellRow(row, what);
    return false;
  };
  if (payload.empty() || static_cast<unsigned char>(payload[0]) > 1) return refuse("is of no known kind");
  if (payload[0] == 0) {
    record_.assign(payload.substr(1));
    return true;
  }
  if (payload.size() != 9) return refuse("names no place of its bytes");
  const auto* at = reinterpret_cast<const std::byte*>(payload.data());
  PageNo next = loadAt<PageNo>(at, 1);
  const auto length = loadAt<std::uint32_t>(at, 5);
  FileVerify& dat = *files_[kDat];
  record_.clear();
  while (next != 0) {
    if (!dat.use(next)) return false;
    if (dat.isBad(next)) return refuse("has a damaged page");
    const PageRef page = dat.file().read(next);
    const auto used = loadAt<std::uint32_t>(page.data(), kOverflowUsed);
    if (pageKind(page.data()) != PageKind::overflow || used == 0 || used > kPageSize - kOverflowData)
      return refuse("has a page that is not one of a long record");
    record_.append(reinterpret_cast<const char*>(page.data()) + kOverflowData, used);
    next = loadAt<PageNo>(page.data(), kOverflowNext);
  }
  if (record_.size() != length) return refuse("has the wrong length");
  return true;
}

std::string TableVerify::nameOf(int index) const {
  const std::string& name = table_.definition().indexes[static_cast<std::size_t>(index)].name;
  return name.empty() ? "the primary index" : "the index '" + name + "'";
}

void TableVerify::checkIndex(int position) {
  FileVerify& idx = *files_[kIdx];
  const auto at = static_cast<std::size_t>(position);
  const bool unique = table_.codec(position).unique();
  Keys found;
  std::string before;
  const bool treeSound = idx.checkTree(meta_.indexes[at], [&](std::string_view key, std::string_view payload) {
    found.add(key);
    if (!payload.empty()) idx.tell(nameOf(position) + " has a payload in a key");
    if (key.size() < KeyCodec::kRowBytes) {
      idx.tell(nameOf(position) + " has a key that is too short");
    } else if (unique) {
      if (!before.empty() && KeyCodec::fieldsOf(before) == KeyCodec::fieldsOf(key))
        idx.tell(nameOf(position) + " has the same key for the records " + std::to_string(KeyCodec::rowOf(before)) +
                 " and " + std::to_string(KeyCodec::rowOf(key)));
      before.assign(key);
    }
  });
  percent_(50 + static_cast<int>(50 * (at + 1) / (table_.definition().indexes.size() + 1)));
  if (!treeSound || !rowsSound_ || found == wanted_[at]) return;
  idx.tell(nameOf(position) + " does not fit the records: it has " + std::to_string(found.count) + " keys for " +
           std::to_string(wanted_[at].count) + " records");
  findMissing(position);
  findExtra(position);
}

void TableVerify::findMissing(int position) {
  TreeWalk keys(table_.index(position));
  TreeWalk rows(table_.rows());
  for (bool more = rows.first(); more; more = rows.next()) {
    const RowId row = Table::rowOfKey(rows.key());
    std::string scratch;
    const std::string record(table_.record(rows.payload(), scratch));
    table_.codec(position).encode(RecordView(table_.layout(), record), row, key_);
    if (!keys.seek(key_) || keys.key() != key_)
      files_[kIdx]->tell("record " + std::to_string(row) + " has no key in " + nameOf(position));
  }
}

void TableVerify::findExtra(int position) {
  TreeWalk keys(table_.index(position));
  for (bool more = keys.first(); more; more = keys.next()) {
    if (keys.key().size() < KeyCodec::kRowBytes) continue;
    const RowId row = KeyCodec::rowOf(keys.key());
    const bool there = table_.readRow(row, record_);
    if (there) table_.codec(position).encode(RecordView(table_.layout(), record_), row, key_);
    if (!there || key_ != keys.key())
      files_[kIdx]->tell(nameOf(position) + " has a key of record " + std::to_string(row) +
                         (there ? " that is not the record's" : ", which is not there"));
  }
}

}  // namespace quillon::store
