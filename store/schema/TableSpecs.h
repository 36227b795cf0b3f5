#pragma once

#include <span>
#include <string_view>

#include "store/Schema.h"

// The words in which the company's tables are written down, and the lists of them, one for each subsystem.
namespace quillon::store::schema {

// FieldDef as constant data.
struct FieldSpec {
  std::string_view name;
  FieldType type;
  int size = 0;
  bool required = false;
};

struct TableSpec {
  std::string_view name;
  std::span<const FieldSpec> fields;
  std::span<const IndexSpec> indexes;  // none: a table of one row
};

inline constexpr bool kRequired = true;
inline constexpr IndexOptions kUnique = IndexOptions::unique;
inline constexpr IndexOptions kNoCase = IndexOptions::caseInsensitive;
inline constexpr IndexOptions kUniqueNoCase = kUnique | kNoCase;

constexpr IndexSpec primary(std::string_view fields) { return {"", fields, kUnique}; }
// Over one field, and called as that.
constexpr IndexSpec plain(std::string_view field) { return {field, field}; }
// Each of its fields descends.
constexpr IndexSpec descending(std::string_view name, std::string_view fields) {
  return {name, fields, IndexOptions::none, fields};
}

std::span<const TableSpec> generalTables();
std::span<const TableSpec> ledgerTables();
std::span<const TableSpec> customerTables();
std::span<const TableSpec> receivablesTables();
std::span<const TableSpec> payablesTables();
std::span<const TableSpec> inventoryTables();
std::span<const TableSpec> manufacturingTables();

}  // namespace quillon::store::schema
