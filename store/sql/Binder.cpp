#include "store/sql/Binder.h"

#include <algorithm>
#include <unordered_set>

#include "base/Text.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/sql/Compiler.h"
#include "store/sql/SelectPlan.h"
#include "store/table/Table.h"

namespace quillon::store::sql {
namespace {

constexpr int kDeepestAlias = 50;

struct AggregateName {
  const char* name;
  AggregateKind kind;
};
constexpr AggregateName kAggregates[] = {{"SUM", AggregateKind::sum},
                                         {"COUNT", AggregateKind::count},
                                         {"MIN", AggregateKind::min},
                                         {"MAX", AggregateKind::max},
                                         {"AVG", AggregateKind::average}};

class Column final : public Expression {
 public:
  Column(int depth, int source, int field, const FieldDef& definition)
      : Expression(typeOf(definition.type), definition.size),
        depth_(depth),
        source_(source),
        field_(field),
        content_(isBlobType(definition.type)) {
    if (depth_ == 0)
      sources = std::uint64_t{1} << source_;
    else
      readsOuter = true;
  }
  bool column(int& source, int& field) const override {
    source = source_;
    field = field_;
    return depth_ == 0;
  }
  Datum eval(Frame& frame) const override {
    Frame* from = &frame;
    for (int i = 0; i < depth_; ++i) from = from->outer;
    const SourceRow& row = from->rows[static_cast<std::size_t>(source_)];
    if (!row.view || row.view->isNull(field_)) return {};
    if (content_) return Datum::ofText(frame.texts.keep(row.table->readBlob(row.view->blobRef(field_))), type);
    switch (type) {
      case Type::text:
        return Datum::ofText(row.view->text(field_));
      case Type::real:
        return Datum::ofReal(row.view->real(field_));
      default:
        return Datum::make(type, row.view->integer(field_));
    }
  }

 private:
  int depth_, source_, field_;
  bool content_;
};

class Slot final : public Expression {
 public:
  Slot(const Grouping& grouping, std::size_t index, bool first, Type itsType, int itsSize)
      : Expression(itsType, itsSize), grouping_(grouping), index_(index), first_(first) {}
  Datum eval(Frame& frame) const override {
    return frame.slots[first_ ? index_ : grouping_.firstValues.size() + index_];
  }

 private:
  const Grouping& grouping_;
  std::size_t index_;
  bool first_;
};

class Parameter final : public Expression {
 public:
  explicit Parameter(const Compiler::Parameter& parameter)
      : Expression(parameter.value.type, parameter.size), value_(parameter.value) {
    fixed = true;
  }
  Datum eval(Frame&) const override { return value_; }

