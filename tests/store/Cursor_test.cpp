// Cursors in one process.
//
// Method: two cursors on one random table of few distinct values do thousands of random moves, searches, changes of
// order, range and filter (a handler, a text, or both), edits and transactions. A model that keeps plain rows and sorts
// them anew for each question says what each call must answer and what both cursors must show after it.
#include "store/Cursor.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "store/Database.h"
#include "store/Errors.h"
#include "store/Session.h"
#include "support/CodeOf.h"
#include "support/CursorModel.h"
#include "support/SeededRandom.h"
#include "support/SimClock.h"
#include "support/SimDisk.h"
#include "support/Trials.h"

namespace quillon::store {
namespace {

using sim::CursorRow;
using sim::kModelFields;
using sim::ModelCursor;
using sim::ModelStore;

constexpr const char* kFields[kModelFields] = {"ID", "Code", "Name", "Level"};

struct Company {
  sim::SimDisk disk;
  sim::SimClock clock;
  std::unique_ptr<FileSystem> files = disk.process();
  Session session{{*files, clock, "ANNA", "PC", 1}};
  std::unique_ptr<Database> database;
  Company() {
    files->makeFolder("/company");
    database = std::make_unique<Database>(session, "/company");
  }
};

class CursorTrial {
 public:
  explicit CursorTrial(std::uint64_t seed) : random_(seed), store_{ModelStore::randomDefinition(seed), {}, {}} {
    company_.database->createTable(store_.definition);
    company_.session.settings().lockRetryCount = 2;
    for (int i = 0; i < 2; ++i) {
      real_.push_back(std::make_unique<Cursor>(*company_.database, "Model"));
      Cursor& cursor = *real_.back();
      const bool handled = random_.oneIn(2);
      if (handled)
        cursor.events.onFilter = [&cursor] { return cursor["Level"].isNull() || cursor["Level"].asInt() % 2 == 0; };
      cursor.open();
      model_.emplace_back(store_);
      model_.back().handled = handled;
      model_.back().open();
    }
  }

  void run(int steps) {
    for (int i = 0; i < steps && !testing::Test::HasFailure(); ++i) {
      said_.clear();
      step();
      for (int at = 0; at < 2 && !testing::Test::HasFailure(); ++at) look(at);
      if (testing::Test::HasFailure()) {
        std::printf("at step %d: %s\n", i, said_.c_str());
        if (!lastSaid_.empty()) std::printf("before it:%s\n", lastSaid_.c_str());
      }
      lastSaid_ += "\n  " + said_;
      if (lastSaid_.size() > 1500) lastSaid_.erase(0, lastSaid_.find('\n', 1));
    }
  }

 private:
  Value value(int field) {
    if (random_.oneIn(8)) return {};
    if (field != 2) return static_cast<int>(random_.below(field == 3 ? 5 : 40));
    constexpr const char* kTexts[] = {"a", "A", "ab", "Ab", "AB", "b", "ba", "\xC3\xA9", "\xC3\x89", "zz"};
    return kTexts[random_.below(std::size(kTexts))];
  }
  std::vector<Value> keyValues(int index, std::size_t most = 2) {
    const auto& parts = store_.definition.indexes[static_cast<std::size_t>(index)].parts;
    std::vector<Value> values;
    for (std::size_t i = 0; i < parts.size() && i < most && (i == 0 || random_.oneIn(2)); ++i)
      values.push_back(value(parts[i].field));
    return values;
  }
  static std::string text(const std::vector<Value>& values) {
    std::string result = " (";
    for (const Value& value : values) result += value.toText() + ",";
    return result + ")";
  }

