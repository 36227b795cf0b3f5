#include "store/sql/Compiler.h"

#include <algorithm>
#include <ctime>
#include <utility>

#include "base/Text.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/sql/ChangePlan.h"
#include "store/sql/Expression.h"
#include "store/table/Table.h"

namespace quillon::store::sql {

Compiler::Compiler(Database& database, const std::map<std::string, Value, std::less<>>& parameters)
    : database_(database), given_(parameters) {}

Compiler::~Compiler() {
  closeTables();
  try {
    for (const std::string& name : made_) database_.session().memory().dropTable(name);
  } catch (const StoreError&) {
    // Nobody but this statement knows them.
  }
}

// At rest there is none, and the database may be gone.
void Compiler::closeTables() noexcept {
  for (std::vector<Table*>* tables : {&tables_, &memoryTables_})
    for (Table* table : std::exchange(*tables, {})) try {
        table->database().closeTable(*table, this);
      } catch (const StoreError&) {
        // A statement's tables are only read here or were settled before; nothing of the person's is lost.
      }
}

Compiler::LetGo Compiler::atRest(std::function<void()> letGo) {
  auto kept = std::make_shared<std::function<void()>>(std::move(letGo));
  atRest_.push_back(kept);
  return kept;
}

void Compiler::rest() noexcept {
  for (const auto& one : atRest_)
    if (const LetGo letGo = one.lock()) (*letGo)();
  closeTables();
}

bool Compiler::resume() {
  if ((today_ && now() != *today_) || !takeParameters()) return false;
  for (const Opened& one : opened_) {
    Table* table = nullptr;
    try {
      table = &one.database.openTable(one.name, this, false);
    } catch (const StoreError& error) {
      if (error.code() != Code::noSuchTable) throw;
      return false;
    }
    (&one.database == &database_ ? tables_ : memoryTables_).push_back(table);
    if (table->number() != one.number) return false;
  }
  return true;
}

bool Compiler::takeParameters() {
  for (std::size_t i = 0; i < names_.size(); ++i) {
    const auto given = given_.find(names_[i]);
    if (given == given_.end()) return false;
    Parameter& parameter = values_[i];
    if (parameter.given.kind() != given->second.kind()) return false;
    const int bound = parameter.size;
    set(parameter, given->second);
    if (parameter.size > bound) return false;
    parameter.size = bound;
  }
  return true;
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
    opened_.push_back({database, table.name(), table.number()});
    return table;
  } catch (const StoreError& error) {
    if (error.code() == Code::noSuchTable) refuse(place, Code::noSuchTable, "there is no table '" + name + "'.");
    refuseAt(place, error);
    throw;
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

const Compiler::Parameter& Compiler::parameter(const std::string& name, const Place& place) {
  const std::string folded = foldCase(name);
  const auto known = std::find(names_.begin(), names_.end(), folded);
  if (known != names_.end()) return values_[static_cast<std::size_t>(known - names_.begin())];
  const auto given = given_.find(folded);
  if (given == given_.end()) refuse(place, Code::badStatement, "the parameter ':" + name + "' has no value.");
  if (given->second.kind() == Value::Kind::text && !isValidUtf8(given->second.asText()))
    refuse(place, Code::badValue, "the value of the parameter ':" + name + "' is not valid UTF-8.");
  names_.push_back(folded);
  set(values_.emplace_back(), given->second);
  return values_.back();
}

void Compiler::set(Parameter& parameter, const Value& value) {
  parameter.given = value;
  parameter.texts.clear();
  const bool text = value.kind() == Value::Kind::text;
  parameter.value = text ? Datum::ofText(parameter.given.asText()) : datumOf(parameter.given, parameter.texts);
  parameter.size = text ? std::max(1, static_cast<int>(lengthInCharacters(value.asText()))) : 0;
}

Date Compiler::today() {
  if (!today_) today_ = now();
  return *today_;
}

Date Compiler::now() const {
  const std::time_t now = database_.session().environment().clock.unixSeconds();
  std::tm local{};
  localtime_r(&now, &local);
  return {local.tm_year + 1900, static_cast<unsigned>(local.tm_mon + 1), static_cast<unsigned>(local.tm_mday)};
}

}  // namespace quillon::store::sql
