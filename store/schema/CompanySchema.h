#pragma once

#include <span>
#include <string_view>

#include "store/Schema.h"

namespace quillon::store {

// The 77 tables of a company, always the same and in the same order, one subsystem after the other; made at the first
// call and there until the program ends.
std::span<const TableDef> companyTables();

// By a name in any case, with or without ".DAT"; nullptr when a company has no such table.
const TableDef* companyTable(std::string_view name);

}  // namespace quillon::store
