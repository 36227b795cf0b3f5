#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <set>

#include "base/Text.h"
#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Session.h"
#include "store/Verify.h"
#include "store/schema/CompanySchema.h"
#include "store/schema/CompareSchema.h"
#include "store/schema/CreateCompany.h"
#include "store/vfs/MemoryFileSystem.h"
#include "support/CodeOf.h"
#include "support/SeededRandom.h"
#include "support/SimClock.h"
#include "support/SimDisk.h"

namespace quillon::store {
namespace {

using sim::codeOf;
using testing::HasSubstr;

constexpr const char* kFolder = "/co";

std::string textOf(const std::vector<SchemaDifference>& differences) {
  std::string text;
  for (const SchemaDifference& one : differences) text += one.table + ": " + one.text + "\n";
  return text;
}

bool isControl(std::string_view table) { return table.ends_with("Ctl"); }

// What is missing in a company that was just made; empty when it is whole.
std::string faultsOfNew(Database& database) {
  std::string faults = textOf(compareWithSchema(database));
  if (!faults.empty()) return faults;
  for (const TableDef& table : companyTables()) {
    Cursor cursor(database, table.name);
    cursor.open();
    const std::uint64_t rows = isControl(table.name) || table.name == "Logo" ? 1 : 0;
    if (cursor.recordCount() != rows) faults += table.name + " has " + std::to_string(cursor.recordCount()) + " rows\n";
    if (!isControl(table.name)) continue;
    for (const FieldDef& field : table.fields)
      if (cursor[field.name].isNull()) faults += table.name + "." + field.name + " has no value\n";
  }
  return faults;
}

class CompanySchemaTest : public testing::Test {
 protected:
  CompanySchemaTest() {
    files_.makeFolder(kFolder);
    session_ = std::make_unique<Session>(environment_);
    database_ = std::make_unique<Database>(*session_, kFolder);
  }

