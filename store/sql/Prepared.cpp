#include "store/sql/Prepared.h"

namespace quillon::store::sql {

Prepared::Run::Run(Prepared& prepared) : prepared_(prepared) {
  std::unique_ptr<Bound>& bound = prepared.bound_;
  try {
    if (bound && bound->compiler.resume()) return;
    boundAnew_ = true;
    bound = std::make_unique<Bound>(prepared.database_, prepared.parameters_);
    if (prepared.statement_.kind == StatementKind::select)
      bound->select = SelectPlan::make(bound->compiler, *prepared.statement_.select, nullptr);
    else
      bound->change = ChangePlan::make(bound->compiler, prepared.statement_);
  } catch (...) {
    bound.reset();
    throw;
  }
}

Prepared::Run::~Run() {
  if (done_ && prepared_.bound_->compiler.canRest())
    prepared_.bound_->compiler.rest();
  else
    prepared_.bound_.reset();
}

}  // namespace quillon::store::sql
