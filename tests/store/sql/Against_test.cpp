// Statements against SQLite, and against the same tables without indexes.
//
// Method: tables with few distinct values get random indexes in one session, none in another, and are copied to SQLite.
// Random statements, written in both dialects, run in all three. What ours gives with indexes and without must be the
// same in value, type and order; SQLite must agree in value and order. A change that a unique index refuses must leave
// the table as it was, and be one that would have left equal keys.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>
#include <sstream>

#include "store/Database.h"
#include "store/Errors.h"
#include "store/Query.h"
#include "store/vfs/DiskFileSystem.h"
#include "support/RandomQuery.h"
#include "support/Reference.h"
#include "support/Trials.h"

namespace quillon::sim {
namespace {

using store::Value;
using Rows = std::vector<std::vector<Value>>;

constexpr int kSelects = 30;  // of one set of tables
constexpr int kChanges = 12;

constexpr const char* kTheirTypes[] = {"INTEGER", "INTEGER", "REAL", "TEXT", "TEXT", "INTEGER"};
constexpr store::FieldType kOurTypes[] = {store::FieldType::integer,  store::FieldType::currency,
                                          store::FieldType::floating, store::FieldType::string,
                                          store::FieldType::date,     store::FieldType::boolean};
struct PoolColumn {
  const char* name;
  Kind kind;
};
constexpr PoolColumn kPool[] = {{"Num", Kind::whole},  {"Cnt", Kind::whole}, {"Amt", Kind::money},
                                {"Cost", Kind::money}, {"Rate", Kind::real}, {"Share", Kind::real},
                                {"Name", Kind::text},  {"Code", Kind::text}, {"Held", Kind::date},
                                {"Due", Kind::date},   {"Flag", Kind::truth}};
constexpr Value::Kind kValueKinds[] = {Value::Kind::whole, Value::Kind::money, Value::Kind::real,
                                       Value::Kind::text,  Value::Kind::date,  Value::Kind::boolean};

struct Seen {
  std::uint64_t selects = 0, changes = 0, refused = 0, rows = 0, empty = 0, indexed = 0, hashed = 0, ordered = 0;
};

class OurTables {
 public:
  OurTables() : session_(store::Environment{files_, store::systemClock(), "ANNA", "PC", 1}) {}
  store::Database& database() { return session_.memory(); }
  void setParameters(store::Query& query, const QueryPair& pair) {
    for (const auto& [name, value] : pair.parameters) query.setParameter(name, value);
  }
  Rows rows(const QueryPair& pair) {
    store::Query query(database(), pair.ours);
    setParameters(query, pair);
    query.open();
    Rows result;
    for (query.first(); !query.eof(); query.next()) {
      auto& row = result.emplace_back();
      for (int i = 0; i < query.fieldCount(); ++i) row.push_back(query.field(i).value());
    }
    return result;
  }
  std::uint64_t execute(const QueryPair& pair) {
    store::Query query(database(), pair.ours);
    setParameters(query, pair);
    return query.execute();
  }
  std::string plan(const QueryPair& pair) {
    store::Query query(database(), pair.ours);
    setParameters(query, pair);
    std::string text;
    for (const std::string& line : query.explain()) text += "  " + line + "\n";
    return text;
  }

 private:
  store::DiskFileSystem files_;
  store::Session session_;
};

std::string shown(const Rows& rows) {
  std::ostringstream out;
  for (const auto& row : rows) {
    for (const Value& value : row) out << "  " << value.toText();
    out << '\n';
  }
  return out.str();
}

bool near(const Value& a, const Value& b) {
  if (a.kind() != Value::Kind::real || b.kind() != Value::Kind::real) return a == b;
  return std::fabs(a.asDouble() - b.asDouble()) <= 1e-12 * std::max(1.0, std::fabs(a.asDouble()));
}

bool agree(const Rows& a, const Rows& b, bool exactly) {
  if (a.size() != b.size()) return false;
  for (std::size_t r = 0; r < a.size(); ++r) {
    if (a[r].size() != b[r].size()) return false;
    for (std::size_t i = 0; i < a[r].size(); ++i)
      if (exactly ? a[r][i].kind() != b[r][i].kind() || a[r][i] != b[r][i] : !near(a[r][i], b[r][i])) return false;
  }
  return true;
}

// One set of tables in the three engines, and what is asked of them.
class ThreeWays {
 public:
  ThreeWays(std::uint64_t seed, Seen& seen) : random_(seed), seen_(seen), accents_(random_.oneIn(4)) {
    for (const char* name : {"Ta", "Tb", "Tc"}) makeTable(name);
  }

