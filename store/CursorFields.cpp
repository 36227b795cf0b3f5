// Fields: of the table, calculated, looked up, and contents of memo and blob fields.
#include <algorithm>

#include "base/Text.h"
#include "store/Cursor.h"
#include "store/CursorParts.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/locks/Holders.h"
#include "store/table/Table.h"

namespace quillon::store {

std::vector<std::string_view> splitNames(std::string_view names) {
  std::vector<std::string_view> parts;
  while (!names.empty()) {
    const std::size_t end = std::min(names.find(';'), names.size());
    parts.push_back(trim(names.substr(0, end)));
    names.remove_prefix(std::min(end + 1, names.size()));
  }
  return parts;
}

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
  for (const std::string_view name : splitNames(fields)) {
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
  if (isBlobType(table_->layout().field(position).type)) return blobValue(position, isEditing());
  if (isEditing()) return buffer_->get(position);
  return at_.there ? view().get(position) : Value();
}

Value Cursor::blobValue(int position, bool asTyped) {
  const bool memo = table_->layout().field(position).type == FieldType::memo;
  const auto valueOf = [&](std::string content) {
    return memo ? Value(std::move(content)) : Value(Blob{std::move(content)});
  };
  if (asTyped) {
    if (const auto found = contents_.find(position); found != contents_.end())
      return found->second ? valueOf(*found->second) : Value();
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
  const bool told = silenced_ == 0;
  if (told && events.onValidate) events.onValidate(position, value);
  const Value old = told && events.onChange ? fieldValue(position) : Value();
  if (!isBlobType(field.type)) {
    buffer_->set(position, value);
  } else {
    std::optional<std::string> content;
    if (!value.isNull()) content = value.kind() == Value::Kind::blob ? value.asBlob().bytes : value.asText();
    if (content && field.type == FieldType::memo && !isValidUtf8(*content))
      throw StoreError(Code::badValue, "The text for field '" + field.name + "' is not valid UTF-8.");
    contents_[position] = std::move(content);
    contentsModified_ = true;
  }
  calculated_ = false;
  tellDetails();
  if (told && events.onChange) events.onChange(position, old);
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
  if (cursor_->state_ != CursorState::edit || position_ >= cursor_->table_->layout().fieldCount()) return value();
  if (isBlobType(definition().type)) return cursor_->blobValue(position_, false);
  return cursor_->view().get(position_);
}

void Field::set(const Value& value) const { cursor_->setField(position_, value); }

}  // namespace quillon::store
