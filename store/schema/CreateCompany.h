#pragma once

#include <string_view>

namespace quillon::store {

class Database;

// Makes the 77 tables of a company in a folder, with the rows that each company has from the start: one of "next"
// values in every control table, and one in Logo. Company and the masters stay empty.
//
// The table Company comes last, so that a folder that has it has everything. When it was broken off before, it goes on
// where it stopped. Raises tableExists when the folder has the table Company, or another of these names told otherwise;
// tableInUse when another process is at it; badTransaction inside one.
void createCompanyTables(Database& database);

// Whether a company has a row in this table from the start.
bool beginsWithARow(std::string_view table);

}  // namespace quillon::store
