#include "store/sql/Groups.h"

#include <cmath>

#include "store/Errors.h"
#include "store/table/Table.h"

namespace quillon::store::sql {

Datum Groups::kept(Datum value) {
  if (value.type == Type::text || value.type == Type::blob) value.text = texts_.keep(std::string(value.text));
  return value;
}

std::size_t Groups::at(std::string_view key, Frame& frame, bool hasRow) {
  if (!groups_.empty() && hasRow && key == lastKey_ && groups_[last_].met) return last_;
  const auto [place, made] = places_.try_emplace(std::string(key), groups_.size());
  if (made) {
    groups_.emplace_back();
    groups_.back().sums.resize(grouping_.aggregates.size());
  }
  lastKey_ = key;
  last_ = place->second;
  Group& group = groups_[last_];
  if (hasRow && !group.met) keepFirst(group, frame);
  return last_;
}

void Groups::keepFirst(Group& group, Frame& frame) {
  group.met = true;
  for (const ExpressionPtr& value : grouping_.firstValues) group.first.push_back(kept(value->eval(frame)));
  if (grouping_.rowSources == 0) return;
  group.row.resize(frame.rows.size());
  for (std::size_t i = 0; i < frame.rows.size(); ++i) {
    const SourceRow& source = frame.rows[i];
    if ((grouping_.rowSources >> i & 1) == 0 || !source.view) continue;
    const auto bytes = source.view->bytes();
    group.row[i].emplace(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  }
}

void Groups::add(std::size_t place, Frame& frame) {
  for (std::size_t i = 0; i < grouping_.aggregates.size(); ++i) {
    const Aggregate& aggregate = grouping_.aggregates[i];
    const Datum value = aggregate.argument ? aggregate.argument->eval(frame) : Datum::ofWhole(1);
    if (!value.isNull()) addTo(groups_[place].sums[i], aggregate, value);
  }
}

void Groups::addTo(Sum& sum, const Aggregate& aggregate, const Datum& value) {
  if (aggregate.distinct) {
    std::string identity;
    appendIdentity(value, identity);
    if (!sum.seen.insert(identity).second) return;
  }
  ++sum.rows;
  switch (aggregate.kind) {
    case AggregateKind::count:
      return;
    case AggregateKind::min:
    case AggregateKind::max: {
      const auto order = compare(value, sum.best);
      if (sum.rows == 1 || (aggregate.kind == AggregateKind::min ? order < 0 : order > 0)) sum.best = kept(value);
      return;
    }
    default:
      break;
  }
  if (value.type == Type::real) {
    sum.real += value.real;
  } else if (__builtin_add_overflow(sum.whole, value.whole, &sum.whole)) {
    refuse(aggregate.argument->place, Code::badValue, "the sum is too large.");
  }
}

Datum Groups::result(const Sum& sum, const Aggregate& aggregate) {
  switch (aggregate.kind) {
    case AggregateKind::count:
      return Datum::ofWhole(sum.rows);
    case AggregateKind::min:
    case AggregateKind::max:
      return sum.best;
    default:
      break;
  }
  if (sum.rows == 0) return {};
  const Type type = aggregate.argument->type;
  if (aggregate.kind == AggregateKind::sum) {
    if (type != Type::real) return Datum::make(type, sum.whole);
    if (!std::isfinite(sum.real)) refuse(aggregate.argument->place, Code::badValue, "the sum is too large.");
    return Datum::ofReal(sum.real);
  }
  const double total = type == Type::real    ? sum.real
                       : type == Type::money ? Money::fromRaw(sum.whole).toDouble()
                                             : static_cast<double>(sum.whole);
  return Datum::ofReal(total / static_cast<double>(sum.rows));
}

void Groups::forEach(Frame& frame, const std::function<bool()>& callback) {
  for (const Group& group : groups_) {
    frame.slots = group.first;
    frame.slots.resize(grouping_.firstValues.size());
    for (std::size_t i = 0; i < grouping_.aggregates.size(); ++i)
      frame.slots.push_back(result(group.sums[i], grouping_.aggregates[i]));
    for (std::size_t i = 0; i < frame.rows.size(); ++i) {
      SourceRow& source = frame.rows[i];
      source.view.reset();
      if (i < group.row.size() && group.row[i])
        source.view.emplace(source.table->layout(), std::string_view(*group.row[i]));
    }
    if (!callback()) return;
  }
}

}  // namespace quillon::store::sql
