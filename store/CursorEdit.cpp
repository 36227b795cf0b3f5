// The record cycle: edit, insert, post, cancel, remove; locks and the errors around them.
#include <algorithm>

#include "store/Cursor.h"
#include "store/CursorParts.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/locks/Holders.h"
#include "store/table/Table.h"

namespace quillon::store {

void Cursor::fire(const CursorEvents::Handler& handler) {
  if (handler && silenced_ == 0) handler();
}

// Runs an action; an error goes to the handler, which may have it tried again or ended silently.
template <typename Action>
void Cursor::withErrorEvent(const std::function<ErrorAnswer(const StoreError&)>& handler, Action&& action) {
  const CursorState before = state_;
  const RowId row = at_.row;
  while (true) {
    try {
      action();
      return;
    } catch (const StoreError& error) {
      if (!handler) throw;
      const ErrorAnswer answer = handler(error);
      if (answer == ErrorAnswer::abort) throw Abort();
      if (answer == ErrorAnswer::fail) throw;
      // The handler may have cancelled, moved or closed: then there is nothing left to try again.
      if (state_ != before || (state_ == CursorState::closed) || at_.row != row) throw Abort();
    }
  }
}

bool Cursor::modified() const { return isEditing() && (buffer_->modified() || contentsModified_); }

void Cursor::leaveRow() {
  requireOpen();
  leaveDetails();
  if (!isEditing()) return;
  if (modified())
    post();
  else
    cancel();
}

// Handlers of a detail may make or end other details.
void Cursor::leaveDetails() {
  const std::vector<Cursor*> details = details_;
  for (Cursor* detail : details)
    if (std::find(details_.begin(), details_.end(), detail) != details_.end() && detail->isEditing())
      detail->leaveRow();
}

// Back to browsing without writing anything, and without events.
void Cursor::toBrowse() {
  if (!isEditing()) return;
  if (state_ == CursorState::edit) unlockStanding();
  if (state_ == CursorState::insert) at_ = std::exchange(kept_, {});
  state_ = CursorState::browse;
  buffer_->clear();
  contents_.clear();
  view_.reset();
  calculated_ = false;
  tellDetails();
}

void Cursor::unlockStanding() noexcept {
  if (!table_->locks().holdsRecord(this, at_.row)) return;
  table_->locks().releaseRecord(this, at_.row);
  database_->forgetLock(table_->name(), LockKind::record, at_.row);
}

// Whether the row is surely as it was read: nobody else can publish, and this process has changed nothing since.
bool Cursor::isCurrent() const {
  return table_->locks().holdsWrite() && at_.version == table_->version() && !at_.expected && !at_.ownDeleted;
}

// Locks the current row and reads it again under the lock. Another process's change is recordChanged; the own process's
// is taken over.
void Cursor::lockStanding() {
  database_->waitOutTransaction(*table_);
  database_->takeLock(table_->name(), LockKind::record, at_.row,
                      [&] { return table_->locks().tryRecord(this, at_.row); });
  // Under a table lock or in a transaction that note says enough.
  if (!table_->locks().holdsWrite()) database_->noteLock(table_->name(), LockKind::record, at_.row);
  if (isCurrent()) return;
  try {
    std::string now;
    const bool there = readStanding(at_.row, now);
    const std::string& expected = at_.expected ? *at_.expected : at_.record;
    if (!there || at_.ownDeleted || now != expected)
      throw StoreError(Code::recordChanged, "A record of table '" + table_->name() +
                                                "' has been changed or deleted since it was read. Read it again.");
    if (now != at_.record) {
      keyOf(at_.row, now, at_.key);
      at_.record = std::move(now);
      view_.reset();
    }
    at_.expected.reset();
    at_.version = table_->version();
  } catch (...) {
    unlockStanding();
    throw;
  }
}

void Cursor::requireChangeable() const {
  requireOpen();
  if (readOnly_) throw StoreError(Code::notEditing, "'" + name_ + "' is the result of a query and cannot be changed.");
}

void Cursor::edit() {
  requireChangeable();
  synchronise();
  if (isEditing()) return;
  if (!at_.there) return insert();
  leaveDetails();
  fire(events.beforeEdit);
  if (state_ != CursorState::browse || !at_.there) return;
  withErrorEvent(events.onEditError, [&] { lockStanding(); });
  try {
    buffer_->load(at_.record);
  } catch (...) {
    unlockStanding();
    throw;
  }
  contents_.clear();
  contentsModified_ = false;
  state_ = CursorState::edit;
  calculated_ = false;
  fire(events.afterEdit);
}

void Cursor::insert() {
  requireChangeable();
  leaveRow();
  synchronise();
  if (nothing_) throw StoreError(Code::notEditing, "'" + name_ + "' cannot take a record: its master has none.");
  fire(events.beforeInsert);
  kept_ = at_;
  buffer_->clear();
  contents_.clear();
  state_ = CursorState::insert;
  at_.there = false;
  view_.reset();
  calculated_ = false;
  try {
    copyLinkFields();
    tellDetails();
    fire(events.onNewRecord);
  } catch (...) {
    toBrowse();
    throw;
  }
  // Defaults do not count as typed: an untouched new row is dropped when it is left.
  buffer_->clearModified();
  contentsModified_ = false;
  fire(events.afterInsert);
}

void Cursor::append() { insert(); }

void Cursor::cancel() {
  requireOpen();
  if (!isEditing()) return;
  toBrowse();
  if (findAgain_) synchronise();
  fire(events.afterCancel);
  if (isOpen()) arrived();
}

void Cursor::checkRequired() const {
  if (!database_->requiredIsChecked()) return;
  for (int i = 0; i < table_->layout().fieldCount(); ++i) {
    const FieldDef& field = table_->layout().field(i);
    if (!field.required || field.type == FieldType::autoInc) continue;
    const auto content = contents_.find(i);
    if (content != contents_.end() ? !content->second : buffer_->isNull(i))
      throw StoreError(Code::required, "Field '" + field.name + "' must have a value.");
  }
}

void Cursor::post() {
  requireOpen();
  if (!isEditing())
    throw StoreError(Code::notEditing, "'" + name_ + "' is not being edited: there is nothing to post.");
  leaveDetails();
  fire(events.beforePost);
  if (!isEditing()) return;  // the handler cancelled
  checkRequired();
  Posted posted;
  withErrorEvent(events.onPostError, [&] { posted = state_ == CursorState::edit ? postEdit() : postInsert(); });
  standAfterPost(posted);  // the row is saved: an error from here on is none of the post
  fire(events.afterPost);
}

Cursor::Posted Cursor::postEdit() {
  const std::string oldKey = at_.key;
  std::string record = at_.record;
  if (modified()) {
    try {
      const bool current = isCurrent();  // before the change takes the write lock for itself
      Database::Change change(*database_, *table_);
      std::string now;
      if (!current && (!readStanding(at_.row, now) || now != at_.record))
        throw StoreError(Code::recordChanged, "A record of table '" + table_->name() +
                                                  "' has been changed or deleted since it was read. Read it again.");
      table_->updateRow(at_.row, at_.record, *buffer_, contents_, record);
      change.done();
    } catch (...) {
      // The places of contents that were not saved after all.
      for (const auto& [field, content] : contents_) {
        const bool had = !view().isNull(field);
        had ? buffer_->setBlobRef(field, view().blobRef(field)) : buffer_->setNull(field);
      }
      throw;
    }
  }
  unlockStanding();
  const RowId row = at_.row;
  if (record != at_.record) table_->rowChanged(row, &record);
  return {row, std::move(record), oldKey};
}

Cursor::Posted Cursor::postInsert() {
  int autoInc = -1;
  for (int i = 0; i < table_->layout().fieldCount(); ++i)
    if (table_->layout().field(i).type == FieldType::autoInc && buffer_->isNull(i)) autoInc = i;
  const bool typed = buffer_->modified();
  std::string record;
  RowId row = 0;
  try {
    Database::Change change(*database_, *table_);
    row = table_->insertRow(*buffer_, contents_, record);
    change.done();
  } catch (...) {
    if (autoInc >= 0) buffer_->setNull(autoInc);
    for (const auto& content : contents_) buffer_->setNull(content.first);
    if (!typed) buffer_->clearModified();
    throw;
  }
  kept_ = {};
  if (list_) list_->append(row);
  table_->rowChanged(row, &record);
  std::string key;
  keyOf(row, record, key);
  return {row, std::move(record), std::move(key)};
}

// On the posted row where it is still in view, otherwise on the one behind its old place.
void Cursor::standAfterPost(const Posted& posted) {
  state_ = CursorState::browse;
  buffer_->clear();
  contents_.clear();
  std::string key;
  keyOf(posted.row, posted.record, key);
  stand(posted.row, std::move(key), posted.record);
  if (inBounds(at_.key) && !nothing_ && passes()) {
    bof_ = eof_ = false;
    arrived();
    return;
  }
  at_.there = false;
  moveOn(posted.oldKey);
}

// The change is saved: an error of looking for the next row says nothing about it, so the next call looks again.
void Cursor::moveOn(const std::string& key) {
  const std::string from(key.begin(), key.end());  // `key` may be the standing row's own
  try {
    findAgain(from);
  } catch (const StoreError&) {
    at_.there = false;
    at_.key = from;
    findAgain_ = true;
  }
}

void Cursor::remove() {
  requireChangeable();
  synchronise();
  if (state_ == CursorState::insert) return cancel();
  if (state_ == CursorState::edit) cancel();
  if (!at_.there) throw StoreError(Code::notEditing, "'" + name_ + "' has no record to delete.");
  const std::vector<Cursor*> details = details_;
  for (Cursor* detail : details)
    if (std::find(details_.begin(), details_.end(), detail) != details_.end() && detail->isEditing()) detail->cancel();
  fire(events.beforeDelete);
  if (state_ != CursorState::browse || !at_.there) return;
  withErrorEvent(events.onDeleteError, [&] {
    lockStanding();
    try {
      Database::Change change(*database_, *table_);
      std::string now;
      if (!readStanding(at_.row, now) || now != at_.record)
        throw StoreError(Code::recordChanged, "A record of table '" + table_->name() +
                                                  "' has been changed or deleted since it was read. Read it again.");
      table_->deleteRow(at_.row, now);
      change.done();
    } catch (...) {
      unlockStanding();
      throw;
    }
  });
  unlockStanding();
  table_->rowChanged(at_.row, nullptr);
  at_.there = false;
  moveOn(at_.key);
  fire(events.afterDelete);
}

void Cursor::refresh() {
  requireOpen();
  if (isEditing()) cancel();
  if (link_) applyLink();
  findAgain_ = false;
  findAgain(at_.key);
}

void Cursor::rereadRow() {
  requireOpen();
  if (isEditing()) cancel();
  synchronise();
  if (!at_.there) return;
  std::string record, key;
  if (!readStanding(at_.row, record)) return findAgain(at_.key);
  keyOf(at_.row, record, key);
  stand(at_.row, std::move(key), std::move(record));
  arrived();
}

void Cursor::flush() {
  requireOpen();
  database_->settle();
}

void Cursor::lockTable() {
  requireOpen();
  database_->takeLock(table_->name(), LockKind::table, 0, [&] { return table_->locks().tryTable(this); });
  database_->noteLock(table_->name(), LockKind::table, 0);
  try {
    table_->refreshUnderLock();
  } catch (...) {
    table_->locks().releaseTable(this);
    database_->forgetLock(table_->name(), LockKind::table, 0);
    throw;
  }
}

void Cursor::unlockTable() {
  requireOpen();
  if (!table_->locks().holdsTable(this)) return;
  const auto release = [&] {
    table_->locks().releaseTable(this);
    database_->forgetLock(table_->name(), LockKind::table, 0);
  };
  try {
    database_->settle();
  } catch (...) {
    release();
    throw;
  }
  release();
}

}  // namespace quillon::store
