#include "store/table/TableFiles.h"

#include <algorithm>
#include <vector>

#include "store/Errors.h"
#include "store/vfs/File.h"
#include "store/vfs/FileNames.h"

namespace quillon::store {
namespace {

constexpr std::uint64_t kMagic = 0x1A4E4F4C4C495551;  // "QUILLON\x1a"
constexpr std::size_t kLivePlace = 64;
constexpr std::size_t kSchemaBody = kPageBody + 4;  // behind the number of the next schema page
constexpr std::size_t kSchemaPart = kPageSize - kSchemaBody;

std::array<std::byte, 32> identity(std::uint64_t fileId, Role role) {
  std::array<std::byte, 32> bytes{};
  storeAt(bytes.data(), 0, kMagic);
  storeAt(bytes.data(), 8, kFormatVersion);
  storeAt<std::uint32_t>(bytes.data(), 12, role);
  storeAt(bytes.data(), 16, fileId);
  storeAt(bytes.data(), 24, hashBytes(bytes.data(), 24));
  return bytes;
}

std::array<std::byte, 24> liveBytes(const LiveState& live) {
  std::array<std::byte, 24> bytes{};
  storeAt(bytes.data(), 0, live.stamp);
  storeAt<std::uint32_t>(bytes.data(), 8, live.applying ? 1 : 0);
  storeAt<std::uint32_t>(bytes.data(), 12, live.waiting ? 1 : 0);
  storeAt(bytes.data(), 16, hashBytes(bytes.data(), 16));
  return bytes;
}

// The meta page, field by field from byte 24 on; `Transfer` reads or writes one field.
template <typename Meta, typename Transfer>
void transferMeta(Meta& meta, Transfer&& field) {
  field(meta.stamp);
  field(meta.epochKey);
  field(meta.adoptedAt);
  field(meta.nextRow);
  field(meta.autoInc);
  for (auto& space : meta.space) {
    field(space.pages);
    field(space.freeHead);
    field(space.freePages);
  }
  field(meta.blobs.freeHead);
  field(meta.blobs.freeBlocks);
  field(meta.rows);
  field(meta.schema);
  field(meta.schemaBytes);
  for (auto& root : meta.indexes) field(root);
}

void encodeMeta(const TableMeta& meta, std::byte* page) {
  std::size_t at = kPageBody;
  transferMeta(meta, [&](const auto& value) {
    storeAt(page, at, value);
    at += sizeof value;
  });
}

void decodeMeta(TableMeta& meta, const std::byte* page) {
  std::size_t at = kPageBody;
  transferMeta(meta, [&](auto& value) {
    value = loadAt<std::remove_reference_t<decltype(value)>>(page, at);
    at += sizeof value;
  });
}

void startPage(std::byte* page, PageNo number, PageKind kind) {
  std::memset(page, 0, kPageSize);
  storeAt<PageNo>(page, 16, number);
  page[20] = static_cast<std::byte>(kind);
}

// Of a .DAT file without rows, behind the first.
std::vector<std::byte> firstPages(const std::string& name, std::uint64_t fileId, const std::string& schema,
                                  std::size_t indexes) {
  if (indexes > kMaxIndexes) throw StoreError(Code::badDefinition, "Table '" + name + "' has too many indexes.");
  TableMeta meta;
  const std::size_t schemaPages = (schema.size() + kSchemaPart - 1) / kSchemaPart;
  meta.space[kDat].pages = static_cast<std::uint32_t>(2 + schemaPages);
  meta.schema = 2;
  meta.schemaBytes = static_cast<std::uint32_t>(schema.size());
  std::vector<std::byte> pages((1 + schemaPages) * kPageSize);
  startPage(pages.data(), kMetaPage, PageKind::meta);
  encodeMeta(meta, pages.data());
  for (std::size_t i = 0; i < schemaPages; ++i) {
    std::byte* page = pages.data() + (1 + i) * kPageSize;
    startPage(page, static_cast<PageNo>(2 + i), PageKind::schema);
    storeAt<PageNo>(page, kPageBody, i + 1 < schemaPages ? static_cast<PageNo>(3 + i) : 0);
    const std::size_t part = std::min(kSchemaPart, schema.size() - i * kSchemaPart);
    std::memcpy(page + kSchemaBody, schema.data() + i * kSchemaPart, part);
  }
  for (std::size_t at = 0; at < pages.size(); at += kPageSize) sealPage(pages.data() + at, fileId ^ kDat, 0);
  return pages;
}

// `pages` follow in .DAT only.
void writeNew(FileSystem& files, const std::string& path, Role role, std::uint64_t fileId,
              const std::vector<std::byte>& pages) {
  const auto file = files.open(path, OpenMode::createNew);
  std::vector<std::byte> bytes(kPageSize);
  const auto head = identity(fileId, role);
  std::copy(head.begin(), head.end(), bytes.begin());
  if (role == kDat) {
    const auto live = liveBytes({});
    std::copy(live.begin(), live.end(), bytes.begin() + kLivePlace);
    bytes.insert(bytes.end(), pages.begin(), pages.end());
  }
  file->write(0, bytes);
}

}  // namespace

std::optional<LiveState> soundLiveState(File& dat) {
  std::array<std::byte, 24> bytes;
  if (dat.read(kLivePlace, bytes.data(), bytes.size()) != bytes.size() ||
      loadAt<std::uint64_t>(bytes.data(), 16) != hashBytes(bytes.data(), 16))
    return std::nullopt;
  return LiveState{loadAt<std::uint64_t>(bytes.data(), 0), loadAt<std::uint32_t>(bytes.data(), 8) != 0,
                   loadAt<std::uint32_t>(bytes.data(), 12) != 0};
}

void writeLiveState(File& dat, const LiveState& live) {
  const std::array<std::byte, 24> bytes = liveBytes(live);
  dat.write(kLivePlace, bytes);
}

void TableFiles::prepare(FileSystem& files, const std::string& folder, const std::string& name, std::uint64_t fileId,
                         const std::string& schema, std::size_t indexes, std::vector<std::string>& written) {
  const std::vector<std::byte> pages = firstPages(name, fileId, schema, indexes);
  for (const Role role : {kBlb, kIdx, kDat}) {
    const std::string path = folder + "/" + name + kExtensions[role];
    files.remove(path + kNewSuffix);
    writeNew(files, path + kNewSuffix, role, fileId, pages);
    if (role != kDat) files.rename(path + kNewSuffix, path);
    written.push_back(name + kExtensions[role] + (role == kDat ? kNewSuffix : ""));
  }
}

void TableFiles::make(FileSystem& files, const std::string& folder, const std::string& name, std::uint64_t fileId,
                      const std::string& schema, std::size_t indexes) {
  const std::vector<std::byte> pages = firstPages(name, fileId, schema, indexes);
  for (const Role role : {kBlb, kIdx, kDat})
    writeNew(files, folder + "/" + name + kExtensions[role], role, fileId, pages);
}

void TableFiles::appear(FileSystem& files, const std::string& folder, const std::string& name) {
  const std::string path = folder + "/" + name + kExtensions[kDat];
  files.rename(path + kNewSuffix, path);
}

std::uint64_t TableFiles::checkIdentity(File& file, const std::string& name, Role role) {
  std::array<std::byte, 32> bytes{};
  const std::size_t got = file.read(0, bytes.data(), bytes.size());
  const std::string called = "'" + name + kExtensions[role] + "'";
  if (got == bytes.size() && loadAt<std::uint64_t>(bytes.data(), 0) != kMagic && bytes != std::array<std::byte, 32>{})
    throw StoreError(Code::foreign, called + " is not a table file of this program. Take it out of the folder.");
  if (got != bytes.size() || loadAt<std::uint64_t>(bytes.data(), 24) != hashBytes(bytes.data(), 24))
    throw StoreError(Code::headerDamaged, "The header of " + called + " is damaged. Run Pack/Repair on the company.");
  if (loadAt<std::uint32_t>(bytes.data(), 8) > kFormatVersion)
    throw StoreError(Code::newerFormat, called + " was written by a later version of this program. Use that version.");
  if (loadAt<std::uint32_t>(bytes.data(), 12) != role)
    throw StoreError(Code::foreign, called + " is another kind of table file that was renamed. Bring back a backup.");
  return loadAt<std::uint64_t>(bytes.data(), 16);
}

TableFiles::TableFiles(FileSystem& files, PageCache& cache, const std::string& folder, std::string name)
    : name_(std::move(name)) {
  for (const Role role : {kDat, kIdx, kBlb}) {
    const std::string fileName = name_ + kExtensions[role];
    std::unique_ptr<File> file;
    try {
      paths_[role] = findFile(files, folder, fileName);
      file = files.open(paths_[role], OpenMode::existing);
    } catch (const IoError& error) {
      if (error.code() != Code::noSuchTable || role == kDat) throw;
      throw StoreError(Code::headerDamaged,
                       "'" + fileName + "' of table '" + name_ + "' is missing. Run Pack/Repair on the company.");
    }
    const std::uint64_t id = checkIdentity(*file, name_, role);
    if (role == kDat) fileId_ = id;
    if (id != fileId_)
      throw StoreError(Code::foreign, "'" + fileName + "' belongs to another table file than '" + name_ +
                                          ".DAT'. Run Pack/Repair on the company.");
    files_[role] = std::make_unique<PageFile>(cache, std::move(file), fileName, fileId_ ^ role, meta_.space[role]);
  }
}

bool TableFiles::isInPlace(FileSystem& files) {
  for (const Role role : {kDat, kIdx, kBlb})
    if (!files.isNamed(paths_[role], files_[role]->file()) ||
        checkIdentity(files_[role]->file(), name_, role) != fileId_)
      return false;
  return true;
}

LiveState TableFiles::readLive() {
  const std::optional<LiveState> live = soundLiveState(lockFile());
  if (live) return *live;
  throw StoreError(Code::headerDamaged,
                   "The header of table '" + name_ + "' is damaged. Run Pack/Repair on the company.");
}

void TableFiles::writeLive(const LiveState& live) { writeLiveState(lockFile(), live); }

TableMeta TableFiles::readMeta(PageFile& dat, const std::string& name) {
  try {
    const PageRef page = dat.read(kMetaPage);
    if (pageKind(page.data()) != PageKind::meta) throw StoreError(Code::damaged, "");
    TableMeta meta;
    decodeMeta(meta, page.data());
    return meta;
  } catch (const StoreError& error) {
    if (error.code() != Code::damaged) throw;
    throw StoreError(Code::headerDamaged,
                     "The header of table '" + name + "' is damaged. Run Pack/Repair on the company.");
  }
}

void TableFiles::loadMeta() {
  meta_ = readMeta(*files_[kDat], name_);
  metaStale_ = false;
}

void TableFiles::storeMeta(std::uint64_t commit) {
  meta_.stamp = commit;
  encodeMeta(meta_, files_[kDat]->write(kMetaPage).writable());
}

std::string TableFiles::readSchema(PageFile& dat, const std::string& name, PageNo first, std::uint32_t bytes) {
  std::string schema;
  PageNo next = first;
  while (schema.size() < bytes) {
    const PageRef page = dat.read(next);
    if (pageKind(page.data()) != PageKind::schema)
      throw StoreError(Code::headerDamaged, "The definition of table '" + name + "' is damaged. Run Pack/Repair.");
    const std::size_t part = std::min<std::size_t>(kSchemaPart, bytes - schema.size());
    schema.append(reinterpret_cast<const char*>(page.data()) + kSchemaBody, part);
    next = loadAt<PageNo>(page.data(), kPageBody);
  }
  return schema;
}

void TableFiles::writeSchema(const std::string& schema) {
  meta_.schema = 0;
  meta_.schemaBytes = static_cast<std::uint32_t>(schema.size());
  PageRef last;
  for (std::size_t at = 0; at < schema.size(); at += kSchemaPart) {
    PageRef page = files_[kDat]->allocate(PageKind::schema);
    std::memcpy(page.writable() + kSchemaBody, schema.data() + at, std::min(kSchemaPart, schema.size() - at));
    if (last)
      storeAt<PageNo>(last.writable(), kPageBody, page.number());
    else
      meta_.schema = page.number();
    last = page;
  }
}

bool TableFiles::changed() const {
  return std::any_of(files_.begin(), files_.end(), [](const auto& file) { return file->dirtyPages() > 0; });
}

void TableFiles::published(std::uint64_t commit) {
  setStamp(commit);
  for (const auto& file : files_) file->published();
}

void TableFiles::discard() {
  for (const auto& file : files_) file->discard();
  metaStale_ = true;
}

void TableFiles::forget(std::uint64_t newStamp) {
  for (const auto& file : files_) file->forget();
  metaStale_ = true;
  setStamp(newStamp);
}

void TableFiles::setStamp(std::uint64_t stamp) {
  stamp_ = stamp;
  for (const auto& file : files_) file->setNewestStamp(stamp);
}

void TableFiles::setSpill(const std::function<SpillFile*()>& spill) {
  for (const auto& file : files_) file->setSpill(spill);
}

}  // namespace quillon::store
