#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/Database.h"
#include "store/RecordCodec.h"
#include "store/sql/Datum.h"
#include "store/sql/Sorter.h"
#include "store/sql/Spool.h"
#include "store/table/Table.h"

namespace quillon::store::sql {

// The rows that one statement changes in one table: all of them or none, also inside a transaction, where inserted rows
// are taken back one by one and an update is refused before its first row is written. What fails for other reasons than
// the values (a disk) leaves a transaction that can only be rolled back.
class TableChange {
 public:
  explicit TableChange(Table& table);
  ~TableChange();
  TableChange(const TableChange&) = delete;
  TableChange& operator=(const TableChange&) = delete;

  void insert(const std::vector<int>& fields, const std::vector<Datum>& values);

  // An UPDATE works all rows out, in ascending order, before the first is written: unique indexes hold for what is
  // there at its end, and not on the way.
  void startUpdate(const std::vector<int>& fields);
  void planUpdate(RowId row, std::string_view before, const std::vector<Datum>& values);
  void update();  // recordLocked, keyViolation: nothing is changed

  // recordLocked when a cursor, here or elsewhere, edits one of the rows.
  void remove(const std::vector<RowId>& rows);

  std::uint64_t done();  // rows changed
  // After badValue or required: the field that could not take its value.
  int refused() const { return refused_; }

 private:
  template <typename Action>
  void change(Action&& action);
  void testLocks(const std::vector<RowId>& rows);
  void setField(int field, const Datum& value);
  void checkRequired();
  bool patch(std::string_view before, const std::vector<Datum>& values);
  void testUnique();
  void takeBack() noexcept;

  Table& table_;
  Database::Change change_;
  RowBuffer buffer_;
  BlobContents contents_;
  std::string record_, bytes_;
  std::vector<RowId> touched_;  // rows that own cursors must hear of
  std::uint64_t rows_ = 0;
  int refused_ = -1;
  bool sharesOverlay_;  // with earlier changes, which must stay when this one fails
  bool undoable_ = true;
  bool halfDone_ = false;
  bool finished_ = false;

  // Of an update:
  std::vector<int> fields_, required_;
  std::vector<int> indexes_;                       // over these fields
  std::map<int, std::unique_ptr<Sorter>> unique_;  // the new keys of those that are unique
  Spool planned_;                                  // row id, u32 size of the record before, it, what comes in its place
  bool setsContents_ = false;                      // then the values come in its place, otherwise the new record
  bool needsBefore_ = false;
};

}  // namespace quillon::store::sql
