#pragma once

#include <string>
#include <vector>

#include "store/sql/SelectPlan.h"

namespace quillon::store::sql {

// One source of a SELECT, with the conditions that are tested as soon as its row is known.
struct Level {
  JoinKind join = JoinKind::first;
  Table* table = nullptr;
  std::unique_ptr<SelectPlan> derived;        // fills the table when the SELECT runs
  std::vector<const Expression*> matching;    // of a left join: what makes a row of it match
  std::vector<const Expression*> conditions;  // what the row so far must meet
  std::unique_ptr<Access> access;
};

struct SelectPlan::Core {
  explicit Core(Scope& itsScope) : scope(itsScope) {}

  Scope& scope;
  std::vector<Level> levels;
  ExpressionPtr where;
  std::vector<ExpressionPtr> ons;
  std::vector<const Expression*> constants;  // conditions that read no source
  std::vector<ExpressionPtr> items;
  std::vector<std::string> names;       // of the items: alias, field or source text
  std::vector<const FieldDef*> fields;  // of the items that are plain columns, else null
  bool grouped = false;
  std::vector<ExpressionPtr> groupBy;
  Grouping grouping;
  ExpressionPtr having;
  bool distinct = false;
  bool unionAll = false;  // how it joins those before it
  // Of the only source: the indexes that give the order wanted, or a minimum or maximum first, and the one that this
  // run goes by.
  std::vector<Access::Order> orders;
  const Access::Order* order = nullptr;

  // Calls for each joined row that meets all conditions. False from the callback ends it.
  bool join(Frame& frame, std::size_t level, const std::function<bool()>& row);
};

// Calls for every column that a '*' or 'T.*' stands for.
void expandStar(const Expr& star, const Scope& scope, const std::function<void(std::size_t source, int field)>& column);
// Gives each condition to the level at which it can be tested, and each level its way to the rows.
void placeConditions(std::vector<Level>& levels, const Expression* where, const std::vector<ExpressionPtr>& ons,
                     std::vector<const Expression*>& constants);

// A row of values as bytes and back; the values of a read row look into the bytes.
void appendRow(const std::vector<Datum>& row, std::string& out);
void readRow(std::string_view bytes, std::vector<Datum>& row);

}  // namespace quillon::store::sql
