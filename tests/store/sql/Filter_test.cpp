// Text filters of cursors against WHERE.
//
// Method: a table of thousands of rows with few distinct values and some rare ones, under random indexes, takes random
// filters. A cursor on it, and one on a copy of it, go in step through random moves, searches, changes of order, edits
// and changes by other cursors. One has the filter as a text, and reads by whatever index serves; the other a handler
// that knows from a SELECT with the same WHERE, on a copy without indexes, which rows pass. Both must answer and stand
// the same after every step, and count what the SELECT counts.
#include <gtest/gtest.h>

#include <cstdio>
#include <set>

#include "store/Database.h"
#include "store/Errors.h"
#include "store/Query.h"
#include "store/vfs/DiskFileSystem.h"
#include "support/RandomExpression.h"
#include "support/Trials.h"

namespace quillon::sim {
namespace {

using store::Bookmark;
using store::Cursor;
using store::FieldType;
using store::Query;
using store::TableDef;
using store::Value;

constexpr int kSteps = 60;

struct Column {
  const char* name;
  FieldType type;
  Kind kind;
};
constexpr Column kColumns[] = {{"Num", FieldType::integer, Kind::whole},  {"Amt", FieldType::currency, Kind::money},
                               {"Rate", FieldType::floating, Kind::real}, {"Name", FieldType::string, Kind::text},
                               {"Due", FieldType::date, Kind::date},      {"Flag", FieldType::boolean, Kind::truth}};

class FilterTrial {
 public:
  explicit FilterTrial(std::uint64_t seed)
      : random_(seed), session_(store::Environment{files_, store::systemClock(), "ANNA", "PC", 1}) {
    for (const Column& column : kColumns) leaves_.push_back({column.kind, column.name, ""});
    expressions_.withParameters = false;
    expressions_.leaves = &leaves_;
    makeTables();
  }

  void run(int filters) {
    Cursor text(database(), "Many"), handler(database(), "Same");
    handler.events.onFilter = [&] { return passing_.count(handler["ID"].asInt64()) > 0; };
    for (Cursor* cursor : {&text, &handler}) {
      cursor->open();
      cursor->setFiltered(true);
    }
    for (int i = 0; i < filters && !testing::Test::HasFailure(); ++i) {
      filter_ = filter();
      ask();
      for (Cursor* cursor : {&text, &handler}) {
        cursor->setFilter(cursor == &text ? filter_ : "");
        if (cursor == &handler) cursor->setFiltered(true);
      }
      said_ = "filter";
      look(text, handler);
      for (int step = 0; step < kSteps && !testing::Test::HasFailure(); ++step) go(text, handler);
    }
  }

 private:
  store::Database& database() { return session_.memory(); }

  void makeTables() {
    std::vector<store::FieldDef> fields{{"ID", FieldType::autoInc}};
    for (const Column& column : kColumns)
      fields.push_back({column.name, column.type, column.type == FieldType::string ? 20 : 0});
    TableDef plain = TableDef::of("Plain", fields), many = TableDef::of("Many", fields);
    for (int i = 0; i < 4; ++i) {
      store::IndexDef index;
      index.name = "By" + std::to_string(i);
      index.parts.push_back({static_cast<int>(random_.below(std::size(kColumns))) + 1, random_.oneIn(3)});
      if (const int second = static_cast<int>(random_.below(fields.size())); second != index.parts[0].field)
        index.parts.push_back({second, random_.oneIn(3)});
      index.caseInsensitive = random_.oneIn(3);
      many.indexes.push_back(index);
    }
    database().createTable(plain);
    database().createTable(many);
    many.name = "Same";
    database().createTable(many);
    const std::size_t rows = random_.oneIn(3) ? 50 : 1500 + random_.below(3000);
    Cursor to(database(), "Many"), same(database(), "Same"), plainRows(database(), "Plain");
    for (Cursor* cursor : {&to, &same, &plainRows}) cursor->open();
    const std::size_t from = random_.below(rows);
    for (std::size_t row = 0; row < rows; ++row) {
      // Values are found together: a walk must go far to the next one, while an index knows where they are.
      const bool rare = row >= from && row < from + 20;
      std::vector<Value> values;
      for (std::size_t i = 0; i < std::size(kColumns); ++i)
        values.push_back(!rare ? common_[i] : random_.oneIn(8) ? Value() : expressions_.literal(kColumns[i].kind));
      for (Cursor* cursor : {&to, &same, &plainRows}) {
        cursor->append();
        for (std::size_t i = 0; i < std::size(kColumns); ++i) (*cursor)[kColumns[i].name] = values[i];
        cursor->post();
      }
    }
    rows_ = rows;
  }

  std::string filter() {
    const Twin& leaf = leaves_[random_.below(leaves_.size())];
    const Twin condition = expressions_.condition(2);
    if (random_.oneIn(3)) return condition.ours;
    const Value value = expressions_.literal(leaf.kind);
    const bool quoted = leaf.kind == Kind::text || leaf.kind == Kind::date;
    const std::string literal = quoted ? "'" + value.toText() + "'" : value.toText();
    constexpr const char* kOps[] = {" = ", " = ", " < ", " >= "};
    const std::string simple = leaf.ours + kOps[leaf.kind == Kind::truth ? 0 : random_.below(4)] + literal;
    return random_.oneIn(2) ? simple : simple + " AND " + condition.ours;
  }

