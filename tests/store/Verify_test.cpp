#include <map>

#include "support/VerifiedCompany.h"

namespace quillon::store {
namespace {

using namespace verified;
using sim::SeededRandom;
using testing::HasSubstr;

class VerifyTest : public VerifiedCompany {};

TEST_F(VerifyTest, FindsNothingInASoundCompanyAndTellsItsSize) {
  // Left by operations that were broken off.
  save(path("New", kDat) + "~new", "half a");
  save(path("New", kBlb), "no .DAT file, no table");
  std::map<std::string, int> last;
  const VerifyReport report = verifyFolder(environment_, kFolder, [&](std::string_view table, int percent) {
    EXPECT_GE(percent, last[std::string(table)]);
    last[std::string(table)] = percent;
  });
  EXPECT_TRUE(report.clean()) << textOf(report);
  ASSERT_EQ(report.tables.size(), 2u);
  EXPECT_EQ(report.tables[0].rows, static_cast<std::uint64_t>(kRows - 90));
  const auto space = spaceOf("Cust");
  EXPECT_EQ(report.tables[0].pages, space[0].pages + space[1].pages + space[2].pages);
  EXPECT_EQ(last, (std::map<std::string, int>{{"Cust", 100}, {"Items", 100}}));
  // What the other tests damage is there to be damaged.
  EXPECT_GT(space[kDat].freePages, 0u);
  EXPECT_GT(space[kDat].pages, 20u);
  EXPECT_GT(space[kBlb].pages, 5u);
}

TEST_F(VerifyTest, FindsOneFlippedByteInAnyPage) {
  SeededRandom random(11);
  int flips = 0;
  sound_ = rowsOf("Cust");
  for (const auto& order : sound_) ASSERT_EQ(order.size(), kRows - 90u + 1);
  for (const Role role : {kDat, kIdx, kBlb}) {
    const std::string sound = load(path("Cust", role));
    const PageNo pages = spaceOf("Cust")[role].pages;
    for (PageNo page = 0; page < pages; ++page) {
      for (int turn = page == 0 ? 12 : 2; turn > 0; --turn, ++flips) {
        std::size_t place = random.below(kPageSize);
        if (page == 0) place = turn <= 6 ? random.below(32) : turn <= 9 ? 64 + random.below(24) : 88 + place % 4000;
        std::string bytes = sound;
        bytes[page * kPageSize + place] ^= static_cast<char>(1 + random.below(255));
        save(path("Cust", role), bytes);
        const std::string what =
            path("Cust", role) + " page " + std::to_string(page) + " byte " + std::to_string(place);
        const VerifyReport report = verify();
        expectOnly(report, "Cust", what);
        expectNoWrongRow("Cust", what);
        if (page > 2 || (page > 0 && role != kDat)) {
          EXPECT_THAT(textOf(report), HasSubstr("'Cust" + std::string(kExtensions[role]) + "': page " +
                                                std::to_string(page) + " is damaged"));
          EXPECT_EQ(report.tables.size(), 2u) << what;
        }
      }
      if (HasFailure()) FAIL() << textOf(verify());
    }
    save(path("Cust", role), sound);
  }
  EXPECT_GT(flips, 150);
  EXPECT_TRUE(verify().clean());
}

TEST_F(VerifyTest, FindsCutSwappedAndForeignFiles) {
  sound_ = rowsOf("Cust");
  for (const Role role : {kDat, kIdx, kBlb}) {
    const std::string name = path("Cust", role), sound = load(name);
    const std::size_t used = spaceOf("Cust")[role].pages * kPageSize;
    for (const std::size_t size : {std::size_t{0}, std::size_t{20}, kPageSize, used / 2, used - kPageSize, used - 1}) {
      save(name, sound.substr(0, size));
      expectOnly(verify(), "Cust", name + " cut to " + std::to_string(size));
      expectNoWrongRow("Cust", name + " cut to " + std::to_string(size));
    }
    for (PageNo page = 1; page + 1 < used / kPageSize; page += 3) {
      std::string bytes = sound;
      std::swap_ranges(bytes.begin() + page * kPageSize, bytes.begin() + (page + 1) * kPageSize,
                       bytes.begin() + (page + 1) * kPageSize);
      save(name, bytes);
      expectOnly(verify(), "Cust", name + " swapped " + std::to_string(page));
      expectNoWrongRow("Cust", name + " swapped " + std::to_string(page));
    }
    save(name, load(path("Items", role)));
    if (role != kDat)
      expectOnly(verify(), "Cust", name + " of another table");
    else
      EXPECT_FALSE(verify().clean());
    save(name, "Dear Sir, this is a letter and no table at all, however long one looks at it.");
    expectOnly(verify(), "Cust", name + " is a letter");
    files_.remove(name);
    const VerifyReport report = verify();
    if (role == kDat)
      EXPECT_EQ(report.tables.size(), 1u);
    else
      expectOnly(report, "Cust", name + " is gone");
    save(name, sound);
  }
  EXPECT_TRUE(verify().clean());
}

TEST_F(VerifyTest, FindsOneFileOfAnOlderCopy) {
  std::array<std::string, 3> old;
  for (const Role role : {kDat, kIdx, kBlb}) old[role] = load(path("Cust", role));
  {
    Session session(environment_);
    Database database(session, kFolder);
    Cursor cursor(database, "Cust");
    cursor.open();
    cursor.findKey({10});
    cursor.edit();
    cursor["Name"] = "renamed";
    cursor["Notes"] = std::string(600, 'n');
    cursor.post();
  }
  ASSERT_TRUE(verify().clean());
  for (const Role role : {kDat, kIdx, kBlb}) {
    const std::string present = load(path("Cust", role));
    save(path("Cust", role), old[role]);
    expectOnly(verify(), "Cust", std::string("older ") + kExtensions[role]);
    save(path("Cust", role), present);
  }
}

TEST_F(VerifyTest, ChecksWhatAnOpenDatabaseSees) {
  Session session(environment_);
  Database database(session, kFolder);
  Cursor cursor(database, "Cust");
  cursor.open();
  cursor.lockTable();
  cursor.insert();
  cursor["Name"] = "gathered";
  cursor.post();
  EXPECT_TRUE(verifyOpen(database).clean());
  database.startTransaction({"Items"});
  EXPECT_THROW(verifyOpen(database), StoreError);
  database.rollback();
  // A page that went stale in memory.
  {
    Table::Reading reading(cursor.table());
    cursor.table().files().file(kDat).read(cursor.table().files().meta().rows).writable()[kPageSize - 1] ^=
        std::byte{1};
  }
  expectOnly(verifyOpen(database), "Cust", "stale page");
  EXPECT_THROW(verifyFolder(environment_, "/nowhere"), StoreError);
}

}  // namespace
}  // namespace quillon::store
