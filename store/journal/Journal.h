#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/pages/Page.h"

// The redo journal of a company folder, `Quillon.JNL`: the atomic moment of every publish.
//
//   0      head A     {magic, version, company id, epoch, checkpoint commit, rewrite, epoch key, checksum}; two copies,
//   used in turn, 4096   head B     the valid one with the higher epoch counts 8192   applied    {company id, epoch,
//   offset, commit, checksum}: up to there the records stand in the table files.
//                     A hint that is never synced: when it does not fit the head, nothing counts as applied
//   12288  records    one behind the other, of the head's epoch only
//
// A record:
//   0   u64 magic, u64 company id, u64 epoch, u64 commit, u64 previous commit, u64 length, u32 tables, u32 pages
//   56  u64 checksum of the above and of the directory
//   64  per table {u64 file id, u64 stamp before, u8 length of name, name to 80 bytes}
//       per page  {u16 table, u8 role, u8 whole, u32 number, u32 bytes}
//       page data: a whole image, or changed runs {u16 offset, u16 length, bytes}
//       u64 checksum of all, u64 end mark
namespace quillon::store {

class File;
class FileSystem;
struct Environment;

inline constexpr std::uint64_t kJournalStart = 12288;
inline constexpr std::uint64_t kRecordMagic = 0x4443455243455251;  // "QRECRECD"
inline constexpr std::size_t kRecordHead = 64;
inline constexpr std::uint64_t kCompanyOpenByte = (std::uint64_t{1} << 40) + 1024;
inline constexpr std::uint64_t kCommitByte = kCompanyOpenByte + 1;
inline constexpr const char* kJournalName = "Quillon.JNL";

struct JournalTable {
  std::string name;  // as the files are called, without extension
  std::uint64_t fileId = 0;
  std::uint64_t stampBefore = 0;
};

struct JournalPage {
  std::uint16_t table = 0;  // position in the record's tables
  std::uint8_t role = 0;    // 0 .DAT, 1 .IDX, 2 .BLB
  bool whole = true;
  PageNo number = 0;
  std::uint32_t bytes = 0;
};

struct JournalRecord {
  std::uint64_t offset = 0;
  std::uint64_t length = 0;
  std::uint64_t commit = 0;
  std::uint64_t previous = 0;
  std::vector<JournalTable> tables;
  std::vector<JournalPage> pages;
  std::uint64_t dataOffset = 0;
  std::uint64_t end() const { return offset + length; }
};

struct JournalSpot {
  std::uint64_t epoch = 0;
  std::uint64_t offset = kJournalStart;  // the end of a record
  std::uint64_t commit = 0;              // of that record, or of the checkpoint
  bool operator==(const JournalSpot&) const = default;
};

// For a company or an epoch; none that was drawn before.
std::uint64_t newJournalId(const Environment& environment, const std::string& folder);

// The file's format and nothing of who may call when: appends are made under the commit lock (CommitProtocol).
class Journal {
 public:
  Journal(FileSystem& files, const std::string& folder, std::uint64_t newCompanyId);
  ~Journal();

  File& file() { return *file_; }
  // Of this epoch alone, and of no copy of the folder: a new one is drawn at each start of an epoch.
  std::uint64_t epochKey() const { return head_.key; }
  std::uint64_t epoch() const { return head_.epoch; }
  // Commits above this have whole images of their first-touched pages in the journal.
  std::uint64_t checkpointCommit() const { return head_.checkpointCommit; }

  void readHead();  // raises headerDamaged, newerFormat
  // The same for whoever has the folder alone. Where the newest head is damaged, `applied` and the first record, which
  // were written under it, tell its epoch. headerDamaged: records may stand there that nothing tells how to read.
  void recoverHead();
  // That no newer head than the one read was there and is damaged: headerDamaged. Under the commit lock.
  void requireNewestHead();
  void makeAnew();            // empty, whatever stands in it; safe on return
  JournalSpot readApplied();  // re-reads the head when another process has moved the epoch
  void writeApplied(const JournalSpot& spot);
  JournalSpot startSpot() const { return {head_.epoch, kJournalStart, head_.checkpointCommit}; }

  // The record at `spot`'s end, directory only; false when there is none that fits.
  bool readRecord(const JournalSpot& spot, JournalRecord& record);
  // Whether the whole record is as it was written.
  bool recordIsWhole(const JournalRecord& record);
  // Calls for each page of the record with its data, in order. `wanted` may refuse pages.
  void readPages(const JournalRecord& record, const std::function<bool(const JournalPage&)>& wanted,
                 const std::function<void(const JournalPage&, const std::byte* data)>& page);

  // Writes a record behind `spot` and syncs it. `data` gives page i's bytes; called once for each, in order.
  // On return the record is committed. IoError: it is not, and its place is blanked; outcomeUnknown: it may be.
  JournalSpot append(const JournalSpot& spot, std::uint64_t commit, const std::vector<JournalTable>& tables,
                     const std::vector<JournalPage>& pages, const std::function<const std::byte*(std::size_t)>& data);

  // Makes the records between these spots, read from the file, safe, and that none follows.
  void secure(const JournalSpot& from, const JournalSpot& end);
  // All records stand in the files and are synced: empties the journal. After an error startSpot tells the epoch.
  void startEpoch(std::uint64_t checkpointCommit, std::uint64_t drawn);
  void setRewrite();  // a table file's sync failed: the next checkpoint writes the data again first
  bool rewrite();     // as another process may have set it
  std::uint64_t bytesUsed(const JournalSpot& spot) const { return spot.offset - kJournalStart; }
  void shrink();  // gives most of the space back; only when empty

  static std::string changedRuns(const std::byte* before, const std::byte* after);
  static bool applyRuns(std::byte* page, const std::byte* data, std::uint32_t bytes);  // false: they do not fit

 private:
  struct Head {
    std::uint64_t companyId = 0, epoch = 0, checkpointCommit = 0;
    bool rewrite = false;
    std::uint64_t key = 0;
  };
  struct Applied {
    std::uint64_t companyId = 0;
    JournalSpot spot;
  };
  std::optional<Head> newestHead(bool* damaged = nullptr);
  std::optional<Head> headOfFirstRecord();
  std::optional<Applied> soundApplied();
  bool holdsRecord();
  std::uint64_t lastCommit();  // of the records of the head's epoch
  bool isNewer(std::uint64_t companyId, std::uint64_t epoch) const;
  [[noreturn]] static void raiseDamaged(const char* advice);
  void writeHead(const Head& head);
  std::string recordHead(const JournalSpot& spot, std::uint64_t commit, const std::vector<JournalTable>& tables,
                         const std::vector<JournalPage>& pages) const;
  void ensureRoom(std::uint64_t end);
  void blank(std::uint64_t offset, const std::string& why, bool synced);

  std::unique_ptr<File> file_;
  Head head_;
  std::uint64_t room_ = 0;
};

}  // namespace quillon::store
