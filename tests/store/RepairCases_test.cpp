// Repair and optimize: what a person meets in each kind of trouble with a table.
#include <algorithm>

#include "store/Repair.h"
#include "support/VerifiedCompany.h"

namespace quillon::store {
namespace {

using namespace verified;
using testing::HasSubstr;

class RepairCompany : public VerifiedCompany {
 protected:
  RepairCompany() : session_(environment_), database_(std::make_unique<Database>(session_, kFolder)) {}
  Code codeOf(const std::function<void()>& action) {
    try {
      action();
    } catch (const StoreError& error) {
      EXPECT_THAT(error.what(), HasSubstr("Cust"));
      return error.code();
    }
    return Code{};
  }
  void zero(PageNo first, PageNo last) {
    std::string bytes = load(path("Cust", kDat));
    std::fill(bytes.begin() + first * kPageSize, bytes.begin() + (last + 1) * kPageSize, '\0');
    save(path("Cust", kDat), bytes);
  }

  // Adds rows at the end and takes them out again.
  static void removeLast(Database& database, int rows, const std::string& notes) {
    Cursor cursor(database, "Cust");
    cursor.open();
    for (int i = 0; i < rows; ++i) {
      cursor.insert();
      cursor["Name"] = "last";
      cursor["Notes"] = notes;
      cursor.post();
      cursor.remove();
    }
  }
  TableDef definitionOf(const char* table) {
    Cursor cursor(*database_, table);
    cursor.open();
    return cursor.definition();
  }

