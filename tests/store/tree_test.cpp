// The tree against a std::map: random histories over several shapes of keys, with commits, undone overlays and a cache
// far smaller than the tree. After every stretch an independent check walks the whole tree and accounts for each page.
// QUILLON_SEED and QUILLON_TRIALS repeat or lengthen a run.
#include "store/tree/Tree.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

#include "store/tree/TreeCheck.h"
#include "support/CodeOf.h"
#include "support/Grove.h"
#include "support/LonePageFile.h"

namespace quillon::store {
namespace {

using sim::codeOf;

// One shape of keys and payloads.
struct Shape {
  const char* name;
  std::string (*key)(Random&, std::uint64_t step);
  std::size_t maxPayload;
};

std::string groupKey(Random& random, std::uint64_t step) {
  return "\x01group" + std::to_string(below(random, 20)) + rowId(step);
}

constexpr Shape kShapes[] = {
    {"scattered row ids", [](Random& random, std::uint64_t) { return rowId(below(random, 6000)); }, 300},
    {"ascending row ids", [](Random&, std::uint64_t step) { return rowId(step); }, 150},
    {"descending row ids", [](Random&, std::uint64_t step) { return rowId(1000000 - step); }, 150},
    {"row ids beside longer and shorter keys",
     [](Random& random, std::uint64_t) { return randomBytes(random, 3 + below(random, 8), 3); }, 40},
    {"groups that grow at their end", groupKey, 0},
    {"short keys", [](Random& random, std::uint64_t) { return randomBytes(random, 1 + below(random, 3), 40); }, 10},
    {"long keys, few letters",
     [](Random& random, std::uint64_t) { return randomBytes(random, 1 + below(random, kMaxTreeKey), 2); }, 400},
    {"long common beginnings",
     [](Random& random, std::uint64_t) {
       return std::string(900 + below(random, 3), 'a') + randomBytes(random, 1 + below(random, 100), 3);
     },
     310},
    {"large payloads", [](Random& random, std::uint64_t) { return rowId(below(random, 100000)); }, 1315},
};

class Simulation {
 public:
  Simulation(const Shape& shape, std::uint64_t seed)
      : shape_(shape), random_(seed), grove_(below(random_, 2) ? 24 : 100000) {}

  void run() {
    for (const int insertsOf100 : {90, 55, 20, 0}) {
      for (int stretch = 0; stretch < 6 && !::testing::Test::HasFailure(); ++stretch) {
        for (int i = 0; i < 250; ++i) step(insertsOf100);
        lookAround();
        grove_.expectHolds(model_);
        finishStretch();
      }
    }
    while (!model_.empty()) erase(somewhere()->first);
    grove_.expectHolds(model_);
  }

