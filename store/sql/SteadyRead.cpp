#include "store/sql/SteadyRead.h"

#include "store/Errors.h"
#include "store/table/Table.h"

namespace quillon::store::sql {

void SteadyRead::run(Database& database, const std::function<void(SteadyRead&)>& statement) {
  constexpr int kUnlockedTries = 2;
  for (int tries = 0;; ++tries) {
    SteadyRead read(database, tries == kUnlockedTries);
    try {
      return statement(read);
    } catch (const StoreError& error) {
      if (error.code() != Code::changedMeanwhile || tries == kUnlockedTries) throw;
    }
  }
}

void SteadyRead::begin(const std::vector<Table*>& tables) {
  snapshot_ = std::make_unique<Database::Snapshot>(database_, tables);
  if (locked_) return;
  tables_ = tables;
  for (Table* table : tables_) table->setSteady(true);
  snapshot_.reset();
}

void SteadyRead::end() noexcept {
  for (Table* table : tables_) table->setSteady(false);
  tables_.clear();
  snapshot_.reset();
}

}  // namespace quillon::store::sql
