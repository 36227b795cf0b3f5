#include "store/sql/ChangePlan.h"

#include <algorithm>
#include <optional>
#include <set>

#include "base/Text.h"
#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/sql/Compiler.h"
#include "store/sql/SelectCore.h"
#include "store/sql/Spool.h"
#include "store/sql/SteadyRead.h"
#include "store/sql/TableChange.h"
#include "store/table/Table.h"
#include "store/vfs/File.h"

namespace quillon::store::sql {
namespace {

// A value for a field: converted as far as its type is known before the rows are; otherwise refused.
ExpressionPtr valueFor(ExpressionPtr value, const FieldDef& field, const Place& place) {
  const Type wanted = typeOf(field.type);
  const auto* constant = dynamic_cast<const Constant*>(value.get());
  const bool adapts = constant && (constant->quoted || constant->amount);
  if (adapts && wanted != Type::text && wanted != Type::blob && wanted != Type::real)
    return convertTo(std::move(value), wanted);
  const Type type = value->type;
  const bool fits = type == wanted || type == Type::null || (isNumber(type) && isNumber(wanted)) ||
                    (type == Type::date && wanted == Type::dateTime) ||
                    (type == Type::dateTime && wanted == Type::date) || (type == Type::text && wanted == Type::blob) ||
                    (type == Type::text && value->fixed && wanted != Type::text);
  if (!fits)
    refuse(place, Code::typeMismatch, "field '" + field.name + "' cannot hold " + std::string(nameOf(type)) + ".");
  return type == Type::text && wanted != Type::text && wanted != Type::blob ? convertTo(std::move(value), wanted)
                                                                            : std::move(value);
}

int fieldOf(const Table& table, const std::string& name, const Place& place) {
  const int field = table.definition().fieldIndex(name);
  if (field < 0) refuse(place, Code::noSuchField, "table '" + table.name() + "' has no field '" + name + "'.");
  return field;
}

// Where the values of a row stand in the statement, so that one that its field cannot take is told by its place.
struct Places {
  const std::vector<int>& fields;
  std::vector<Place> values;  // of the fields
  Place row;                  // for a field that the statement does not name

  template <typename Action>
  void tell(const TableChange& change, Action&& action) const {
    try {
      action();
    } catch (const StoreError& error) {
      const bool ofField = error.code() == Code::badValue || error.code() == Code::required;
      const auto field = ofField ? std::find(fields.begin(), fields.end(), change.refused()) : fields.end();
      refuseAt(field == fields.end() ? row : values[static_cast<std::size_t>(field - fields.begin())], error);
      throw;
    }
  }
};

// The write lock of the target is taken before its other tables are held for reading, and those are let go before the
// publish: whoever waits for a lock of moments with another in hand can hold a commit up that waits for it.

// The tables that a statement reads beside the one that it changes.
std::vector<Table*> others(const Compiler& compiler, const Table& target) {
  std::vector<Table*> tables = compiler.tables();
  std::erase(tables, &target);
  return tables;
}

// The fields that an INSERT names, all when it names none.
std::vector<int> insertFields(const Table& table, const Statement& statement) {
  std::vector<int> fields;
  std::set<int> seen;
  for (std::size_t i = 0; i < statement.fields.size(); ++i) {
    fields.push_back(fieldOf(table, statement.fields[i], statement.fieldPlaces[i]));
    if (!seen.insert(fields.back()).second)
      refuse(statement.fieldPlaces[i], Code::badStatement, "field '" + statement.fields[i] + "' is named twice.");
  }
  if (!fields.empty()) return fields;
  for (int i = 0; i < table.layout().fieldCount(); ++i) fields.push_back(i);
  return fields;
}

class InsertValues final : public ChangePlan {
 public:
  InsertValues(Compiler& compiler, const Statement& statement)
      : compiler_(compiler),
        table_(compiler.table(statement.table, statement.tablePlace)),
        fields_(insertFields(table_, statement)) {
    Binder binder(compiler, nullptr);
    for (const auto& written : statement.rows) {
      if (written.size() != fields_.size())
        refuse(written.empty() ? statement.place : written[0]->place, Code::badStatement,
               std::to_string(written.size()) + " values for " + std::to_string(fields_.size()) + " fields.");
      auto& row = rows_.emplace_back();
      places_.push_back({fields_, {}, written[0]->place});
      for (std::size_t i = 0; i < fields_.size(); ++i) {
        row.push_back(valueFor(binder.bind(*written[i]), table_.layout().field(fields_[i]), written[i]->place));
        places_.back().values.push_back(written[i]->place);
      }
    }
  }
  std::uint64_t run() override {
    TableChange change(table_);
    std::optional<Database::Snapshot> snapshot(std::in_place, compiler_.database(), others(compiler_, table_));
    Frame frame;
    std::vector<Datum> values;
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      values.clear();
      for (const ExpressionPtr& value : rows_[i]) values.push_back(value->eval(frame));
      places_[i].tell(change, [&] { change.insert(fields_, values); });
      frame.texts.clear();
    }
    snapshot.reset();
    return change.done();
  }
  void explain(std::vector<std::string>& lines) override { lines.push_back("insert into " + table_.name()); }

