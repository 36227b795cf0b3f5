#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "store/sql/Expression.h"

namespace quillon::store::sql {

class Compiler;
class SelectPlan;

// The sources whose columns a SELECT's expressions may name, and those of the SELECT around it.
struct Scope {
  struct SourceName {
    std::string name;  // alias or table, as written
    const Table* table;
    // A table in memory goes by its name with and without "\\Memory\\".
    bool isCalled(const std::string& written) const;
  };
  std::vector<SourceName> sources;
  // Tried before the sources: fields that are none of a record, as a cursor's calculated ones. Null: none of these.
  std::function<ExpressionPtr(const Expr&)> field;
  Scope* outer = nullptr;
  // What of the SELECTs around has been named: sources of the next one out, and anything further out.
  std::uint64_t outerSources = 0;
  bool readsBeyond = false;
  std::vector<std::weak_ptr<SelectPlan>> inner;  // SELECTs in its expressions
};

enum class AggregateKind : std::uint8_t { sum, count, min, max, average };

struct Aggregate {
  AggregateKind kind;
  ExpressionPtr argument;  // null for COUNT(*)
  bool distinct = false;
  Type type;
};

// What a grouped SELECT keeps of a group: columns of its first row, then its aggregates; both are read as slots.
struct Grouping {
  std::vector<ExpressionPtr> firstValues;
  std::vector<Aggregate> aggregates;
  std::uint64_t rowSources = 0;  // bit i: a SELECT inside looks at the first row of source i
};

// Turns the tree of a statement into expressions: names to columns, parameters to their values' types.
class Binder {
 public:
  Binder(Compiler& compiler, Scope* scope) : compiler_(compiler), scope_(scope) {}

  // Aggregates are allowed and columns are taken from the group while `grouping` is set.
  void setGrouping(Grouping* grouping) { grouping_ = grouping; }
  // Names that are tried before columns, as in GROUP BY, HAVING and ORDER BY.
  void setAliases(const std::map<std::string, const Expr*>* aliases) { aliases_ = aliases; }

  ExpressionPtr bind(const Expr& expr);

 private:
  ExpressionPtr bindColumn(const Expr& expr);
  ExpressionPtr bindAggregate(const Expr& expr);
  ExpressionPtr bindLiteral(const Expr& expr);
  ExpressionPtr bindParameter(const Expr& expr);
  ExpressionPtr bindSelect(const Expr& expr);
  std::vector<ExpressionPtr> bindOperands(const Expr& expr);
  void noteOuter(int depth, std::size_t source);
  ExpressionPtr slot(std::size_t place, bool first, Type type, int size);

  Compiler& compiler_;
  Scope* scope_;
  Grouping* grouping_ = nullptr;
  const std::map<std::string, const Expr*>* aliases_ = nullptr;
  int nesting_ = 0;  // of aliases
};

bool isAggregate(const Expr& expr);
bool containsAggregate(const Expr& expr);  // outside of SELECTs inside it

}  // namespace quillon::store::sql
