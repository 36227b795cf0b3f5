// Rules of single fields, and looks at other rows while one is being edited.
#include "store/Glance.h"

#include <gtest/gtest.h>

#include <random>
#include <span>

#include "base/Errors.h"
#include "store/Cursor.h"
#include "store/Database.h"
#include "store/table/RowReader.h"
#include "support/SimProcess.h"

namespace quillon::store {
namespace {

class Company {
 public:
  Company() {
    disk_.process()->makeFolder(sim::kSharedFolder);
    one_ = std::make_unique<sim::SimProcess>(disk_, clock_, Settings());
    one_->open();
    database().createTable(TableDef::of(
        "Cust", {{"ID", FieldType::autoInc}, {"Name", FieldType::string, 20}, {"Group", FieldType::integer}},
        {{"", "ID", IndexOptions::unique}}));
    database().createTable(
        TableDef::of("Line", {{"No", FieldType::autoInc}, {"Cust", FieldType::integer}, {"Amount", FieldType::integer}},
                     {{"", "No", IndexOptions::unique}, {"ByCust", "Cust;No"}}));
  }
  Database& database() { return one_->database(); }

 private:
  sim::SimDisk disk_;
  sim::SimClock clock_;
  std::unique_ptr<sim::SimProcess> one_;
};

TEST(FieldRules, ChecksAndChangesOfFieldsRunForEverySetButUnderSilence) {
  Company company;
  Cursor cursor(company.database(), "Cust");
  cursor.open();
  std::string told;
  cursor.events.onValidate = [&](int position, const Value& next) {
    if (position == cursor.fieldPosition("Group") && next.asInt() > 9) throw Error("too large");
  };
  cursor.events.onChange = [&](int position, const Value& old) {
    told += cursor.definition().fields[static_cast<std::size_t>(position)].name + ":" + old.toText() + " ";
  };
  cursor.insert();
  cursor["Group"] = 5;
  EXPECT_THROW(cursor["Group"] = 10, Error);
  EXPECT_EQ(cursor["Group"].asInt(), 5);
  cursor["Group"] = 5;
  {
    const Cursor::Silence silence(cursor);
    cursor["Group"] = 10;
    cursor["Name"] = "Quiet";
  }
  EXPECT_EQ(told, "Group:null Group:5 ");
}

TEST(Glances, AGlanceSeesOtherRowsWhileARowIsBeingEdited) {
  Company company;
  Cursor cursor(company.database(), "Cust"), lines(company.database(), "Line", follows{cursor, "ID", "ByCust"});
  cursor.open();
  for (const char* name : {"Ada", "Ben", "Cem"}) {
    cursor.insert();
    cursor["Name"] = name;
    cursor.post();
  }
  lines.open();
  cursor.first();
  cursor.next();
  cursor.edit();
  cursor["Name"] = "Bea";
  lines.append();
  lines["Amount"] = 7;
  int scrolls = 0;
  cursor.events.afterScroll = [&] { ++scrolls; };
  {
    Glance glance(cursor);
    EXPECT_EQ(cursor["Name"].asText(), "Ben") << "the row as it is stored";
    EXPECT_TRUE(glance.next());
    EXPECT_EQ(cursor["Name"].asText(), "Cem");
    EXPECT_FALSE(glance.next());
    EXPECT_TRUE(glance.goTo(1));
    EXPECT_EQ(cursor["Name"].asText(), "Ada");
    EXPECT_FALSE(glance.goTo(4));
  }
  EXPECT_EQ(cursor.state(), CursorState::edit);
  EXPECT_EQ(cursor["Name"].asText(), "Bea");
  EXPECT_EQ(lines.state(), CursorState::insert) << "the line that is being entered stays";
  EXPECT_EQ(lines["Amount"].asInt(), 7);
  EXPECT_EQ(scrolls, 0);
  cursor.cancel();
  cursor.append();
  {
    Glance glance(cursor);
    EXPECT_TRUE(glance.first());
    EXPECT_EQ(cursor["Name"].asText(), "Ada");
  }
  EXPECT_EQ(cursor.state(), CursorState::insert);
  EXPECT_TRUE(cursor["Name"].isNull());
}

// Rows that follow each other, single ones, and far ones, in batches of all sizes.
TEST(RowReaders, RecordsAreReadInAnyOrderHoweverTheyLieToEachOther) {
  Company company;
  Cursor cursor(company.database(), "Line");
  cursor.open();
  constexpr int kRows = 400;
  for (int i = 1; i <= kRows; ++i) {
    cursor.insert();
    cursor["Amount"] = i;
    cursor.post();
  }
  const int amount = cursor.fieldPosition("Amount");
  std::mt19937 random(20260305);
  for (int round = 0; round < 200; ++round) {
    std::vector<RowId> wanted;
    auto row = static_cast<RowId>(1 + random() % kRows);
    for (int i = 0; i < 300; ++i) {
      const auto way = static_cast<unsigned>(random() % 10);
      row = way < 7 ? row + 1 : way < 9 ? row - 1 : static_cast<RowId>(1 + random() % kRows);
      row = std::clamp<RowId>(row, 1, kRows);
      wanted.push_back(row);
    }
    cursor.table().read([&] {
      RowReader reader(cursor.table());
      for (std::size_t at = 0; at < wanted.size();) {
        const std::size_t count = std::min<std::size_t>(1 + random() % 40, wanted.size() - at);
        std::size_t next = at;
        reader.readEach(std::span(wanted).subspan(at, count), [&](RowId id, std::string_view record) {
          EXPECT_EQ(id, wanted[next]);
          EXPECT_EQ(RecordView(cursor.table().layout(), record).get(amount).asInt(), static_cast<int>(wanted[next++]));
          return true;
        });
        at += count;
      }
    });
  }
}

}  // namespace
}  // namespace quillon::store
