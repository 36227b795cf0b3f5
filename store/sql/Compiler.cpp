#include "store/sql/Compiler.h"

#include <algorithm>
#include <ctime>

#include "base/Text.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/sql/Expression.h"
#include "store/table/Table.h"

namespace quillon::store::sql {

Compiler::Compiler(Database& database, const std::map<std::string, Value, std::less<>>& parameters)
    : database_(database), given_(parameters) {}

Compiler::~Compiler() {
  Database& memory = database_.session().memory();
  try {
    for (Table* table : tables_) database_.closeTable(*table, this);
    for (Table* table : memoryTables_) memory.closeTable(*table, this);
    for (const std::string& name : made_) memory.dropTable(name);
  } catch (const StoreError&) {
    // A statement's tables are only read here or were settled before; nothing of the person's is lost.
  }
}

Table& Compiler::table(const std::string& name, const Place& place) {
  const bool inMemory = foldCase(name).starts_with("\\memory\\");
  Database& database = inMemory ? database_.session().memory() : database_;
  std::vector<Table*>& known = &database == &database_ ? tables_ : memoryTables_;
  try {
    for (Table* table : known)
      if (equalFolded(table->name(), Database::plainName(name))) return *table;
    Table& table = database.openTable(name, this, false);
    known.push_back(&table);
    return table;
  } catch (const StoreError& error) {
    if (error.code() != Code::noSuchTable) throw;
    refuse(place, Code::noSuchTable, "there is no table '" + name + "'.");
  }
}

std::string newMemoryName(Database& memory) {
  for (int number = 1;; ++number) {
    std::string name = "Result " + std::to_string(number);
    if (!memory.exists(name)) return name;
  }
}

Table& Compiler::makeTable(const TableDef& definition) {
  Database& memory = database_.session().memory();
  TableDef named = definition;
  named.name = newMemoryName(memory);
  memory.createTable(named);
  made_.push_back(named.name);
  memoryTables_.push_back(&memory.openTable(named.name, this, false));
  return *memoryTables_.back();
}

int Compiler::parameter(const std::string& name, const Place& place) {
  const std::string folded = foldCase(name);
  const auto known = std::find(names_.begin(), names_.end(), folded);
  if (known != names_.end()) return static_cast<int>(known - names_.begin());
  const auto given = given_.find(folded);
  if (given == given_.end()) refuse(place, Code::badStatement, "the parameter ':" + name + "' has no value.");
  if (given->second.kind() == Value::Kind::text && !isValidUtf8(given->second.asText()))
    refuse(place, Code::badValue, "the value of the parameter ':" + name + "' is not valid UTF-8.");
  names_.push_back(folded);
  values_.push_back(given->second);
  return static_cast<int>(values_.size() - 1);
}

Date Compiler::today() const {
  const std::time_t now = database_.session().environment().clock.unixSeconds();
  std::tm local{};
  localtime_r(&now, &local);
  return {local.tm_year + 1900, static_cast<unsigned>(local.tm_mon + 1), static_cast<unsigned>(local.tm_mday)};
}

}  // namespace quillon::store::sql
