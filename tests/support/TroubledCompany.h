#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/Session.h"
#include "store/Verify.h"
#include "support/FileText.h"
#include "support/SimClock.h"
#include "support/SimDisk.h"

// A company of two tables, Cust and Items, for tests of what goes wrong outside the program: files, folders, disks and
// other people. Each gives one error that names what it is about, and everything else goes on.
namespace quillon::store::trouble {

inline constexpr const char* kFolder = "/co";

inline TableDef definition(const char* name) {
  return TableDef::of(
      name, {{"ID", FieldType::autoInc}, {"Name", FieldType::string, 40}, {"Notes", FieldType::memo}},
      {{"", "ID", IndexOptions::unique}, {"ByName", "Name", IndexOptions::unique | IndexOptions::caseInsensitive}});
}

inline void fill(Cursor& cursor, const std::string& name) {
  cursor.insert();
  cursor["Name"] = name;
  cursor["Notes"] = std::string(900, 'n');
}

inline void makeCompany(FileSystem& files, Clock& clock, const std::string& folder) {
  files.makeFolder(folder);
  Session session({files, clock, "MAKER", "PC", 1});
  Database database(session, folder);
  for (const char* table : {"Cust", "Items"}) {
    database.createTable(definition(table));
    Cursor cursor(database, table);
    cursor.open();
    const Database::BulkScope bulk(database);
    for (int i = 0; i < 150; ++i) {
      fill(cursor, "Name" + std::to_string(i));
      cursor.post();
    }
  }
}

// A person's process on a disk.
struct Seat {
  Seat(std::unique_ptr<FileSystem> system, Clock& clock, const std::string& user)
      : files(std::move(system)), session({*files, clock, user, "PC", 7}), database(session, kFolder) {}
  std::unique_ptr<FileSystem> files;
  Session session;
  Database database;
};

inline std::optional<StoreError> errorOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const StoreError& error) {
    return error;
  }
  return {};
}

// One error, of this code, with this name in it, and an advice behind the first sentence.
inline void expectClear(const std::optional<StoreError>& error, Code code, const std::string& name,
                        const std::string& when = {}) {
  ASSERT_TRUE(error) << when;
  const std::string text = error->what();
  EXPECT_EQ(error->code(), code) << when << ": " << text;
  EXPECT_THAT(text, testing::HasSubstr(name)) << when;
  const auto sentence = text.find(". ");
  EXPECT_TRUE(sentence != std::string::npos && sentence + 10 < text.size()) << when << ": no advice in: " << text;
  EXPECT_EQ(text.back(), '.') << text;
}

inline std::uint64_t countOf(Database& database, const char* table) {
  Cursor cursor(database, table);
  cursor.open();
  return cursor.recordCount();
}

// Reads and writes a table, and takes the row out again.
inline void expectWorks(Database& database, const char* table, const std::string& when) {
  const auto error = errorOf([&] {
    Cursor cursor(database, table);
    cursor.open();
    const std::uint64_t before = cursor.recordCount();
    fill(cursor, "works");
    cursor.post();
    EXPECT_EQ(cursor.recordCount(), before + 1) << when;
    EXPECT_EQ(cursor["Notes"].asText().size(), 900u) << when;
    cursor.remove();
    EXPECT_EQ(cursor.recordCount(), before) << when;
  });
  EXPECT_FALSE(error) << when << ": " << table << ": " << error->what();
}

class CompanyTest : public testing::Test {
 protected:
  CompanyTest() : tool_(disk_.process()) { makeCompany(*tool_, clock_, kFolder); }

  std::unique_ptr<Seat> sit(const std::string& user = "ANNA") {
    return std::make_unique<Seat>(disk_.process(), clock_, user);
  }
  std::string load(const std::string& name) { return sim::loadFile(*tool_, std::string(kFolder) + "/" + name); }
  void save(const std::string& name, std::string_view bytes) {
    sim::saveFile(*tool_, std::string(kFolder) + "/" + name, bytes);
  }
  void expectSound(const std::string& when) {
    const auto files = disk_.process();
    for (const Finding& finding : verifyFolder({*files, clock_, "V", "PC", 9}, kFolder).findings)
      ADD_FAILURE() << when << ": " << finding.table << ": " << finding.text;
  }

  sim::SimDisk disk_;
  sim::SimClock clock_;
  std::unique_ptr<FileSystem> tool_;
};

}  // namespace quillon::store::trouble
