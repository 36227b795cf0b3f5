// Where each condition of a SELECT is tested, what an index can be searched for, and the walk over the joined rows.
#include <algorithm>
#include <bit>
#include <cstring>

#include "base/Text.h"
#include "store/Errors.h"
#include "store/sql/SelectCore.h"
#include "store/table/Table.h"

namespace quillon::store::sql {
namespace {

void conjuncts(const Expression* condition, std::vector<const Expression*>& out) {
  Expression::Parts parts;
  if (condition->parts(parts) && parts.op == Op::both) {
    conjuncts(parts.left, out);
    conjuncts(parts.right, out);
  } else {
    out.push_back(condition);
  }
}

int lastSource(const Expression& condition) { return static_cast<int>(std::bit_width(condition.sources)) - 1; }

Op mirrored(Op op) {
  switch (op) {
    case Op::less:
      return Op::greater;
    case Op::lessEqual:
      return Op::greaterEqual;
    case Op::greater:
      return Op::less;
    case Op::greaterEqual:
      return Op::lessEqual;
    default:
      return op;
  }
}

bool searchable(Op op) { return op == Op::equal || mirrored(op) != op; }

// A column of the source on one side, and on the other what is known before the source is read.
void termsOf(const Expression* condition, int source, std::vector<Access::Term>& terms) {
  const std::uint64_t before = (std::uint64_t{1} << source) - 1;
  const auto known = [&](const Expression& side) { return (side.sources & ~before) == 0; };
  int from = 0;
  int field = 0;
  const auto isColumn = [&](const Expression& side) {
    return side.column(from, field) && from == source && side.type != Type::blob;
  };
  Expression::Parts parts;
  if (condition->parts(parts) && searchable(parts.op)) {
    if (isColumn(*parts.left) && known(*parts.right))
      terms.push_back({field, parts.op, parts.right, nullptr, parts.left, nullptr});
    if (isColumn(*parts.right) && known(*parts.left))
      terms.push_back({field, mirrored(parts.op), parts.left, nullptr, parts.right, nullptr});
  }
  if (const auto* limits = condition->limits(); limits && isColumn(*(*limits)[0])) {
    if (known(*(*limits)[1]))
      terms.push_back({field, Op::greaterEqual, (*limits)[1].get(), nullptr, (*limits)[0].get(), nullptr});
    if (known(*(*limits)[2]))
      terms.push_back({field, Op::lessEqual, (*limits)[2].get(), nullptr, (*limits)[0].get(), nullptr});
  }
  if (const auto* list = condition->alternatives(); list && isColumn(*(*list)[0]))
    if (std::all_of(list->begin() + 1, list->end(), [&](const ExpressionPtr& one) { return known(*one); }))
      terms.push_back({field, Op::equal, nullptr, list, (*list)[0].get(), nullptr});
  if (const auto* members = condition->members(); members && isColumn(*members->left))
    terms.push_back({field, Op::equal, nullptr, nullptr, members->left, members});
}

bool allHold(const std::vector<const Expression*>& conditions, Frame& frame) {
  return std::all_of(conditions.begin(), conditions.end(),
                     [&](const Expression* one) { return one->eval(frame).isTrue(); });
}

}  // namespace

void placeConditions(std::vector<Level>& levels, const Expression* where, const std::vector<ExpressionPtr>& ons,
                     std::vector<const Expression*>& constants) {
  std::vector<const Expression*> all;
  if (where) conjuncts(where, all);
  for (std::size_t i = 0; i < levels.size(); ++i) {
    if (!ons[i]) continue;
    std::vector<const Expression*> on;
    conjuncts(ons[i].get(), on);
    for (const Expression* condition : on)
      if (lastSource(*condition) > static_cast<int>(i))
        refuse(condition->place, Code::badStatement, "ON names a table that is joined later.");
    std::vector<const Expression*>& to = levels[i].join == JoinKind::left ? levels[i].matching : all;
    to.insert(to.end(), on.begin(), on.end());
  }
  for (const Expression* condition : all) {
    const int last = lastSource(*condition);
    if (last < 0)
      constants.push_back(condition);
    else
      levels[static_cast<std::size_t>(last)].conditions.push_back(condition);
  }
  for (std::size_t i = 0; i < levels.size(); ++i) {
    Level& level = levels[i];
    std::vector<Access::Term> terms;
    const auto& conditions = level.join == JoinKind::left ? level.matching : level.conditions;
    for (std::size_t c = 0; c < conditions.size(); ++c) {
      const std::size_t before = terms.size();
      termsOf(conditions[c], static_cast<int>(i), terms);
      for (std::size_t t = before; t < terms.size(); ++t) terms[t].condition = c;
    }
    level.access = std::make_unique<Access>(*level.table, static_cast<int>(i), std::move(terms), conditions.size());
  }
}

bool SelectPlan::Core::join(Frame& frame, std::size_t level, const std::function<bool()>& row) {
  if (level == levels.size()) return row();
  Level& here = levels[level];
  bool matched = false;
  const auto meets = [&] {
    frame.texts.clear();
    if (!allHold(here.matching, frame)) return true;
    matched = true;
    return !allHold(here.conditions, frame) || join(frame, level + 1, row);
  };
  if (!(level == 0 && order ? here.access->forEachInOrder(frame, *order, meets) : here.access->forEach(frame, meets)))
    return false;
  if (here.join != JoinKind::left || matched) return true;
  frame.rows[level].view.reset();
  return !allHold(here.conditions, frame) || join(frame, level + 1, row);
}

void expandStar(const Expr& star, const Scope& scope, const std::function<void(std::size_t, int)>& column) {
  bool any = false;
  for (std::size_t i = 0; i < scope.sources.size(); ++i) {
    if (!star.table.empty() && !scope.sources[i].isCalled(star.table)) continue;
    any = true;
    const auto fields = static_cast<int>(scope.sources[i].table->definition().fields.size());
    for (int field = 0; field < fields; ++field) column(i, field);
  }
  if (!any)
    refuse(star.place, Code::badStatement,
           star.table.empty() ? "'*' needs a table." : "there is no table '" + star.table + "' in this SELECT.");
}

void appendRow(const std::vector<Datum>& row, std::string& out) {
  for (const Datum& value : row) {
    out += static_cast<char>(value.type);
    if (value.type == Type::text || value.type == Type::blob) {
      const std::uint64_t size = value.text.size();
      out.append(reinterpret_cast<const char*>(&size), sizeof size);
      out += value.text;
    } else if (!value.isNull()) {
      out.append(reinterpret_cast<const char*>(&value.whole), sizeof value.whole);
    }
  }
}

void readRow(std::string_view bytes, std::vector<Datum>& row) {
  row.clear();
  while (!bytes.empty()) {
    Datum& value = row.emplace_back();
    value.type = static_cast<Type>(bytes[0]);
    bytes.remove_prefix(1);
    if (value.isNull()) continue;
    std::int64_t word;
    std::memcpy(&word, bytes.data(), sizeof word);
    bytes.remove_prefix(sizeof word);
    if (value.type == Type::text || value.type == Type::blob) {
      value.text = bytes.substr(0, static_cast<std::size_t>(word));
      bytes.remove_prefix(static_cast<std::size_t>(word));
    } else {
      value.whole = word;
    }
  }
}

}  // namespace quillon::store::sql
