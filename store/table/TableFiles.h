#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "store/Schema.h"
#include "store/journal/Journal.h"
#include "store/locks/TableLocks.h"
#include "store/pages/PageFile.h"
#include "store/table/BlobStore.h"

namespace quillon::store {

class FileSystem;

inline constexpr std::uint32_t kFormatVersion = 1;

inline constexpr std::array<const char*, 3> kExtensions = {".DAT", ".IDX", ".BLB"};
inline constexpr const char* kNewSuffix = "~new";  // behind the name of a file that is no part of a table yet
inline constexpr PageNo kMetaPage = 1;             // of a .DAT file
enum Role : std::uint8_t { kDat = 0, kIdx = 1, kBlb = 2 };

// The first page of each file:
//   0  u64 magic, u32 format version, u32 role, u64 file id (one for the three files), u64 checksum of these
//  64  (.DAT only) the live area: u64 stamp, u32 applying, u32 waiting, u64 checksum. Written by whoever holds the
//  apply lock
//      exclusively, never through the overlay; a sector keeps it whole.
struct LiveState {
  std::uint64_t stamp = 0;  // the last commit whose pages are all in place
  bool applying = false;    // a commit's pages are being written; with the apply lock in hand: its writer died
  bool waiting = false;     // a writer waits for the apply lock (believe it only while the intent byte is locked)
};

// What changes with a table's contents: page 1 of the .DAT file.
struct TableMeta {
  std::uint64_t stamp = 0;
  std::uint64_t epochKey = 0;   // of the journal's epoch in which it was last published
  std::uint64_t adoptedAt = 0;  // pages with stamps up to this have no whole image in that epoch of the journal
  RowId nextRow = 1;
  std::int64_t autoInc = 0;  // the last number given
  std::array<PageSpace, 3> space;
  BlobSpace blobs;
  PageNo rows = 0;  // root of the records' tree
  std::array<PageNo, kMaxIndexes> indexes{};
  PageNo schema = 0;  // first of the schema's pages
  std::uint32_t schemaBytes = 0;
};

// The three files of an open table, its meta page and its apply lock. No knowledge of rows.
class TableFiles {
 public:
  // Makes a table without rows in two steps: `prepare` writes all three files, of which .DAT still has another name,
  // and adds to `written` what must be synced, with the folder, before `appear` gives it its own; then the folder
  // again. Without a .DAT file there is no table, so that a cut at any moment leaves the whole table or none. What an
  // earlier cut left behind is replaced.
  static void prepare(FileSystem& files, const std::string& folder, const std::string& name, std::uint64_t fileId,
                      const std::string& schema, std::size_t indexes, std::vector<std::string>& written);
  static void appear(FileSystem& files, const std::string& folder, const std::string& name);
  // The same at once and under their own names, for files that are no table yet whatever they are called. tableExists.
  static void make(FileSystem& files, const std::string& folder, const std::string& name, std::uint64_t fileId,
                   const std::string& schema, std::size_t indexes);
  // Raises noSuchTable, headerDamaged, foreign, newerFormat. Reads nothing that needs a lock but the identity.
  TableFiles(FileSystem& files, PageCache& cache, const std::string& folder, std::string name);

  const std::string& name() const { return name_; }
  // Whether the three names still name these files, and they are of this table. headerDamaged, foreign, newerFormat.
  bool isInPlace(FileSystem& files);
  std::uint64_t fileId() const { return fileId_; }
  PageFile& file(Role role) { return *files_[role]; }
  File& lockFile() { return files_[kDat]->file(); }
  TableMeta& meta() { return meta_; }

  LiveState readLive();  // headerDamaged
  void writeLive(const LiveState& live);
  bool tryApply(LockMode mode) { return lockFile().lock(kApplyByte, 1, mode); }
  void releaseApply() noexcept { lockFile().unlock(kApplyByte, 1); }

  // The commit that what is cached belongs to.
  std::uint64_t stamp() const { return stamp_; }
  JournalSpot spot;  // a journal place at or before the first record behind `stamp`

  void loadMeta();                       // from its page; under the locks that reading asks for
  void storeMeta(std::uint64_t commit);  // into its page, as part of the overlay
  std::string readSchema() { return readSchema(*files_[kDat], name_, meta_.schema, meta_.schemaBytes); }
  void writeSchema(const std::string& schema);  // into new pages, as part of the overlay
  bool changed() const;                         // has an overlay
  void published(std::uint64_t commit);
  void discard();                                // the overlay; never raises
  void forget(std::uint64_t newStamp);           // everything cached
  bool metaStale() const { return metaStale_; }  // loadMeta must come before meta() is believed
  void setMetaStale() { metaStale_ = true; }
  void setStamp(std::uint64_t stamp);
  void setSpill(const std::function<SpillFile*()>& spill);

  // The identity of a file on the disk. Raises as the constructor does. Returns the file id.
  static std::uint64_t checkIdentity(File& file, const std::string& name, Role role);
  // The meta page and the definition in a .DAT file that may be damaged. headerDamaged, damaged.
  static TableMeta readMeta(PageFile& dat, const std::string& name);
  static std::string readSchema(PageFile& dat, const std::string& name, PageNo first, std::uint32_t bytes);

 private:
  std::string name_;
  std::uint64_t fileId_ = 0;
  TableMeta meta_;
  std::array<std::unique_ptr<PageFile>, 3> files_;
  std::array<std::string, 3> paths_;
  std::uint64_t stamp_ = ~std::uint64_t{0};
  bool metaStale_ = true;
};

// None: damaged, or a write of it ended half way; the journal then holds what was being applied.
std::optional<LiveState> soundLiveState(File& dat);
void writeLiveState(File& dat, const LiveState& live);

}  // namespace quillon::store