  // What is wrong, if anything.
  std::string go() {
    for (int i = 0; i < kSelects + kChanges; ++i) {
      RandomQuery random(random_, tables_, accents_);
      const bool selects = random_.below(kSelects + kChanges) < kSelects;
      const QueryPair pair = selects ? random.select() : random.change();
      std::string wrong;
      try {
        wrong = selects ? select(pair) : change(pair);
      } catch (const std::exception& error) {
        wrong = std::string("raised: ") + error.what() + "\n";
      }
      if (!wrong.empty()) return wrong + described(pair);
    }
    return {};
  }

 private:
  void makeTable(const std::string& name) {
    QueryTable table{name, {{"ID", Kind::whole}}, 0};
    for (const PoolColumn& column : kPool)
      if (random_.percent(60)) table.columns.push_back({column.name, column.kind});
    std::vector<store::FieldDef> fields;
    std::string theirs = "CREATE TABLE " + name + " (rid INTEGER PRIMARY KEY";
    for (const QueryColumn& column : table.columns) {
      const auto kind = static_cast<std::size_t>(column.kind);
      fields.push_back({column.name, kOurTypes[kind], column.kind == Kind::text ? 20 : 0});
      theirs += ", " + column.name + " " + kTheirTypes[kind];
    }
    definitions_.push_back(store::TableDef::of(name, fields));
    plain_.database().createTable(definitions_.back());
    theirs_.run(theirs + ")");
    fill(table);
    tables_.push_back(table);
    addIndexes(table);
  }

  void fill(QueryTable& table) {
    RandomExpression values(random_, tables_, accents_);
    table.rows = random_.oneIn(8) ? 0 : random_.oneIn(2) ? random_.below(10) + 1 : random_.below(40) + 1;
    const std::size_t step = random_.below(7) * 2 + 1;
    store::Cursor plain(plain_.database(), table.name);
    plain.open();
    for (std::size_t row = 0; row < table.rows; ++row) {
      plain.append();
      std::string theirs = "INSERT INTO " + table.name + " VALUES (NULL";
      for (const QueryColumn& column : table.columns) {
        const bool isId = column.name == "ID";
        const Value value = isId               ? Value(static_cast<std::int64_t>(row * step % 64))
                            : random_.oneIn(8) ? Value()
                                               : values.literal(column.kind);
        plain[column.name] = value;
        theirs += ", " + theirLiteral(value);
      }
      plain.post();
      theirs_.run(theirs + ")");
    }
  }

  // The table with indexes; the unique ones only where the rows allow them.
  void addIndexes(const QueryTable& table) {
    store::TableDef definition = definitions_.back();
    for (std::size_t i = 0, count = random_.below(5) + 1; i < count; ++i) {
      store::IndexDef index;
      index.name = "By" + std::to_string(i);
      for (std::size_t parts = random_.below(3) + 1; parts > 0; --parts) {
        const int field = random_.oneIn(4) ? 0 : static_cast<int>(random_.below(table.columns.size()));
        const bool there = std::any_of(index.parts.begin(), index.parts.end(),
                                       [&](const store::IndexPart& part) { return part.field == field; });
        if (!there) index.parts.push_back({field, random_.oneIn(3)});
      }
      index.caseInsensitive = random_.oneIn(3);
      index.unique = !(accents_ && index.caseInsensitive) && random_.oneIn(2) && !hasDoubles(table.name, index);
      definition.indexes.push_back(index);
    }
    definitions_.back() = definition;
    indexed_.database().createTable(definition);
    copyRows(table);
  }

