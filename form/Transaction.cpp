#include "form/Transaction.h"

#include "store/Database.h"

namespace quillon::form {

void transact(store::Database& database, const std::vector<std::string>& tables, const std::function<void()>& action) {
  database.startTransaction(tables);
  try {
    action();
    database.commit();
  } catch (...) {
    if (database.inTransaction()) database.rollback();
    throw;
  }
}

}  // namespace quillon::form
