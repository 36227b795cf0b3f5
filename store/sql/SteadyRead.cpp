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
  tables_ = tables;
  // One table needs no other's lock to be of one moment.
  if (!locked_ && tables_.size() == 1) {
    tables_[0]->read([] {});
    tables_[0]->setSteady(true);
    return;
  }
  snapshot_ = std::make_unique<Database::Snapshot>(database_, tables);
  if (locked_) return tables_.clear();
  for (Table* table : tables_) table->setSteady(true);
  snapshot_.reset();
}

void SteadyRead::end() noexcept {
  for (Table* table : tables_) table->setSteady(false);
  tables_.clear();
  snapshot_.reset();
}

}  // namespace quillon::store::sql
