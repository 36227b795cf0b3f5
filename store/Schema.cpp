#include "store/Schema.h"

#include <algorithm>
#include <set>
#include <utility>

#include "base/Text.h"
#include "store/Errors.h"
#include "store/KeyCodec.h"

namespace quillon::store {
namespace {

[[noreturn]] void refuse(const TableDef& table, const std::string& reason) {
  throw StoreError(Code::badDefinition, "The definition of table " + table.name + " is refused: " + reason);
}

bool isNameByte(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == ' ' ||
         c == '-' || byte >= 0x80;
}

bool isName(std::string_view name) {
  return !name.empty() && name.size() <= kMaxNameSize && trim(name).size() == name.size() &&
         std::all_of(name.begin(), name.end(), isNameByte) && isValidUtf8(name);
}

// Bytes of a field's longest value in a key, the marker left out.
std::size_t keyBytes(const FieldDef& field) {
  switch (field.type) {
    case FieldType::string:
      // A character has up to four bytes, folded ones too; the bytes that are doubled are characters of one byte.
      return static_cast<std::size_t>(field.size) * 4 + 1;
    case FieldType::boolean:
      return 1;
    case FieldType::smallint:
      return 2;
    case FieldType::integer:
    case FieldType::autoInc:
    case FieldType::date:
    case FieldType::time:
      return 4;
    case FieldType::largeInt:
    case FieldType::floating:
    case FieldType::currency:
    case FieldType::dateTime:
      return 8;
    case FieldType::memo:
    case FieldType::blob:
    case FieldType::graphic:
      break;
  }
  return 0;
}

void validateFields(const TableDef& table) {
  if (table.fields.empty()) refuse(table, "it has no fields");
  if (table.fields.size() > kMaxFields) refuse(table, "it has more than " + std::to_string(kMaxFields) + " fields");
  std::set<std::string> names;
  bool counted = false;
  for (const FieldDef& field : table.fields) {
    if (!isFieldName(field.name)) refuse(table, "'" + field.name + "' is no name for a field");
    if (!names.insert(foldCase(field.name)).second) refuse(table, "the field " + field.name + " stands there twice");
    if (field.type < FieldType::string || field.type > FieldType::largeInt) {
      refuse(table, "the field " + field.name + " has an unknown type");
    }
    const bool sized = field.type == FieldType::string;
    if (sized ? field.size < 1 || field.size > kMaxTextSize : field.size != 0) {
      refuse(table, "the field " + field.name + " cannot have the size " + std::to_string(field.size));
    }
    if (field.type != FieldType::autoInc) continue;
    if (counted) refuse(table, "it has more than one AutoInc field");
    counted = true;
  }
}

void validateIndex(const TableDef& table, const IndexDef& index) {
  const std::string called = index.name.empty() ? "the primary index" : "the index " + index.name;
  if (!index.name.empty() && !isName(index.name)) refuse(table, "'" + index.name + "' is no name for an index");
  if (index.parts.empty()) refuse(table, called + " has no fields");
  std::set<int> seen;
  for (const IndexPart& part : index.parts) {
    if (part.field < 0 || static_cast<std::size_t>(part.field) >= table.fields.size()) {
      refuse(table, called + " is over an unknown field");
    }
    const FieldDef& field = table.fields[static_cast<std::size_t>(part.field)];
    if (isBlobType(field.type)) refuse(table, called + " cannot be over the field " + field.name);
    if (!seen.insert(part.field).second) refuse(table, called + " has the field " + field.name + " twice");
  }
  if (table.maxKeySize(index) > kMaxKeySize) {
    refuse(table, "the keys of " + called + " may be longer than " + std::to_string(kMaxKeySize) + " bytes");
  }
}

std::vector<std::string_view> split(std::string_view list) {
  std::vector<std::string_view> names;
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(';'), list.size());
    names.push_back(trim(list.substr(0, end)));
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return names;
}

}  // namespace

bool isFieldName(std::string_view name) {
  return !name.empty() && name.size() <= kMaxFieldNameSize && trim(name).size() == name.size() && isValidUtf8(name) &&
         std::none_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

IndexDef IndexDef::of(const TableDef& table, const IndexSpec& spec) {
  IndexDef index{std::string(spec.name),
                 {},
                 has(spec.options, IndexOptions::unique),
                 has(spec.options, IndexOptions::caseInsensitive)};
  for (const std::string_view field : split(spec.fields)) {
    index.parts.push_back({table.fieldIndex(field), false});
    if (index.parts.back().field < 0) refuse(table, "an index is over the unknown field " + std::string(field));
  }
  for (const std::string_view field : split(spec.descending)) {
    const int position = table.fieldIndex(field);
    const auto part = std::find_if(index.parts.begin(), index.parts.end(),
                                   [position](const IndexPart& one) { return one.field == position; });
    if (part == index.parts.end()) refuse(table, std::string(field) + " descends but is not of its index");
    part->descending = true;
  }
  return index;
}

TableDef TableDef::of(std::string name, std::vector<FieldDef> fields, std::initializer_list<IndexSpec> indexes) {
  TableDef table{std::move(name), std::move(fields), {}};
  for (const IndexSpec& spec : indexes) table.indexes.push_back(IndexDef::of(table, spec));
  table.validate();
  return table;
}

int TableDef::fieldIndex(std::string_view fieldName) const {
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (equalFolded(fields[i].name, fieldName)) return static_cast<int>(i);
  }
  return -1;
}

int TableDef::indexPosition(std::string_view indexName) const {
  for (std::size_t i = 0; i < indexes.size(); ++i) {
    if (equalFolded(indexes[i].name, indexName)) return static_cast<int>(i);
  }
  return -1;
}

std::size_t TableDef::maxKeySize(const IndexDef& index) const {
  std::size_t size = KeyCodec::kRowBytes;
  for (const IndexPart& part : index.parts) size += 1 + keyBytes(fields[static_cast<std::size_t>(part.field)]);
  return size;
}

void TableDef::validate() const {
  if (!isName(name)) refuse(*this, "'" + name + "' is no name for a table");
  validateFields(*this);
  if (indexes.size() > kMaxIndexes) refuse(*this, "it has more than " + std::to_string(kMaxIndexes) + " indexes");
  std::set<std::string> names;
  for (const IndexDef& index : indexes) {
    validateIndex(*this, index);
    if (!names.insert(foldCase(index.name)).second) {
      refuse(*this,
             index.name.empty() ? "it has two primary indexes" : "the index " + index.name + " stands there twice");
    }
  }
}

}  // namespace quillon::store
