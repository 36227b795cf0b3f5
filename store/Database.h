#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "store/Repair.h"
#include "store/Schema.h"
#include "store/Session.h"
#include "store/locks/TableLocks.h"

namespace quillon::store {

class CommitProtocol;
class FileSystem;
class Holders;
class Table;
enum class LockKind : std::uint32_t;

// A folder of tables, or the tables in memory. Names of tables are taken in any case, with or without ".DAT".
class Database {
 public:
  // Opens the folder: brings an interrupted publish to its end, joins the others that have it open. Raises
  // noSuchFolder, accessDenied, headerDamaged or newerFormat (of the journal).
  Database(Session& session, std::string folder);
  ~Database();  // publishes what was gathered, rolls back an open transaction; never raises
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  Session& session() { return session_; }
  const std::string& folder() const { return folder_; }
  FileSystem& files() { return files_; }
  bool inMemory() const { return protocol_ == nullptr; }
  CommitProtocol* protocol() { return protocol_.get(); }

  // Expires with the database, for what may outlive it.
  std::weak_ptr<const bool> life() const { return life_; }

  // A table's name without "\\Memory\\" and ".DAT".
  static std::string plainName(std::string_view name);

  // Whole tables.
  bool exists(std::string_view name);
  std::vector<std::string> tableNames();                     // sorted
  void createTable(const TableDef& definition);              // tableExists, badDefinition
  void createTables(std::span<const TableDef> definitions);  // with two syncs of the folder in all
  void dropTable(std::string_view name);                     // noSuchTable; tableInUse while any cursor has it open
  // Removes all rows and starts autoInc over. tableInUse while another own cursor or another process has it open.
  void emptyTable(std::string_view name);

  // Gives a table another definition; `from` names for each new field the old one whose values it takes, or -1. The
  // rows are kept in their order and get new row ids. tableInUse while anybody has it open; keyViolation, badValue:
  // nothing changed.
  void redefineTable(const TableDef& definition, const std::vector<int>& from);

  // Makes a damaged table whole again: saves every record that can still be read, under its row id, and makes indexes,
  // counts, numbers and contents anew from them. A table that is sound is left alone. Where two saved records have the
  // same key in a unique index the one with the lower row id stays and the report tells the other's values. Where
  // anything is lost the damaged files are kept. A table whose .DAT file is missing, or is another table's, begins
  // empty by the given definition. After a failure, a kill or a power cut the table is as it was or repaired; but a
  // missing .DAT file may be there, empty.
  // tableInUse while anybody has it open; headerDamaged when its definition, or its file id, is nowhere to be had;
  // foreign when the .DAT file has nothing of a table; newerFormat.
  RepairReport repairTable(std::string_view name, const RepairOptions& options = {});
  // Makes the files of a sound table anew, no larger than they were: records in the order of their row ids, which they
  // keep, full pages, nothing free. Whole or not at all, as repairTable; a copy of the old files is complete or absent.
  // Files that are so already stay, and the earlier copy with them.
  // tableInUse while anybody has it open; damaged, headerDamaged: it is not sound, and nothing changed.
  OptimizeReport optimizeTable(std::string_view name, const OptimizeOptions& options = {});

  // A transaction over the tables named, whose write locks it holds. One at a time (badTransaction). recordLocked,
  // after the tries of the settings, when another process holds one of them.
  void startTransaction(std::span<const std::string> tables);
  void startTransaction(std::initializer_list<std::string> tables) {
    startTransaction(std::span<const std::string>(tables.begin(), tables.size()));
  }
  // All or nothing; on return it survives a power loss. On a failure the transaction is still open: roll it back.
  // A publish is always forced to the disk, so the flag is a promise and not a choice.
  void commit(bool forceFlush = true);
  void rollback();
  bool inTransaction() const { return transaction_; }

  // Publishes everything that was gathered. Called before any dialog or event loop.
  void settle();
  // The error of the last settle could not be passed on: the next one raises it again.
  void tellAtSettle() noexcept { lost_ += std::exchange(untold_, 0); }
  // While one lives, Posts on any table gather (imports, the rows of a new company, purges). May nest. Its end
  // publishes; call settle() first to hear of a failure.
  class BulkScope {
   public:
    explicit BulkScope(Database& database);
    ~BulkScope();
    BulkScope(const BulkScope&) = delete;
    BulkScope& operator=(const BulkScope&) = delete;

