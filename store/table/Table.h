#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/Errors.h"
#include "store/KeyCodec.h"
#include "store/RecordCodec.h"
#include "store/Schema.h"
#include "store/locks/TableLocks.h"
#include "store/table/BlobStore.h"
#include "store/table/TableFiles.h"
#include "store/tree/Tree.h"

namespace quillon::store {

class CommitProtocol;
class Cursor;
class Database;
struct Environment;

// What a Post writes beside the row buffer: new contents of memo and blob fields by field position; none is null, which
// an empty text is not.
using BlobContents = std::map<int, std::optional<std::string>>;

// A table that this process has open: its rows and indexes over the pages, for all its cursors and statements.
// Reading needs a Reading, changing needs a Change (Database::Change); both take the locks.
class Table {
 public:
  Table(Database& database, std::string name);
  ~Table();
  Table(const Table&) = delete;
  Table& operator=(const Table&) = delete;

  Database& database() { return database_; }
  const std::string& name() const { return files_.name(); }
  const TableDef& definition() const { return definition_; }
  const RecordLayout& layout() const { return *layout_; }
  TableFiles& files() { return files_; }
  TableLocks& locks() { return locks_; }

  // A scope in which the table's pages are one committed state (and the own changes). Short: no callback, no dialog.
  // May nest. Raises StoreError when the state cannot be had.
  class Reading {
   public:
    explicit Reading(Table& table) : table_(table) { table_.beginReading(); }
    ~Reading() { table_.endReading(); }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

   private:
    Table& table_;
  };
  // Runs a short read that may be run again: without any lock where nobody has published since the cached pages were
  // read (every page tells when it was written, so a newer one is noticed), otherwise inside a Reading.
  template <typename Action>
  void read(Action&& action) {
    if (beginUnlocked()) {
      const Unlocked unlocked(*this);
      try {
        return action();
      } catch (const StoreError& error) {
        if (error.code() != Code::changedMeanwhile) throw;
      }
    }
    const Reading reading(*this);
    action();
  }
  // As the constructor of Reading, but false at once instead of waiting; true: end it with endReading.
  // `mayReplay` false: also false where a dead writer's changes must be brought in first, which needs all locks free.
  bool tryBeginReading(bool standBack = true, bool mayReplay = true);
  void beginReading();
  void endReading() noexcept;
  // A long read: after a Reading brought the table up to date, pages are read as of then without a lock, and
  // changedMeanwhile is raised when that is not possible any more.
  void setSteady(bool steady);
  // After a lock was taken that keeps others from publishing: brings what is cached up to date.
  void refreshUnderLock();

  void load();                                      // once, after the open lock was taken: reads the definition
  bool isAsLoaded();                                // whether, opened again, it has the definition that was read then
  std::uint64_t number() const { return number_; }  // of this object; never given twice in a process
  void discardChanges() noexcept;                   // the overlay never was

  // Counts states: own changes and those of others that were noticed. What was read ahead belongs to one state.
  std::uint64_t version() const { return version_; }

  // Inside a Reading.
  std::uint64_t rowCount() { return rows_->count(); }
  bool readRow(RowId row, std::string& record);  // false: there is none
  Tree& rows() { return *rows_; }
  Tree& index(int position) { return *indexes_[static_cast<std::size_t>(position)]; }
  const KeyCodec& codec(int position) const { return codecs_[static_cast<std::size_t>(position)]; }
  std::string readBlob(const BlobRef& ref);
  // The record in a payload of the rows' tree; `scratch` holds it where it does not stand in one piece.
  std::string_view record(std::string_view payload, std::string& scratch) {
    return record(files_.file(kDat), files_.meta().space[kDat].pages, name(), payload, scratch);
  }
  // The same in a .DAT file of `pages` pages that may be damaged.
  static std::string_view record(PageFile& dat, std::uint32_t pages, const std::string& table, std::string_view payload,
                                 std::string& scratch);
  static std::string rowKey(RowId row);
  static RowId rowOfKey(std::string_view key);

  // Inside a Change. Unique indexes are tested before anything is changed (keyViolation). The buffer gets its autoInc
  // number and blob places. `record` is what now stands in the table.
  RowId insertRow(RowBuffer& row, const BlobContents& blobs, std::string& record);
  // `row` was loaded from `before`: only indexes over modified fields are looked at.
  enum class Unique { toTest, tested };
  void updateRow(RowId id, const std::string& before, RowBuffer& row, const BlobContents& blobs, std::string& record,
                 Unique unique = Unique::toTest);
  // The same where uniqueness is tested and contents stay: `indexes` are those whose keys may change. Rows come
  // in ascending order for the least cost; `rewrite` lives as long as nothing else changes the rows.
  void rewriteRow(TreeRewrite& rewrite, RowId id, std::string_view before, std::string_view after,
                  const std::vector<int>& indexes);
  void deleteRow(RowId id, const std::string& before);
  // For a table that is being made: the row alone, under an id of the caller's; false: that one is there already. Keys
  // follow once all rows are there, and the numbers to go on with.
  bool restoreRow(RowId id, RowBuffer& row, const BlobContents& blobs);
  [[noreturn]] void raiseKeyViolation(int position) const;
  void removeAll();
  void redefine(const TableDef& definition);  // also without rows

  // Cursors of this process on this table.
  void attach(Cursor* cursor);
  void detach(Cursor* cursor);
  const std::vector<Cursor*>& cursors() const { return cursors_; }
  // An own change of a row: `record` is its new content, null when it was deleted.
  void rowChanged(RowId row, const std::string* record);
  // Everything may have changed under the cursors (a rollback, which also cancels edits; a lost group, which does not).
  void everythingChanged(bool cancelEdits);

  bool touched = false;  // the change being made has reached the pages
  int gathered = 0;      // rows changed since the last publish, where Posts gather
  bool doomed = false;   // a change failed half way inside a transaction or a gathered group

 private:
  struct Unlocked {
    explicit Unlocked(Table& itsTable) : table(itsTable) {}
    ~Unlocked() { table.endUnlocked(); }
    Unlocked(const Unlocked&) = delete;
    Unlocked& operator=(const Unlocked&) = delete;
    Table& table;
  };
  bool beginUnlocked();
  void endUnlocked() noexcept;
  void refresh(const LiveState& live);
  void storeBlobs(RowBuffer& row, const RecordView* before, const BlobContents& blobs);
  void checkUnique(RowId id, std::string_view key, int position);
  std::string payloadOf(std::string_view record);
  void releasePayload(std::string_view payload);
  void encodeKeys(const std::string& record, RowId id, std::vector<std::string>& keys);

  Database& database_;
  TableFiles files_;
  TableLocks locks_;
  TableDef definition_;
  std::unique_ptr<RecordLayout> layout_;
  std::vector<KeyCodec> codecs_;
  std::unique_ptr<Tree> rows_;
  std::vector<std::unique_ptr<Tree>> indexes_;
  std::unique_ptr<BlobStore> blobs_;
  std::vector<Cursor*> cursors_;
  std::vector<std::string> keys_, oldKeys_;  // scratch
  std::uint64_t version_ = 1;
  std::string schema_;             // the definition's bytes
  std::uint64_t schemaStamp_ = 0;  // of the state in which they were read or last compared
  std::uint64_t number_;
  RowId rowFloor_ = 1;  // row ids of rolled-back rows are not given again: a cursor may still stand on one
  int readers_ = 0;
  bool applyHeld_ = false;
  bool steady_ = false;
  int autoIncField_ = -1;
};

}  // namespace quillon::store