 private:
  Compiler& compiler_;
  Table& table_;
  std::vector<int> fields_;
  std::vector<std::vector<ExpressionPtr>> rows_;
  std::vector<Places> places_;  // of the rows
};

class InsertSelect final : public ChangePlan {
 public:
  InsertSelect(Compiler& compiler, const Statement& statement)
      : compiler_(compiler),
        table_(compiler.table(statement.table, statement.tablePlace)),
        fields_(insertFields(table_, statement)),
        plan_(SelectPlan::make(compiler, *statement.select, nullptr)),
        places_{fields_, std::vector<Place>(fields_.size(), statement.select->place), statement.tablePlace} {
    if (plan_->columns().size() != fields_.size())
      refuse(statement.select->place, Code::badStatement,
             std::to_string(plan_->columns().size()) + " columns for " + std::to_string(fields_.size()) + " fields.");
    const auto& items = statement.select->items;
    for (std::size_t i = 0; i < fields_.size() && items.size() == fields_.size(); ++i)
      places_.values[i] = items[i].expr->place;
    for (std::size_t i = 0; i < fields_.size(); ++i) {
      const FieldDef& field = table_.layout().field(fields_[i]);
      const Type to = typeOf(field.type);
      plan_->adaptColumn(i, to);
      const Type from = plan_->columns()[i].type;
      const auto calendar = [](Type type) { return type == Type::date || type == Type::dateTime; };
      if (from != to && from != Type::null && !(isNumber(from) && isNumber(to)) && !(calendar(from) && calendar(to)))
        refuse(places_.values[i], Code::typeMismatch,
               "field '" + field.name + "' cannot hold " + std::string(nameOf(from)) + ".");
    }
  }
  std::uint64_t run() override {
    // All rows are read before the first is written: the SELECT may read the table that they go to.
    Spool rows([&] { return compiler_.database().session().scratch(); });
    std::vector<Datum> values;
    std::string bytes;
    TableChange change(table_);
    {
      Database::Snapshot snapshot(compiler_.database(), others(compiler_, table_));
      plan_->run(nullptr, [&](const std::vector<Datum>& row) {
        bytes.clear();
        appendRow(row, bytes);
        rows.add(bytes);
        return true;
      });
    }
    rows.forEach([&](std::string_view row) {
      readRow(row, values);
      places_.tell(change, [&] { change.insert(fields_, values); });
    });
    return change.done();
  }
  void explain(std::vector<std::string>& lines) override {
    plan_->explain(lines, 0);
    lines.push_back("insert into " + table_.name());
  }

 private:
  Compiler& compiler_;
  Table& table_;
  std::vector<int> fields_;
  std::unique_ptr<SelectPlan> plan_;
  Places places_;
};

// The rows of a table that a condition chooses, with the access that finds them.
struct Target {
  Target(Compiler& compiler, const Statement& statement)
      : table(compiler.table(statement.table, statement.tablePlace)), binder(compiler, &scope) {
    scope.sources.push_back({statement.alias.empty() ? statement.table : statement.alias, &table});
    frame.rows.resize(1);
    frame.rows[0].table = &table;
    levels.resize(1);
    levels[0].table = &table;
    if (statement.where) {
      where = binder.bind(*statement.where);
      if (where->type != Type::boolean && where->type != Type::null)
        refuse(statement.where->place, Code::typeMismatch,
               "expected a condition, found " + std::string(nameOf(where->type)) + ".");
    }
    std::vector<ExpressionPtr> ons(1);
    placeConditions(levels, where.get(), ons, constants);
    atRest = compiler.atRest([this] { levels[0].access->letGo(); });
  }
  // Calls for every row that the condition chooses, in row-id order; frame.rows[0] is the row.
  void forEach(const std::function<void()>& row) {
    const auto holds = [&](const Expression* condition) { return condition->eval(frame).isTrue(); };
    if (!std::all_of(constants.begin(), constants.end(), holds)) return;
    levels[0].access->choose(1, frame);
    levels[0].access->forEach(frame, [&] {
      frame.texts.clear();
      if (std::all_of(levels[0].conditions.begin(), levels[0].conditions.end(), holds)) row();
      return true;
    });
    frame.rows[0].view.reset();
  }
  void explain(std::vector<std::string>& lines) {
    levels[0].access->choose(1, frame);
    lines.push_back(levels[0].access->explain());
    SelectPlan::explainInner(scope, lines, 0, frame);
  }