  void copyRows(const QueryTable& table) {
    store::Cursor from(plain_.database(), table.name), to(indexed_.database(), table.name);
    from.setRowOrder();
    from.open();
    to.open();
    for (from.first(); !from.eof(); from.next()) {
      to.append();
      for (int i = 0; i < from.fieldCount(); ++i) to.field(i) = from.field(i).value();
      to.post();
    }
  }

  bool hasDoubles(const std::string& table, const store::IndexDef& index) {
    std::string fields;
    for (const store::IndexPart& part : index.parts) {
      const store::FieldDef& field = definitionOf(table).fields[static_cast<std::size_t>(part.field)];
      fields += (fields.empty() ? "" : ", ") + field.name;
      if (index.caseInsensitive && field.type == store::FieldType::string) fields += " COLLATE NOCASE";
    }
    return !theirs_.rows("SELECT 1 FROM " + table + " GROUP BY " + fields + " HAVING COUNT(*) > 1", {Kind::whole})
                .empty();
  }

  const store::TableDef& definitionOf(const std::string& table) const {
    for (const store::TableDef& definition : definitions_)
      if (definition.name == table) return definition;
    throw std::logic_error("no table " + table);
  }

  std::string select(const QueryPair& pair) {
    const Rows rows = indexed_.rows(pair);
    const Rows plain = plain_.rows(pair);
    ++seen_.selects;
    seen_.rows += rows.size();
    seen_.empty += rows.empty();
    notePlan(indexed_.plan(pair));
    if (!agree(rows, plain, true)) return "without indexes it gives\n" + shown(plain) + "with them\n" + shown(rows);
    for (const auto& row : rows) {
      if (row.size() != pair.columns.size()) return "a wrong number of columns\n" + shown(rows);
      for (std::size_t i = 0; i < row.size(); ++i)
        if (!row[i].isNull() && row[i].kind() != kValueKinds[static_cast<std::size_t>(pair.columns[i])])
          return "column " + std::to_string(i + 1) + " has a wrong type\n" + shown(rows);
    }
    const Rows theirs = theirs_.rows(pair.theirs, pair.columns);
    return agree(rows, theirs, false) ? "" : "SQLite gives\n" + shown(theirs) + "and ours\n" + shown(rows);
  }

  void notePlan(const std::string& plan) {
    seen_.indexed += plan.find("search ") != std::string::npos;
    seen_.hashed += plan.find("hash ") != std::string::npos;
    seen_.ordered += plan.find("in the order of ") != std::string::npos;
  }

  QueryPair whole(const std::string& table) const {
    QueryPair pair{"SELECT * FROM " + table, "SELECT ", {}, {}, {}};
    for (const QueryTable& one : tables_)
      if (one.name == table)
        for (const QueryColumn& column : one.columns) {
          pair.theirs += (pair.columns.empty() ? "" : ", ") + column.name;
          pair.columns.push_back(column.kind);
        }
    pair.theirs += " FROM " + table + " ORDER BY rid";
    return pair;
  }