 private:
  const Datum& value_;
};

}  // namespace

bool isAggregate(const Expr& expr) {
  return expr.kind == ExprKind::call && std::any_of(std::begin(kAggregates), std::end(kAggregates),
                                                    [&](const auto& row) { return expr.name == row.name; });
}

bool containsAggregate(const Expr& expr) {
  return isAggregate(expr) || std::any_of(expr.operands.begin(), expr.operands.end(),
                                          [](const ExprPtr& operand) { return containsAggregate(*operand); });
}

std::vector<ExpressionPtr> Binder::bindOperands(const Expr& expr) {
  std::vector<ExpressionPtr> operands;
  for (const ExprPtr& operand : expr.operands) operands.push_back(bind(*operand));
  return operands;
}

ExpressionPtr Binder::bind(const Expr& expr) {
  switch (expr.kind) {
    case ExprKind::literal:
      return bindLiteral(expr);
    case ExprKind::parameter:
      return bindParameter(expr);
    case ExprKind::column:
      return bindColumn(expr);
    case ExprKind::star:
      refuse(expr.place, Code::badStatement, "'*' cannot stand here.");
    case ExprKind::unary:
      return makeUnary(expr.op, bind(*expr.operands[0]), expr);
    case ExprKind::binary: {
      ExpressionPtr left = bind(*expr.operands[0]);
      return makeBinary(expr.op, std::move(left), bind(*expr.operands[1]), expr);
    }
    case ExprKind::between:
      return makeBetween(bindOperands(expr), expr);
    case ExprKind::inList:
      return makeInList(bindOperands(expr), expr);
    case ExprKind::inSelect:
    case ExprKind::exists:
    case ExprKind::scalar:
      return bindSelect(expr);
    case ExprKind::call:
      if (isAggregate(expr)) return bindAggregate(expr);
      if (expr.name == "CURRENT_DATE") {
        const Datum today = Datum::make(Type::date, compiler_.today().days());
        return std::make_unique<Constant>(today, nullptr, expr);
      }
      return makeCall(expr.name, bindOperands(expr), expr);
    case ExprKind::cast:
      return makeCast(bind(*expr.operands[0]), expr);
    case ExprKind::conditional:
      return makeConditional(bindOperands(expr), expr);
  }
  refuse(expr.place, Code::badStatement, "this expression is not understood.");
}

ExpressionPtr Binder::bindLiteral(const Expr& expr) {
  Texts texts;
  const Value& value = expr.value;
  if (value.kind() == Value::Kind::money) {
    // A decimal literal is a float that becomes money beside money.
    auto literal = std::make_unique<Constant>(Datum::ofReal(value.asMoney().toDouble()), nullptr, expr);
    literal->amount = value.asMoney().raw();
    return literal;
  }
  auto text = value.kind() == Value::Kind::text ? std::make_unique<std::string>(value.asText()) : nullptr;
  auto literal = std::make_unique<Constant>(datumOf(value, texts), std::move(text), expr);
  literal->quoted = value.kind() == Value::Kind::text;
  return literal;
}

ExpressionPtr Binder::bindParameter(const Expr& expr) {
  auto parameter = std::make_unique<Parameter>(compiler_.parameter(expr.name, expr.place));
  parameter->place = expr.place;
  return parameter;
}

ExpressionPtr Binder::slot(std::size_t place, bool first, Type type, int size) {
  return std::make_unique<Slot>(*grouping_, place, first, type, size);
}

bool Scope::SourceName::isCalled(const std::string& written) const {
  return equalFolded(name, written) || equalFolded(Database::plainName(name), written);
}

ExpressionPtr Binder::bindColumn(const Expr& expr) {
  if (aliases_ && expr.table.empty()) {
    const auto alias = aliases_->find(foldCase(expr.name));
    if (alias != aliases_->end() && nesting_ < kDeepestAlias) {
      // Inside the aliased expression its own name means the column.
      const auto* outer = std::exchange(aliases_, nullptr);
      ++nesting_;
      ExpressionPtr bound = bind(*alias->second);
      --nesting_;
      aliases_ = outer;
      return bound;
    }
  }
  int depth = 0;
  for (const Scope* scope = scope_; scope; scope = scope->outer, ++depth) {
    if (scope->field)
      if (ExpressionPtr field = scope->field(expr)) return field;
    for (std::size_t i = 0; i < scope->sources.size(); ++i) {
      const Scope::SourceName& source = scope->sources[i];
      if (!expr.table.empty() && !source.isCalled(expr.table)) continue;
      const int field = source.table->definition().fieldIndex(expr.name);
      if (field < 0) continue;
      const FieldDef& definition = source.table->definition().fields[static_cast<std::size_t>(field)];
      auto column = std::make_unique<Column>(depth, static_cast<int>(i), field, definition);
      column->place = expr.place;
      noteOuter(depth, i);
      if (!grouping_ || depth > 0) return column;
      const Type type = column->type;
      grouping_->firstValues.push_back(std::move(column));
      return slot(grouping_->firstValues.size() - 1, true, type, definition.size);
    }
  }
  refuse(expr.place, Code::noSuchField,
         "there is no field '" + (expr.table.empty() ? "" : expr.table + ".") + expr.name + "'.");
}

void Binder::noteOuter(int depth, std::size_t source) {
  Scope* scope = scope_;
  for (int distance = depth; distance > 0; --distance, scope = scope->outer) {
    if (distance == 1)
      scope->outerSources |= std::uint64_t{1} << source;
    else
      scope->readsBeyond = true;
  }
}

ExpressionPtr Binder::bindAggregate(const Expr& expr) {
  if (!grouping_) refuse(expr.place, Code::badStatement, expr.name + " cannot stand here.");
  const auto* row = std::find_if(std::begin(kAggregates), std::end(kAggregates),
                                 [&](const auto& known) { return expr.name == known.name; });
  Aggregate aggregate{row->kind, nullptr, expr.distinct, Type::whole};
  if (expr.operands.size() != 1) refuse(expr.place, Code::badStatement, expr.name + " needs one value.");
  int size = 0;
  if (expr.operands[0]->kind != ExprKind::star) {
    Grouping* const outer = std::exchange(grouping_, nullptr);
    const auto* const aliases = std::exchange(aliases_, nullptr);
    aggregate.argument = bind(*expr.operands[0]);
    grouping_ = outer;
    aliases_ = aliases;
    const Type type = aggregate.argument->type;
    size = aggregate.argument->size;
    if (row->kind == AggregateKind::sum || row->kind == AggregateKind::average) {
      if (!isNumber(type) && type != Type::null)
        refuse(expr.place, Code::typeMismatch, expr.name + " needs a number, not " + std::string(nameOf(type)) + ".");
      aggregate.type = row->kind == AggregateKind::average ? Type::real : type;
    } else if (row->kind != AggregateKind::count) {
      aggregate.type = type;
    }
  } else if (row->kind != AggregateKind::count) {
    refuse(expr.place, Code::badStatement, "'*' can only be counted.");
  }
  const Type type = aggregate.type;
  grouping_->aggregates.push_back(std::move(aggregate));
  return slot(grouping_->aggregates.size() - 1, false, type, size);
}

}  // namespace quillon::store::sql
