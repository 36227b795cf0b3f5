#pragma once

#include <span>
#include <string>

#include "store/Value.h"

namespace quillon::store {
class Database;
}

namespace quillon::form {

class App;

// A table whose rows point to a record and so keep it from being deleted, and the words for that.
struct UsedBy {
  std::string table, field, reason;
};

// Whether any row of the table has the value in that field.
bool isUsed(store::Database& database, const UsedBy& by, const store::Value& id);

// The first that holds refuses: "Unable to delete '<name>'...\r" and its reason.
void refuseIfUsed(store::Database& database, std::span<const UsedBy> users, const store::Value& id,
                  const std::string& name);
// Asks "Delete '<name>'?", where No is a silent stop, and refuses what is used: for a table's before-delete handler.
void askDelete(App& app, std::span<const UsedBy> users, const store::Value& id, const std::string& name);
[[noreturn]] void refuseDelete(const std::string& name, const std::string& reason);

}  // namespace quillon::form
