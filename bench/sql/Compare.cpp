#include "bench/sql/Compare.h"

#include "base/Errors.h"
#include "bench/PeakMemory.h"
#include "bench/Theirs.h"
#include "bench/Timing.h"
#include "bench/sql/Ledger.h"
#include "store/Query.h"

namespace quillon::bench {
namespace {

constexpr int kRounds = 3;

// Rows of any order add up to the same; in an order that matters the first column weighs by its place.
class Sum {
 public:
  explicit Sum(Order order) : order_(order) {}
  void startRow() { weight_ = order_ == Order::asAsked ? ++rows_ & 15 : 1; }
  void add(std::int64_t number) {
    sum_ += number * weight_;
    weight_ = 1;
  }
  void add(std::string_view text) { add(std::int64_t(text.size()) + (text.empty() ? 0 : text.back())); }
  std::int64_t total() const { return sum_; }

 private:
  Order order_;
  std::int64_t rows_ = 0, weight_ = 1, sum_ = 0;
};

// What reads a column, on their side too.
std::vector<store::FieldType> columnsOf(store::Query& query) {
  std::vector<store::FieldType> types;
  for (int i = 0; i < query.fieldCount(); ++i) types.push_back(query.field(i).definition().type);
  return types;
}

bool isText(store::FieldType type) { return type == store::FieldType::string || type == store::FieldType::memo; }

std::int64_t numberOf(const store::Value& value) {
  switch (value.kind()) {
    case store::Value::Kind::null:
      return 0;
    case store::Value::Kind::money:
      return value.asMoney().raw();
    case store::Value::Kind::date:
      return value.asDate().days();
    case store::Value::Kind::boolean:
      return value.asBool();
    default:
      return value.asInt64();
  }
}

void bind(store::Query& query, const Row& values) {
  for (std::size_t i = 0; i < values.size(); ++i) query.setParameter("p" + std::to_string(i + 1), values[i]);
}

void bind(Prepared& statement, const Row& values) {
  for (std::size_t i = 0; i < values.size(); ++i) statement.bind(static_cast<int>(i) + 1, values[i]);
}

void read(store::Query& query, Sum& sum) {
  query.open();
  const std::vector<store::FieldType> columns = columnsOf(query);
  for (query.first(); !query.eof(); query.next()) {
    sum.startRow();
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const store::Value value = query.field(static_cast<int>(i)).value();
      isText(columns[i]) && !value.isNull() ? sum.add(value.asText()) : sum.add(numberOf(value));
    }
  }
  query.close();
}

void read(Prepared& statement, const std::vector<store::FieldType>& columns, Sum& sum) {
  while (statement.step()) {
    sum.startRow();
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const int column = static_cast<int>(i);
      isText(columns[i]) ? sum.add(statement.text(column)) : sum.add(statement.number(column));
    }
  }
  statement.reset();
}

void report(Bench& bench, const Statement& statement, const Pair& pair) {
  constexpr double kMilli = 1000;
  bench.report.add(
      {statement.name, pair.ours / kMilli, pair.theirs / kMilli, "ms a statement", statement.aim, statement.note});
}

}  // namespace

void compareSelect(Bench& bench, const Statement& statement, Order order) {
  const Ledger place = ledger(bench);
  Ours ours(place.folder);
  store::Query query(ours.database, statement.ours);
  bind(query, statement.bindings[0]);
  query.open();
  const std::vector<store::FieldType> columns = columnsOf(query);
  query.close();
  Theirs theirs(place.file);
  Prepared select(theirs, statement.theirs);
  report(bench, statement,
         alternate(
             kRounds, static_cast<std::int64_t>(statement.bindings.size()),
             [&](int, Stopwatch& watch) {
               Sum sum(order);
               watch.start();
               for (const Row& values : statement.bindings) {
                 bind(query, values);
                 read(query, sum);
               }
               watch.stop();
               return sum.total();
             },
             [&](int, Stopwatch& watch) {
               Sum sum(order);
               watch.start();
               for (const Row& values : statement.bindings) {
                 bind(select, values);
                 read(select, columns, sum);
               }
               watch.stop();
               return sum.total();
             }));
}

void compareChange(Bench& bench, const Statement& statement, const std::string& table, const std::string& check) {
  const Ledger place = ledger(bench);
  Ours ours(place.folder);
  store::Query query(ours.database, statement.ours);
  store::Query ourCheck(ours.database, check);
  Theirs theirs(place.file);
  Prepared change(theirs, statement.theirs);
  Prepared theirCheck(theirs, check);
  report(bench, statement,
         alternate(
             kRounds, 1,
             [&](int, Stopwatch& watch) {
               bind(query, statement.bindings[0]);
               watch.start();
               ours.database.startTransaction({table});
               const auto rows = static_cast<std::int64_t>(query.execute());
               watch.stop();
               Sum sum(Order::any);
               sum.add(rows);
               read(ourCheck, sum);
               ours.database.rollback();
               return sum.total();
             },
             [&](int, Stopwatch& watch) {
               bind(change, statement.bindings[0]);
               watch.start();
               theirs.run("BEGIN");
               change.once();
               watch.stop();
               Sum sum(Order::any);
               sum.add(change.changed());
               read(theirCheck, {store::FieldType::largeInt}, sum);
               theirs.run("ROLLBACK");
               return sum.total();
             }));
}

void compareMemory(Bench& bench, const Statement& statement) {
  const Ledger place = ledger(bench);
  const double mine = inProcesses({[&] {
    forgetPeak();
    Ours ours(place.folder);
    store::Query query(ours.database, statement.ours);
    Sum sum(Order::any);
    read(query, sum);
    return peakMemory();
  }})[0];
  const double other = inProcesses({[&] {
    forgetPeak();
    Theirs theirs(place.file);
    Prepared select(theirs, statement.theirs);
    while (select.step()) {
    }
    return peakMemory();
  }})[0];
  bench.report.add({statement.name + "-memory", mine, other, "MiB", 0, "most of a process, with a cache of 64 MiB"});
}

}  // namespace quillon::bench
