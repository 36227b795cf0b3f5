// Opening and closing, the master link, what own changes mean to a cursor.
#include "store/Cursor.h"

#include <algorithm>

#include "base/Text.h"
#include "store/CursorParts.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/RowFilter.h"
#include "store/locks/Holders.h"
#include "store/table/Table.h"

namespace quillon::store {
namespace {

// The database that a table's name belongs to: "\Memory\Name" is the session's own.
Database& databaseOf(Database& database, std::string_view table) {
  return foldCase(table).starts_with("\\memory\\") ? database.session().memory() : database;
}

}  // namespace

Cursor::Cursor(Database& database, std::string table, std::string name)
    : database_(&databaseOf(database, table)), tableName_(std::move(table)), name_(std::move(name)) {
  if (name_.empty()) name_ = tableName_;
}

Cursor::Cursor(Database& database, std::string table, const follows& link, std::string name)
    : Cursor(database, std::move(table), std::move(name)) {
  setMaster(link);
}

Cursor::~Cursor() {
  if (link_) std::erase(link_->master.details_, this);
  for (Cursor* detail : details_) detail->link_.reset();
  try {
    close();
  } catch (...) {
    if (database_ != nullptr) database_->tellAtSettle();
  }
}

void Cursor::setExclusive(bool exclusive) {
  if (isOpen()) throw StoreError(Code::badDefinition, "'" + name_ + "' is open; close it before it is made exclusive.");
  exclusive_ = exclusive;
}

void Cursor::open() {
  if (isOpen()) return;
  table_ = &database_->openTable(tableName_, this, exclusive_);
  table_->attach(this);
  buffer_ = std::make_unique<RowBuffer>(table_->layout());
  state_ = CursorState::browse;
  try {
    order_ = rowOrder_ ? -1 : table_->definition().indexPosition(wantedIndex_);
    if (order_ < 0 && !wantedIndex_.empty())
      throw StoreError(Code::noSuchIndex, "Table '" + table_->name() + "' has no index '" + wantedIndex_ + "'.");
    window_ = {};
    ranged_ = nothing_ = findAgain_ = linked_ = false;
    low_.clear();
    high_.clear();
    at_ = {};
    view_.reset();
    filter_ = boundFilter(filterText_);
    if (link_) applyLink();
    first();
  } catch (...) {
    close();
    throw;
  }
}

void Cursor::close() {
  if (!isOpen()) return;
  toBrowse();
  state_ = CursorState::closed;
  Table& table = *std::exchange(table_, nullptr);
  table.detach(this);
  while (table.locks().holdsTable(this)) {
    table.locks().releaseTable(this);
    database_->forgetLock(table.name(), LockKind::table, 0);
  }
  at_ = kept_ = {};
  view_.reset();
  buffer_.reset();
  filter_.reset();
  window_ = {};
  bof_ = eof_ = true;
  for (Cursor* detail : details_)
    if (detail->link_) detail->link_->stale = true;
  database_->closeTable(table, this);
}

void Cursor::setTarget(Database& database, std::string table, bool readOnly) {
  database_ = &database;
  tableName_ = std::move(table);
  readOnly_ = readOnly;
  rowOrder_ = true;
  wantedIndex_.clear();
  list_.reset();
}

void Cursor::setRows(const std::vector<RowId>& rows) {
  list_ = std::make_unique<RowList>();
  for (const RowId row : rows) list_->append(row);
}

void Cursor::abandon() {
  toBrowse();
  state_ = CursorState::closed;
  std::exchange(table_, nullptr)->detach(this);
  at_ = kept_ = {};
  view_.reset();
  buffer_.reset();
  filter_.reset();
  window_ = {};
  tellDetails();
}

void Cursor::requireOpen() const {
  if (!isOpen()) throw StoreError(Code::notEditing, "'" + name_ + "' is closed.");
}

const TableDef& Cursor::definition() const {
  requireOpen();
  return table_->definition();
}

Table& Cursor::table() const {
  requireOpen();
  return *table_;
}

// The master.

void Cursor::setMaster(const follows& link) {
  clearMaster();
  link_ = std::make_unique<Link>(Link{link.master, link.masterFields, link.index});
  link.master.details_.push_back(this);
  if (!isOpen()) return;
  leaveRow();
  applyLink();
  first();
}

void Cursor::clearMaster() {
  if (!link_) return;
  if (isOpen()) leaveRow();
  std::erase(link_->master.details_, this);
  link_.reset();
  if (!isOpen()) return;
  order_ = rowOrder_ ? -1 : table_->definition().indexPosition(wantedIndex_);
  low_.clear();
  high_.clear();
  nothing_ = false;
  findAgainFrom(at_);
}

// The index of a link: the one named, the one chosen, or the first over fields of the master's names.
int Cursor::linkIndex(const std::vector<std::string_view>& names) const {
  const TableDef& table = table_->definition();
  int order = order_;
  if (!link_->index.empty()) {
    order = table.indexPosition(link_->index);
  } else if (wantedIndex_.empty()) {
    const auto fits = [&](const IndexDef& index) {
      if (index.parts.size() < names.size()) return false;
      for (std::size_t i = 0; i < names.size(); ++i)
        if (!equalFolded(table.fields[static_cast<std::size_t>(index.parts[i].field)].name, names[i])) return false;
      return true;
    };
    const auto found = std::find_if(table.indexes.begin(), table.indexes.end(), fits);
    order = found == table.indexes.end() ? -1 : static_cast<int>(found - table.indexes.begin());
  }
  if (order < 0)
    throw StoreError(Code::noSuchIndex,
                     "Table '" + table_->name() + "' has no index for the link over '" + link_->masterFields + "'.");
  return order;
}

// Takes the bounds from the master's row; false when they are those that it has.
bool Cursor::applyLink() {
  Cursor& master = link_->master;
  const std::vector<std::string_view> names = splitNames(link_->masterFields);
  const int order = linkIndex(names);
  bool nothing = !master.isOpen() || (!master.isEditing() && !master.at_.there);
  std::vector<Value> values;
  if (!nothing)
    for (const std::string_view name : names) values.push_back(master.value(name));
  std::string low;
  try {
    table_->codec(order).encodePrefix(values, low);
  } catch (const StoreError& error) {
    if (error.code() != Code::badValue) throw;
    nothing = true;  // no detail has a value that its field cannot hold
  }
  link_->stale = false;
  if (order == order_ && nothing == nothing_ && low == low_ && linked_) return false;
  order_ = order;
  nothing_ = nothing;
  low_ = std::move(low);
  high_ = KeyCodec::successor(low_);
  window_ = {};
  linked_ = true;
  return true;
}

// A new row of a detail belongs to its master.
void Cursor::copyLinkFields() {
  if (!link_ || !link_->master.isOpen()) return;
  const auto& parts = table_->definition().indexes[static_cast<std::size_t>(order_)].parts;
  const std::vector<std::string_view> names = splitNames(link_->masterFields);
  for (std::size_t i = 0; i < names.size() && i < parts.size(); ++i)
    buffer_->set(parts[i].field, link_->master.value(names[i]));
}

void Cursor::tellDetails() {
  for (Cursor* detail : details_)
    if (detail->link_) detail->link_->stale = true;
}

void Cursor::synchronise() {
  requireOpen();
  if (suspended_ || state_ != CursorState::browse) return;
  if (link_ && link_->master.isOpen()) link_->master.synchronise();
  if (link_ && link_->stale && applyLink()) {
    firstRow();
    bof_ = true;
    eof_ = !at_.there;
    arrived();
    requireOpen();
  }
  if (findAgain_) {
    findAgain_ = false;
    findAgain(at_.key);
    requireOpen();
  }
}

void Cursor::ownChange(RowId row, const std::string* record) {
  Standing& standing = state_ == CursorState::insert ? kept_ : at_;
  if (list_ && !record && list_->places.count(row) > 0) ++list_->gone;
  if (!standing.there || standing.row != row) return;
  standing.ownDeleted = record == nullptr;
  if (record) standing.expected = *record;
}

void Cursor::ownRollback(bool cancelEdit) {
  if (cancelEdit) toBrowse();
  findAgain_ = true;
}

}  // namespace quillon::store
