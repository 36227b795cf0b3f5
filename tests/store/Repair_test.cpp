// Repair and optimize, on tables by chance.
//
// Method: a table of random fields, indexes, rows and contents is damaged at random: flipped bytes, pages of zeros,
// cut files, swapped pages, files gone. After the repair the verifier finds nothing, every record whose pages were left
// alone is there under its id with its exact values, and nothing is there that was not before. Contents are as before,
// or null where pages of contents were damaged.
#include <algorithm>
#include <set>

#include "support/RandomTable.h"
#include "support/Trials.h"
#include "support/VerifiedCompany.h"

namespace quillon::store {
namespace {

using namespace verified;
using sim::SeededRandom;
using testing::HasSubstr;

struct Row {
  std::string fields;                   // the bytes of all fields but contents
  std::map<int, std::string> contents;  // by field
};
using Rows = std::map<RowId, Row>;

class RandomCompany {
 public:
  explicit RandomCompany(std::uint64_t seed) : random_(seed) {
    files_.makeFolder(kFolder);
    definition_ = sim::randomTable(random_, 8);
    if (definition_.fields.size() < 8) definition_.fields.push_back({"Notes", FieldType::memo});
    Session session(environment_);
    Database database(session, kFolder);
    database.createTable(definition_);
    fill(database);
    before_ = read(database);
  }

  Rows read(Database& database) {
    Rows rows;
    const int owner = 0;
    Table& table = database.openTable(definition_.name, &owner, false);
    {
      const Table::Reading reading(table);
      std::string scratch;
      TreeWalk walk(table.rows());
      for (bool found = walk.first(); found; found = walk.next()) {
        const RecordView view(table.layout(), table.record(walk.payload(), scratch));
        Row& row = rows[Table::rowOfKey(walk.key())];
        for (int i = 0; i < table.layout().fieldCount(); ++i) {
          row.fields += view.isNull(i) ? '0' : '1';
          if (view.isNull(i)) continue;
          if (isBlobType(table.layout().field(i).type))
            row.contents[i] = table.readBlob(view.blobRef(i));
          else
            row.fields.append(reinterpret_cast<const char*>(view.raw(i).data()), view.raw(i).size());
        }
      }
    }
    database.closeTable(table, &owner);
    return rows;
  }

  std::string path(Role role) const { return std::string(kFolder) + "/" + definition_.name + kExtensions[role]; }
  std::string load(Role role) { return files_.exists(path(role)) ? sim::loadFile(files_, path(role)) : std::string(); }
  void save(Role role, const std::string& bytes) { sim::saveFile(files_, path(role), bytes); }

  // What was done, in words.
  std::string damage() {
    for (const Role role : {kDat, kIdx, kBlb}) sound_[role] = load(role);
    std::string what;
    for (std::size_t left = 1 + random_.below(4); left > 0; --left) {
      const auto role = static_cast<Role>(random_.below(3));
      std::string bytes = load(role);
      const std::size_t pages = bytes.size() / kPageSize;
      const std::size_t page = pages == 0         ? 0
                               : random_.oneIn(4) ? random_.below(std::min<std::size_t>(pages, 3))
                                                  : random_.below(pages);
      const auto at = bytes.begin() + static_cast<std::ptrdiff_t>(page * kPageSize);
      const std::size_t kind = pages == 0 ? 5 : random_.below(6);
      what += std::string(kExtensions[role]) + " page " + std::to_string(page) + " kind " + std::to_string(kind) + "; ";
      if (kind < 2) {
        at[static_cast<std::ptrdiff_t>(random_.below(kPageSize))] ^= static_cast<char>(1 + random_.below(255));
      } else if (kind == 2) {
        std::fill_n(at, kPageSize, '\0');
      } else if (kind == 3) {
        bytes.resize(page * kPageSize + (random_.oneIn(2) ? random_.below(kPageSize) : 0));
      } else if (kind == 4) {
        std::swap_ranges(at, at + kPageSize,
                         bytes.begin() + static_cast<std::ptrdiff_t>(random_.below(pages) / 2 * kPageSize));
      } else if (role != kDat) {
        files_.remove(path(role));
        continue;
      }
      save(role, bytes);
    }
    return what;
  }