 private:
  void step(int insertsOf100) {
    const int dice = static_cast<int>(below(random_, 100));
    if (dice < insertsOf100) {
      const std::string key = shape_.key(random_, ++steps_), payload = somePayload(key);
      EXPECT_EQ(grove_.tree.insert(key, payload), model_.emplace(key, payload).second);
    } else if (dice % 3 == 0 && !model_.empty()) {
      const auto entry = somewhere();
      entry->second = below(random_, 2) ? somePayload(entry->first) : std::string(entry->second.size(), 'r');
      EXPECT_TRUE(grove_.tree.replace(entry->first, entry->second));
    } else if (!model_.empty()) {
      erase(somewhere()->first);
    }
  }
  void erase(std::string key) {
    EXPECT_TRUE(grove_.tree.erase(key));
    EXPECT_FALSE(grove_.tree.erase(key));
    EXPECT_FALSE(grove_.tree.replace(key, "x"));
    model_.erase(key);
  }
  std::string somePayload(const std::string& key) {
    const std::size_t most = std::min(shape_.maxPayload, kMaxTreeEntry - key.size());
    return randomBytes(random_, below(random_, 4) ? below(random_, most / 4 + 1) : below(random_, most + 1));
  }
  Model::iterator somewhere() {
    const auto found = model_.lower_bound(shape_.key(random_, below(random_, steps_ + 1)));
    return found == model_.end() ? model_.begin() : found;
  }
  void expectAt(TreeWalk& walk, Model::iterator place) {
    ASSERT_EQ(walk.valid(), place != model_.end());
    if (!walk.valid()) return;
    EXPECT_EQ(walk.key(), place->first);
    EXPECT_EQ(walk.payload(), place->second);
  }
  // From a key that may or may not be there: seeks, ranks, and some moves to and fro.
  void lookAround() {
    for (int i = 0; i < 20; ++i) {
      std::string key = shape_.key(random_, below(random_, steps_ + 2));
      if (below(random_, 2) && !model_.empty()) key = somewhere()->first;
      auto place = model_.lower_bound(key);
      const auto rank = static_cast<std::uint64_t>(std::distance(model_.begin(), place));
      EXPECT_EQ(grove_.tree.rank(key), rank);
      TreeWalk walk(grove_.tree);
      walk.seekRank(rank);
      expectAt(walk, place);
      walk.seekBefore(key);
      expectAt(walk, place == model_.begin() ? model_.end() : std::prev(place));
      walk.seek(key);
      expectAt(walk, place);
      for (int move = 0; move < 300 && walk.valid(); ++move) {
        const bool on = below(random_, 300) < 150u + (i % 2 ? 100 : 0);
        if (on) {
          EXPECT_EQ(walk.next(), ++place != model_.end());
        } else {
          EXPECT_EQ(walk.prior(), place != model_.begin());
          place = place == model_.begin() ? model_.end() : std::prev(place);
        }
        expectAt(walk, place);
      }
    }
    TreeWalk walk(grove_.tree);
    std::size_t met = 0;
    for (bool more = walk.last(); more; more = walk.prior()) ++met;
    EXPECT_EQ(met, model_.size());
    EXPECT_FALSE(walk.next());
    EXPECT_EQ(walk.first(), !model_.empty());
    EXPECT_TRUE(!walk.valid() || walk.key() == model_.begin()->first);
  }
  void finishStretch() {
    switch (below(random_, 3)) {
      case 0:
        grove_.commit();
        committed_ = model_;
        break;
      case 1:
        grove_.undo();
        model_ = committed_;
        grove_.expectHolds(model_);
        break;
      default:
        break;  // the overlay grows on
    }
  }

