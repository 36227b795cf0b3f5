// SELECTs inside expressions.
#include <algorithm>
#include <functional>
#include <unordered_set>
#include <vector>

#include "store/Errors.h"
#include "store/sql/Binder.h"
#include "store/sql/Compiler.h"
#include "store/sql/SelectPlan.h"

namespace quillon::store::sql {
namespace {

// A SELECT inside an expression. One that reads nothing from around it runs once for all rows.
class SubSelect : public Expression {
 public:
  SubSelect(Compiler& compiler, std::shared_ptr<SelectPlan> plan, Type result, int resultSize)
      : Expression(result, resultSize), plan_(std::move(plan)) {
    atRest_ = compiler.atRest([this] {
      known_ = false;
      letGo();
    });
    readsOuter = plan_->readsBeyond();
    sources = plan_->outerSources();
    fixed = !plan_->readsAround();
  }

 protected:
  virtual void letGo() {}
  std::shared_ptr<SelectPlan> plan_;
  mutable bool known_ = false;

 private:
  Compiler::LetGo atRest_;
};

class Exists final : public SubSelect {
 public:
  Exists(Compiler& compiler, std::shared_ptr<SelectPlan> plan, bool negated)
      : SubSelect(compiler, std::move(plan), Type::boolean, 0), negated_(negated) {}
  Datum eval(Frame& frame) const override {
    if (!known_ || plan_->readsAround()) {
      found_ = false;
      plan_->run(&frame, [&](const std::vector<Datum>&) {
        found_ = true;
        return false;
      });
      known_ = true;
    }
    return Datum::ofTruth(found_ != negated_);
  }

 private:
  bool negated_;
  mutable bool found_ = false;
};

class Scalar final : public SubSelect {
 public:
  Scalar(Compiler& compiler, std::shared_ptr<SelectPlan> plan, Type result, int resultSize)
      : SubSelect(compiler, std::move(plan), result, resultSize) {}
  Datum eval(Frame& frame) const override {
    if (known_ && !plan_->readsAround()) return value_;
    Datum value;
    int rows = 0;
    kept_.clear();
    plan_->run(&frame, [&](const std::vector<Datum>& row) {
      value = row[0];
      if (value.type == Type::text || value.type == Type::blob) value.text = kept_.keep(std::string(value.text));
      return ++rows < 2;
    });
    if (rows > 1) refuse(place, Code::badStatement, "the SELECT gives more than one row where one value is needed.");
    if (value.type == Type::text || value.type == Type::blob) {
      if (plan_->readsAround()) value.text = frame.texts.keep(std::string(value.text));
    }
    value_ = value;
    known_ = true;
    return value;
  }

 private:
  mutable Datum value_;
  mutable Texts kept_;
};

// x IN (SELECT ...): the values are collected once, in the one type that both sides are compared in.
class InSelect final : public SubSelect {
 public:
  InSelect(Compiler& compiler, ExpressionPtr left, std::shared_ptr<SelectPlan> plan, Type common, bool negated)
      : SubSelect(compiler, std::move(plan), Type::boolean, 0),
        left_(std::move(left)),
        common_(common),
        negated_(negated) {
    inherit(*this, *left_);
    inWords_ = common_ == Type::boolean || common_ == Type::whole || common_ == Type::money || common_ == Type::date ||
               common_ == Type::time || common_ == Type::dateTime;
  }
  Datum eval(Frame& frame) const override {
    if (!known_ || plan_->readsAround()) collect(frame);
    return Datum::ofTruth(contains(convert(left_->eval(frame), common_, frame.texts)) != negated_);
  }
  const Members* members() const override {
    return negated_ || plan_->readsAround() || !(inWords_ || common_ == Type::text) ? nullptr : &members_;
  }

 private:
  bool contains(const Datum& value) const {
    if (value.isNull()) return hasNull_;
    if (inWords_) return std::binary_search(words_.begin(), words_.end(), value.whole);
    if (common_ == Type::text) return std::binary_search(texts_.begin(), texts_.end(), value.text, std::less<>());
    std::string identity;
    appendIdentity(value, identity);
    return values_.count(identity) > 0;
  }
  void forEach(Frame& frame, const std::function<void(const Datum&)>& each) const {
    if (!known_) collect(frame);
    if (hasNull_) each(Datum());
    for (const std::int64_t word : words_) each(Datum::make(common_, word));
    for (const std::string& text : texts_) each(Datum::ofText(text));
  }
  void letGo() override {
    values_ = {};
    texts_ = {};
    words_ = {};
  }
  void collect(Frame& frame) const {
    values_.clear();
    texts_.clear();
    words_.clear();
    hasNull_ = false;
    Texts texts;
    std::string identity;
    plan_->run(&frame, [&](const std::vector<Datum>& row) {
      const Datum value = convert(row[0], common_, texts);
      if (value.isNull()) {
        hasNull_ = true;
      } else if (inWords_) {
        words_.push_back(value.whole);
      } else if (common_ == Type::text) {
        texts_.emplace_back(value.text);
      } else {
        identity.clear();
        appendIdentity(value, identity);
        values_.insert(identity);
      }
      texts.clear();
      return true;
    });
    const auto order = [](auto& values) {
      std::sort(values.begin(), values.end());
      values.erase(std::unique(values.begin(), values.end()), values.end());
    };
    order(words_);
    order(texts_);
    known_ = true;
  }

  ExpressionPtr left_;
  Type common_;
  bool negated_;
  bool inWords_;  // the type is one whose values are equal when their words are
  mutable bool hasNull_ = false;
  Members members_{left_.get(), [this](Frame& frame, const auto& each) { forEach(frame, each); }};
  mutable std::vector<std::int64_t> words_;         // in order
  mutable std::vector<std::string> texts_;          // in order
  mutable std::unordered_set<std::string> values_;  // of the other types, by identity
};

}  // namespace

ExpressionPtr Binder::bindSelect(const Expr& expr) {
  // Inside, the columns of this SELECT are those of single rows; a grouped one cannot be looked into from there.
  std::shared_ptr<SelectPlan> plan = SelectPlan::make(compiler_, *expr.select, scope_);
  if (scope_) scope_->inner.push_back(plan);
  if (expr.kind == ExprKind::exists) return std::make_unique<Exists>(compiler_, std::move(plan), expr.negated);
  if (plan->columns().size() != 1)
    refuse(expr.place, Code::badStatement,
           "the SELECT must give one column here, not " + std::to_string(plan->columns().size()) + ".");
  const SelectColumn& column = plan->columns()[0];
  if (expr.kind == ExprKind::scalar) {
    auto scalar = std::make_unique<Scalar>(compiler_, std::move(plan), column.type, column.size);
    scalar->place = expr.place;
    return scalar;
  }
  ExpressionPtr left = bind(*expr.operands[0]);
  auto sample = std::make_unique<Constant>(Datum(), nullptr, expr);
  sample->type = column.type;
  ExpressionPtr right = std::move(sample);
  unifyForComparison(left, right, expr.place);
  std::vector<ExpressionPtr*> sides{&left, &right};
  const Type common = left->type == column.type ? column.type : unifyBranches(sides, expr.place);
  auto in = std::make_unique<InSelect>(compiler_, std::move(left), std::move(plan), common, expr.negated);
  in->place = expr.place;
  return in;
}

}  // namespace quillon::store::sql