  Table& table;
  Compiler::LetGo atRest;
  Scope scope;
  Binder binder;
  Frame frame;
  std::vector<Level> levels;
  ExpressionPtr where;
  std::vector<const Expression*> constants;
};

class Update final : public ChangePlan {
 public:
  Update(Compiler& compiler, const Statement& statement)
      : compiler_(compiler), target_(compiler, statement), places_{fields_, {}, statement.tablePlace} {
    for (const Assignment& assignment : statement.assignments) {
      fields_.push_back(fieldOf(target_.table, assignment.field, assignment.place));
      if (std::count(fields_.begin(), fields_.end(), fields_.back()) > 1)
        refuse(assignment.place, Code::badStatement, "field '" + assignment.field + "' is set twice.");
      values_.push_back(valueFor(target_.binder.bind(*assignment.value), target_.table.layout().field(fields_.back()),
                                 assignment.place));
      places_.values.push_back(assignment.value->place);
    }
  }
  std::uint64_t run() override {
    TableChange change(target_.table);
    std::optional<Database::Snapshot> snapshot(std::in_place, compiler_.database(), others(compiler_, target_.table));
    change.startUpdate(fields_);
    std::vector<Datum> row;
    Frame& frame = target_.frame;
    target_.forEach([&] {
      row.clear();
      for (const ExpressionPtr& value : values_) row.push_back(value->eval(frame));
      const auto bytes = frame.rows[0].view->bytes();
      const std::string_view before(reinterpret_cast<const char*>(bytes.data()), bytes.size());
      places_.tell(change, [&] { change.planUpdate(frame.rows[0].row, before, row); });
    });
    change.update();
    snapshot.reset();
    return change.done();
  }
  void explain(std::vector<std::string>& lines) override {
    target_.explain(lines);
    lines.emplace_back("update");
  }

 private:
  Compiler& compiler_;
  Target target_;
  std::vector<int> fields_;
  std::vector<ExpressionPtr> values_;
  Places places_;
};

class Remove final : public ChangePlan {
 public:
  Remove(Compiler& compiler, const Statement& statement) : compiler_(compiler), target_(compiler, statement) {}
  std::uint64_t run() override {
    TableChange change(target_.table);
    std::vector<RowId> ids;
    {
      Database::Snapshot snapshot(compiler_.database(), others(compiler_, target_.table));
      target_.forEach([&] { ids.push_back(target_.frame.rows[0].row); });
    }
    change.remove(ids);
    return change.done();
  }
  void explain(std::vector<std::string>& lines) override {
    target_.explain(lines);
    lines.emplace_back("delete");
  }

 private:
  Compiler& compiler_;
  Target target_;
};

}  // namespace

std::unique_ptr<ChangePlan> ChangePlan::make(Compiler& compiler, const Statement& statement) {
  switch (statement.kind) {
    case StatementKind::insertValues:
      return std::make_unique<InsertValues>(compiler, statement);
    case StatementKind::insertSelect:
      return std::make_unique<InsertSelect>(compiler, statement);
    case StatementKind::update:
      return std::make_unique<Update>(compiler, statement);
    default:
      return std::make_unique<Remove>(compiler, statement);
  }
}

std::vector<std::string> explainStatement(Database& database, const Statement& statement,
                                          const Parameters& parameters) {
  std::vector<std::string> lines;
  if (statement.kind >= StatementKind::createTable) {
    lines.push_back("change " + statement.table);
    return lines;
  }
  Compiler compiler(database, parameters);
  if (statement.kind == StatementKind::select) {
    const auto plan = SelectPlan::make(compiler, *statement.select, nullptr);
    Database::Snapshot snapshot(database, compiler.tables());
    plan->explain(lines, 0);
    if (!statement.select->into.empty()) lines.push_back("into " + statement.select->into);
  } else {
    const auto plan = ChangePlan::make(compiler, statement);
    Database::Snapshot snapshot(database, compiler.tables());
    plan->explain(lines);
  }
  return lines;
}

}  // namespace quillon::store::sql
