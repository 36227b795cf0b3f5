// The simulated disk must lose, tear and fail as told: what it forgives, no crash test would ever find.

#include "support/SimDisk.h"

#include <gtest/gtest.h>

#include <set>

#include "store/Errors.h"

namespace quillon::sim {
namespace {

using store::FileSystem;
using store::LockMode;
using store::OpenMode;

Bytes bytes(std::string_view text) { return std::as_bytes(std::span(text)); }

std::string textOf(const SimDisk& disk, const std::string& path) {
  try {
    const auto content = disk.content(path);
    return {reinterpret_cast<const char*>(content.data()), content.size()};
  } catch (const store::IoError&) {
    return "(missing)";
  }
}

// All contents of `path` that a cut may leave.
std::set<std::string> outcomes(const SimDisk& disk, const std::string& path) {
  const CutChooser cuts(disk, 5000, 1);
  std::set<std::string> found;
  for (std::size_t i = 0; i < cuts.count(); ++i) found.insert(textOf(disk.imageAfterCut(cuts.choice(i)), path));
  return found;
}

using Set = std::set<std::string>;

class SimDiskTest : public testing::Test {
 protected:
  std::unique_ptr<store::File> open(const std::string& name) { return files_->open(name, OpenMode::create); }
  std::unique_ptr<store::File> durable(const std::string& name, std::string_view content) {
    auto file = open(name);
    file->write(0, bytes(content));
    file->sync();
    files_->syncFolder("");
    return file;
  }
  SimDisk disk_;
  std::unique_ptr<FileSystem> files_ = disk_.process();
};

TEST_F(SimDiskTest, OnlySyncedBytesUnderASyncedNameAreSure) {
  const auto file = open("A.DAT");
  file->write(0, bytes("old"));
  EXPECT_EQ(outcomes(disk_, "A.DAT"), (Set{"(missing)", "", "old"}));
  file->sync();
  EXPECT_EQ(outcomes(disk_, "A.DAT"), (Set{"(missing)", "old"}));
  files_->syncFolder("");
  EXPECT_EQ(outcomes(disk_, "A.DAT"), (Set{"old"}));
  file->write(0, bytes("new"));
  file->write(3, bytes("!"));
  file->truncate(6);
  const std::string zeros(2, '\0');
  EXPECT_EQ(outcomes(disk_, "A.DAT"), (Set{"old", "new", "old!", "new!", "old" + zeros + '\0', "new" + zeros + '\0',
                                           "old!" + zeros, "new!" + zeros}));
  file->sync();
  EXPECT_EQ(disk_.pendingCount(), 0u);
  EXPECT_EQ(outcomes(disk_, "A.DAT"), (Set{"new!" + zeros}));
}

TEST_F(SimDiskTest, WritesTearAtSectorsOnly) {
  const auto file = durable("A.DAT", std::string(2048, 'o'));
  file->write(500, bytes(std::string(1100, 'n')));  // touches four sectors
  const CutChooser cuts(disk_, 3, 1);               // too few for all: chances
  EXPECT_FALSE(cuts.exhaustive());
  Set seen;
  for (std::uint64_t seed = 0; seed < 400; ++seed) {
    const std::string image = textOf(disk_.imageAfterCut({{Fate::scattered}, seed}), "A.DAT");
    ASSERT_EQ(image.size(), 2048u);
    for (std::size_t i = 0; i < image.size(); ++i) {
      const std::size_t sector = i / 512 * 512;
      const bool covered = i >= 500 && i < 1600;
      ASSERT_EQ(image[i], covered ? image[std::max<std::size_t>(sector, 500)] : 'o') << i;
    }
    seen.insert(image);
  }
  EXPECT_EQ(seen.size(), 16u);
  EXPECT_EQ(outcomes(disk_, "A.DAT").size(), 4u);  // kept, lost, and the two halves
}

TEST_F(SimDiskTest, RenameNeedsItsFolderSynced) {
  durable("A.DAT", "old");
  const auto fresh = open("A.TMP");
  fresh->write(0, bytes("new"));
  files_->rename("A.TMP", "A.DAT");
  EXPECT_EQ(outcomes(disk_, "A.DAT"), (Set{"old", "new", ""}));  // renamed before its bytes were safe
  fresh->sync();
  EXPECT_EQ(outcomes(disk_, "A.DAT"), (Set{"old", "new"}));
  files_->syncFolder("");
  EXPECT_EQ(outcomes(disk_, "A.DAT"), (Set{"new"}));
  EXPECT_EQ(outcomes(disk_, "A.TMP"), (Set{"(missing)"}));
  files_->remove("A.DAT");
  EXPECT_EQ(outcomes(disk_, "A.DAT"), (Set{"new", "(missing)"}));
}

TEST_F(SimDiskTest, FailedSyncIsNotMendedByTheNext) {
  const auto file = durable("A.DAT", "old");
  file->write(0, bytes("new"));
  disk_.plan(Fault{Fault::Kind::ioFailed, disk_.events() + 1});
  EXPECT_THROW(file->sync(), store::IoError);
  EXPECT_EQ(disk_.faultsRaised(), 1);
  EXPECT_EQ(textOf(disk_, "A.DAT"), "new");
  file->sync();
  EXPECT_EQ(outcomes(disk_, "A.DAT"), (Set{"old", "new"}));
  file->write(1, bytes("E"));  // newer than the doubtful write: must win whichever way that went
  file->sync();
  EXPECT_EQ(outcomes(disk_, "A.DAT"), (Set{"oEd", "nEw"}));
  file->write(0, bytes("new"));  // the whole of it once more
  file->sync();
  EXPECT_EQ(outcomes(disk_, "A.DAT"), (Set{"new"}));
  EXPECT_EQ(disk_.pendingCount(), 0u);
}

// Random histories: with nothing lost a cut shows what the processes saw, failed syncs or not; with everything lost,
// what the last sync saw, as long as none failed.
TEST(SimDiskHistories, AgreeWithWhatWasSeenAndSynced) {
  for (std::uint64_t seed = 1; seed <= 60; ++seed) {
    SeededRandom random(seed);
    const bool failing = seed % 2 == 0;
    SimDisk disk;
    const auto files = disk.process();
    const auto file = files->open("A.DAT", OpenMode::create);
    files->syncFolder("");
    std::string synced;
    for (int step = 0; step < 120; ++step) {
      const std::uint64_t offset = random.below(3000);
      switch (random.below(8)) {
        case 0:
          file->truncate(offset);
          break;
        case 1:
          file->reserve(offset);
          break;
        case 2:
          if (failing && random.oneIn(2)) {
            disk.plan(Fault{Fault::Kind::ioFailed, disk.events() + 1});
            EXPECT_THROW(file->sync(), store::IoError);
          } else {
            file->sync();
            synced = textOf(disk, "A.DAT");
          }
          break;
        default:
          file->write(offset, bytes(std::string(random.below(1500), static_cast<char>('a' + random.below(26)))));
      }
      ASSERT_EQ(textOf(disk.settled(), "A.DAT"), textOf(disk, "A.DAT")) << "seed " << seed << " step " << step;
      if (failing) continue;
      const CutChoice nothing{std::vector(disk.pendingCount(), Fate::lost), 0};
      ASSERT_EQ(textOf(disk.imageAfterCut(nothing), "A.DAT"), synced) << "seed " << seed << " step " << step;
    }
  }
}

TEST_F(SimDiskTest, KilledProcessLeavesItsWritesAndFreesItsLocks) {
  const int victim = disk_.lastProcess();
  const auto other = disk_.process();
  auto mine = open("A.DAT");
  const auto theirs = other->open("A.DAT", OpenMode::existing);
  mine->write(0, bytes("seen"));
  ASSERT_TRUE(mine->lock(7, 1, LockMode::exclusive));
  ASSERT_FALSE(theirs->lock(7, 1, LockMode::shared));
  disk_.killProcess(victim);
  EXPECT_TRUE(theirs->lock(7, 1, LockMode::exclusive));
  mine->unlock(7, 1);
  EXPECT_THROW(mine->size(), ProcessKilled);
  EXPECT_THROW(mine->lock(7, 1, LockMode::shared), ProcessKilled);
  EXPECT_THROW(files_->exists("A.DAT"), ProcessKilled);
  mine.reset();
  EXPECT_TRUE(disk_.process()->open("A.DAT", OpenMode::existing)->lockedByOther(7, 1, LockMode::shared));
  EXPECT_EQ(textOf(disk_, "A.DAT"), "seen");
}

TEST_F(SimDiskTest, ImagesAreDurableAndApart) {
  const auto file = durable("A.DAT", "old");
  file->write(0, bytes("new"));
  const SimDisk settled = disk_.settled();
  file->write(0, bytes("xxx"));
  SimDisk image = disk_.imageAfterCut({{Fate::kept, Fate::lost}, 0});
  image.process()->open("A.DAT", OpenMode::existing)->write(0, bytes("img"));
  EXPECT_EQ(textOf(settled, "A.DAT"), "new");
  EXPECT_EQ(outcomes(image, "A.DAT"), (Set{"new", "img"}));
  EXPECT_EQ(textOf(disk_, "A.DAT"), "xxx");
}

TEST(CutChooserTest, ChancesReachEveryFateOfManyOperations) {
  SimDisk disk;
  const auto files = disk.process();
  const auto file = files->open("A.DAT", OpenMode::create);
  for (std::uint64_t i = 0; i < 40; ++i) file->write(i * 1024, bytes(std::string(1024, 'x')));
  const CutChooser cuts(disk, 300, 7);
  ASSERT_FALSE(cuts.exhaustive());
  std::vector<std::set<Fate>> seen(disk.pendingCount());
  for (std::size_t i = 0; i < cuts.count(); ++i) {
    const CutChoice choice = cuts.choice(i);
    ASSERT_EQ(choice.fates, cuts.choice(i).fates);
    for (std::size_t j = 0; j < seen.size(); ++j) seen[j].insert(choice.fates.at(j));
  }
  EXPECT_EQ(seen[0].size(), 2u);  // the name: there or not
  for (std::size_t j = 1; j < seen.size(); ++j) EXPECT_EQ(seen[j].size(), 5u);
}

}  // namespace
}  // namespace quillon::sim
