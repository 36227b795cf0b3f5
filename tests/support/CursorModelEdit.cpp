// The record cycle of the cursors' model.
#include <algorithm>

#include "support/CursorModel.h"

namespace quillon::sim {

using store::CursorState;
using store::Value;

namespace {

constexpr int kLocked = 10258, kChanged = 8708, kViolation = 9729, kNotEditing = 9008;

}  // namespace

int ModelCursor::edit() {
  synchronise();
  if (state_ != CursorState::browse) return 0;
  if (!there_) return insert();
  const auto lock = store_.locked.find(at_.row);
  if (lock != store_.locked.end() && lock->second != this) return kLocked;
  const auto found = store_.rows.find(at_.row);
  if (found == store_.rows.end()) return kChanged;
  at_ = found->second;
  store_.locked[at_.row] = this;
  state_ = CursorState::edit;
  buffer_ = at_;
  modified_ = false;
  return 0;
}

int ModelCursor::insert() {
  if (const int code = leaveRow()) return code;
  synchronise();
  keptThere_ = there_;
  there_ = false;
  state_ = CursorState::insert;
  buffer_ = {};
  modified_ = false;
  return 0;
}

void ModelCursor::set(int field, const Value& value) {
  buffer_.values[static_cast<std::size_t>(field)] = value;
  modified_ = true;
}

int ModelCursor::post() {
  if (state_ == CursorState::browse) return kNotEditing;
  CursorRow row = buffer_;
  const bool fresh = state_ == CursorState::insert;
  if (fresh) {
    row.row = store_.nextRow;
    if (row.values[0].isNull()) row.values[0] = store_.autoInc + 1;
  }
  if ((fresh || modified_) && store_.violates(row)) return kViolation;
  if (!row.values[0].isNull() && (fresh || modified_))
    store_.autoInc = std::max(store_.autoInc, row.values[0].asInt64());
  const CursorRow oldPlace = fresh ? row : at_;
  if (fresh)
    ++store_.nextRow;
  else
    store_.locked.erase(at_.row);
  store_.rows[row.row] = row;
  state_ = CursorState::browse;
  stand(row);
  if (inView(row)) {
    bof_ = eof_ = false;
  } else {
    there_ = false;
    findAgain(oldPlace);
  }
  return 0;
}

int ModelCursor::cancel() {
  if (state_ == CursorState::browse) return 0;
  toBrowse();
  synchronise();
  return 0;
}

int ModelCursor::remove() {
  synchronise();
  if (state_ == CursorState::insert) return cancel();
  if (state_ == CursorState::edit) cancel();
  if (!there_) return kNotEditing;
  const auto lock = store_.locked.find(at_.row);
  if (lock != store_.locked.end() && lock->second != this) return kLocked;
  const auto found = store_.rows.find(at_.row);
  if (found == store_.rows.end()) return kChanged;
  at_ = found->second;
  store_.rows.erase(found);
  there_ = false;
  findAgain(at_);
  return 0;
}

int ModelCursor::refresh() {
  cancel();
  findAgain_ = false;
  findAgain(at_, placed_);
  return 0;
}

int ModelCursor::rereadRow() {
  cancel();
  synchronise();
  if (!there_) return 0;
  if (const CursorRow* row = present())
    stand(*row);
  else
    findAgain(at_);
  return 0;
}

void ModelCursor::rolledBack() {
  toBrowse();
  findAgain_ = true;
}

}  // namespace quillon::sim
