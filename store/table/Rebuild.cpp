#include "store/table/Rebuild.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "store/Session.h"
#include "store/journal/CommitProtocol.h"
#include "store/sql/Sorter.h"
#include "store/table/ReplaceFiles.h"
#include "store/vfs/FileNames.h"

namespace quillon::store {
namespace {

constexpr std::size_t kMostPages = 1024;                    // changed and not written yet
constexpr std::size_t kSortMemory = std::size_t{16} << 20;  // bytes
constexpr std::size_t kSealed = 16;                         // bytes of a page that say who wrote it when

// Whether two files have the same pages behind `first`, whoever wrote them.
bool samePages(File& a, File& b, PageNo first) {
  const std::uint64_t size = a.size();
  if (b.size() != size) return false;
  std::array<std::byte, kPageSize> left, right;
  for (std::uint64_t at = (std::uint64_t{first} + 1) * kPageSize; at < size; at += kPageSize)
    if (a.read(at, left.data(), kPageSize) != b.read(at, right.data(), kPageSize) ||
        std::memcmp(left.data() + kSealed, right.data() + kSealed, kPageSize - kSealed) != 0)
      return false;
  return true;
}

}  // namespace

Rebuild::Rebuild(Database& database, std::string name, const TableDef& definition, std::uint64_t fileId)
    : database_(database), name_(std::move(name)), files_(database.files(), kNewSuffix) {
  removeNew();  // what an attempt that was broken off has left
  try {
    TableFiles::make(files_, database.folder(), name_, fileId, definition.encode(), definition.indexes.size());
    aside_.reset(new Database(database.session(), files_, database.folder()));
    table_ = &aside_->openTable(name_, this, true);
    change_.emplace(*aside_, *table_);
  } catch (...) {
    giveUp();
    throw;
  }
  for (int i = 0; i < layout().fieldCount(); ++i)
    if (layout().field(i).type == FieldType::autoInc) autoIncField_ = i;
}

Rebuild::~Rebuild() { giveUp(); }

void Rebuild::giveUp() noexcept {
  close();
  if (installing_) return;  // from then on they may be what the table needs
  try {
    removeNew();
  } catch (...) {
    // They stay behind until the next time.
  }
}

void Rebuild::removeNew() {
  for (const char* extension : kExtensions) files_.remove(findFile(files_, database_.folder(), name_ + extension));
}

void Rebuild::close() noexcept {
  change_.reset();
  if (table_) table_->locks().close(this);
  table_ = nullptr;
  aside_.reset();
}

void Rebuild::publish(std::size_t mostPages) {
  std::size_t pages = 0;
  for (const Role role : {kDat, kIdx, kBlb}) pages += table_->files().file(role).dirtyPages();
  if (pages < mostPages) return;
  change_->done();
  change_.emplace(*aside_, *table_);
}

bool Rebuild::add(RowId row, RowBuffer& buffer, const BlobContents& contents) {
  if (!table_->restoreRow(row, buffer, contents)) return false;
  if (autoIncField_ >= 0 && !buffer.isNull(autoIncField_))
    highest_ = std::max(highest_, buffer.get(autoIncField_).asInt64());
  publish(kMostPages);
  return true;
}

std::string Rebuild::recordOf(RowId row) {
  std::string record;
  table_->readRow(row, record);
  return record;
}

void Rebuild::buildIndexes(const SetAside& setAside, const std::function<void(double)>& progress) {
  const int indexes = static_cast<int>(table_->definition().indexes.size());
  for (int position = 0; position < indexes; ++position) {
    buildIndex(position);
    progress(double{1} * (position + 1) / indexes);
  }
  removeTwins(setAside);
}

void Rebuild::buildIndex(int position) {
  sql::Sorter sorter([this] { return database_.files().openScratch(database_.folder()); }, kSortMemory);
  const KeyCodec& codec = table_->codec(position);
  std::string scratch, key;
  TreeWalk walk(table_->rows());
  for (bool found = walk.first(); found; found = walk.next()) {
    const RecordView view(table_->layout(), table_->record(walk.payload(), scratch));
    codec.encode(view, Table::rowOfKey(walk.key()), key);
    sorter.add(key, key);
  }
  std::string before;  // the key of the last row that stays
  sorter.forEach([&](std::string_view next) {
    table_->index(position).insert(next, {});
    publish(kMostPages);
    const RowId row = KeyCodec::rowOf(next);
    if (!codec.unique() || twins_.contains(row)) return true;
    if (!before.empty() && KeyCodec::fieldsOf(before) == KeyCodec::fieldsOf(next))
      twins_.emplace(row, Twin{KeyCodec::rowOf(before), position});
    else
      before.assign(next);
    return true;
  });
}

void Rebuild::removeTwins(const SetAside& setAside) {
  for (const auto& [row, twin] : twins_) {
    setAside(row, twin.kept, twin.index);
    table_->deleteRow(row, recordOf(row));
    publish(kMostPages);
  }
}

void Rebuild::finish(RowId nextRow, std::int64_t autoInc) {
  TableMeta& meta = table_->files().meta();
  meta.nextRow = std::max(meta.nextRow, nextRow);
  meta.autoInc = std::max(autoInc, highest_);
  publish(0);
  std::vector<std::string> names;
  for (const Role role : {kDat, kIdx, kBlb}) {
    PageFile& file = table_->files().file(role);
    file.cut();
    bytes_ += file.file().size();
    names.push_back(name_ + kExtensions[role]);
  }
  files_.syncFiles(database_.folder(), names);
}

bool Rebuild::isAsBefore() {
  for (const Role role : {kDat, kIdx, kBlb}) {
    File& made = table_->files().file(role).file();
    const auto there = database_.files().open(
        findFile(database_.files(), database_.folder(), name_ + kExtensions[role]), OpenMode::existing);
    if (!samePages(made, *there, role == kDat ? kMetaPage : 0)) return false;
  }
  return true;
}

void Rebuild::install(const std::string& keepAs, bool isAlone) {
  close();
  FileSystem& files = database_.files();
  const std::string& folder = database_.folder();
  if (!keepAs.empty()) keepFiles(files, folder, name_, keepAs);
  std::optional<CommitProtocol::Quiet> alone;
  if (!database_.inMemory() && !isAlone) alone.emplace(*database_.protocol(), CommitProtocol::Quiet::Journal::emptied);
  // The names of the new files, and that their .DAT file has another one yet, must be safe before that changes.
  files.syncFolder(folder);
  installing_ = true;
  replaceFiles(files, folder, name_);
}

}  // namespace quillon::store
