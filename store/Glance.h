#pragma once

#include <cstdint>
#include <memory>

#include "store/locks/TableLocks.h"

namespace quillon::store {

class Cursor;

// A look at other rows of a cursor, in its order and within its limits, without leaving the row that it stands on: an
// edit goes on, no detail follows, and no handler runs but onCalculate and onFilter.
//
// While one lives, the cursor's fields are those of the row looked at, and the cursor may only be read. Begins on the
// cursor's row, as it is stored; a row being entered is none. A move that finds nothing gives false and stays.
class Glance {
 public:
  explicit Glance(Cursor& cursor);
  ~Glance();
  Glance(const Glance&) = delete;
  Glance& operator=(const Glance&) = delete;

  bool onRow() const;
  RowId rowId() const;  // 0 without a row
  bool first();
  bool last();
  bool next();
  bool prior();
  bool goTo(std::uint64_t number);  // the k-th row, 1 is the first; O(log n) without a filter
  bool goToRow(RowId row);

 private:
  struct Place;
  Cursor& cursor_;
  std::unique_ptr<Place> place_;
};

}  // namespace quillon::store
