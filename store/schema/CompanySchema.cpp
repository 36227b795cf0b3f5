#include "store/schema/CompanySchema.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "base/Text.h"
#include "store/schema/TableSpecs.h"

namespace quillon::store {
namespace {

TableDef definitionOf(const schema::TableSpec& spec) {
  std::vector<FieldDef> fields;
  fields.reserve(spec.fields.size());
  for (const schema::FieldSpec& field : spec.fields)
    fields.push_back({std::string(field.name), field.type, field.size, field.required});
  TableDef table{std::string(spec.name), std::move(fields), {}};
  for (const IndexSpec& index : spec.indexes) table.indexes.push_back(IndexDef::of(table, index));
  table.validate();
  return table;
}

std::vector<TableDef> allTables() {
  std::vector<TableDef> tables;
  for (const auto list :
       {schema::generalTables(), schema::ledgerTables(), schema::customerTables(), schema::receivablesTables(),
        schema::payablesTables(), schema::inventoryTables(), schema::manufacturingTables()})
    for (const schema::TableSpec& spec : list) tables.push_back(definitionOf(spec));
  return tables;
}

}  // namespace

std::span<const TableDef> companyTables() {
  static const std::vector<TableDef> tables = allTables();
  return tables;
}

const TableDef* companyTable(std::string_view name) {
  constexpr std::string_view kExtension = ".DAT";
  if (name.size() > kExtension.size() && equalFolded(name.substr(name.size() - kExtension.size()), kExtension))
    name.remove_suffix(kExtension.size());
  const auto tables = companyTables();
  const auto found = std::ranges::find_if(tables, [name](const TableDef& t) { return equalFolded(t.name, name); });
  return found == tables.end() ? nullptr : &*found;
}

}  // namespace quillon::store
