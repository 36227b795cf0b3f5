#include "form/NextId.h"

#include "store/Query.h"

namespace quillon::form {

int nextId(store::Database& database, const std::string& table, const std::string& field) {
  store::Query highest(database, "SELECT max(" + field + ") FROM " + table);
  highest.open();
  return highest.field(0).asInt() + 1;
}

}  // namespace quillon::form
