#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "store/Database.h"
#include "store/Repair.h"
#include "store/table/Table.h"
#include "store/vfs/SuffixedFiles.h"

namespace quillon::store {

// A table made anew beside its files: its rows first, under the ids that they have, then each index from sorted keys,
// so that records lie in the order of their ids, entries in the order of their keys, and pages are full. Nothing is
// journalled; as long as `install` has not begun the table is what it was.
//
// The caller has the table open exclusively and leaves it alone meanwhile.
class Rebuild {
 public:
  // Makes a table with its rows: `fill` writes into one of this definition that nobody sees, which then stands in the
  // place of the one of that name, where there is one. Whatever fails, or is killed, leaves all of the new table or
  // what there was before. tableInUse while anybody has the old one open; badDefinition, badTransaction.
  static void replaceTable(Database& database, TableDef definition, const std::function<void(Table&)>& fill);

  // `fileId` must be none that the table had.
  Rebuild(Database& database, std::string name, const TableDef& definition, std::uint64_t fileId);
  ~Rebuild();  // what was not installed goes
  Rebuild(const Rebuild&) = delete;
  Rebuild& operator=(const Rebuild&) = delete;

  const RecordLayout& layout() const { return table_->layout(); }
  // `contents` has those of all memo, blob and graphic fields of the row that are not null. False: there is a row of
  // this id.
  bool add(RowId row, RowBuffer& buffer, const BlobContents& contents);
  bool has(RowId row) { return table_->readRow(row, scratch_); }

  // The row, the one that was kept, and the unique index in which both have the same key.
  using SetAside = std::function<void(RowId row, RowId kept, int index)>;
  // Makes the indexes. Of rows with the same key in a unique index the one with the lowest id stays; the others are
  // told while they can still be read, and go. `progress` gets the share that is done.
  void buildIndexes(const SetAside& setAside, const std::function<void(double)>& progress);
  // Writes the last pages and the numbers to go on with: the next row id at least, and the last automatic number at
  // least.
  void finish(RowId nextRow, std::int64_t autoInc);
  std::string recordOf(RowId row);
  std::string contentOf(const BlobRef& ref) { return table_->readBlob(ref); }
  std::uint64_t rows() { return table_->rowCount(); }
  std::uint64_t bytes() const { return bytes_; }  // of all three files, once finished
  // Whether the table's own files have the same pages in the same places, once finished: nothing is gained then.
  bool isAsBefore();

  // Puts the new files in the place of the old ones, of which a copy with `keepAs` behind their names is left where it
  // is not empty. After a failure the table is the old one or the new one, whole. `isAlone` where the caller holds the
  // commit lock with the journal emptied.
  void install(const std::string& keepAs, bool isAlone = false);

 private:
  struct Twin {
    RowId kept;
    int index;
  };
  void publish(std::size_t mostPages);  // when there are more
  void buildIndex(int position);
  void removeTwins(const SetAside& setAside);
  void close() noexcept;
  void giveUp() noexcept;
  void removeNew();

  Database& database_;
  std::string name_;
  SuffixedFiles files_;
  std::unique_ptr<Database> aside_;
  Table* table_ = nullptr;
  std::optional<Database::Change> change_;
  std::map<RowId, Twin> twins_;
  std::string scratch_;
  int autoIncField_ = -1;
  bool installing_ = false;
  std::int64_t highest_ = 0;  // automatic number
  std::uint64_t bytes_ = 0;
};

}  // namespace quillon::store
