#pragma once

#include <string>

namespace quillon::store {
class Database;
}

namespace quillon::form {

// The next id of a small table without a control table: one above the highest; 1 in an empty table.
int nextId(store::Database& database, const std::string& table, const std::string& field);

}  // namespace quillon::form
