#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "store/Database.h"

namespace quillon::store::sql {

// One committed state over all tables of a statement, without holding a commit up: the tables are read as of the moment
// at which it begins, without locks. Where a page has become newer meanwhile, the statement begins again; the third
// time it keeps the locks while it runs.
class SteadyRead {
 public:
  // Runs `statement`, which calls begin once its tables are open and end when it has read them.
  static void run(Database& database, const std::function<void(SteadyRead&)>& statement);

  void begin(const std::vector<Table*>& tables);
  void end() noexcept;
  ~SteadyRead() { end(); }

 private:
  SteadyRead(Database& database, bool locked) : database_(database), locked_(locked) {}

  Database& database_;
  bool locked_;
  std::vector<Table*> tables_;
  std::unique_ptr<Database::Snapshot> snapshot_;
};

}  // namespace quillon::store::sql
