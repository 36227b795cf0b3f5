// Running a SELECT: joined rows, groups, distinct rows, order, the first n.
#include <algorithm>
#include <limits>
#include <unordered_set>

#include "store/Database.h"
#include "store/Errors.h"
#include "store/sql/Compiler.h"
#include "store/sql/Groups.h"
#include "store/sql/SelectCore.h"
#include "store/sql/Sorter.h"
#include "store/sql/TableFill.h"
#include "store/table/Table.h"
#include "store/vfs/File.h"

namespace quillon::store::sql {
namespace {

constexpr std::size_t kSortMemory = std::size_t{16} << 20;

}  // namespace

std::uint64_t SelectPlan::limit(Frame* outer) const {
  if (!top_) return std::numeric_limits<std::uint64_t>::max();
  Frame frame;
  frame.outer = outer;
  const Datum count = top_->eval(frame);
  if (count.isNull() || count.whole < 0) refuse(top_->place, Code::badValue, "TOP needs a number of rows.");
  return static_cast<std::uint64_t>(count.whole);
}

void SelectPlan::sortKey(Frame& frame, const std::vector<Datum>& row, std::string& key) const {
  key.clear();
  for (const OrderTerm& term : order_)
    appendSortKey(term.column >= 0 ? row[static_cast<std::size_t>(term.column)] : term.expression->eval(frame), nocase_,
                  term.descending, key);
}

void SelectPlan::run(Frame* outer, const RowSink& sink) {
  const std::uint64_t most = limit(outer);
  if (most == 0) return;
  std::uint64_t given = 0;
  const bool sorts = !order_.empty() && !ordered_;
  Sorter sorter([&] { return compiler_.database().session().scratch(); }, kSortMemory);
  std::unordered_set<std::string> seen;
  std::string key, bytes;
  std::vector<Datum> row;

  std::size_t lastDistinct = 0;  // up to this SELECT of the chain rows are given once
  for (std::size_t i = 1; i < cores_.size(); ++i)
    if (!cores_[i]->unionAll) lastDistinct = i;
  bool more = true;
  for (std::size_t i = 0; i < cores_.size() && more; ++i) {
    Core& core = *cores_[i];
    const bool once = core.distinct || (lastDistinct > 0 && i <= lastDistinct);
    // A DISTINCT of its own in a chain that keeps doubles.
    if (once && i > 0 && (lastDistinct == 0 || i > lastDistinct)) seen.clear();
    Frame frame;
    frame.outer = outer;
    frame.rows.resize(core.levels.size());
    for (std::size_t s = 0; s < core.levels.size(); ++s) frame.rows[s].table = core.levels[s].table;
    runCore(core, frame, [&](Frame& at) {
      row.clear();
      for (const ExpressionPtr& item : core.items) row.push_back(item->eval(at));
      if (once) {
        bytes.clear();
        for (const Datum& value : row) appendIdentity(value, bytes);
        if (!seen.insert(bytes).second) return true;
      }
      if (sorts) {
        sortKey(at, row, key);
        bytes.clear();
        if (liveRows_) row.push_back(Datum::ofWhole(static_cast<std::int64_t>(at.rows[0].row)));
        appendRow(row, bytes);
        sorter.add(key, bytes);
        return true;
      }
      if (liveRows_) liveRows_->push_back(at.rows[0].row);
      more = sink(row) && ++given < most;
      return more;
    });
  }
  if (!sorts) return;
  sorter.forEach([&](std::string_view payload) {
    readRow(payload, row);
    if (liveRows_) {
      liveRows_->push_back(static_cast<RowId>(row.back().whole));
      row.pop_back();
    }
    return sink(row) && ++given < most;
  });
}

std::vector<RowId> SelectPlan::liveRows() {
  std::vector<RowId> rows;
  liveRows_ = &rows;
  run(nullptr, [](const std::vector<Datum>&) { return true; });
  liveRows_ = nullptr;
  return rows;
}

void SelectPlan::runCore(Core& core, Frame& frame, const std::function<bool(Frame&)>& row) {
  for (Level& level : core.levels)
    if (level.derived) {
      TableFill fill(*level.table);
      level.derived->run(nullptr, [&](const std::vector<Datum>& values) {
        fill.add(values);
        return true;
      });
      fill.finish();
      level.derived.reset();
    }
  if (core.grouped) return runGrouped(core, frame, row);
  const auto holds = [&](const Expression* condition) { return condition->eval(frame).isTrue(); };
  if (!std::all_of(core.constants.begin(), core.constants.end(), holds)) return;
  double rows = 1;
  if (core.orderIndex < 0)
    for (Level& level : core.levels) rows = level.access->choose(rows, frame);
  core.join(frame, 0, [&] { return row(frame); });
}

void SelectPlan::runGrouped(Core& core, Frame& frame, const std::function<bool(Frame&)>& row) {
  Groups groups(core.grouping);
  const auto holds = [&](const Expression* condition) { return condition->eval(frame).isTrue(); };
  if (core.groupBy.empty()) groups.at({}, frame, false);
  if (std::all_of(core.constants.begin(), core.constants.end(), holds)) {
    double rows = 1;
    for (Level& level : core.levels) rows = level.access->choose(rows, frame);
    std::string key;
    const auto take = [&] {
      key.clear();
      for (const ExpressionPtr& expression : core.groupBy) appendIdentity(expression->eval(frame), key);
      groups.add(groups.at(key, frame, true), frame);
      return true;
    };
    if (!endpoint(core, frame, take)) core.join(frame, 0, take);
  }
  groups.forEach(frame, [&] {
    frame.texts.clear();
    if (core.having && !core.having->eval(frame).isTrue()) return true;
    return row(frame);
  });
}

// MIN or MAX of a field behind leading fields that equalities hold fixed stands at one end of an index. True: `take`
// was called for the one row that matters, if there is one.
bool SelectPlan::endpoint(Core& core, Frame& frame, const std::function<bool()>& take) {
  if (core.levels.size() != 1 || !core.groupBy.empty() || core.grouping.aggregates.size() != 1 ||
      !core.grouping.firstValues.empty() || core.grouping.rowSources != 0)
    return false;
  const Aggregate& aggregate = core.grouping.aggregates[0];
  int source = 0;
  int field = 0;
  if ((aggregate.kind != AggregateKind::min && aggregate.kind != AggregateKind::max) || !aggregate.argument ||
      !aggregate.argument->column(source, field))
    return false;
  Level& level = core.levels[0];
  const auto& terms = level.access->terms();
  if (terms.size() != level.conditions.size() || std::any_of(terms.begin(), terms.end(), [](const Access::Term& term) {
        return !term.value || term.op != Op::equal;
      }))
    return false;
  const auto& indexes = level.table->definition().indexes;
  for (std::size_t i = 0; i < indexes.size(); ++i) {
    bool range = false;
    const auto equal = static_cast<std::size_t>(level.access->equalities(static_cast<int>(i), range));
    const IndexDef& index = indexes[i];
    if (equal != terms.size() || index.caseInsensitive || index.parts.size() <= equal ||
        index.parts[equal].field != field)
      continue;
    std::string low, high;
    if (!level.access->bounds(static_cast<int>(i), frame, low, high)) return true;
    // Behind the nulls in an ascending field, before them in a descending one.
    const bool descending = index.parts[equal].descending;
    const std::string values = low + (descending ? '\xFE' : '\x01');
    const std::string end = KeyCodec::successor(values);
    TreeWalk walk(level.table->index(static_cast<int>(i)));
    const bool atStart = (aggregate.kind == AggregateKind::min) != descending;
    const bool found = atStart ? walk.seek(values) : end.empty() ? walk.last() : walk.seekBefore(end);
    if (!found || !walk.key().starts_with(values)) return true;
    std::string record;
    const RowId row = KeyCodec::rowOf(walk.key());
    if (!level.table->readRow(row, record)) return false;
    frame.rows[0].row = row;
    frame.rows[0].view.emplace(level.table->layout(), std::string_view(record));
    take();
    frame.rows[0].view.reset();
    return true;
  }
  return false;
}

void SelectPlan::explain(std::vector<std::string>& lines, int indent) {
  const std::string space(static_cast<std::size_t>(indent) * 2, ' ');
  for (const auto& core : cores_) {
    if (cores_.size() > 1)
      lines.push_back(space + (core == cores_[0] ? "first" : core->unionAll ? "union all" : "union"));
    Frame frame;
    frame.rows.resize(core->levels.size());
    for (std::size_t s = 0; s < core->levels.size(); ++s) frame.rows[s].table = core->levels[s].table;
    double rows = 1;
    for (Level& level : core->levels) {
      if (level.derived) {
        lines.push_back(space + "make " + level.table->name() + " from");
        level.derived->explain(lines, indent + 1);
      }
      rows = level.access->choose(rows, frame);
      std::string line = core->orderIndex >= 0
                             ? "walk " + level.table->name() + " in the order of index " +
                                   level.table->definition().indexes[static_cast<std::size_t>(core->orderIndex)].name
                             : level.access->explain();
      if (level.join == JoinKind::left) line += ", or no row";
      lines.push_back(space + line);
    }
    if (core->grouped) lines.push_back(space + (core->groupBy.empty() ? "aggregate" : "group"));
    if (core->distinct) lines.push_back(space + "distinct");
  }
  if (!order_.empty() && !ordered_) lines.push_back(space + "sort");
  if (top_) lines.push_back(space + "top");
}

}  // namespace quillon::store::sql
