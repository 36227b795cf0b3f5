#pragma once

#include <memory>

#include "store/sql/ChangePlan.h"
#include "store/sql/Compiler.h"
#include "store/sql/SelectPlan.h"

namespace quillon::store::sql {

// A SELECT, INSERT, UPDATE or DELETE that is bound and planned when it is first run, and again only when something that
// the plan depends on has changed: a table, its definition, the type of a parameter, the day. Between runs it holds no
// table. Statement and parameters must outlive it.
class Prepared {
 public:
  Prepared(Database& database, const Statement& statement, const Parameters& parameters)
      : database_(database), statement_(statement), parameters_(parameters) {}

  // One run, with the tables open. What was not told to be done is bound anew the next time.
  class Run {
   public:
    explicit Run(Prepared& prepared);
    ~Run();
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    const std::vector<Table*>& tables() const { return prepared_.bound_->compiler.tables(); }
    SelectPlan& select() { return *prepared_.bound_->select; }
    ChangePlan& change() { return *prepared_.bound_->change; }
    bool boundAnew() const { return boundAnew_; }
    void done() { done_ = true; }

   private:
    Prepared& prepared_;
    bool boundAnew_ = false;
    bool done_ = false;
  };

 private:
  struct Bound {
    Bound(Database& database, const Parameters& parameters) : compiler(database, parameters) {}
    Compiler compiler;
    std::unique_ptr<SelectPlan> select;
    std::unique_ptr<ChangePlan> change;
  };
  Database& database_;
  const Statement& statement_;
  const Parameters& parameters_;
  std::unique_ptr<Bound> bound_;
};

}  // namespace quillon::store::sql
