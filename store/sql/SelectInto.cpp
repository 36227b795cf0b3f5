// SELECT ... INTO: a new table without indexes; one of that name is replaced, unless it is open.
#include <functional>
#include <numeric>
#include <optional>

#include "base/Text.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/Session.h"
#include "store/sql/ChangePlan.h"
#include "store/sql/Compiler.h"
#include "store/sql/SelectCore.h"
#include "store/sql/Spool.h"
#include "store/sql/SteadyRead.h"
#include "store/sql/TableChange.h"
#include "store/table/Rebuild.h"
#include "store/table/Table.h"
#include "store/vfs/File.h"

namespace quillon::store::sql {
namespace {

std::uint64_t fillInMemory(Database& memory, const TableDef& definition,
                           const std::function<std::uint64_t(Table&)>& fill) {
  definition.validate();
  if (memory.exists(definition.name)) memory.dropTable(definition.name);
  memory.createTable(definition);
  const int marker = 0;
  Table& table = memory.openTable(definition.name, &marker, false);
  try {
    const std::uint64_t written = fill(table);
    memory.closeTable(table, &marker);
    return written;
  } catch (...) {
    memory.closeTable(table, &marker);
    memory.dropTable(definition.name);
    throw;
  }
}

}  // namespace

std::uint64_t selectInto(Database& database, const Statement& statement, const Parameters& parameters) {
  const Select& select = *statement.select;
  const bool inMemory = foldCase(select.into).starts_with("\\memory\\");
  Database& home = inMemory ? database.session().memory() : database;
  TableDef definition;
  definition.name = Database::plainName(select.into);
  Spool rows([&] { return database.session().scratch(); });
  std::string bytes;
  SteadyRead::run(database, [&](SteadyRead& read) {
    Compiler compiler(database, parameters);
    const auto plan = SelectPlan::make(compiler, select, nullptr);
    definition.fields.clear();
    rows.clear();
    for (const SelectColumn& column : plan->columns()) definition.fields.push_back(column.field);
    const SteadyRead::Scope scope(read, compiler.tables());
    plan->run(nullptr, [&](const std::vector<Datum>& row) {
      bytes.clear();
      appendRow(row, bytes);
      rows.add(bytes);
      return true;
    });
  });
  const auto fill = [&](Table& table) {
    TableChange change(table);
    std::vector<int> fields(definition.fields.size());
    std::iota(fields.begin(), fields.end(), 0);
    std::vector<Datum> values;
    rows.forEach([&](std::string_view row) {
      readRow(row, values);
      change.insert(fields, values);
    });
    return change.done();
  };
  std::uint64_t written = 0;
  try {
    if (inMemory) return fillInMemory(home, definition, fill);
    Rebuild::replaceTable(home, definition, [&](Table& table) { written = fill(table); });
  } catch (const StoreError& error) {
    refuseAt(select.intoPlace, error);
    throw;
  }
  return written;
}

}  // namespace quillon::store::sql
