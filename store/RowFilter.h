#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/locks/TableLocks.h"
#include "store/sql/Expression.h"

namespace quillon::store {

class Cursor;
class Table;

namespace sql {
class Access;
}

// The text of a filter, bound to the fields of an open cursor: a condition as in a WHERE, over one row, without
// SELECTs, aggregates and parameters.
//
// Its conditions joined by AND are tested from left to right. Those before the first that reads a calculated or
// looked-up field are tested on the bytes of a record. Of these, the ones before the first that can raise (a division,
// say) narrow the keys of indexes, so that no index hides an error that a walk over all rows meets.
class RowFilter {
 public:
  // StatementError, with line and column: no condition, no such field, values that cannot be compared.
  RowFilter(Cursor& cursor, std::string_view text);
  ~RowFilter();
  RowFilter(const RowFilter&) = delete;
  RowFilter& operator=(const RowFilter&) = delete;

  // Whether the row passes on which the cursor stands. Not under a lock: handlers and look-ups may run.
  bool passes(RowId row, std::string_view record);
  // Inside a read of the table: false when the row surely does not pass.
  bool mayPass(RowId row, std::string_view record);
  // Whether mayPass says it all.
  bool readsRecordsOnly() const { return behind_.empty(); }

  // The keys of an index between which all rows lie that may pass: low <= key, and key < high unless that is empty.
  struct Range {
    bool narrowed = false;
    bool nothing = false;  // no row can pass
    std::string low, high;
  };
  const Range& range(int index);

 private:
  class CursorField;

  sql::ExpressionPtr bindField(const sql::Expr& expr);
  void prepareSearch(sql::ExpressionPtr searchable);
  bool holds(const std::vector<sql::ExpressionPtr>& conditions, sql::Frame& frame, RowId row, std::string_view record);

  Cursor& cursor_;
  Table& table_;
  std::vector<sql::ExpressionPtr> inRecord_, behind_;
  sql::ExpressionPtr searchable_;  // the first of inRecord_ again, joined
  std::unique_ptr<sql::Access> access_;
  std::vector<std::optional<Range>> ranges_;  // by index, as asked for
  sql::Frame frame_;                          // of mayPass
  bool readsContents_ = false;
  bool reading_ = false;     // inside mayPass
  bool readsExtra_ = false;  // the condition that is being bound
};

}  // namespace quillon::store
