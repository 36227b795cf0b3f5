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
  const auto sorts = [&] { return !order_.empty() && !cores_[0]->order; };
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
    runCore(core, frame, most, [&](Frame& at) {
      row.clear();
      if (liveRows_ && !sorts()) {
        liveRows_->push_back(at.rows[0].row);
        return ++given < most;
      }
      for (const ExpressionPtr& item : core.items) row.push_back(item->eval(at));
      if (once) {
        bytes.clear();
        for (const Datum& value : row) appendIdentity(value, bytes);
        if (!seen.insert(bytes).second) return true;
      }
      if (sorts()) {
        sortKey(at, row, key);
        bytes.clear();
        if (liveRows_) row.push_back(Datum::ofWhole(static_cast<std::int64_t>(at.rows[0].row)));
        appendRow(row, bytes);
        sorter.add(key, bytes);
        return true;
      }
      more = sink(row) && ++given < most;
      return more;
    });
  }
  if (!sorts()) return;
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

// The ways to the rows, by the counts of the moment; `most`: rows of the result.
void SelectPlan::chooseWays(Core& core, std::uint64_t most, Frame& frame) {
  core.order = nullptr;
  if (!core.orders.empty()) {
    core.order = core.levels[0].access->chooseOrder(core.orders, core.grouped ? 1 : most, frame);
    return;
  }
  double rows = 1;
  for (Level& level : core.levels) rows = level.access->choose(rows, frame);
}

void SelectPlan::runCore(Core& core, Frame& frame, std::uint64_t most, const std::function<bool(Frame&)>& row) {
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
  chooseWays(core, most, frame);
  core.join(frame, 0, [&] { return row(frame); });
}

void SelectPlan::runGrouped(Core& core, Frame& frame, const std::function<bool(Frame&)>& row) {
  Groups groups(core.grouping);
  const auto holds = [&](const Expression* condition) { return condition->eval(frame).isTrue(); };
  if (core.groupBy.empty()) groups.at({}, frame, false);
  if (std::all_of(core.constants.begin(), core.constants.end(), holds)) {
    chooseWays(core, 1, frame);
    std::string key;
    const auto take = [&] {
      key.clear();
      for (const ExpressionPtr& expression : core.groupBy) appendIdentity(expression->eval(frame), key);
      groups.add(groups.at(key, frame, true), frame);
      return true;
    };
    // A minimum or maximum stands at one end of an index: the first value that is there is the only one that matters.
    core.join(frame, 0, [&] {
      if (!core.order) return take();
      if (core.grouping.aggregates[0].argument->eval(frame).isNull()) return true;
      take();
      return false;
    });
  }
  groups.forEach(frame, [&] {
    frame.texts.clear();
    if (core.having && !core.having->eval(frame).isTrue()) return true;
    return row(frame);
  });
}

void SelectPlan::explainInner(const Scope& scope, std::vector<std::string>& lines, int indent, Frame& frame) {
  for (const auto& one : scope.inner)
    if (const auto plan = one.lock()) {
      lines.push_back(std::string(static_cast<std::size_t>(indent) * 2, ' ') +
                      (plan->readsAround() ? "for each row" : "once"));
      plan->explain(lines, indent + 1, &frame);
    }
}

void SelectPlan::explain(std::vector<std::string>& lines, int indent, Frame* outer) {
  const std::string space(static_cast<std::size_t>(indent) * 2, ' ');
  for (const auto& core : cores_) {
    if (cores_.size() > 1)
      lines.push_back(space + (core == cores_[0] ? "first" : core->unionAll ? "union all" : "union"));
    Frame frame;
    frame.outer = outer;
    frame.rows.resize(core->levels.size());
    for (std::size_t s = 0; s < core->levels.size(); ++s) frame.rows[s].table = core->levels[s].table;
    chooseWays(*core, limit(outer), frame);
    for (Level& level : core->levels) {
      if (level.derived) {
        lines.push_back(space + "make " + level.table->name() + " from");
        level.derived->explain(lines, indent + 1);
      }
      std::string line = core->order ? level.access->explain(*core->order) : level.access->explain();
      if (level.join == JoinKind::left) line += ", or no row";
      lines.push_back(space + line);
    }
    explainInner(core->scope, lines, indent, frame);
    if (core->grouped) lines.push_back(space + (core->groupBy.empty() ? "aggregate" : "group"));
    if (core->distinct) lines.push_back(space + "distinct");
  }
  if (!order_.empty() && !cores_[0]->order) lines.push_back(space + "sort");
  if (top_) lines.push_back(space + "top");
}

}  // namespace quillon::store::sql