  // Whether a page stands as it was; pages of one kind in a file, or all of kind none.
  bool untouched(Role role, std::size_t page, const std::string& now) const {
    return now.size() >= (page + 1) * kPageSize &&
           sound_[role].compare(page * kPageSize, kPageSize, now, page * kPageSize, kPageSize) == 0;
  }
  bool allUntouched(Role role, PageKind kind, const std::string& now) const {
    for (std::size_t page = 0; page < sound_[role].size() / kPageSize; ++page)
      if (static_cast<PageKind>(sound_[role][page * kPageSize + 20]) == kind && !untouched(role, page, now))
        return false;
    return true;
  }

  // Ids in leaf pages that stand as they were.
  std::set<RowId> intact(const std::string& now) {
    std::set<RowId> ids;
    PageSpace space;
    PageCache cache(64);
    PageFile unused(cache, files_.openScratch(kFolder), "leaf", 0, space);
    for (std::size_t page = 1; page < sound_[kDat].size() / kPageSize; ++page) {
      const auto* bytes = reinterpret_cast<const std::byte*>(sound_[kDat].data()) + page * kPageSize;
      if (pageKind(bytes) != PageKind::leaf || !untouched(kDat, page, now)) continue;
      const TreePage leaf(bytes, unused);
      for (unsigned i = 0; i < leaf.count(); ++i)
        if (leaf.leafCell(i).payload[0] == 0 || allUntouched(kDat, PageKind::overflow, now))
          ids.insert(Table::rowOfKey(leaf.key(i)));
    }
    return ids;
  }

  bool someIdIsLeft() {
    for (const Role role : {kDat, kIdx, kBlb})
      if (load(role).compare(0, 32, sound_[role], 0, 32) == 0 && !sound_[role].empty()) return true;
    return false;
  }

  void expectSound() {
    const VerifyReport report = verifyFolder(environment_, kFolder);
    EXPECT_TRUE(report.clean()) << textOf(report);
  }

  MemoryFileSystem files_;
  sim::SimClock clock_;
  Environment environment_{files_, clock_, "ANNA", "PC", 1};
  SeededRandom random_;
  TableDef definition_;
  Rows before_;
  std::array<std::string, 3> sound_;

