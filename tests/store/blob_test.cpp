// Contents of memo and blob fields against a map of what was put, with the check accounting for every block.
// QUILLON_SEED and QUILLON_TRIALS repeat or lengthen a run.
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "store/table/BlobCheck.h"
#include "store/table/BlobStore.h"
#include "support/CodeOf.h"
#include "support/LonePageFile.h"

namespace quillon::store {
namespace {

using Random = std::mt19937_64;
using sim::codeOf;
using sim::fromEnvironment;

std::size_t below(Random& random, std::size_t bound) { return random() % bound; }

std::string someContent(Random& random) {
  constexpr std::size_t kSizes[] = {0, 1, 40, 503, 504, 505, 1008, 3528, 3529, 20000, 150000};
  const std::size_t size = below(random, 3) ? below(random, 1200) : kSizes[below(random, std::size(kSizes))];
  std::string content(size, '\0');
  for (char& letter : content) letter = static_cast<char>(random());
  return content;
}

struct Stored {
  BlobRef ref;
  std::string content;
};

class Attic : public sim::LonePageFile {
 public:
  using LonePageFile::LonePageFile;
  BlobRef put(const std::string& content) { return store.put(std::as_bytes(std::span(content))); }
  void commit() {
    LonePageFile::commit();
    savedBlobs_ = blobs;
  }
  void undo() {
    LonePageFile::undo();
    blobs = savedBlobs_;
  }
  std::vector<std::string> faults(const std::vector<Stored>& held) {
    std::vector<std::string> all;
    BlobCheck check(file, blobs, space.pages, [&](const std::string& fault) { all.push_back(fault); });
    for (const Stored& stored : held) check.content(stored.ref);
    check.finish();
    return all;
  }
  void expectHolds(const std::vector<Stored>& held) {
    for (const Stored& stored : held) EXPECT_TRUE(store.get(stored.ref) == stored.content);
    EXPECT_EQ(faults(held), std::vector<std::string>{});
  }

  BlobSpace blobs;
  BlobStore store{file, blobs};

 private:
  BlobSpace savedBlobs_;
};

TEST(BlobStore, KeepsWhatWasPutThroughDropsCommitsAndUndo) {
  const std::uint64_t seed = fromEnvironment("QUILLON_SEED", 5), trials = fromEnvironment("QUILLON_TRIALS", 6);
  for (std::uint64_t trial = 0; trial < trials && !HasFailure(); ++trial) {
    SCOPED_TRACE("repeat with QUILLON_SEED=" + std::to_string(seed + trial) + " QUILLON_TRIALS=1");
    Random random(seed + trial);
    Attic attic(below(random, 2) ? 16 : 10000);
    std::vector<Stored> held, committed;
    for (int stretch = 0; stretch < 12; ++stretch) {
      for (int i = 0; i < 40; ++i) {
        if (held.empty() || below(random, 100) < (stretch % 4 == 3 ? 25u : 60u)) {
          std::string content = someContent(random);
          const BlobRef ref = attic.put(content);
          EXPECT_EQ(ref == BlobRef{}, content.empty());
          held.push_back({ref, std::move(content)});
        } else {
          std::swap(held[below(random, held.size())], held.back());
          attic.store.drop(held.back().ref);
          held.pop_back();
        }
      }
      attic.expectHolds(held);
      if (const std::size_t dice = below(random, 3); dice == 0) {
        attic.commit();
        committed = held;
      } else if (dice == 1) {
        attic.undo();
        held = committed;
        attic.expectHolds(held);
      }
    }
    for (const Stored& stored : held) attic.store.drop(stored.ref);
    attic.expectHolds({});
    EXPECT_EQ(attic.blobs.freeBlocks, (attic.space.pages - 1 - attic.space.freePages) * 7);
    const std::uint32_t pages = attic.space.pages;
    const std::string all(std::size_t{attic.blobs.freeBlocks} * kBlobData, 'a');
    attic.expectHolds({{attic.put(all), all}});
    EXPECT_EQ(attic.space.pages, pages) << "free blocks are used before the file grows";
  }
}

TEST(BlobStore, ARefusedContentLeavesNothingBehind) {
  Random random(1);
  Attic attic;
  std::vector<Stored> held{{attic.put("short"), "short"}};
  for (int refusals = 0; refusals < 20;) {
    attic.diskLimit = (attic.space.pages + below(random, 6)) * kPageSize;
    const std::string content(below(random, 60000), 'c');
    const Code code = codeOf([&] { held.push_back({attic.put(content), content}); });
    if (code != Code{}) {
      EXPECT_EQ(code, Code::noSpace);
      ++refusals;
    }
    attic.expectHolds(held);
  }
  const std::byte any{};
  EXPECT_EQ(codeOf([&] { attic.store.put({&any, kMaxBlob + 1}); }), Code::limitReached);
  attic.expectHolds(held);
}

class BlobDamage : public ::testing::Test {
 protected:
  BlobDamage() {
    for (const std::size_t size : {3000, 10, 504, 2000, 9000}) {
      const std::string content(size, static_cast<char>('a' + held.size()));
      held.push_back({attic.put(content), content});
    }
    attic.store.drop(held[2].ref);
    held.erase(held.begin() + 2);
    attic.commit();
  }
  std::byte* block(std::uint32_t id) { return attic.file.write(blobPage(id)).writable() + blobOffset(id); }