  // Which rows pass now.
  void ask() {
    passing_.clear();
    Query query(database(), "SELECT ID FROM Plain WHERE " + filter_);
    query.open();
    for (query.first(); !query.eof(); query.next()) passing_.insert(query["ID"].asInt64());
  }

  template <typename Call>
  void both(const std::string& name, Cursor& text, Cursor& handler, const Call& call) {
    said_ = name;
    EXPECT_EQ(call(text), call(handler)) << said_ << " with " << filter_;
    look(text, handler);
  }

  void go(Cursor& text, Cursor& handler) {
    const auto some = static_cast<std::int64_t>(random_.below(60)) - 30;
    switch (random_.below(11)) {
      case 0:
        return both("first", text, handler, [](Cursor& c) { return c.first(), true; });
      case 1:
        return both("last", text, handler, [](Cursor& c) { return c.last(), true; });
      case 2:
      case 3:
        return both("next", text, handler, [](Cursor& c) { return c.next(); });
      case 4:
        return both("prior", text, handler, [](Cursor& c) { return c.prior(); });
      case 5:
        return both("moveBy", text, handler, [&](Cursor& c) { return c.moveBy(some); });
      case 6: {
        const int index = static_cast<int>(random_.below(5)) - 1;
        return both("setIndex", text, handler, [&](Cursor& c) {
          index < 0 ? c.setRowOrder() : c.setIndex("By" + std::to_string(index));
          return true;
        });
      }
      case 7: {
        const std::size_t field = random_.below(std::size(kColumns));
        const Value value = expressions_.literal(kColumns[field].kind);
        return both("locate", text, handler, [&](Cursor& c) { return c.locate(kColumns[field].name, {value}); });
      }
      case 8: {
        if (text.indexName().empty()) return;
        const auto& parts = text.definition().indexes[text.indexName().back() - '0'].parts;
        const Value value = expressions_.literal(kColumns[parts[0].field - 1].kind);
        const bool exact = random_.oneIn(2), range = random_.oneIn(3);
        return both("search", text, handler, [&](Cursor& c) {
          if (range) return c.setRange({value}, {value}), true;
          c.cancelRange();
          return exact ? c.findKey({value}) : c.findNearest({value});
        });
      }
      case 9:
        return both("number", text, handler, [](Cursor& c) { return c.recordNumber(); });
      default:
        edit(text, handler);
    }
  }

  // A row is changed where both stand, or by others elsewhere; it may come into view or leave it.
  void edit(Cursor& text, Cursor& handler) {
    const bool elsewhere = text.isEmpty() || random_.oneIn(2);
    const std::size_t field = random_.below(std::size(kColumns));
    const Value value = expressions_.literal(kColumns[field].kind);
    const auto id = elsewhere ? static_cast<std::int64_t>(random_.below(rows_)) + 1 : text["ID"].asInt64();
    const auto change = [&](Cursor& cursor) {
      cursor.edit();
      cursor[kColumns[field].name] = value;
      cursor.post();
    };
    for (const char* table : {"Plain", "Many", "Same"}) {
      if (!elsewhere && table != std::string("Plain")) continue;
      Cursor other(database(), table);
      other.open();
      ASSERT_TRUE(other.locate("ID", {id}));
      change(other);
    }
    ask();
    said_ = std::string(elsewhere ? "changed elsewhere: " : "edit ") + kColumns[field].name;
    if (!elsewhere)
      for (Cursor* cursor : {&text, &handler}) change(*cursor);
    look(text, handler);
  }

  void look(Cursor& text, Cursor& handler) {
    EXPECT_EQ(text.rowId(), handler.rowId()) << said_ << " with " << filter_;
    EXPECT_EQ(text.bof(), handler.bof()) << said_ << " with " << filter_;
    EXPECT_EQ(text.eof(), handler.eof()) << said_ << " with " << filter_;
    if (!random_.oneIn(6)) return;
    const std::uint64_t count = text.recordCount();
    EXPECT_EQ(count, handler.recordCount()) << said_ << " with " << filter_;
    if (!text.hasRange()) {
      EXPECT_EQ(count, passing_.size()) << said_ << " with " << filter_;
    }
  }

  SeededRandom random_;
  store::DiskFileSystem files_;
  store::Session session_;
  std::vector<QueryTable> tables_;
  RandomExpression expressions_{random_, tables_, false};
  std::vector<Twin> leaves_;
  const Value common_[std::size(kColumns)] = {100, Money::fromRaw(990'000), 50.5, "zz", Date(2030, 1, 1), Value()};
  std::string filter_, said_;
  std::size_t rows_ = 0;
  std::set<std::int64_t> passing_;
};

TEST(Filter, ShowsTheRowsThatWhereGivesWhateverIndexServes) {
  const Trials trials = Trials::fromEnvironment();
  const std::uint64_t first = trials.seed.value_or(1);
  const std::uint64_t count = trials.seed ? 1 : std::max<std::uint64_t>(trials.aim(20, 1000), 1);
  for (std::uint64_t seed = first; seed < first + count; ++seed) {
    FilterTrial(seed).run(8);
    if (HasFailure()) FAIL() << Trials::repeating(seed, "test_store_sql", "Filter.*");
  }
  std::printf("%llu tables, 8 filters each\n", static_cast<unsigned long long>(count));
}

}  // namespace
}  // namespace quillon::sim