  MemoryFileSystem files_;
  sim::SimClock clock_;
  Environment environment_{files_, clock_, "ANNA", "DESK", 1};
  std::unique_ptr<Session> session_;
  std::unique_ptr<Database> database_;
};

// A value of the field that no other `number` gives, of the whole size that it has. Texts end in their number.
Value valueOf(const FieldDef& field, int number) {
  const std::string digits = std::to_string(number);
  switch (field.type) {
    case FieldType::string: {
      if (field.size == 1) return std::string(1, static_cast<char>('a' + number % 26));
      if (field.size == 2) return std::string("\u00e4") + static_cast<char>('a' + number % 26);
      std::string text = "\u00e4";  // one character of two bytes
      for (int i = 1; i < field.size - static_cast<int>(digits.size()); ++i) text += "\U0001F4D2";
      return text + digits;
    }
    case FieldType::smallint:
      return 32767 - number;
    case FieldType::integer:
    case FieldType::autoInc:
      return 2147483647 - number;
    case FieldType::floating:
      return 1.7e308 / (1 + number);
    case FieldType::currency:
      return Money::fromRaw(INT64_MAX - number);
    case FieldType::boolean:
      return number % 2 == 1;
    case FieldType::date:
      return Date::make(9999, 12, 31u - static_cast<unsigned>(number) % 31);
    case FieldType::memo:
      return std::string(5000, 'm') + digits;
    default:
      return Blob{std::string(5000, '\0') + digits};
  }
}

// One that is just too large; null where there is none.
Value beyond(const FieldDef& field) {
  switch (field.type) {
    case FieldType::string:
      return std::string(static_cast<std::size_t>(field.size) + 1, 'x');
    case FieldType::smallint:
      return 32768;
    case FieldType::integer:
    case FieldType::autoInc:
      return std::int64_t{2147483648};
    default:
      return {};
  }
}

void fill(Cursor& cursor, int number) {
  cursor.insert();
  for (const FieldDef& field : cursor.definition().fields) cursor[field.name] = valueOf(field, number);
}

TEST_F(CompanySchemaTest, TablesHoldTheirLimitsAndNoMore) {
  createCompanyTables(*database_);
  for (const TableDef& table : companyTables()) {
    SCOPED_TRACE(table.name);
    {
      Cursor cursor(*database_, table.name + ".DAT");
      cursor.open();
      fill(cursor, 1);
      for (const FieldDef& field : table.fields) {
        const Value tooLarge = beyond(field);
        if (tooLarge.isNull()) continue;
        EXPECT_EQ(codeOf([&] { cursor[field.name] = tooLarge; }), Code::badValue) << field.name;
      }
      cursor.post();
    }
    Cursor cursor(*database_, table.name);
    cursor.open();
    cursor.setRowOrder();
    cursor.last();
    for (const FieldDef& field : table.fields)
      EXPECT_EQ(cursor.value(field.name), valueOf(field, 1)) << field.name << " was not kept";
  }
  const VerifyReport report = verifyOpen(*database_);
  for (const Finding& finding : report.findings) ADD_FAILURE() << finding.table << ": " << finding.text;
}

TEST_F(CompanySchemaTest, TablesAreFoundByAnyFormOfTheirName) {
  ASSERT_TRUE(companyTable("ITEMSUBTYPE.dat"));
  EXPECT_EQ(companyTable("ITEMSUBTYPE.dat")->name, "ItemSubtype");
  EXPECT_EQ(companyTable("Items"), nullptr);
  EXPECT_EQ(companyTable(".DAT"), nullptr);
  std::set<std::string> names;
  for (const TableDef& table : companyTables()) {
    EXPECT_TRUE(names.insert(foldCase(table.name)).second) << table.name << " is there twice";
    EXPECT_EQ(companyTable(table.name), &table);
  }
  EXPECT_EQ(names.size(), 77u);
}

TEST_F(CompanySchemaTest, ACompanyIsNotMadeTwiceOrOverForeignTables) {
  database_->createTable(TableDef::of("Carrier", {{"CarrierID", FieldType::integer}}));
  EXPECT_EQ(codeOf([&] { createCompanyTables(*database_); }), Code::tableExists);
  EXPECT_EQ(database_->tableNames(), std::vector<std::string>{"Carrier"});
  database_->dropTable("Carrier");
  createCompanyTables(*database_);
  EXPECT_EQ(codeOf([&] { createCompanyTables(*database_); }), Code::tableExists);
  EXPECT_EQ(faultsOfNew(*database_), "");
}

// A process numbers its first documents by these.
TEST_F(CompanySchemaTest, NumbersTakenAsTheyStandBeginWithOne) {
  createCompanyTables(*database_);
  const auto next = [&](const char* table, const char* field) {
    Cursor cursor(*database_, table);
    cursor.open();
    return cursor[field].asInt();
  };
  EXPECT_EQ(next("JVCtl", "NextJVID"), 1);
  EXPECT_EQ(next("JVCtl", "NextJVNumber"), 0);
  EXPECT_EQ(next("ItemCtl", "NextItemID"), 0) << "brought to 10000 by the first item";
  EXPECT_EQ(next("ItemCtl", "NextVItemID"), 1);
  EXPECT_EQ(next("ARInvCtl", "NextShipmentID"), 1);
}

struct Planted {
  const char* name;
  std::function<std::string(TableDef&)> plant;  // what the difference has to name
};

// Takes the field out, with the indexes over it.
void removeField(TableDef& table, int position) {
  std::erase_if(table.indexes, [position](const IndexDef& index) {
    return std::ranges::count(index.parts, position, &IndexPart::field) > 0;
  });
  for (IndexDef& index : table.indexes)
    for (IndexPart& part : index.parts) part.field -= part.field > position;
  table.fields.erase(table.fields.begin() + position);
}

const Planted kPlanted[] = {
    {"missing field", [](TableDef& t) { return removeField(t, 5), "the field OrderID is missing"; }},
    {"extra field",
     [](TableDef& t) {
       return t.fields.push_back({"Extra", FieldType::memo}), "the field Extra";
     }},
    {"type", [](TableDef& t) { return t.fields[3].type = FieldType::floating, "the field GLPeriod is Float"; }},
    {"size", [](TableDef& t) { return t.fields[1].size = 11, "the field ReceiptNo is String 11"; }},
    {"required", [](TableDef& t) { return t.fields[9].required = true, "the field Posted is Boolean, required"; }},
    {"order",
     [](TableDef& t) {
       std::swap(t.fields[8], t.fields[9]);
       for (IndexDef& index : t.indexes)
         for (IndexPart& part : index.parts) part.field = part.field == 8 ? 9 : part.field == 9 ? 8 : part.field;
       return "the field Posted stands before WarehouseID";
     }},
    {"missing index", [](TableDef& t) { return t.indexes.pop_back(), "ReceiptDateReceiptNoDESC is missing"; }},
    {"missing primary index",
     [](TableDef& t) { return t.indexes.erase(t.indexes.begin()), "the primary index is missing"; }},
    {"extra index",
     [](TableDef& t) {
       return t.indexes.push_back(IndexDef{"Extra", {IndexPart{4}}}), "the index Extra is too many";
     }},
    {"unique", [](TableDef& t) { return t.indexes[3].unique = true, "the index ReceiptNo is over ReceiptNo, unique"; }},
    {"case", [](TableDef& t) { return t.indexes[3].caseInsensitive = true, "the index ReceiptNo is"; }},
    {"descending",
     [](TableDef& t) {
       return t.indexes[7].parts[1].descending = false, "ReceiptDate;ReceiptNo, with ReceiptDate desc";
     }},
    {"fields of an index", [](TableDef& t) { return t.indexes[3].parts.push_back({4}), "ReceiptNo;ReceiptDate"; }},
};

TEST_F(CompanySchemaTest, EveryKindOfDifferenceIsTold) {
  createCompanyTables(*database_);
  for (const Planted& planted : kPlanted) {
    SCOPED_TRACE(planted.name);
    TableDef changed = *companyTable("IReceipt");
    const std::string named = planted.plant(changed);
    database_->dropTable("IReceipt");
    database_->createTable(changed);
    const auto differences = compareWithSchema(*database_);
    EXPECT_THAT(textOf(differences), HasSubstr(named));
    for (const SchemaDifference& one : differences) EXPECT_EQ(one.table, "IReceipt") << one.text;
  }
  database_->dropTable("IReceipt");
  database_->createTable(TableDef::of("Receipts", {{"ReceiptID", FieldType::integer}}));
  EXPECT_EQ(textOf(compareWithSchema(*database_)),
            "IReceipt: the table is missing\nReceipts: a company has no such table\n");
}

// The power goes while a company is made, at any moment: the next one who makes it there comes to its end, and a folder
// that has the table Company is whole.
TEST(CompanyCreationTest, GoesOnAfterAPowerCut) {
  std::uint64_t calls = 0;
  const auto create = [](sim::SimDisk& disk, sim::SimClock& clock, bool resumed) {
    const auto files = disk.process();
    if (!resumed) files->makeFolder(kFolder);
    const Environment environment{*files, clock, "ANNA", "DESK", 1};
    Session session(environment);
    Database database(session, kFolder);
    if (!database.exists("Company")) createCompanyTables(database);
    return faultsOfNew(database);
  };
  {
    sim::SimDisk disk;
    sim::SimClock clock;
    ASSERT_EQ(create(disk, clock, false), "");
    calls = disk.events();
  }
  sim::SeededRandom random(20261121);
  for (int trial = 0; trial < 40; ++trial) {
    sim::SimDisk disk;
    sim::SimClock clock;
    const std::uint64_t moment = 2 + random.below(calls - 2);
    disk.stopAt(moment);
    try {
      create(disk, clock, false);
    } catch (const sim::ProcessKilled&) {
    }
    const sim::CutChooser cuts(disk, 8, random.next());
    for (std::size_t i = 0; i < std::min<std::size_t>(cuts.count(), 3); ++i) {
      sim::SimDisk image = disk.imageAfterCut(cuts.choice(random.below(cuts.count())));
      sim::SimClock later;
      ASSERT_EQ(create(image, later, true), "") << "cut before call " << moment << " of " << calls;
    }
  }
}

}  // namespace
}  // namespace quillon::store