  Attic attic;
  std::vector<Stored> held;
};

TEST_F(BlobDamage, AChangedChainIsFoundByReaderAndCheck) {
  const std::uint32_t first = held[0].ref.firstBlock, other = held[2].ref.firstBlock;
  const std::function<void()> changes[] = {
      [&] { storeAt(block(first), 0, first); },                             // comes back to itself
      [&] { storeAt(block(first), 0, other); },                             // goes on in another content
      [&] { storeAt(block(first), 0, attic.blobs.freeHead); },              // or in a free block
      [&] { storeAt<std::uint32_t>(block(first), 0, 0); },                  // ends early
      [&] { storeAt<std::uint32_t>(block(first), 0, first - first % 8); },  // in the page's own block
      [&] { storeAt<std::uint32_t>(block(first), 0, 80001); },              // behind the file
      [&] { storeAt<std::uint32_t>(block(first), 0, 3); },                  // in a page that is none of contents
      [&] { storeAt<std::uint16_t>(block(first), 4, 60000); },
      [&] { block(first)[100] = std::byte{'!'}; },
      [&] { attic.file.write(blobPage(first)).writable()[kBlobTaken] = std::byte{0}; },
  };
  for (const auto& change : changes) {
    SCOPED_TRACE(&change - changes);
    change();
    EXPECT_EQ(codeOf([&] { attic.store.get(held[0].ref); }), Code::damaged);
    EXPECT_FALSE(attic.faults(held).empty());
    attic.undo();
    attic.expectHolds(held);
  }
}

TEST_F(BlobDamage, AChainThatWouldFreeABlockTwiceIsNotDropped) {
  const std::uint32_t first = held[0].ref.firstBlock;
  for (std::uint32_t blocks = 1; blocks < 5; ++blocks) {
    const BlobRef shorter{first, blocks * static_cast<std::uint32_t>(kBlobData), held[0].ref.hash};
    EXPECT_EQ(codeOf([&] { attic.store.drop(shorter); }), Code::damaged);
    storeAt(block(first + blocks), 0, first);
    EXPECT_EQ(codeOf([&] { attic.store.drop(shorter); }), Code::damaged);
    EXPECT_EQ(codeOf([&] { attic.store.drop(held[0].ref); }), Code::damaged);
    attic.undo();
  }
  attic.store.drop(held[0].ref);
  EXPECT_EQ(codeOf([&] { attic.store.drop(held[0].ref); }), Code::damaged) << "dropped twice";
  held.erase(held.begin());
  attic.expectHolds(held);
}

TEST_F(BlobDamage, TheCheckTellsLostAndForeignBlocks) {
  const std::vector<Stored> fewer(held.begin() + 1, held.end());
  EXPECT_EQ(attic.faults(fewer).size(), blobBlocks(held[0].ref.length)) << "each is lost";
  std::vector<Stored> twice = held;
  twice.push_back(held[1]);
  EXPECT_EQ(attic.faults(twice).size(), 1u);
  ++attic.blobs.freeBlocks;
  EXPECT_EQ(attic.faults(held).size(), 1u);
  attic.undo();
  storeAt(block(attic.blobs.freeHead), 0, held[1].ref.firstBlock);
  EXPECT_FALSE(attic.faults(held).empty());
  attic.blobs.freeHead = held[1].ref.firstBlock;
  EXPECT_EQ(codeOf([&] { attic.put("new"); }), Code::damaged) << "a taken block is not given out";
}

}  // namespace
}  // namespace quillon::store
