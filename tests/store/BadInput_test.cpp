#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>

#include "store/journal/Journal.h"
#include "store/pages/Page.h"
#include "store/table/TableFiles.h"
#include "store/vfs/DiskFileSystem.h"
#include "store/vfs/IoErrors.h"
#include "support/TroubledCompany.h"

namespace quillon::store {
namespace {

using namespace trouble;
using sim::SimCall;
using testing::AnyOf;
using testing::HasSubstr;

constexpr std::array<const char*, 4> kFiles = {"Cust.DAT", "Cust.IDX", "Cust.BLB", "Quillon.JNL"};

class BadInputTest : public CompanyTest {};

TEST_F(BadInputTest, ACommitThatNoReaderWouldTakeIsRefused) {
  Journal journal(*tool_, kFolder, 1);
  journal.readHead();
  const JournalSpot start = journal.startSpot();
  const auto append = [&](std::size_t tables) {
    journal.append(start, start.commit + 1, std::vector<JournalTable>(tables), {}, {});
  };
  EXPECT_EQ(errorOf([&] { append(4097); })->code(), Code::limitReached);
  JournalRecord record;
  EXPECT_FALSE(journal.readRecord(start, record));
  append(4096);
  EXPECT_TRUE(journal.readRecord(start, record) && journal.recordIsWhole(record));
}

// The first bytes of a file, with their checksum, as a later version would write them.
std::string newer(std::string bytes, bool journal) {
  const std::size_t hashed = journal ? 56 : 24;
  for (const std::size_t head : {std::size_t{0}, std::size_t{4096}}) {
    if (head > 0 && !journal) break;
    bytes[head + 8] = 2;
    const std::uint64_t checksum = hashBytes(bytes.data() + head, hashed);
    bytes.replace(head + hashed, 8, reinterpret_cast<const char*>(&checksum), 8);
  }
  return bytes;
}

std::string letter(std::size_t size) {
  std::string text = "Dear Sir, ";
  while (text.size() < size) text += "this is a letter and no table. ";
  return text;
}

struct Spoiling {
  const char* name;
  std::function<std::string(const std::string& bytes, const std::string& other, bool journal)> spoil;
  Code code;         // of a table's file
  Code journalCode;  // of the journal; badValue: it opens, as nothing can be lost
};

const std::vector<Spoiling>& spoilings() {
  static const std::vector<Spoiling> all = {
      {"damaged",
       [](std::string bytes, const std::string&, bool) {
         bytes[17] ^= 1;
         bytes[4096 + 17] ^= 1;
         return bytes;
       },
       Code::headerDamaged, Code::badValue},
      {"empty", [](const std::string&, const std::string&, bool) { return std::string(); }, Code::headerDamaged,
       Code::badValue},
      {"cut in the head", [](const std::string& bytes, const std::string&, bool) { return bytes.substr(0, 20); },
       Code::headerDamaged, Code::badValue},
      {"a letter", [](const std::string&, const std::string&, bool) { return letter(50'000); }, Code::foreign,
       Code::headerDamaged},
      {"of another table", [](const std::string&, const std::string& other, bool) { return other; }, Code::foreign,
       Code::headerDamaged},
      {"newer", [](const std::string& bytes, const std::string&, bool journal) { return newer(bytes, journal); },
       Code::newerFormat, Code::newerFormat},
  };
  return all;
}

TEST_F(BadInputTest, SpoiledTableFilesAreNamedAndOtherTablesGoOn) {
  const auto seat = sit();
  for (const std::string file : {"Cust.DAT", "Cust.IDX", "Cust.BLB"}) {
    for (const Spoiling& spoiling : spoilings()) {
      const std::string sound = load(file);
      const std::string when = file + " " + spoiling.name;
      save(file, spoiling.spoil(sound, load("Items" + file.substr(4)), false));
      expectClear(errorOf([&] { countOf(seat->database, "Cust"); }), spoiling.code, "Cust", when);
      expectClear(errorOf([&] { seat->database.startTransaction({"Items", "Cust"}); }), spoiling.code, "Cust", when);
      EXPECT_FALSE(seat->database.inTransaction()) << when;
      expectWorks(seat->database, "Items", when);
      save(file, sound);
      // The same database takes the table again once it is mended.
      expectWorks(seat->database, "Cust", when);
      if (HasFailure()) return;
    }
    const std::string sound = load(file);
    tool_->remove(std::string(kFolder) + "/" + file);
    const auto error = errorOf([&] { countOf(seat->database, "Cust"); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), file == "Cust.DAT" ? Code::noSuchTable : Code::headerDamaged);
    EXPECT_THAT(error->what(), HasSubstr("Cust"));
    save(file, sound);
    expectWorks(seat->database, "Cust", file + " back again");
  }
}

TEST_F(BadInputTest, ASpoiledJournalIsNamedAndLosesNothing) {
  const std::string sound = load("Quillon.JNL");
  for (const Spoiling& spoiling : spoilings()) {
    save("Quillon.JNL", spoiling.spoil(sound, load("Items.DAT"), true));
    if (spoiling.journalCode != Code::badValue) {
      expectClear(errorOf([&] { sit(); }), spoiling.journalCode, "Quillon.JNL", spoiling.name);
      EXPECT_EQ(load("Quillon.JNL"), spoiling.spoil(sound, load("Items.DAT"), true)) << "left as it was found";
      save("Quillon.JNL", sound);
    }
    {
      const auto seat = sit();
      EXPECT_EQ(countOf(seat->database, "Cust"), 150u) << spoiling.name;
      expectWorks(seat->database, "Cust", spoiling.name);
    }
    expectSound(spoiling.name);
  }
}

TEST_F(BadInputTest, NobodyJoinsOthersUnderAnOlderHead) {
  auto seat = sit();
  {
    Cursor cursor(seat->database, "Cust");
    cursor.open();
    fill(cursor, "in the journal");
    cursor.post();
  }
  std::string bytes = load("Quillon.JNL");
  const auto epochAt = [&](std::size_t head) {
    return loadAt<std::uint64_t>(reinterpret_cast<const std::byte*>(bytes.data()), head + 24);
  };
  bytes[epochAt(4096) > epochAt(0) ? 4096 : 0] ^= 1;
  save("Quillon.JNL", bytes);
  expectClear(errorOf([&] { sit("BERT"); }), Code::headerDamaged, "Quillon.JNL");
  expectWorks(seat->database, "Cust", "who was there before");
  seat.reset();
  EXPECT_EQ(countOf(sit()->database, "Cust"), 151u);
  expectSound("opened again");
}

TEST_F(BadInputTest, PagesThatDoNotFitTheJournalKeepNothingElseShut) {
  {
    const auto seat = sit();
    const int process = disk_.lastProcess();
    Cursor cursor(seat->database, "Cust");
    cursor.open();
    for (const char* name : {"one", "two"}) {
      fill(cursor, name);
      cursor.post();
    }
    disk_.killProcess(process);
  }
  std::string bytes = load("Cust.IDX");
  const auto fileId = loadAt<std::uint64_t>(reinterpret_cast<const std::byte*>(bytes.data()), 16);
  std::uint64_t newest = 0;
  const auto eachPage = [&](const std::function<void(std::byte*)>& page) {
    for (std::size_t at = kPageSize; at < bytes.size(); at += kPageSize)
      page(reinterpret_cast<std::byte*>(bytes.data()) + at);
  };
  eachPage([&](const std::byte* page) { newest = std::max(newest, pageStamp(page)); });
  // As if the first of the two had been another change.
  eachPage([&](std::byte* page) {
    if (pageStamp(page) != newest) return;
    page[kPageSize / 2] ^= std::byte{1};
    sealPage(page, fileId ^ kIdx, newest - 1);
  });
  save("Cust.IDX", bytes);
  const auto seat = sit();
  expectWorks(seat->database, "Items", "only Cust is damaged");
  EXPECT_FALSE(verifyOpen(seat->database).clean());
  EXPECT_EQ(seat->database.repairTable("Cust").rows, 152u);
  expectWorks(seat->database, "Cust", "repaired");
}

TEST_F(BadInputTest, AFolderWithoutRightsIsToldOnce) {
  for (const std::string denied : kFiles) {
    disk_.beforeEvent([&](const sim::SimEvent& event) {
      if (event.call == SimCall::open && event.path.ends_with("/" + denied)) throw ioError("open", event.path, EACCES);
    });
    std::unique_ptr<Seat> seat;
    expectClear(errorOf([&] {
                  seat = sit();
                  countOf(seat->database, "Cust");
                }),
                Code::accessDenied, denied);
    if (seat) expectWorks(seat->database, "Items", denied);
    disk_.beforeEvent({});
    if (seat) expectWorks(seat->database, "Cust", denied);
  }
  const auto seat = sit();
  disk_.beforeEvent([](const sim::SimEvent& event) {
    if (event.call == SimCall::create || event.call == SimCall::rename) throw ioError("make", event.path, EACCES);
  });
  expectClear(errorOf([&] { seat->database.createTable(definition("New")); }), Code::accessDenied, "New");
  disk_.beforeEvent({});
  EXPECT_FALSE(seat->database.exists("New"));
  seat->database.createTable(definition("New"));
  expectWorks(seat->database, "New", "rights are back");
}

TEST(BadInputOnDisk, AFolderThatVanishesIsToldAndNothingIsSavedIntoTheVoid) {
  namespace fs = std::filesystem;
  const std::string folder = fs::temp_directory_path() / ("quillon-vanished-" + std::to_string(::getpid()));
  DiskFileSystem files;
  fs::remove_all(folder);
  makeCompany(files, systemClock(), folder);
  Session session({files, systemClock(), "ANNA", "PC", ::getpid()});
  {
    Database database(session, folder);
    fs::permissions(folder + "/Cust.DAT", fs::perms::owner_read);
    expectClear(errorOf([&] { countOf(database, "Cust"); }), Code::accessDenied, "Cust.DAT");
    expectWorks(database, "Items", "only Cust is read-only");
    fs::permissions(folder + "/Cust.DAT", fs::perms::owner_read | fs::perms::owner_write);
    Cursor cursor(database, "Cust");
    cursor.open();
    fill(cursor, "lost");
    fs::remove_all(folder);
    const auto error = errorOf([&] { cursor.post(); });
    ASSERT_TRUE(error) << "saved into a folder that is gone";
    EXPECT_THAT(error->what(), AnyOf(HasSubstr("Quillon.JNL"), HasSubstr("Cust"))) << error->what();
    EXPECT_THAT(error->what(), HasSubstr("open it again"));
    EXPECT_EQ(cursor.state(), CursorState::insert);
    EXPECT_TRUE(errorOf([&] { countOf(database, "Items"); }));
    EXPECT_TRUE(errorOf([&] { database.createTable(definition("New")); }));
  }
  expectClear(errorOf([&] { Database again(session, folder); }), Code::noSuchFolder, folder);
  makeCompany(files, systemClock(), folder);
  Database again(session, folder);
  expectWorks(again, "Cust", "the folder is back");
  fs::remove_all(folder);
}

}  // namespace
}  // namespace quillon::store