  // Both must end the same way; where the cursor answers something, the model says what.
  template <typename Real>
  void both(const char* name, Real&& real, int expected, bool answers = false) {
    said_ += name;
    std::int64_t answer = 0;
    const int code = static_cast<int>(sim::codeOf([&] { answer = static_cast<std::int64_t>(real()); }));
    EXPECT_EQ(code, expected) << said_;
    if (code == 0 && expected == 0 && answers) {
      EXPECT_EQ(answer, now().answer) << said_;
    }
  }
  template <typename Real>
  void plain(const char* name, Real&& real, int expected) {
    both(
        name,
        [&] {
          real();
          return 0;
        },
        expected);
  }

  ModelCursor& now() { return model_[static_cast<std::size_t>(at_)]; }
  Cursor& cursor() { return *real_[static_cast<std::size_t>(at_)]; }

  void step() {
    at_ = static_cast<int>(random_.below(2));
    said_ = "cursor " + std::to_string(at_) + ": ";
    const std::size_t kind = random_.below(100);
    if (kind < 40)
      move();
    else if (kind < 55)
      search();
    else if (kind < 67)
      limit();
    else if (kind < 97)
      change();
    else
      transaction();
  }

  void move() {
    Cursor& c = cursor();
    switch (random_.below(9)) {
      case 0:
        return plain(
            "first", [&] { c.first(); }, now().first());
      case 1:
        return plain(
            "last", [&] { c.last(); }, now().last());
      case 2:
      case 3: {
        const int code = now().next();
        return both(
            "next", [&] { return c.next(); }, code, true);
      }
      case 4: {
        const int code = now().prior();
        return both(
            "prior", [&] { return c.prior(); }, code, true);
      }
      case 5:
      case 6: {
        const auto rows = static_cast<std::int64_t>(random_.below(9)) - 4;
        const int code = now().moveBy(rows);
        return both(("moveBy " + std::to_string(rows)).c_str(), [&] { return c.moveBy(rows); }, code, true);
      }
      case 7: {
        const std::uint64_t number = random_.below(12);
        const int code = now().goTo(static_cast<std::int64_t>(number));
        return both(("goTo " + std::to_string(number)).c_str(), [&] { return c.goTo(number); }, code, true);
      }
      default: {
        if (marks_.empty() || random_.oneIn(2)) {
          marks_.push_back(c.bookmark());
          said_ += "bookmark";
          return;
        }
        const Bookmark mark = marks_[random_.below(marks_.size())];
        const int code = now().goToRow(mark.row);
        both(
            "goTo bookmark", [&] { return c.goTo(mark); }, code, true);
      }
    }
  }

  void search() {
    Cursor& c = cursor();
    const std::size_t kind = random_.below(4);
    if (kind < 2 && now().index() >= 0) {
      const std::vector<Value> values = keyValues(now().index());
      const int code = kind == 0 ? now().findKey(values) : now().findNearest(values);
      return both(((kind == 0 ? "findKey" : "findNearest") + text(values)).c_str(),
                  [&] { return kind == 0 ? c.findKey(values) : c.findNearest(values); }, code, true);
    }
    std::vector<int> fields{static_cast<int>(random_.below(kModelFields))};
    if (const int second = static_cast<int>(random_.below(kModelFields)); second != fields[0] && random_.oneIn(2))
      fields.push_back(second);
    std::string names;
    std::vector<Value> values;
    for (const int field : fields) {
      names += (names.empty() ? "" : ";") + std::string(kFields[field]);
      values.push_back(value(field));
    }
    said_ += names + text(values);
    if (kind == 3) {
      const auto row = now().lookup(fields, values);
      const auto all = c.lookupAll(names, values, "Code;ID");
      ASSERT_EQ(all.size(), row ? 2U : 0U) << said_ << " lookup";
      if (!row) return;
      EXPECT_EQ(all[1].toText(), row->values[0].toText()) << said_ << " lookup";
      EXPECT_EQ(all[0].toText(), row->values[1].toText()) << said_ << " lookup";
      return;
    }
    const LocateOptions options{random_.oneIn(2), random_.oneIn(2) && fields.back() == 2};
    said_ += options.caseInsensitive ? " any case" : "";
    said_ += options.partialKey ? " partial " : " ";
    const int code = now().locate(fields, values, options);
    both(
        "locate", [&] { return c.locate(names, values, options); }, code, true);
  }