  std::string change(const QueryPair& pair) {
    const QueryPair all = whole(pair.changed);
    const Rows before = indexed_.rows(all);
    notePlan(indexed_.plan(pair));
    ++seen_.changes;
    theirs_.run("SAVEPOINT change");
    theirs_.run(pair.theirs);
    bool refused = false;
    std::uint64_t rows = 0;
    try {
      rows = indexed_.execute(pair);
    } catch (const store::StoreError& error) {
      if (error.code() != store::Code::keyViolation) throw;
      refused = true;
    }
    bool doubles = false;
    for (const store::IndexDef& index : definitionOf(pair.changed).indexes)
      doubles = doubles || (index.unique && hasDoubles(pair.changed, index));
    // Row by row, an UPDATE may meet a key that a later row would have left.
    const bool mayMeet = pair.ours.starts_with("UPDATE");
    if (refused ? !doubles && !mayMeet : doubles)
      return refused ? "it was refused for a key that is not there twice\n" : "equal keys were let in\n";
    if (refused) {
      ++seen_.refused;
      theirs_.run("ROLLBACK TO change");
      theirs_.run("RELEASE change");
      return agree(before, indexed_.rows(all), true) ? "" : "a refused change left something\n" + shown(before);
    }
    theirs_.run("RELEASE change");
    const std::uint64_t plain = plain_.execute(pair);
    const Rows after = indexed_.rows(all);
    for (QueryTable& table : tables_)
      if (table.name == pair.changed) table.rows = after.size();
    if (rows != plain) return "with indexes it changes " + std::to_string(rows) + ", without " + std::to_string(plain);
    if (!agree(after, plain_.rows(all), true))
      return "without indexes it leaves\n" + shown(plain_.rows(all)) + "with them\n" + shown(after);
    const Rows theirs = theirs_.rows(all.theirs, all.columns);
    return agree(after, theirs, false) ? "" : "SQLite leaves\n" + shown(theirs) + "and ours\n" + shown(after);
  }

  std::string described(const QueryPair& pair) {
    std::string text = "ours: " + pair.ours + "\ntheirs: " + pair.theirs + "\n";
    for (const auto& [name, value] : pair.parameters) text += name + " = " + value.toText() + "\n";
    try {
      text += "plan:\n" + indexed_.plan(pair);
    } catch (const std::exception& error) {
      text += std::string("plan: ") + error.what() + "\n";
    }
    for (const store::TableDef& table : definitions_) {
      if (pair.ours.find(table.name) == std::string::npos) continue;
      text += table.name + ":";
      for (const store::FieldDef& field : table.fields) text += " " + field.name;
      for (const store::IndexDef& index : table.indexes) {
        text +=
            std::string(index.unique ? "\n  unique" : "\n ") + (index.caseInsensitive ? " nocase " : " ") + index.name;
        for (const store::IndexPart& part : index.parts)
          text += " " + table.fields[static_cast<std::size_t>(part.field)].name + (part.descending ? " DESC" : "");
      }
      text += "\n" + shown(plain_.rows(whole(table.name)));
    }
    return text;
  }

  SeededRandom random_;
  Seen& seen_;
  bool accents_;
  OurTables indexed_, plain_;
  Reference theirs_;
  std::vector<QueryTable> tables_;
  std::vector<store::TableDef> definitions_;
};

TEST(Against, StatementsGiveWhatSqliteGivesAndIndexesChangeNothing) {
  const Trials trials = Trials::fromEnvironment();
  const std::uint64_t aim = trials.aim(20'000, 50'000);
  Seen seen;
  std::uint64_t seed = trials.seed.value_or(1);
  while (trials.seed ? seen.selects + seen.changes == 0 : seen.selects + seen.changes < aim) {
    const std::string wrong = ThreeWays(seed, seen).go();
    ASSERT_TRUE(wrong.empty()) << wrong << Trials::repeating(seed, "test_store_sql", "Against.*");
    ++seed;
  }
  std::printf(
      "%llu queries with %llu rows (%llu empty; %llu by an index, %llu hashed, %llu in an index's order), "
      "%llu changes (%llu refused)\n",
      static_cast<unsigned long long>(seen.selects), static_cast<unsigned long long>(seen.rows),
      static_cast<unsigned long long>(seen.empty), static_cast<unsigned long long>(seen.indexed),
      static_cast<unsigned long long>(seen.hashed), static_cast<unsigned long long>(seen.ordered),
      static_cast<unsigned long long>(seen.changes), static_cast<unsigned long long>(seen.refused));
  if (trials.seed || aim < 10'000) return;
  EXPECT_LT(seen.empty * 2, seen.selects) << "most queries find nothing";
  EXPECT_GT(seen.indexed * 20, seen.selects) << "too few use an index";
  EXPECT_GT(seen.hashed * 50, seen.selects);
  EXPECT_GT(seen.ordered * 1000, seen.selects);
  EXPECT_GT(seen.refused, 0u);
}

}  // namespace
}  // namespace quillon::sim
