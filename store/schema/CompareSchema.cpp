#include "store/schema/CompareSchema.h"

#include <algorithm>
#include <string_view>

#include "base/Text.h"
#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/schema/CompanySchema.h"

namespace quillon::store {
namespace {

// By the number of the type.
constexpr std::string_view kTypeNames[] = {"",         "String",   "SmallInt", "Integer", "AutoInc",
                                           "Float",    "Currency", "Boolean",  "Date",    "Time",
                                           "DateTime", "Memo",     "Blob",     "Graphic", "LargeInt"};

// "String 40, required"
std::string described(const FieldDef& field) {
  std::string text(kTypeNames[static_cast<std::size_t>(field.type)]);
  if (field.size) text += ' ' + std::to_string(field.size);
  if (field.required) text += ", required";
  return text;
}

// "over CustomerID;LastName, unique, case-insensitive, with LastName descending"
std::string described(const TableDef& table, const IndexDef& index) {
  std::string fields, descending;
  for (const IndexPart& part : index.parts) {
    const std::string& name = table.fields[static_cast<std::size_t>(part.field)].name;
    fields += (fields.empty() ? "" : ";") + name;
    if (part.descending) descending += (descending.empty() ? "" : ";") + name;
  }
  std::string text = "over " + fields;
  if (index.unique) text += ", unique";
  if (index.caseInsensitive) text += ", case-insensitive";
  if (!descending.empty()) text += ", with " + descending + " descending";
  return text;
}

std::string called(const IndexDef& index) {
  return index.name.empty() ? "the primary index" : "the index " + index.name;
}

class TableComparison {
 public:
  TableComparison(const TableDef& wanted, const TableDef& found, std::vector<SchemaDifference>& differences)
      : wanted_(wanted), found_(found), differences_(differences) {}

  void run() {
    compareFields();
    compareOrder();
    compareIndexes();
  }

 private:
  void tell(std::string text) { differences_.push_back({wanted_.name, std::move(text)}); }

  void compareFields() {
    for (const FieldDef& field : wanted_.fields) {
      const int at = found_.fieldIndex(field.name);
      if (at < 0) {
        tell("the field " + field.name + " is missing");
        continue;
      }
      const std::string is = described(found_.fields[static_cast<std::size_t>(at)]), shall = described(field);
      if (is != shall) tell("the field " + field.name + " is " + is + " and should be " + shall);
    }
    for (const FieldDef& field : found_.fields)
      if (wanted_.fieldIndex(field.name) < 0) tell("the field " + field.name + " is too many");
  }

  // Only the first field that stands too early is told: the others follow from it.
  void compareOrder() {
    int last = -1;
    for (const FieldDef& field : wanted_.fields) {
      const int at = found_.fieldIndex(field.name);
      if (at < 0) continue;
      if (at < last) {
        const std::string& before = found_.fields[static_cast<std::size_t>(last)].name;
        return tell("the field " + field.name + " stands before " + before + " and should stand behind it");
      }
      last = at;
    }
  }

  void compareIndexes() {
    for (const IndexDef& index : wanted_.indexes) {
      const int at = found_.indexPosition(index.name);
      if (at < 0) {
        tell(called(index) + " is missing");
        continue;
      }
      const std::string is = described(found_, found_.indexes[static_cast<std::size_t>(at)]);
      const std::string shall = described(wanted_, index);
      if (!equalFolded(is, shall)) tell(called(index) + " is " + is + " and should be " + shall);
    }
    for (const IndexDef& index : found_.indexes)
      if (wanted_.indexPosition(index.name) < 0) tell(called(index) + " is too many");
  }

  const TableDef& wanted_;
  const TableDef& found_;
  std::vector<SchemaDifference>& differences_;
};

}  // namespace

bool isCompany(Database& database) {
  const std::vector<std::string> names = database.tableNames();
  const auto known = std::ranges::count_if(names, [](const std::string& name) { return companyTable(name); });
  return database.exists("Company") || known * 2 >= static_cast<std::ptrdiff_t>(companyTables().size());
}

std::vector<SchemaDifference> compareWithSchema(Database& database) {
  std::vector<SchemaDifference> differences;
  for (const TableDef& table : companyTables()) {
    if (!database.exists(table.name)) {
      differences.push_back({table.name, "the table is missing"});
      continue;
    }
    try {
      Cursor cursor(database, table.name);
      cursor.open();
      TableComparison(table, cursor.definition(), differences).run();
    } catch (const StoreError& error) {
      if (error.code() == Code::tableInUse) throw;
      differences.push_back({table.name, error.what()});
    }
  }
  for (const std::string& name : database.tableNames())
    if (!companyTable(name)) differences.push_back({name, "a company has no such table"});
  return differences;
}

}  // namespace quillon::store