  void limit() {
    Cursor& c = cursor();
    switch (random_.below(7)) {
      case 6: {
        const int number = static_cast<int>(random_.below(sim::kModelFilters));
        const char* const text = sim::kModelFilter[number].text;
        const int code = now().setFilter(number);
        return plain(("filter '" + std::string(text) + "'").c_str(), [&] { c.setFilter(text); }, code);
      }
      case 0: {
        const int index = static_cast<int>(random_.below(4)) - 1;
        const int code = now().setIndex(index);
        if (index < 0)
          return plain(
              "setRowOrder", [&] { c.setRowOrder(); }, code);
        const std::string& name = store_.definition.indexes[static_cast<std::size_t>(index)].name;
        return plain(("setIndex " + name).c_str(), [&] { c.setIndex(name); }, code);
      }
      case 1:
      case 2: {
        if (now().index() < 0) return;
        const auto low = keyValues(now().index()), high = keyValues(now().index());
        const int code = now().setRange(low, high);
        return plain(("setRange" + text(low) + text(high)).c_str(), [&] { c.setRange(low, high); }, code);
      }
      case 3:
        return plain(
            "cancelRange", [&] { c.cancelRange(); }, now().cancelRange());
      default: {
        const bool filtered = random_.oneIn(2);
        return plain(
            filtered ? "filter on" : "filter off", [&] { c.setFiltered(filtered); }, now().setFiltered(filtered));
      }
    }
  }

  void change() {
    Cursor& c = cursor();
    const std::size_t kind = random_.below(20);
    if (now().state() != CursorState::browse && kind < 14) {
      if (kind < 7) {
        const int field = random_.oneIn(12) ? 0 : 1 + static_cast<int>(random_.below(3));
        if (field == 0 && now().state() == CursorState::edit) return;
        const Value wanted = value(field);
        now().set(field, wanted);
        return plain((std::string(kFields[field]) + " = " + wanted.toText()).c_str(),
                     [&] { c[kFields[field]] = wanted; }, 0);
      }
      if (kind < 12)
        return plain(
            "post", [&] { c.post(); }, now().post());
      return plain(
          "cancel", [&] { c.cancel(); }, now().cancel());
    }
    if (kind < 6)
      return plain(
          "edit", [&] { c.edit(); }, now().edit());
    if (kind < 14)
      return plain(
          "insert", [&] { c.insert(); }, now().insert());
    if (kind < 16)
      return plain(
          "remove", [&] { c.remove(); }, now().remove());
    if (kind < 17)
      return plain(
          "refresh", [&] { c.refresh(); }, now().refresh());
    if (kind < 18)
      return plain(
          "rereadRow", [&] { c.rereadRow(); }, now().rereadRow());
    if (kind < 19)
      return plain(
          "post", [&] { c.post(); }, now().post());
    plain(
        "cancel", [&] { c.cancel(); }, now().cancel());
  }

  void transaction() {
    Database& database = *company_.database;
    if (!database.inTransaction()) {
      said_ += "startTransaction";
      database.startTransaction({"Model"});
      before_ = {store_.rows, store_.autoInc};
    } else if (random_.oneIn(2)) {
      said_ += "commit";
      database.commit();
    } else {
      said_ += "rollback";
      database.rollback();
      store_.rows = before_.first;
      store_.autoInc = before_.second;
      for (ModelCursor& model : model_) model.rolledBack();
    }
  }

