#pragma once

#include <functional>
#include <string>
#include <vector>

namespace quillon::store {
class Database;
}

namespace quillon::form {

// Runs an action as one transaction over these tables: what it wrote stays when it ends, and nothing of it when it
// raises, which is passed on. Others wait for the tables meanwhile, so the action asks nobody.
void transact(store::Database& database, const std::vector<std::string>& tables, const std::function<void()>& action);

}  // namespace quillon::form
