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
  // Runs `statement`, which makes a Scope once its tables are open; it ends before they are closed.
  static void run(Database& database, const std::function<void(SteadyRead&)>& statement);

  class Scope {
   public:
    Scope(SteadyRead& read, const std::vector<Table*>& tables) : read_(read) { read_.begin(tables); }
    ~Scope() { read_.end(); }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

   private:
    SteadyRead& read_;
  };

 private:
  SteadyRead(Database& database, bool locked) : database_(database), locked_(locked) {}
  void begin(const std::vector<Table*>& tables);
  void end() noexcept;

  Database& database_;
  bool locked_;
  std::vector<Table*> tables_;
  std::unique_ptr<Database::Snapshot> snapshot_;
};

}  // namespace quillon::store::sql
