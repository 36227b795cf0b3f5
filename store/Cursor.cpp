// Opening and closing, fields, the master link.
#include "store/Cursor.h"

#include <algorithm>

#include "base/Text.h"
#include "store/CursorParts.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/locks/Holders.h"
#include "store/table/Table.h"

namespace quillon::store {
namespace {

// The database that a table's name belongs to: "\Memory\Name" is the session's own.
Database& databaseOf(Database& database, std::string_view table) {
  return foldCase(table).starts_with("\\memory\\") ? database.session().memory() : database;
}

std::vector<std::string_view> split(std::string_view names) {
  std::vector<std::string_view> parts;
  while (!names.empty()) {
    const std::size_t end = std::min(names.find(';'), names.size());
    parts.push_back(names.substr(0, end));
    names.remove_prefix(std::min(end + 1, names.size()));
  }
  return parts;
}

}  // namespace

Cursor::Cursor(Database& database, std::string table, std::string name)
    : database_(databaseOf(database, table)), tableName_(std::move(table)), name_(std::move(name)) {
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
    // Whoever must know that gathered rows are safe flushes before.
  }
}

void Cursor::setExclusive(bool exclusive) {
  if (isOpen()) throw StoreError(Code::badDefinition, "'" + name_ + "' is open; close it before it is made exclusive.");
  exclusive_ = exclusive;
}