  const Shape& shape_;
  Random random_;
  Grove grove_;
  Model model_, committed_;
  std::uint64_t steps_ = 0;
};

TEST(Tree, RandomHistoriesMatchAMap) {
  const std::uint64_t seed = fromEnvironment("QUILLON_SEED", 20240601), trials = fromEnvironment("QUILLON_TRIALS", 4);
  for (std::uint64_t trial = 0; trial < trials; ++trial) {
    for (const Shape& shape : kShapes) {
      SCOPED_TRACE(std::string(shape.name) + "; repeat with QUILLON_SEED=" + std::to_string(seed + trial) +
                   " QUILLON_TRIALS=1");
      Simulation(shape, seed + trial).run();
      if (HasFailure()) return;
    }
  }
}

TEST(Tree, OrderedInsertsFillTheirPages) {
  constexpr std::uint64_t kRows = 20000;
  Random random(1);
  const auto fillOf = [&](std::size_t payload, auto&& keyOf) {
    Grove grove;
    Model model;
    for (std::uint64_t i = 0; i < kRows; ++i) {
      const std::string key = keyOf(i);
      model[key] = std::string(payload, 'p');
      grove.tree.insert(key, model[key]);
    }
    grove.expectHolds(model);
    return grove.fill();
  };
  EXPECT_GT(fillOf(100, [](std::uint64_t i) { return rowId(i); }), 0.93);
  EXPECT_GT(fillOf(0, [](std::uint64_t i) { return rowId(i); }), 0.93);
  EXPECT_GT(fillOf(1000, [](std::uint64_t i) { return rowId(i); }), 0.93);
  EXPECT_GT(fillOf(100, [](std::uint64_t i) { return rowId(kRows - i); }), 0.93);
  EXPECT_GT(fillOf(0, [&](std::uint64_t i) { return "group" + std::to_string(below(random, 10)) + rowId(i); }), 0.85);
  EXPECT_GT(fillOf(0, [&](std::uint64_t i) { return "group" + std::to_string(below(random, 10)) + rowId(kRows - i); }),
            0.85);
  EXPECT_GT(fillOf(0, [&](std::uint64_t) { return randomBytes(random, 20); }), 0.6);
}

TEST(Tree, AnEntryBeyondTheBoundsIsRefused) {
  Grove grove;
  Model model;
  const std::string longest(kMaxTreeKey, 'k');
  EXPECT_TRUE(grove.tree.insert(longest, std::string(kMaxTreeEntry - kMaxTreeKey, 'p')));
  model[longest] = std::string(kMaxTreeEntry - kMaxTreeKey, 'p');
  EXPECT_EQ(codeOf([&] { grove.tree.insert(longest + "k", ""); }), Code::limitReached);
  EXPECT_EQ(codeOf([&] { grove.tree.insert("a", std::string(kMaxTreeEntry, 'p')); }), Code::limitReached);
  EXPECT_EQ(codeOf([&] { grove.tree.replace(longest, std::string(kMaxTreeEntry - kMaxTreeKey + 1, 'p')); }),
            Code::limitReached);
  grove.expectHolds(model);
}

// The counts are forged: entries by the thousand millions are none for a test.
TEST(Tree, AnEntryThatCouldNotBeCountedIsRefused) {
  for (const std::uint32_t rows : {~0u, 1u << 31}) {
    Grove grove;
    Model model;
    const auto rootIsInner = [&] { return pageLevel(grove.file.read(grove.root).data()) > 0; };
    const auto forge = [&](std::uint32_t count) {
      const PageRef root = grove.file.write(grove.root);
      for (unsigned i = 0; i < pageCount(root.data()); ++i)
        TreePageEditor(root.writable(), grove.file).setRows(i, count);
    };
    Code refused{};
    for (std::uint64_t i = 0; refused == Code{} && i < 100; ++i) {
      const std::string key = std::string(600, 'k') + rowId(i);
      if (i > 0 && rootIsInner()) forge(rows);
      refused = codeOf([&] { grove.tree.insert(key, ""); });
      if (refused == Code{}) model[key] = "";
    }
    EXPECT_EQ(refused, Code::limitReached);
    std::size_t entries = 0;
    TreeWalk walk(grove.tree);
    for (bool more = walk.seek(""); more; more = walk.next()) entries += model.count(std::string(walk.key()));
    EXPECT_EQ(entries, model.size());
  }
}

TEST(Tree, AFullDiskLeavesTheTreeAsItWas) {
  Random random(7);
  for (int trial = 0; trial < 12; ++trial) {
    Grove grove;
    Model model;
    const std::size_t keySize = trial % 2 ? 600 : 30;  // long keys: splits that go up several levels
    grove.diskLimit = 0;
    for (int refusals = 0; refusals < 25;) {
      const std::string key = randomBytes(random, keySize, 4), payload = randomBytes(random, below(random, 600));
      try {
        if (grove.tree.insert(key, payload)) model[key] = payload;
        if (refusals > 0 && !model.empty()) {
          const std::string other = model.begin()->first;
          grove.tree.replace(other, payload);
          model[other] = payload;
        }
      } catch (const StoreError& error) {
        ASSERT_EQ(error.code(), Code::noSpace);
        grove.expectHolds(model);
        ++refusals;
        // Room for the next step in which the file grows, and no more.
        grove.diskLimit = (grove.space.pages + grove.space.pages / 8 + 2 + below(random, 8)) * kPageSize;
      }
    }
    grove.expectHolds(model);
  }
}

TEST(Tree, ClearGivesEveryPageBack) {
  Grove grove;
  Random random(3);
  for (int i = 0; i < 3000; ++i) grove.tree.insert(randomBytes(random, 1 + below(random, 200)), "payload");
  grove.tree.clear();
  grove.expectHolds({});
  EXPECT_TRUE(grove.tree.insert("again", ""));
  grove.expectHolds({{"again", ""}});
}

}  // namespace
}  // namespace quillon::store