  void look(int at) {
    Cursor& c = *real_[static_cast<std::size_t>(at)];
    ModelCursor& m = model_[static_cast<std::size_t>(at)];
    m.synchronise();
    const std::string who = said_ + "; then cursor " + std::to_string(at);
    EXPECT_EQ(c.bof(), m.bof()) << who;
    EXPECT_EQ(c.eof(), m.eof()) << who;
    EXPECT_EQ(static_cast<int>(c.state()), static_cast<int>(m.state())) << who;
    EXPECT_EQ(c.recordCount(), m.rowsInView().size()) << who;
    EXPECT_EQ(static_cast<int>(c.state()), static_cast<int>(m.state())) << who << " after recordCount";
    EXPECT_EQ(c.isEmpty(), !m.there() && m.state() == CursorState::browse) << who;
    if (!m.there() && m.state() == CursorState::browse) {
      EXPECT_EQ(c.rowId(), 0u) << who;
      return;
    }
    if (m.state() != CursorState::insert) {
      EXPECT_EQ(c.rowId(), m.shown().row) << who;
    }
    for (int field = 0; field < kModelFields; ++field)
      EXPECT_EQ(c[kFields[field]].value().toText(), m.shown().values[static_cast<std::size_t>(field)].toText())
          << who << ", field " << kFields[field];
    if (m.standsInView()) {
      EXPECT_EQ(c.recordNumber(), static_cast<std::uint64_t>(m.number())) << who;
    }
  }

  sim::SeededRandom random_;
  Company company_;
  ModelStore store_;
  std::vector<std::unique_ptr<Cursor>> real_;
  std::vector<ModelCursor> model_;
  std::vector<Bookmark> marks_;
  std::pair<std::map<RowId, CursorRow>, std::int64_t> before_;
  int at_ = 0;
  std::string said_, lastSaid_;
};

TEST(Cursor, ShowsWhatPlainSortedRowsSay) {
  const auto trials = sim::Trials::fromEnvironment();
  const std::uint64_t first = trials.seed.value_or(1);
  const std::uint64_t count = trials.seed ? 1 : std::max<std::uint64_t>(trials.aim(2000, 20000), 1);
  for (std::uint64_t seed = first; seed < first + count; ++seed) {
    CursorTrial(seed).run(250);
    if (HasFailure()) {
      FAIL() << sim::Trials::repeating(seed, "test_store", "Cursor.ShowsWhatPlainSortedRowsSay");
    }
  }
  std::printf("%llu tables, 250 steps each\n", static_cast<unsigned long long>(count));
}

// The thumb of a scroll bar: where a row stands and where it leads back to, with and without a range, under a filter.
TEST(Cursor, LeadsBackToTheRowThatStandsSoFarDown) {
  Company company;
  company.database->createTable(TableDef::of("Deep", {{"ID", FieldType::autoInc}, {"Level", FieldType::integer}},
                                             {{"", "ID", IndexOptions::unique}}));
  Cursor rows(*company.database, "Deep");
  rows.open();
  EXPECT_FALSE(rows.goToDepth(0.5));
  for (int i = 0; i < 200; ++i) {
    rows.append();
    rows["Level"] = i % 7;
    rows.post();
  }
  for (const bool ranged : {false, true}) {
    if (ranged) rows.setRange({Value(50)}, {Value(149)});
    const int first = ranged ? 50 : 1, last = ranged ? 149 : 200;
    for (const char* filter : {"", "Level = 3"}) {
      rows.setFilter(filter);
      rows.setFiltered(*filter != '\0');
      double before = -1;
      for (rows.first(); !rows.eof(); rows.next()) {
        const int id = rows["ID"].asInt();
        const double depth = rows.depth();
        EXPECT_NEAR(depth, static_cast<double>(id - first) / (last - first), 1e-9);
        EXPECT_GT(depth, before);
        before = depth;
        ASSERT_TRUE(rows.goToDepth(depth + 1e-9));
        ASSERT_EQ(rows["ID"].asInt(), id);
      }
      const auto at = [&](double depth) { return rows.goToDepth(depth) ? rows.recordNumber() : 0; };
      EXPECT_EQ(at(0), 1U);
      EXPECT_EQ(at(1), rows.recordCount()) << "behind the last that passes";
    }
  }
}

}  // namespace
}  // namespace quillon::store