 private:
  void fill(Database& database) {
    Cursor cursor(database, definition_.name);
    cursor.open();
    const Database::BulkScope bulk(database);
    const Database::CopyScope copy(database);
    for (std::size_t i = random_.below(120); i > 0; --i) {
      cursor.insert();
      for (std::size_t f = 0; f < definition_.fields.size(); ++f) {
        const FieldDef& field = definition_.fields[f];
        if (field.type == FieldType::autoInc) continue;
        if (!isBlobType(field.type))
          cursor.field(static_cast<int>(f)) = sim::randomValue(random_, field);
        else if (random_.oneIn(2))
          cursor.field(static_cast<int>(f)) = std::string(random_.below(3000), static_cast<char>('a' + i % 26));
      }
      try {
        cursor.post();
      } catch (const StoreError& error) {
        if (error.code() != Code::keyViolation) throw;
        cursor.cancel();
      }
      if (!cursor.isEmpty() && random_.oneIn(5)) cursor.remove();
    }
  }
};

TEST(Repair, SavesWhatIsIntactAndInventsNothing) {
  const sim::Trials trials = sim::Trials::fromEnvironment();
  std::uint64_t rebuilt = 0, lost = 0, refused = 0;
  const std::uint64_t last = trials.seed ? *trials.seed : trials.aim(1'500, 15'000);
  for (std::uint64_t seed = trials.seed.value_or(1); seed <= last && !testing::Test::HasFailure(); ++seed) {
    RandomCompany company(seed);
    const std::string what = company.damage();
    SCOPED_TRACE(what + "\n" + sim::Trials::repeating(seed, "test_store", "Repair.SavesWhatIsIntactAndInventsNothing"));
    const std::string dat = company.load(kDat), blb = company.load(kBlb);
    const std::set<RowId> intact = company.intact(dat);
    const bool contentsIntact = company.allUntouched(kBlb, PageKind::blob, blb);
    const bool nothingIsLeft = intact.empty() && !company.untouched(kDat, 0, dat);
    const bool mayRefuse = nothingIsLeft || !company.someIdIsLeft();
    Session session(company.environment_);
    Database database(session, kFolder);
    try {
      const RepairReport report = database.repairTable(company.definition_.name, {.definition = &company.definition_});
      rebuilt += report.rebuilt ? 1 : 0;
      lost += report.lossless() ? 0 : 1;
      const Rows now = company.read(database);
      EXPECT_EQ(report.rows, now.size());
      EXPECT_TRUE(report.setAside.empty());
      EXPECT_TRUE(now.size() == company.before_.size() || !report.lossless()) << "rows were lost without a word";
      for (const RowId id : intact) EXPECT_TRUE(now.contains(id)) << "record " << id << " was intact";
      for (const auto& [id, row] : now) {
        ASSERT_TRUE(company.before_.contains(id)) << "record " << id << " is invented";
        for (const auto& [field, content] : company.before_[id].contents) {
          const auto found = row.contents.find(field);
          if (found != row.contents.end())
            EXPECT_EQ(found->second, content);
          else
            EXPECT_FALSE(contentsIntact && report.lostContents == 0) << "a content is gone without a word";
        }
        if (row.contents.size() == company.before_[id].contents.size()) {
          EXPECT_EQ(row.fields, company.before_[id].fields);
        }
      }
    } catch (const StoreError& error) {
      EXPECT_TRUE(mayRefuse) << error.what();
      ++refused;
      continue;
    }
    company.expectSound();
  }
  std::printf("%llu tables made anew, %llu with losses, %llu refused\n", static_cast<unsigned long long>(rebuilt),
              static_cast<unsigned long long>(lost), static_cast<unsigned long long>(refused));
}

TEST(Repair, LeavesASoundTableAloneAndOptimizeKeepsItsRows) {
  for (std::uint64_t seed = 1; seed <= 150 && !testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    RandomCompany company(seed);
    Settings settings;
    settings.progressSteps = 7;
    std::vector<int> steps;
    const auto note = [&](int percent) { steps.push_back(percent); };
    Session session(company.environment_, settings);
    Database database(session, kFolder);
    const std::string& name = company.definition_.name;
    const std::string dat = company.load(kDat);
    EXPECT_FALSE(database.repairTable(name).rebuilt);
    EXPECT_EQ(company.load(kDat), dat);
    EXPECT_TRUE(database.repairTable(name, {.evenIfSound = true, .progress = note}).rebuilt);
    EXPECT_EQ(steps, (std::vector{14, 28, 42, 57, 71, 85, 100}));
    steps.clear();
    const OptimizeReport report = database.optimizeTable(name, {.progress = note});
    EXPECT_EQ(steps, (std::vector{14, 28, 42, 57, 71, 85, 100}));
    EXPECT_LE(report.bytesAfter, report.bytesBefore);
    EXPECT_EQ(report.replaced, company.files_.exists(company.path(kDat) + kOldSuffix));
    const Rows now = company.read(database);
    ASSERT_EQ(now.size(), company.before_.size());
    for (const auto& [id, row] : now) {
      EXPECT_EQ(row.fields, company.before_[id].fields);
      EXPECT_EQ(row.contents, company.before_[id].contents);
    }
    company.expectSound();
  }
}

}  // namespace
}  // namespace quillon::store
