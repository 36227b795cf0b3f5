#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "store/Schema.h"

namespace quillon::store {
class Cursor;
class Database;
}  // namespace quillon::store

// A tiny company and what stands in it, as plain values. All its tables have the same fields; keys, the automatic
// number and the memo differ:
//   Cust   Number autoInc, unique; Name unique; Notes memo
//   Det    three indexes, one of them over two fields, two descending; no memo
//   Ctl    one row with a number to be taken, opened exclusively
//   Extra  comes and goes
namespace quillon::sim {

struct ModelRow {
  std::int64_t number = 0;
  std::int64_t amount = 0;
  std::string name, notes;
  bool operator==(const ModelRow&) const = default;
};

struct ModelTable {
  std::vector<ModelRow> rows;  // in the order of entry
  std::int64_t autoInc = 0;    // the last number given
};

struct CompanyState {
  std::map<std::string, ModelTable> tables;

  bool sameRows(const CompanyState& other) const;
  std::string describe() const;
  std::uint64_t hash() const;
};

inline constexpr const char* kModelFolder = "/company";

bool hasAutoNumber(const std::string& table);
bool hasNotes(const std::string& table);
store::TableDef modelDefinition(const std::string& table);

void putRow(store::Cursor& cursor, const ModelRow& row);  // into a cursor in edit or insert
ModelRow rowOf(store::Cursor& cursor);

// What cursors see. Each index is walked and must give the same rows, sorted; what is wrong is added to `faults`. The
// numbers last given are not to be seen and stay 0.
ModelTable readTable(store::Database& database, const std::string& name, std::vector<std::string>& faults);
CompanyState readCompany(store::Database& database, std::vector<std::string>& faults);

}  // namespace quillon::sim