void Cursor::open() {
  if (isOpen()) return;
  table_ = &database_.openTable(tableName_, this, exclusive_);
  table_->attach(this);
  buffer_ = std::make_unique<RowBuffer>(table_->layout());
  state_ = CursorState::browse;
  try {
    order_ = rowOrder_ ? -1 : table_->definition().indexPosition(wantedIndex_);
    if (order_ < 0 && !wantedIndex_.empty())
      throw StoreError(Code::noSuchIndex, "Table '" + table_->name() + "' has no index '" + wantedIndex_ + "'.");
    window_ = {};
    ranged_ = nothing_ = findAgain_ = false;
    low_.clear();
    high_.clear();
    at_ = {};
    view_.reset();
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
  at_ = kept_ = {};
  view_.reset();
  buffer_.reset();
  window_ = {};
  bof_ = eof_ = true;
  for (Cursor* detail : details_)
    if (detail->link_) detail->link_->stale = true;
  database_.closeTable(table, this);
}

void Cursor::abandon() {
  toBrowse();
  state_ = CursorState::closed;
  std::exchange(table_, nullptr)->detach(this);
  at_ = kept_ = {};
  view_.reset();
  buffer_.reset();
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

// Fields.

int Cursor::fieldPosition(std::string_view field) const {
  const TableDef& table = definition();
  for (std::size_t i = 0; i < table.fields.size(); ++i)
    if (table.fields[i].name == field) return static_cast<int>(i);
  if (const int found = table.fieldIndex(field); found >= 0) return found;
  for (std::size_t i = 0; i < extras_.size(); ++i)
    if (equalFolded(extras_[i]->definition.name, field)) return static_cast<int>(table.fields.size() + i);
  return -1;
}

int Cursor::fieldCount() const { return static_cast<int>(definition().fields.size() + extras_.size()); }

Field Cursor::operator[](std::string_view field) {
  const int position = fieldPosition(field);
  if (position < 0)
    throw StoreError(Code::noSuchField, "Table '" + table_->name() + "' has no field '" + std::string(field) + "'.");
  return {*this, position};
}

Value Cursor::value(std::string_view field) { return (*this)[field].value(); }

std::vector<int> Cursor::positions(std::string_view fields) const {
  std::vector<int> result;
  for (const std::string_view name : split(fields)) {
    const int position = fieldPosition(name);
    if (position < 0)
      throw StoreError(Code::noSuchField, "Table '" + tableName_ + "' has no field '" + std::string(name) + "'.");
    result.push_back(position);
  }
  return result;
}

void Cursor::addCalculated(FieldDef field) {
  extras_.push_back(std::make_unique<Extra>());
  extras_.back()->definition = std::move(field);
}

void Cursor::addLookup(FieldDef field, std::string keyFields, Cursor& other, std::string otherFields,
                       std::string result) {
  addCalculated(std::move(field));
  Extra& extra = *extras_.back();
  extra.keyFields = std::move(keyFields);
  extra.other = &other;
  extra.otherFields = std::move(otherFields);
  extra.result = std::move(result);
}

void Cursor::setCalculated(std::string_view field, const Value& value) {
  const int position = fieldPosition(field);
  const int own = static_cast<int>(definition().fields.size());
  if (position < own || extras_[static_cast<std::size_t>(position - own)]->other)
    throw StoreError(Code::noSuchField, "'" + name_ + "' has no calculated field '" + std::string(field) + "'.");
  extras_[static_cast<std::size_t>(position - own)]->calculated = value;
}

void Cursor::calculate() {
  if (calculated_ || calculating_) return;
  calculating_ = true;
  for (const auto& extra : extras_) extra->calculated = Value();
  try {
    if (events.onCalculate) events.onCalculate();
  } catch (...) {
    calculating_ = false;
    throw;
  }
  calculating_ = false;
  calculated_ = true;
}

Value Cursor::lookedUp(const Extra& extra) {
  if (!extra.other->isOpen()) return {};
  std::vector<Value> keys;
  for (const int position : positions(extra.keyFields)) keys.push_back(fieldValue(position));
  return extra.other->lookup(extra.otherFields, keys, extra.result);
}

RecordView& Cursor::view() {
  if (!view_) view_.emplace(table_->layout(), at_.record);
  return *view_;
}

Value Cursor::fieldValue(int position) {
  synchronise();
  const int own = static_cast<int>(table_->definition().fields.size());
  if (position >= own) {
    const Extra& extra = *extras_[static_cast<std::size_t>(position - own)];
    if (extra.other) return lookedUp(extra);
    calculate();
    return extra.calculated;
  }
  if (isBlobType(table_->layout().field(position).type)) return blobValue(position);
  if (isEditing()) return buffer_->get(position);
  return at_.there ? view().get(position) : Value();
}

Value Cursor::blobValue(int position) {
  const bool memo = table_->layout().field(position).type == FieldType::memo;
  const auto valueOf = [&](std::string content) { return memo ? Value(std::move(content)) : Value(Blob{std::move(content)}); };
  if (isEditing()) {
    if (const auto found = contents_.find(position); found != contents_.end())
      return found->second.empty() ? Value() : valueOf(found->second);
    if (state_ == CursorState::insert) return {};
  }
  if (!at_.there || view().isNull(position)) return {};
  // The row may be old and its content given to another: ask for where the content is now.
  std::string record;
  const Table::Reading reading(*table_);
  if (!table_->readRow(at_.row, record)) return {};
  const RecordView now(table_->layout(), record);
  return now.isNull(position) ? Value() : valueOf(table_->readBlob(now.blobRef(position)));
}

void Cursor::setField(int position, const Value& value) {
  requireOpen();
  if (!isEditing())
    throw StoreError(Code::notEditing, "'" + name_ + "' is not being edited: its fields cannot be changed.");
  if (position >= static_cast<int>(table_->definition().fields.size()))
    throw StoreError(Code::badValue, "A calculated field cannot be changed.");
  const FieldDef& field = table_->layout().field(position);
  if (!isBlobType(field.type)) {
    buffer_->set(position, value);
  } else {
    std::string content = value.kind() == Value::Kind::blob ? value.asBlob().bytes : value.asText();
    if (field.type == FieldType::memo && !isValidUtf8(content))
      throw StoreError(Code::badValue, "The text for field '" + field.name + "' is not valid UTF-8.");
    contents_[position] = std::move(content);
    contentsModified_ = true;
  }
  calculated_ = false;
  tellDetails();
}

const FieldDef& Field::definition() const {
  const TableDef& table = cursor_->definition();
  const auto own = static_cast<int>(table.fields.size());
  if (position_ < own) return table.fields[static_cast<std::size_t>(position_)];
  return cursor_->extras_[static_cast<std::size_t>(position_ - own)]->definition;
}

Value Field::value() const {
  cursor_->requireOpen();
  return cursor_->fieldValue(position_);
}

bool Field::isNull() const { return value().isNull(); }

Value Field::oldValue() const {
  cursor_->requireOpen();
  if (cursor_->state_ != CursorState::edit || isBlobType(definition().type)) return value();
  return cursor_->view().get(position_);
}

void Field::set(const Value& value) const { cursor_->setField(position_, value); }

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
  std::erase(link_->master.details_, this);
  link_.reset();
  if (isOpen()) cancelRange();
}

void Cursor::applyLink() {
  link_->stale = false;
  Cursor& master = link_->master;
  const std::vector<std::string_view> names = split(link_->masterFields);
  if (!link_->index.empty()) {
    order_ = table_->definition().indexPosition(link_->index);
  } else if (wantedIndex_.empty()) {
    const auto fits = [&](const IndexDef& index) {
      if (index.parts.size() < names.size()) return false;
      for (std::size_t i = 0; i < names.size(); ++i)
        if (!equalFolded(table_->definition().fields[static_cast<std::size_t>(index.parts[i].field)].name, names[i]))
          return false;
      return true;
    };
    const auto& indexes = table_->definition().indexes;
    const auto found = std::find_if(indexes.begin(), indexes.end(), fits);
    order_ = found == indexes.end() ? -1 : static_cast<int>(found - indexes.begin());
  }
  if (order_ < 0)
    throw StoreError(Code::noSuchIndex, "Table '" + table_->name() + "' has no index for the link over '" +
                                            link_->masterFields + "'.");
  nothing_ = !master.isOpen() || (!master.isEditing() && !master.at_.there);
  std::vector<Value> values;
  if (!nothing_)
    for (const std::string_view name : names) values.push_back(master.value(name));
  table_->codec(order_).encodePrefix(values, low_);
  high_ = KeyCodec::successor(low_);
  window_ = {};
}

// A new row of a detail belongs to its master.
void Cursor::copyLinkFields() {
  if (!link_ || !link_->master.isOpen()) return;
  const auto& parts = table_->definition().indexes[static_cast<std::size_t>(order_)].parts;
  const std::vector<std::string_view> names = split(link_->masterFields);
  for (std::size_t i = 0; i < names.size() && i < parts.size(); ++i)
    buffer_->set(parts[i].field, link_->master.value(names[i]));
}

void Cursor::tellDetails() {
  for (Cursor* detail : details_)
    if (detail->link_) detail->link_->stale = true;
}

void Cursor::synchronise() {
  requireOpen();
  if (link_ && link_->stale && state_ == CursorState::browse) {
    applyLink();
    firstRow();
    bof_ = true;
    eof_ = !at_.there;
    arrived();
  }
  if (findAgain_ && state_ == CursorState::browse) {
    findAgain_ = false;
    findAgain(at_.key);
  }
}

void Cursor::ownChange(RowId row, const std::string* record) {
  Standing& standing = state_ == CursorState::insert ? kept_ : at_;
  if (!standing.there || standing.row != row) return;
  standing.ownDeleted = record == nullptr;
  if (record) standing.expected = *record;
}

void Cursor::ownRollback(bool cancelEdit) {
  if (cancelEdit) toBrowse();
  findAgain_ = true;
}

}  // namespace quillon::store
