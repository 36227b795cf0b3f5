#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "store/Database.h"
#include "store/RecordCodec.h"
#include "store/sql/Datum.h"
#include "store/table/Table.h"

namespace quillon::store::sql {

// The rows that one statement changes in one table: all of them or none, also inside a transaction, where what was
// changed before a failure is taken back row by row.
class TableChange {
 public:
  explicit TableChange(Table& table);
  ~TableChange();
  TableChange(const TableChange&) = delete;
  TableChange& operator=(const TableChange&) = delete;

  // recordLocked when a cursor, here or elsewhere, edits one of the rows.
  void testLocks(const std::vector<RowId>& rows);
  void insert(const std::vector<int>& fields, const std::vector<Datum>& values);
  void update(RowId row, const std::string& before, const std::vector<int>& fields, const std::vector<Datum>& values);
  void remove(RowId row);
  std::uint64_t done();  // rows changed
  // After badValue or required: the field that could not take its value.
  int refused() const { return refused_; }

 private:
  struct Step {
    RowId row;
    bool inserted;
    std::string before, after;
  };
  template <typename Action>
  void change(Action&& action);
  void setField(int field, const Datum& value);
  void checkRequired();
  void takeBack() noexcept;

  Table& table_;
  Database::Change change_;
  RowBuffer buffer_;
  BlobContents contents_;
  std::string record_;
  std::vector<Step> steps_;     // kept only where others' changes share the overlay
  std::vector<RowId> touched_;  // rows that own cursors must hear of
  std::uint64_t rows_ = 0;
  int refused_ = -1;
  bool sharesOverlay_;
  bool undoable_ = true;
  bool halfDone_ = false;
  bool finished_ = false;
};

}  // namespace quillon::store::sql