  Session session_;
  std::unique_ptr<Database> database_;
};

TEST_F(RepairCompany, TakesTheGivenDefinitionAndSetsTwinsAside) {
  zero(0, 2);  // identity, header, definition
  EXPECT_EQ(codeOf([&] { Cursor(*database_, "Cust").open(); }), Code::headerDamaged);
  EXPECT_EQ(codeOf([&] { database_->repairTable("Cust"); }), Code::headerDamaged);
  TableDef definition = definitionOf("Items");
  definition.name = "Cust";
  definition.indexes.push_back(
      IndexDef::of(definition, {"Once", "Balance", IndexOptions::unique}));  // fifty balances for 310 records
  const RepairReport report = database_->repairTable("cust.dat", {.definition = &definition});
  EXPECT_EQ(report.rows, 50u);
  ASSERT_EQ(report.setAside.size(), 260u);
  EXPECT_THAT(report.setAside.front(), testing::AllOf(HasSubstr("'Once'"), HasSubstr("Name = Name")));
  EXPECT_TRUE(files_.exists(path("Cust", kDat) + kDamagedSuffix));
  EXPECT_TRUE(verify().clean()) << textOf(verify());
  definition.indexes.clear();
  definition.fields.resize(2);
  zero(0, 2);
  EXPECT_EQ(codeOf([&] { database_->repairTable("Cust", {.definition = &definition}); }), Code::headerDamaged)
      << "records that do not fit the definition";
}

TEST_F(RepairCompany, RefusesWhatIsInUseOrNoTable) {
  {
    Cursor cursor(*database_, "Cust");
    cursor.open();
    EXPECT_EQ(codeOf([&] { database_->repairTable("Cust"); }), Code::tableInUse);
    EXPECT_EQ(codeOf([&] { database_->optimizeTable("Cust"); }), Code::tableInUse);
    session_.settings().lockRetryCount = 1;
    Session other(environment_, session_.settings());
    Database theirs(other, kFolder);
    EXPECT_EQ(codeOf([&] { theirs.repairTable("Cust"); }), Code::tableInUse);
    EXPECT_EQ(codeOf([&] { theirs.optimizeTable("Cust"); }), Code::tableInUse);
  }
  const std::string sound = load(path("Cust", kDat));
  save(path("Cust", kDat), "Dear Sir, this is a letter and no table at all, however long one looks at it.");
  EXPECT_EQ(codeOf([&] { database_->repairTable("Cust"); }), Code::foreign);
  save(path("Cust", kDat), sound);
  zero(5, 5);
  EXPECT_EQ(codeOf([&] { database_->optimizeTable("Cust"); }), Code::damaged);
  EXPECT_EQ(load(path("Items", kDat)).size(), sound.size());
  EXPECT_FALSE(files_.exists(path("Cust", kDat) + kNewSuffix));
  EXPECT_TRUE(database_->repairTable("Cust").rebuilt);
  EXPECT_TRUE(verify().clean());
}

TEST_F(RepairCompany, BeginsATableAnewWhoseFileIsGoneOrAnothers) {
  const TableDef definition = definitionOf("Cust");
  const std::string dat = load(path("Cust", kDat)), index = load(path("Cust", kIdx));
  const std::string other = load(path("Items", kDat));
  database_.reset();
  const auto begins = [&](const char* suffix, const std::string& kept, std::uint64_t lost, const char* fault) {
    SCOPED_TRACE(suffix);
    Database database(session_, kFolder);
    const RepairReport report = database.repairTable("CUST", {.definition = &definition});
    EXPECT_EQ(report.rows, 0u);
    EXPECT_EQ(report.lostRows, lost);
    EXPECT_THAT(report.faults, testing::Contains(HasSubstr(fault)));
    EXPECT_THAT(report.losses, testing::Contains(HasSubstr("every record")));
    EXPECT_EQ(report.keptAs, suffix);
    EXPECT_EQ(load(path(report.table, kDat) + suffix), kept);
    EXPECT_TRUE(verify().clean()) << textOf(verify());
    removeLast(database, 1, "works");
  };
  files_.remove(path("Cust", kDat));
  EXPECT_EQ(codeOf([&] { Database(session_, kFolder).repairTable("Cust"); }), Code::headerDamaged);
  begins("~damaged", "", kRows - 90, "is missing");
  save(path("Cust", kDat), other);
  begins("~damaged2", other, 0, "file of a table 'Items'");
  // All three files of the other table: sound, but not what the name says.
  for (const Role role : {kDat, kIdx, kBlb}) save(path("Cust", role), load(path("Items", role)));
  EXPECT_FALSE(Database(session_, kFolder).repairTable("Cust").rebuilt);
  begins("~damaged3", other, kRows - 90, "file of a table 'Items'");
  EXPECT_EQ(load(path("Cust", kIdx) + "~damaged"), index) << "an earlier copy is replaced by none";
  save(path("Cust", kDat), dat);
  const RepairReport report = Database(session_, kFolder).repairTable("Cust", {.definition = &definition});
  EXPECT_EQ(report.rows, kRows - 90u);
  EXPECT_THAT(report.losses, testing::Contains(HasSubstr("'Cust.IDX' is of another table")));
  EXPECT_EQ(report.keptAs, "~damaged4");
  TableDef wider = definition;
  wider.fields.push_back({"More", FieldType::boolean});
  zero(5, 5);
  EXPECT_THAT(Database(session_, kFolder).repairTable("Cust", {.definition = &wider}).losses,
              testing::Contains(HasSubstr("the definition in 'Cust.DAT'")));
  EXPECT_EQ(codeOf([&] { Database(session_, kFolder).repairTable("Custom"); }), Code::noSuchTable);
}

TEST_F(RepairCompany, OptimizesOnlyWhatIsSoundAndOnlyOnce) {
  const auto old = [this] { return load(path("Cust", kDat) + kOldSuffix); };
  for (const Role role : {kDat, kIdx, kBlb}) {
    const std::string sound = load(path("Cust", role));
    std::string bytes = sound;
    bytes[3 * kPageSize + 100] ^= 1;
    save(path("Cust", role), bytes);
    EXPECT_EQ(codeOf([&] { database_->optimizeTable("Cust"); }), Code::damaged) << kExtensions[role];
    EXPECT_EQ(load(path("Cust", role)), bytes);
    save(path("Cust", role), sound);
  }
  const std::string first = load(path("Cust", kDat));
  EXPECT_TRUE(database_->optimizeTable("Cust").replaced);
  EXPECT_EQ(old(), first);
  const OptimizeReport again = database_->optimizeTable("Cust");
  EXPECT_FALSE(again.replaced);
  EXPECT_EQ(again.bytesAfter, again.bytesBefore);
  EXPECT_EQ(old(), first) << "a second time takes the earlier copy away";
  removeLast(*database_, 3, std::string(9000, 'n'));
  EXPECT_TRUE(database_->optimizeTable("Cust").replaced);
  for (const std::string& name : files_.list(kFolder)) EXPECT_FALSE(name.ends_with(kNewSuffix)) << name;
  EXPECT_TRUE(verify().clean()) << textOf(verify());
}

TEST_F(RepairCompany, NobodyGoesOnWithFilesOrPagesFromBefore) {
  Session session(environment_);
  Database theirs(session, kFolder);
  const auto rows = [](Database& database) {  // reads all; the closed table is kept at hand
    Cursor cursor(database, "Cust");
    cursor.open();
    int count = 0;
    for (cursor.first(); !cursor.eof(); cursor.next()) count += cursor["Notes"].asText().empty() ? 1 : 1000;
    return count;
  };
  const auto add = [](Database& database) {
    Cursor cursor(database, "Cust");
    cursor.open();
    cursor.insert();
    cursor["Name"] = "New" + std::to_string(cursor.recordCount());
    cursor.post();
  };
  const TableDef definition = definitionOf("Cust");
  std::vector<int> same;
  for (std::size_t i = 0; i < definition.fields.size(); ++i) same.push_back(static_cast<int>(i));
  const std::vector<std::pair<std::function<void(Database&)>, bool>> deeds = {
      {[](Database& by) { EXPECT_TRUE(by.repairTable("Cust", {.evenIfSound = true}).rebuilt); }, false},
      {[](Database& by) {
         removeLast(by, 1, std::string(9000, 'n'));
         EXPECT_TRUE(by.optimizeTable("Cust", {.keepOld = false}).replaced);
       },
       false},
      {[&](Database& by) { by.redefineTable(definition, same); }, false},
      {[](Database& by) { by.emptyTable("Cust"); }, true},
      {[&](Database& by) {
         by.dropTable("Cust");
         by.createTable(definition);
       },
       true}};
  for (std::size_t deed = 0; deed < deeds.size(); ++deed)
    for (Database* by : {&theirs, database_.get()}) {
      SCOPED_TRACE(testing::Message() << "deed " << deed << (by == &theirs ? " elsewhere" : " here"));
      const int before = rows(theirs);
      EXPECT_EQ(rows(*database_), before);
      deeds[deed].first(*by);
      const int after = deeds[deed].second ? 0 : before;
      add(*database_);
      EXPECT_EQ(rows(theirs), after + 1);
      add(theirs);
      EXPECT_EQ(rows(*database_), after + 2);
      EXPECT_TRUE(verify().clean()) << textOf(verify());
    }
  fill(theirs, "Cust");
  rows(*database_);
  zero(5, 6);  // pages that both have read
  EXPECT_TRUE(theirs.repairTable("Cust").rebuilt);
  EXPECT_EQ(rows(*database_), rows(theirs));
  zero(5, 6);
  EXPECT_FALSE(verifyOpen(*database_).clean());
  EXPECT_TRUE(database_->repairTable("Cust").rebuilt);
  EXPECT_EQ(rows(*database_), rows(theirs));
  EXPECT_TRUE(verify().clean()) << textOf(verify());
}

}  // namespace
}  // namespace quillon::store
