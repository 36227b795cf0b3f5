#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::store {

struct TableDef;

inline constexpr std::size_t kMaxFields = 500;
inline constexpr std::size_t kMaxIndexes = 64;
inline constexpr int kMaxTextSize = 255;          // characters of a string field
inline constexpr std::size_t kMaxKeySize = 1000;  // bytes of the longest key that an index may need, row id included
inline constexpr std::size_t kMaxNameSize = 64;   // bytes of a table's or index's name
inline constexpr std::size_t kMaxFieldNameSize = 240;  // bytes; a result's column may be called by its expression

// The numbers stand in table files.
enum class FieldType : std::uint8_t {
  string = 1,
  smallint = 2,
  integer = 3,
  autoInc = 4,
  floating = 5,
  currency = 6,
  boolean = 7,
  date = 8,
  time = 9,
  dateTime = 10,
  memo = 11,
  blob = 12,
  graphic = 13,
  largeInt = 14,  // a whole number of 64 bits: of results of statements
};

// Whether the content lives in blob chains beside the record.
bool isFieldName(std::string_view name);  // UTF-8 without control characters, and no blanks around it
constexpr bool isBlobType(FieldType type) {
  return type == FieldType::memo || type == FieldType::blob || type == FieldType::graphic;
}

struct FieldDef {
  std::string name;
  FieldType type = FieldType::string;
  int size = 0;  // characters of a string field, 1 to 255; otherwise 0
  bool required = false;

  friend bool operator==(const FieldDef&, const FieldDef&) = default;
};

struct IndexPart {
  int field = 0;  // position in TableDef::fields
  bool descending = false;

  friend bool operator==(const IndexPart&, const IndexPart&) = default;
};

enum class IndexOptions : std::uint8_t { none = 0, unique = 1, caseInsensitive = 2 };
constexpr IndexOptions operator|(IndexOptions a, IndexOptions b) {
  return static_cast<IndexOptions>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
constexpr bool has(IndexOptions options, IndexOptions one) {
  return (static_cast<unsigned>(options) & static_cast<unsigned>(one)) != 0;
}

// An index as data: field names joined by ';', and those of them that descend.
struct IndexSpec {
  std::string_view name;  // empty for the primary index
  std::string_view fields;
  IndexOptions options = IndexOptions::none;
  std::string_view descending = {};
};

struct IndexDef {
  std::string name;  // empty for the primary index
  std::vector<IndexPart> parts;
  bool unique = false;
  bool caseInsensitive = false;

  // Names resolved against the fields of `table`, in any case. badDefinition for a name that is not there, or a
  // descending field that is not of the index.
  static IndexDef of(const TableDef& table, const IndexSpec& spec);

  friend bool operator==(const IndexDef&, const IndexDef&) = default;
};

// What a table is: its fields in order and its indexes.
struct TableDef {
  std::string name;
  std::vector<FieldDef> fields;
  std::vector<IndexDef> indexes;

  // Validated.
  static TableDef of(std::string name, std::vector<FieldDef> fields, std::initializer_list<IndexSpec> indexes = {});

  // Position of a field or index by its name in any case; -1 when there is none.
  int fieldIndex(std::string_view fieldName) const;
  int indexPosition(std::string_view indexName) const;
  // Bytes of the longest key that the index may need, row id included.
  std::size_t maxKeySize(const IndexDef& index) const;
  // badDefinition, naming what is wrong: no fields or too many of anything, repeated or odd names, sizes, a second
  // autoInc, an index over an unknown, repeated or blob field, or one whose keys may be too long.
  // A table or index has letters, digits, '_', '-' and inner spaces in its name; a field any printable characters.
  void validate() const;

  // As it stands in a table file; encode validates. decode accepts only what encode wrote for a valid table, else
  // headerDamaged.
  std::string encode() const;
  static TableDef decode(std::span<const std::byte> bytes);

  friend bool operator==(const TableDef&, const TableDef&) = default;
};

}  // namespace quillon::store
