// Rows in the order of an index.
#include <algorithm>
#include <limits>

#include "store/KeyCodec.h"
#include "store/sql/Access.h"
#include "store/table/Table.h"

namespace quillon::store::sql {
namespace {

// In the measure of Access.cpp.
constexpr double kNearCost = 0.2;             // of a row that stands near the one before it in the index
constexpr double kApartCost = 1;              // of one that does not
constexpr double kFarCost = 3;                // of one that is not expected in the page cache either
constexpr double kSortCost = 1;               // of a row that is sorted
constexpr double kPassing = 0.1;              // share of rows that meet conditions, where it is not known
constexpr std::uint64_t kFew = 16;            // rows for which nothing else is weighed
constexpr std::uint64_t kCachedPages = 8192;  // half of the page cache
constexpr int kSample = 64;                   // neighbours looked at to tell how far apart rows are
constexpr std::size_t kCollected = 64;        // equal rows kept on a way backwards, before they are read forwards
constexpr std::size_t kBatch = 16;            // rows that are read together

}  // namespace

std::vector<Access::Order> Access::orders(const std::vector<Wanted>& wanted, bool folded) const {
  std::vector<Order> found;
  const auto& indexes = table_.definition().indexes;
  for (std::size_t i = 0; i < indexes.size(); ++i) {
    const IndexDef& index = indexes[i];
    bool range = false;
    const auto equal = static_cast<std::size_t>(equalities(static_cast<int>(i), range));
    Order order;
    order.index = static_cast<int>(i);
    std::size_t part = 0;
    bool fits = true;
    for (std::size_t w = 0; w < wanted.size() && fits; ++w, ++part) {
      // Leading fields that an equality holds fixed do not disturb the order.
      while (part < equal && index.parts[part].field != wanted[w].field) ++part;
      fits = part < index.parts.size() && index.parts[part].field == wanted[w].field &&
             (!wanted[w].text || index.caseInsensitive == folded);
      if (!fits) break;
      const bool backward = index.parts[part].descending != wanted[w].descending;
      fits = w == 0 || backward == order.backward;
      order.backward = backward;
    }
    if (!fits) continue;
    order.fields = part;
    order.whole = part == index.parts.size();
    order.plain = order.whole && !order.backward;
    found.push_back(order);
  }
  return found;
}

// Whether the index leaves just the rows that meet all conditions, as far as its case allows.
bool Access::narrowsByAll(int index) const {
  const auto& parts = table_.definition().indexes[static_cast<std::size_t>(index)].parts;
  bool range = false;
  const auto equal = static_cast<std::size_t>(equalities(index, range));
  const auto serves = [&](const Term& term) {
    for (std::size_t i = 0; i < equal; ++i)
      if (parts[i].field == term.field) return term.value && term.op == Op::equal;
    return range && term.value && parts[equal].field == term.field;
  };
  for (std::size_t c = 0; c < conditions_; ++c)
    if (std::none_of(terms_.begin(), terms_.end(),
                     [&](const Term& term) { return term.condition == c && serves(term); }))
      return false;
  return true;
}

const Access::Order* Access::chooseOrder(const std::vector<Order>& orders, std::uint64_t most, Frame& frame) {
  if (most <= kFew)
    for (const Order& order : orders)
      if ((order.plain || order.whole) && narrowsByAll(order.index)) return &order;
  double passing = choose(1, frame);
  double best = cost(passing);
  if (kind_ == Kind::scan && conditions_ > 0) passing *= kPassing;
  best += passing * kSortCost;
  const Order* chosen = nullptr;
  std::string low, high;
  for (const Order& order : orders) {
    if (!orderBounds(order, frame, low, high)) return &order;  // nothing is looked at
    const auto inside = static_cast<double>(countBetween(order.index, low, high));
    const double pass = narrowsByAll(order.index) ? inside : std::min(inside, std::max(1.0, passing));
    const double looked = pass > 0 ? inside * std::min(1.0, static_cast<double>(most) / pass) : 0;
    if (looked * kNearCost >= best) continue;
    const double cost = looked * (looked > kSample ? costOfRow(order.index, low, inside) : kApartCost);
    if (cost >= best) continue;
    best = cost;
    chosen = &order;
  }
  return chosen;
}

// What a row costs that is read by its place in an index, by a sample from the middle of `inside` keys from `low` on.
double Access::costOfRow(int index, const std::string& low, double inside) const {
  constexpr RowId kNear = 64;
  Tree& tree = table_.index(index);
  TreeWalk walk(tree);
  RowId last = 0;
  int apart = 0;
  int seen = 0;
  for (bool found = walk.seekRank(tree.rank(low) + static_cast<std::uint64_t>(inside / 2)); found && seen < kSample;
       found = walk.next(), ++seen) {
    const RowId row = KeyCodec::rowOf(walk.key());
    apart += row > last + kNear || last > row + kNear;
    last = row;
  }
  const bool cached = table_.files().meta().space[kDat].pages <= kCachedPages;
  const double share = seen > 0 ? static_cast<double>(apart) / seen : 0;
  return kNearCost + share * ((cached ? kApartCost : kFarCost) - kNearCost);
}

bool Access::orderBounds(const Order& order, Frame& frame, std::string& low, std::string& high) const {
  if (!bounds(order.index, frame, low, high)) return false;
  bool range = false;
  const auto equal = static_cast<std::size_t>(equalities(order.index, range));
  if (!order.present || range || order.fields <= equal) return true;
  // Nulls come before the others in an ascending field, behind them in a descending one.
  const auto& parts = table_.definition().indexes[static_cast<std::size_t>(order.index)].parts;
  if (parts[equal].descending)
    high = KeyCodec::successor(low + '\xFE');
  else
    low += '\x01';
  return true;
}

bool Access::forEachInOrder(Frame& frame, const Order& order, const std::function<bool()>& row) {
  std::string low, high;
  if (!orderBounds(order, frame, low, high)) return true;
  TreeWalk walk(table_.index(order.index));
  RowReader rows(table_);
  const KeyCodec& codec = table_.codec(order.index);
  const auto inside = [&] { return walk.key() >= low && (high.empty() || walk.key() < high); };
  const auto move = [&] { return (order.backward ? walk.prior() : walk.next()) && inside(); };
  const auto give = [&](RowId id, std::string_view record) { return stand(frame, id, record, row); };
  bool found = (order.backward ? (high.empty() ? walk.last() : walk.seekBefore(high)) : walk.seek(low)) && inside();
  std::string group;
  std::vector<RowId> ids;
  for (std::size_t batch = 1; found; batch = std::min(2 * batch, kBatch)) {
    bool many = false;  // equal ones, which the index has by row id itself from their other end
    ids.clear();
    while (found && ids.size() < batch && !many) {
      const auto start = static_cast<std::ptrdiff_t>(ids.size());
      if (!order.plain) group.assign(walk.key().substr(0, codec.leadingBytes(walk.key(), order.fields)));
      const std::size_t most = order.whole ? ids.size() + kCollected : std::numeric_limits<std::size_t>::max();
      do {
        ids.push_back(KeyCodec::rowOf(walk.key()));
        found = move();
        many = !order.plain && found && walk.key().starts_with(group);
      } while (many && ids.size() < most);
      if (many) ids.resize(static_cast<std::size_t>(start));
      if (!order.plain) std::sort(ids.begin() + start, ids.end());
    }
    if (!rows.readEach(ids, give)) return false;
    if (!many) continue;
    if (!forEachFrom(order.index, group, rows, give)) return false;
    found = walk.seekBefore(group) && inside();
  }
  return true;
}

// The rows whose keys begin with `group`, in the order of these.
bool Access::forEachFrom(int index, const std::string& group, RowReader& rows, const RowReader::Each& give) {
  TreeWalk walk(table_.index(index));
  std::vector<RowId> ids;
  std::size_t batch = 1;
  for (bool found = walk.seek(group); found && walk.key().starts_with(group); batch = std::min(2 * batch, kBatch)) {
    ids.clear();
    for (; found && ids.size() < batch && walk.key().starts_with(group); found = walk.next())
      ids.push_back(KeyCodec::rowOf(walk.key()));
    if (!rows.readEach(ids, give)) return false;
  }
  return true;
}

std::string Access::explain(const Order& order) const {
  if (order.present)
    return std::string("take the ") + (order.backward ? "last" : "first") + " row of " + table_.name() + " by " +
           nameOf(order.index);
  return "walk " + table_.name() + (order.backward ? " backwards" : "") + " in the order of " + nameOf(order.index);
}

}  // namespace quillon::store::sql
