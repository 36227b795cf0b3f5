// Binding a SELECT: sources, items, groups, order, unions.
#include "store/sql/SelectPlan.h"

#include <algorithm>
#include <set>

#include "base/Text.h"
#include "store/Errors.h"
#include "store/sql/Compiler.h"
#include "store/sql/SelectCore.h"
#include "store/table/Table.h"

namespace quillon::store::sql {
namespace {

constexpr std::size_t kMostSources = 60;
constexpr std::size_t kLongestColumnName = 200;  // bytes

// The field of a result that holds an expression's values.
FieldDef fieldFor(const Expression& item, const FieldDef* column) {
  FieldDef field;
  if (column) {
    field = *column;
    if (field.type == FieldType::autoInc) field.type = FieldType::integer;
    field.required = false;
    return field;
  }
  switch (item.type) {
    case Type::boolean:
      field.type = FieldType::boolean;
      break;
    case Type::whole:
      field.type = FieldType::largeInt;
      break;
    case Type::money:
      field.type = FieldType::currency;
      break;
    case Type::real:
      field.type = FieldType::floating;
      break;
    case Type::date:
      field.type = FieldType::date;
      break;
    case Type::time:
      field.type = FieldType::time;
      break;
    case Type::dateTime:
      field.type = FieldType::dateTime;
      break;
    case Type::blob:
      field.type = FieldType::blob;
      break;
    case Type::text:
      field.type = item.size > 0 && item.size <= kMaxTextSize ? FieldType::string : FieldType::memo;
      field.size = field.type == FieldType::string ? item.size : 0;
      break;
    case Type::null:
      field.type = FieldType::string;
      field.size = 1;
  }
  return field;
}

std::string columnName(const SelectItem& item) {
  if (!item.alias.empty() && !isFieldName(item.alias))
    refuse(item.expr->place, Code::badDefinition, "'" + item.alias + "' cannot be the name of a column.");
  if (!item.alias.empty()) return item.alias;
  if (item.expr->kind == ExprKind::column) return item.expr->name;
  std::string name = item.expr->text;
  for (char& byte : name)
    if (static_cast<unsigned char>(byte) < ' ') byte = ' ';
  while (name.size() > kLongestColumnName) name.pop_back();
  while (!isValidUtf8(name)) name.pop_back();
  while (name.ends_with(' ')) name.pop_back();  // where it was cut
  return name.empty() ? "Value" : name;
}

// A whole number in GROUP BY is a position in the select list.
const Expr& groupedBy(const Select& select, const Expr& expr) {
  if (expr.kind != ExprKind::literal || expr.value.kind() != Value::Kind::whole) return expr;
  const std::int64_t position = expr.value.asInt64();
  const auto columns = static_cast<std::int64_t>(select.items.size());
  const bool stars = std::any_of(select.items.begin(), select.items.end(),
                                 [](const SelectItem& item) { return item.expr->kind == ExprKind::star; });
  if (stars) refuse(expr.place, Code::badStatement, "GROUP BY cannot count the columns that '*' stands for.");
  if (position < 1 || position > columns)
    refuse(expr.place, Code::badStatement,
           "GROUP BY names column " + std::to_string(position) + " of " + std::to_string(columns) + ".");
  return *select.items[static_cast<std::size_t>(position - 1)].expr;
}

}  // namespace

SelectPlan::SelectPlan(Compiler& compiler) : compiler_(compiler) {
  atRest_ = compiler.atRest([this] {
    for (const auto& core : cores_)
      for (Level& level : core->levels) level.access->letGo();
  });
}
SelectPlan::~SelectPlan() = default;

std::unique_ptr<SelectPlan> SelectPlan::make(Compiler& compiler, const Select& select, Scope* outer) {
  std::unique_ptr<SelectPlan> plan(new SelectPlan(compiler));
  plan->scope_.outer = outer;
  std::map<std::string, const Expr*> aliases;
  for (const SelectItem& item : select.items)
    if (!item.alias.empty()) aliases.emplace(foldCase(item.alias), item.expr.get());
  for (const Select* one = &select; one; one = one->unionWith.get()) {
    Scope* scope = &plan->scope_;
    if (one != &select) {
      plan->scopes_.push_back(std::make_unique<Scope>());
      scope = plan->scopes_.back().get();
      scope->outer = outer;
    }
    plan->cores_.push_back(std::make_unique<Core>(*scope));
    plan->bindCore(*one, *scope, *plan->cores_.back());
  }
  // unionAll stands at the SELECT before the word UNION.
  std::size_t position = 1;
  for (const Select* one = &select; one->unionWith; one = one->unionWith.get())
    plan->cores_[position++]->unionAll = one->unionAll;
  plan->unifyUnion();
  plan->nameColumns();
  Binder binder(compiler, &plan->scope_);
  if (plan->cores_[0]->grouped) binder.setGrouping(&plan->cores_[0]->grouping);
  plan->nocase_ = select.nocase;
  plan->bindOrder(select, binder, aliases);
  if (select.top) {
    Binder alone(compiler, nullptr);
    plan->top_ = alone.bind(*select.top);
    if (plan->top_->type != Type::whole) refuse(select.top->place, Code::typeMismatch, "TOP needs a whole number.");
  }
  for (const auto& scope : plan->scopes_) {
    plan->scope_.outerSources |= scope->outerSources;
    plan->scope_.readsBeyond = plan->scope_.readsBeyond || scope->readsBeyond;
  }
  return plan;
}

void SelectPlan::bindFrom(const Select& select, Scope& scope, Core& core) {
  if (select.from.size() > kMostSources) refuse(select.place, Code::limitReached, "too many tables in one SELECT.");
  for (const Source& source : select.from) {
    Level level;
    level.join = source.join;
    std::string name = source.alias;
    if (source.select) {
      level.derived = SelectPlan::make(compiler_, *source.select, nullptr);
      TableDef definition;
      for (const SelectColumn& column : level.derived->columns()) definition.fields.push_back(column.field);
      level.table = &compiler_.makeTable(definition);
    } else {
      level.table = &compiler_.table(source.table, source.place);
      if (name.empty()) name = source.table;
    }
    scope.sources.push_back({name, level.table});
    core.levels.push_back(std::move(level));
  }
}

void SelectPlan::bindCore(const Select& select, Scope& scope, Core& core) {
  bindFrom(select, scope, core);
  Binder binder(compiler_, &scope);
  const auto condition = [&](const Expr& expr) {
    ExpressionPtr bound = binder.bind(expr);
    if (bound->type != Type::boolean && bound->type != Type::null)
      refuse(expr.place, Code::typeMismatch, "expected a condition, found " + std::string(nameOf(bound->type)) + ".");
    return bound;
  };
  for (const Source& source : select.from) core.ons.push_back(source.on ? condition(*source.on) : nullptr);
  if (select.where) core.where = condition(*select.where);

  std::map<std::string, const Expr*> aliases;
  for (const SelectItem& item : select.items)
    if (!item.alias.empty()) aliases.emplace(foldCase(item.alias), item.expr.get());
  core.grouped = !select.groupBy.empty() || select.having ||
                 std::any_of(select.items.begin(), select.items.end(),
                             [](const SelectItem& item) { return containsAggregate(*item.expr); });
  core.distinct = select.distinct;
  binder.setAliases(&aliases);
  for (const ExprPtr& expr : select.groupBy) core.groupBy.push_back(binder.bind(groupedBy(select, *expr)));
  binder.setAliases(nullptr);
  if (core.grouped) binder.setGrouping(&core.grouping);
  bindItems(select, core, binder);
  if (select.having) {
    binder.setAliases(&aliases);
    core.having = condition(*select.having);
    binder.setAliases(nullptr);
  }
  // In a grouped SELECT only SELECTs inside read rows.
  if (core.grouped)
    for (const ExpressionPtr& item : core.items) core.grouping.rowSources |= item->sources;
  if (core.having) core.grouping.rowSources |= core.having->sources;
  placeConditions(core.levels, core.where.get(), core.ons, core.constants);
}

void SelectPlan::bindItems(const Select& select, Core& core, Binder& binder) {
  const auto requireRoom = [&] {
    if (core.items.size() > kMaxFields)
      refuse(select.place, Code::limitReached,
             "a SELECT can give " + std::to_string(kMaxFields) + " columns at the most.");
  };
  for (const SelectItem& item : select.items) {
    if (item.expr->kind != ExprKind::star) {
      core.items.push_back(binder.bind(*item.expr));
      core.names.push_back(columnName(item));
      int source = 0;
      int field = 0;
      const bool plain = core.items.back()->column(source, field);
      core.fields.push_back(
          plain ? &core.levels[static_cast<std::size_t>(source)].table->definition().fields[static_cast<std::size_t>(
                      field)]
                : nullptr);
      requireRoom();
      continue;
    }
    expandStar(*item.expr, core.scope, [&](std::size_t source, int field) {
      const FieldDef& definition =
          core.scope.sources[source].table->definition().fields[static_cast<std::size_t>(field)];
      Expr column;
      column.kind = ExprKind::column;
      column.place = item.expr->place;
      column.table = core.scope.sources[source].name;
      column.name = definition.name;
      core.items.push_back(binder.bind(column));
      core.names.push_back(definition.name);
      core.fields.push_back(&definition);
      requireRoom();
    });
  }
}

// The columns of all SELECTs of a chain take one type each.
void SelectPlan::unifyUnion() {
  Core& first = *cores_[0];
  for (std::size_t i = 0; i < first.items.size(); ++i) {
    std::vector<ExpressionPtr*> branches;
    int size = 0;
    bool known = true;
    bool sameField = true;
    for (const auto& core : cores_) {
      if (core->items.size() != first.items.size())
        refuse(first.items[0]->place, Code::badStatement,
               "the SELECTs of a UNION must give the same number of columns.");
      branches.push_back(&core->items[i]);
      const Expression& item = *core->items[i];
      known = known && (item.type != Type::text || item.size > 0);
      size = std::max(size, item.size);
      sameField = sameField && core->fields[i] && first.fields[i] && core->fields[i]->type == first.fields[i]->type;
    }
    SelectColumn column;
    column.type = unifyBranches(branches, first.items[i]->place);
    column.size = known ? size : 0;
    Constant sample(Datum{}, nullptr, Expr{});
    sample.type = column.type;
    sample.size = column.size;
    column.field = fieldFor(sample, sameField ? first.fields[i] : nullptr);
    if (sameField && column.field.type == FieldType::string) column.field.size = size;
    column.name = first.names[i];
    columns_.push_back(std::move(column));
  }
}

void SelectPlan::adaptColumn(std::size_t column, Type wanted) {
  std::vector<ExpressionPtr*> branches;
  for (const auto& core : cores_) branches.push_back(&core->items[column]);
  const auto isNull = [](const Expression& item) {
    const auto* constant = dynamic_cast<const Constant*>(&item);
    return constant && constant->value().isNull();
  };
  const bool adapts = columns_[column].type == Type::text && wanted != Type::text && wanted != Type::blob &&
                      std::all_of(branches.begin(), branches.end(),
                                  [&](const ExpressionPtr* item) { return adaptsToOther(**item) || isNull(**item); });
  if (!adapts) return;
  for (ExpressionPtr* item : branches) *item = convertTo(std::move(*item), wanted);
  columns_[column].type = wanted;
}

// A repeated name gets _1, _2, ...; the plain one finds the first.
void SelectPlan::nameColumns() {
  std::set<std::string> taken;
  for (SelectColumn& column : columns_) {
    std::string name = column.name;
    for (int number = 1; !taken.insert(foldCase(name)).second; ++number) {
      const std::string suffix = "_" + std::to_string(number);
      name = column.name;
      while (name.size() + suffix.size() > kMaxFieldNameSize || !isValidUtf8(name)) name.pop_back();
      name += suffix;
    }
    column.name = column.field.name = name;
  }
}

void SelectPlan::bindOrder(const Select& select, Binder& binder, const std::map<std::string, const Expr*>& aliases) {
  binder.setAliases(&aliases);
  for (const OrderItem& item : select.orderBy) {
    OrderTerm term;
    term.descending = item.descending;
    const Expr& expr = *item.expr;
    if (expr.kind == ExprKind::literal && expr.value.kind() == Value::Kind::whole) {
      const std::int64_t position = expr.value.asInt64();
      if (position < 1 || position > static_cast<std::int64_t>(columns_.size()))
        refuse(expr.place, Code::badStatement,
               "ORDER BY names column " + std::to_string(position) + " of " + std::to_string(columns_.size()) + ".");
      term.column = static_cast<int>(position - 1);
    } else if (expr.kind == ExprKind::column && expr.table.empty()) {
      for (std::size_t i = 0; i < columns_.size() && term.column < 0; ++i)
        if (equalFolded(columns_[i].name, expr.name)) term.column = static_cast<int>(i);
    }
    if (term.column < 0) {
      if (cores_.size() > 1)
        refuse(expr.place, Code::badStatement, "a UNION is ordered by columns of its result only.");
      term.expression = binder.bind(expr);
      if (cores_[0]->grouped) cores_[0]->grouping.rowSources |= term.expression->sources;
    }
    order_.push_back(std::move(term));
  }
  binder.setAliases(nullptr);
  findOrders();
}

// The indexes that give the rows of the only source in the order wanted, or the minimum or maximum wanted first.
void SelectPlan::findOrders() {
  Core& core = *cores_[0];
  if (cores_.size() > 1 || core.levels.size() != 1 || core.distinct || core.levels[0].derived) return;
  std::vector<Access::Wanted> wanted;
  int source = 0;
  int field = 0;
  const auto want = [&](const Expression& expression, bool descending) {
    if (!expression.column(source, field) || expression.type == Type::blob) return false;
    wanted.push_back({field, descending, expression.type == Type::text});
    return true;
  };
  const Access& access = *core.levels[0].access;
  if (core.grouped) {
    const Grouping& grouping = core.grouping;
    if (!core.groupBy.empty() || grouping.aggregates.size() != 1 || !grouping.firstValues.empty() ||
        grouping.rowSources != 0)
      return;
    const Aggregate& aggregate = grouping.aggregates[0];
    const bool max = aggregate.kind == AggregateKind::max;
    if ((!max && aggregate.kind != AggregateKind::min) || !aggregate.argument || !want(*aggregate.argument, max))
      return;
    core.orders = access.orders(wanted, false);
    for (Access::Order& order : core.orders) order.plain = order.present = true;
    return;
  }
  const bool plain = std::all_of(order_.begin(), order_.end(), [&](const OrderTerm& term) {
    return want(term.expression ? *term.expression : *core.items[static_cast<std::size_t>(term.column)],
                term.descending);
  });
  if (plain && !order_.empty()) core.orders = access.orders(wanted, nocase_);
}

Table* SelectPlan::liveTable() const {
  const Core& core = *cores_[0];
  const bool plain =
      cores_.size() == 1 && core.levels.size() == 1 && !core.levels[0].derived && !core.grouped && !core.distinct;
  // The result's columns are the table's: one that is worked out or called otherwise would not be there.
  for (std::size_t i = 0; i < core.items.size() && plain; ++i)
    if (!core.fields[i] || !equalFolded(core.fields[i]->name, core.names[i])) return nullptr;
  return plain ? core.levels[0].table : nullptr;
}

}  // namespace quillon::store::sql
