#pragma once

#include <string>
#include <vector>

namespace quillon::store {

class Database;

struct SchemaDifference {
  std::string table;
  std::string text;  // without the table's name: "the field Amount is missing"
};

// Whether a folder is that of a company: it has the table Company, or half of all that a company has.
bool isCompany(Database& database);

// What differs between a folder and the tables of a company: tables, fields (also their order, but only of those that
// both have) and indexes that are missing or too many, and fields and indexes that are told otherwise. Names count in
// any case; the order of indexes is none. In the order of companyTables(), tables that no company has at the end.
//
// A table that cannot be read differs, with the reason as its text; tableInUse raises.
std::vector<SchemaDifference> compareWithSchema(Database& database);

}  // namespace quillon::store
