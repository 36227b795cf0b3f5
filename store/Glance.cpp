#include "store/Glance.h"

#include <utility>

#include "store/Cursor.h"
#include "store/CursorParts.h"
#include "store/table/Table.h"

namespace quillon::store {

struct Glance::Place {
  // The row that was last stood on is kept while a new one is entered.
  explicit Place(Cursor& cursor) : bof(cursor.bof_), eof(cursor.eof_), silence(cursor), aside(cursor) {
    if (cursor.kept_.there) cursor.at_ = cursor.kept_;
  }
  bool bof, eof;
  Cursor::Silence silence;
  Cursor::Aside aside;
};

Glance::Glance(Cursor& cursor) : cursor_(cursor) {
  cursor.requireOpen();
  cursor.synchronise();
  place_ = std::make_unique<Place>(cursor);
}

Glance::~Glance() {
  const bool bof = place_->bof, eof = place_->eof;
  place_.reset();
  cursor_.bof_ = bof;
  cursor_.eof_ = eof;
}

bool Glance::onRow() const { return cursor_.at_.there; }
RowId Glance::rowId() const { return cursor_.at_.there ? cursor_.at_.row : 0; }

bool Glance::first() { return !cursor_.nothing_ && cursor_.firstRow(); }
bool Glance::last() { return !cursor_.nothing_ && cursor_.lastRow(); }
bool Glance::next() { return cursor_.at_.there && cursor_.step(true); }
bool Glance::prior() { return cursor_.at_.there && cursor_.step(false); }
bool Glance::goTo(std::uint64_t number) { return cursor_.seek(number); }
bool Glance::goToRow(RowId row) { return cursor_.standOn(row); }

}  // namespace quillon::store
