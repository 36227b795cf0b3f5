#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <string>

#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/Session.h"
#include "store/Verify.h"
#include "store/table/Table.h"
#include "store/vfs/MemoryFileSystem.h"
#include "support/FileText.h"
#include "support/SeededRandom.h"
#include "support/SimClock.h"

namespace quillon::store::verified {

inline constexpr const char* kFolder = "/co";
inline constexpr int kRows = 400;

inline std::string textOf(const VerifyReport& report) {
  std::string text;
  for (const Finding& finding : report.findings) text += finding.table + ": " + finding.text + "\n";
  return text;
}

// A company of two tables with everything that files can have: inner pages, long records, contents, free pages and free
// blocks; and ways to damage it.
class VerifiedCompany : public testing::Test {
 protected:
  VerifiedCompany() {
    files_.makeFolder(kFolder);
    Session session(environment_);
    Database database(session, kFolder);
    for (const char* name : {"Cust", "Items"}) {
      database.createTable(TableDef::of(name,
                                        {{"ID", FieldType::autoInc},
                                         {"Name", FieldType::string, 40},
                                         {"Long1", FieldType::string, 255},
                                         {"Long2", FieldType::string, 255},
                                         {"Long3", FieldType::string, 255},
                                         {"Long4", FieldType::string, 255},
                                         {"Long5", FieldType::string, 255},
                                         {"Long6", FieldType::string, 255},
                                         {"Balance", FieldType::currency},
                                         {"Notes", FieldType::memo}},
                                        {{"", "ID", IndexOptions::unique},
                                         {"ByName", "Name", IndexOptions::unique | IndexOptions::caseInsensitive},
                                         {"ByBalance", "Balance;Name", IndexOptions::none, "Balance"}}));
      fill(database, name);
    }
  }

  void fill(Database& database, const char* name) {
    sim::SeededRandom random(7);
    Cursor cursor(database, name);
    cursor.open();
    const Database::BulkScope bulk(database);
    for (int i = 0; i < kRows; ++i) {
      cursor.insert();
      cursor["Name"] = "Name" + std::to_string(i * 7919 % kRows);
      cursor["Balance"] = Money::fromRaw(static_cast<std::int64_t>(random.below(50)));
      if (i % 20 == 3)
        for (int field = 2; field < 8; ++field) cursor.field(field) = std::string(250, static_cast<char>('a' + field));
      if (i % 10 == 5) cursor["Notes"] = std::string(300 + random.below(3000), static_cast<char>('a' + i % 26));
      cursor.post();
    }
    cursor.setRowOrder();
    cursor.goTo(300);
    for (int i = 0; i < 90; ++i) cursor.remove();
  }

  VerifyReport verify() { return verifyFolder(environment_, kFolder); }

  // Changes the table below its rules, but so that everything is published as it should be.
  void plant(const std::function<void(Table&)>& change) {
    Session session(environment_);
    Database database(session, kFolder);
    const int owner = 0;
    Table& table = database.openTable("Cust", &owner, false);
    {
      Database::Change scope(database, table);
      change(table);
      table.touched = true;
      table.files().storeMeta(0);
      scope.done();
    }
    database.closeTable(table, &owner);
  }

  std::array<PageSpace, 3> spaceOf(const char* name) {
    Session session(environment_);
    Database database(session, kFolder);
    const int owner = 0;
    Table& table = database.openTable(name, &owner, false);
    const auto space = table.files().meta().space;
    database.closeTable(table, &owner);
    return space;
  }

  static std::string path(const std::string& table, Role role) {
    return std::string(kFolder) + "/" + table + kExtensions[role];
  }
  std::string load(const std::string& name) { return sim::loadFile(files_, name); }
  void save(const std::string& name, std::string_view bytes) { sim::saveFile(files_, name, bytes); }

  // Every finding is of this table, and there is one.
  void expectOnly(const VerifyReport& report, const std::string& table, const std::string& what) {
    EXPECT_FALSE(report.clean()) << what;
    for (const Finding& finding : report.findings) EXPECT_EQ(finding.table, table) << what << ": " << finding.text;
    const auto other = std::ranges::find(report.tables, table == "Cust" ? "Items" : "Cust", &TableReport::table);
    ASSERT_NE(other, report.tables.end()) << what;
    EXPECT_EQ(other->rows, static_cast<std::uint64_t>(kRows - 90));
  }

  // What reading a table by every order gives; an order ends with the first error.
  using Rows = std::vector<std::vector<std::string>>;
  Rows rowsOf(const char* name) {
    Rows orders(4);
    for (int order = 0; order < 4; ++order) try {
        Session session(environment_);
        Database database(session, kFolder);
        Cursor cursor(database, name);
        cursor.open();
        if (order < 3)
          cursor.setIndex(cursor.definition().indexes[static_cast<std::size_t>(order)].name);
        else
          cursor.setRowOrder();
        for (cursor.first(); !cursor.eof(); cursor.next()) {
          std::string row;
          for (const FieldDef& field : cursor.definition().fields) row += cursor[field.name].value().toText() + "|";
          orders[static_cast<std::size_t>(order)].push_back(row);
        }
        orders[static_cast<std::size_t>(order)].emplace_back("the end");
      } catch (const StoreError&) {
      }
    return orders;
  }
  // A damaged table shows no row that is not there and passes none over: it raises instead.
  void expectNoWrongRow(const char* name, const std::string& what) {
    if (sound_.empty()) return;
    const Rows found = rowsOf(name);
    for (std::size_t order = 0; order < found.size(); ++order) {
      ASSERT_LE(found[order].size(), sound_[order].size()) << what;
      EXPECT_TRUE(std::equal(found[order].begin(), found[order].end(), sound_[order].begin())) << what;
    }
  }

  Rows sound_;  // of Cust
  MemoryFileSystem files_;
  sim::SimClock clock_;
  Environment environment_{files_, clock_, "ANNA", "PC", 1};
};

}  // namespace quillon::store::verified
