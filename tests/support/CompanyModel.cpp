#include "support/CompanyModel.h"

#include <algorithm>
#include <span>

#include "store/Cursor.h"
#include "store/Database.h"
#include "store/pages/Page.h"

namespace quillon::sim {
namespace {

// The fields of a key in order: n Number, a Amount, t Name; a capital letter descends.
struct ModelIndex {
  const char* table;
  store::IndexSpec spec;
  const char* key;
};
constexpr ModelIndex kIndexes[] = {
    {"Cust", {"", "Number", store::IndexOptions::unique}, "n"},
    {"Cust", {"Name1", "Name", store::IndexOptions::unique | store::IndexOptions::caseInsensitive}, "t"},
    {"Det", {"", "Amount;Number"}, "an"},
    {"Det", {"Name1", "Name", store::IndexOptions::none, "Name"}, "T"},
    {"Det", {"Number1", "Number;Name", store::IndexOptions::none, "Number"}, "Nt"},
    {"Ctl", {"", "Number"}, "n"},
    {"Extra", {"", "Name", store::IndexOptions::unique}, "t"},
};

int compared(const ModelRow& a, const ModelRow& b, char field) {
  const auto three = [](const auto& x, const auto& y) { return x < y ? -1 : y < x ? 1 : 0; };
  switch (field) {
    case 'n':
      return three(a.number, b.number);
    case 'N':
      return three(b.number, a.number);
    case 'a':
      return three(a.amount, b.amount);
    case 't':
      return three(a.name, b.name);
    default:
      return three(b.name, a.name);
  }
}

std::vector<ModelRow> sorted(std::vector<ModelRow> rows, const char* key) {
  std::stable_sort(rows.begin(), rows.end(), [key](const ModelRow& a, const ModelRow& b) {
    for (const char* field = key; *field != 0; ++field)
      if (const int order = compared(a, b, *field); order != 0) return order < 0;
    return false;
  });
  return rows;
}

std::vector<ModelRow> walk(store::Cursor& cursor) {
  std::vector<ModelRow> rows;
  for (cursor.first(); !cursor.eof(); cursor.next()) rows.push_back(rowOf(cursor));
  return rows;
}

}  // namespace

bool CompanyState::sameRows(const CompanyState& other) const {
  return std::equal(tables.begin(), tables.end(), other.tables.begin(), other.tables.end(),
                    [](const auto& a, const auto& b) { return a.first == b.first && a.second.rows == b.second.rows; });
}

std::string CompanyState::describe() const {
  std::string text;
  for (const auto& [name, table] : tables) {
    text += "  " + name + ":";
    for (const ModelRow& row : table.rows)
      text += " (" + std::to_string(row.number) + " " + row.name.substr(0, 8) + " " + std::to_string(row.amount) +
              (row.notes.empty() ? "" : " " + std::to_string(row.notes.size()) + row.notes[0]) + ")";
    text += "\n";
  }
  return text;
}

std::uint64_t CompanyState::hash() const {
  const std::string text = describe();
  return store::hashBytes(text.data(), text.size());
}

bool hasAutoNumber(const std::string& table) { return table == "Cust"; }
bool hasNotes(const std::string& table) { return table == "Cust" || table == "Extra"; }

store::TableDef modelDefinition(const std::string& table) {
  using store::FieldType;
  store::TableDef definition = store::TableDef::of(
      table, {{"Number", hasAutoNumber(table) ? FieldType::autoInc : FieldType::integer},
              {"Name", FieldType::string, 200},
              {"Amount", FieldType::integer},
              {"Notes", hasNotes(table) ? FieldType::memo : FieldType::string, hasNotes(table) ? 0 : 10}});
  for (const ModelIndex& index : kIndexes)
    if (table == index.table) definition.indexes.push_back(store::IndexDef::of(definition, index.spec));
  return definition;
}

void putRow(store::Cursor& cursor, const ModelRow& row) {
  if (!hasAutoNumber(cursor.definition().name)) cursor["Number"] = row.number;
  cursor["Name"] = row.name;
  cursor["Amount"] = row.amount;
  if (hasNotes(cursor.definition().name)) cursor["Notes"] = row.notes;
}

ModelRow rowOf(store::Cursor& cursor) {
  return {cursor["Number"].asInt64(), cursor["Amount"].asInt64(), cursor["Name"].asText(), cursor["Notes"].asText()};
}

ModelTable readTable(store::Database& database, const std::string& name, std::vector<std::string>& faults) {
  store::Cursor cursor(database, name);
  cursor.setRowOrder();
  cursor.open();
  ModelTable table{walk(cursor)};
  if (cursor.recordCount() != table.rows.size()) faults.push_back("'" + name + "' counts its rows wrongly");
  for (const ModelIndex& index : kIndexes) {
    if (name != index.table) continue;
    cursor.setIndex(index.spec.name);
    if (walk(cursor) != sorted(table.rows, index.key))
      faults.push_back("index '" + std::string(index.spec.name) + "' of '" + name + "' does not fit its rows");
  }
  return table;
}

CompanyState readCompany(store::Database& database, std::vector<std::string>& faults) {
  CompanyState state;
  for (const std::string& name : database.tableNames()) state.tables[name] = readTable(database, name, faults);
  return state;
}

}  // namespace quillon::sim