   private:
    Database& database_;
  };
  // While one lives, required fields may stay empty.
  class CopyScope {
   public:
    explicit CopyScope(Database& database) : database_(database) { ++database_.copying_; }
    ~CopyScope() { --database_.copying_; }
    CopyScope(const CopyScope&) = delete;
    CopyScope& operator=(const CopyScope&) = delete;

   private:
    Database& database_;
  };
  // Reads of these tables inside the scope belong to one committed state over all of them. Short, as Table::Reading.
  class Snapshot {
   public:
    Snapshot(Database& database, const std::vector<Table*>& tables);
    ~Snapshot();
    Snapshot(const Snapshot&) = delete;
    Snapshot& operator=(const Snapshot&) = delete;

   private:
    std::vector<Table*> tables_;
  };

  // For cursors and statements.
  Table& openTable(std::string_view name, TableLocks::Owner owner, bool exclusive);
  void closeTable(Table& table, TableLocks::Owner owner);
  bool requiredIsChecked() const { return copying_ == 0; }

  // One atomic change of a table: a Post, a Delete, a statement. Takes the write lock (recordLocked when it cannot be
  // had); `done` publishes, or leaves the change to the transaction or the group that is being gathered. Without
  // `done` nothing of it stays.
  class Change {
   public:
    Change(Database& database, Table& table);
    ~Change();
    void done(int rows = 1);
    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;

   private:
    Database& database_;
    Table& table_;
    bool covered_ = false;  // by the open transaction
    bool gathers_ = false;  // leaves its pages to a group
    bool inGroup_ = false;  // the table has a group already
    bool finished_ = false;
  };

  // Takes a lock by the tries of the settings: `attempt` is one try. Raises recordLocked (tableInUse for an open)
  // naming the holder, at once when the holder is of this process. noteLock writes it down for others to read.
  void takeLock(const std::string& table, LockKind kind, RowId row, const std::function<TableLocks::Answer()>& attempt);
  void noteLock(const std::string& table, LockKind kind, RowId row) noexcept;
  void forgetLock(const std::string& table, LockKind kind, RowId row) noexcept;
  // Waits until no other process holds the table in a transaction, in the same way.
  void waitOutTransaction(Table& table);

 private:
  friend class Session;
  friend class Rebuild;
  // Tables without a journal: those in memory, and one that is being made beside its files.
  Database(Session& session, FileSystem& files, std::string folder);

  bool isOpenHere(std::string_view name) const;
  Table* openAgain(std::string_view name, TableLocks::Owner owner, bool exclusive);
  void standBy(Table& table) noexcept;
  void endStandBy(std::string_view name) noexcept;
  void publish(std::span<Table* const> tables);
  void publishGathered();
  void takeWrite(Table& table);
  bool gathersNow(Table& table) const;
  void dropGathered() noexcept;
  std::string findName(std::string_view name);
  void refuseInTransaction() const;
  [[noreturn]] void raiseLocked(const std::string& table, LockKind kind, RowId row, bool here);
  void releaseTransaction() noexcept;
  std::uint64_t newFileId(std::string_view name, std::uint64_t before = 0);  // never `before`
  std::unique_ptr<Table> openFiles(const std::string& name);
  void refuseOpenHere(const std::string& name, const char* deed) const;
  std::uint64_t bytesOf(const std::string& name);  // of its files
  std::vector<std::string> faultsOf(const RepairOptions& options, RepairReport& report);
  RepairReport repairLost(const std::string& wanted, const RepairOptions& options);
  void rebuildFrom(std::unique_ptr<File> dat, const RepairOptions& options, RepairReport& report);

  std::shared_ptr<const bool> life_ = std::make_shared<bool>(true);
  Session& session_;
  FileSystem& files_;
  std::string folder_;
  std::unique_ptr<CommitProtocol> protocol_;
  std::unique_ptr<Holders> holders_;
  std::map<std::string, std::unique_ptr<Table>, std::less<>> tables_;  // by folded name
  std::vector<std::string> standingBy_;                                // folded names, the one longest there first
  std::vector<Table*> covered_;                                        // by the transaction
  std::vector<Table*> gathering_;
  std::int64_t gatherStart_ = 0;
  bool transaction_ = false;
  int bulk_ = 0;
  int copying_ = 0;
  int lost_ = 0;            // rows of a gathered group that an error took with it, to be told
  int untold_ = 0;          // rows that the last settle could not publish; it raised
  bool unknown_ = false;    // whether a group was saved is known only after the next opening
  std::uint64_t made_ = 0;  // tables, for file ids
};

}  // namespace quillon::store
