// The tree against a std::map: random histories over several shapes of keys, with commits, undone overlays and a cache
// far smaller than the tree. After every stretch an independent check walks the whole tree and accounts for each page.
// QUILLON_SEED and QUILLON_TRIALS repeat or lengthen a run.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

#include "store/tree/Tree.h"
#include "store/tree/TreeCheck.h"
#include "support/Grove.h"
#include "support/LonePageFile.h"

namespace quillon::store {
namespace {

// Bytes of sealed pages are changed and every operation tried. Each ends, and either raises `damaged` or gives some
// answer; the check must tell the faults that are structural.
class TreeDamage : public ::testing::Test {
 protected:
  void plant(int rows) {
    for (int i = 0; i < rows; ++i) {
      const std::string key = randomBytes(random, 1 + below(random, 60)),
                        payload = randomBytes(random, below(random, 90));
      if (grove.tree.insert(key, payload)) model[key] = payload;
    }
    grove.commit();
    pages = grove.space.pages;
  }
  template <typename Change>
  std::vector<std::string> faultsAfter(PageNo number, Change change) {
    change(grove.file.write(number).writable());
    std::vector<std::string> faults;
    checkTree(grove.file, grove.root, {{}, {}, [&](const std::string& fault) { faults.push_back(fault); }});
    grove.undo();
    return faults;
  }
  PageNo pageOfLevel(unsigned level) {
    for (;;) {
      const auto number = static_cast<PageNo>(1 + below(random, pages - 1));
      const PageRef page = grove.file.read(number);
      if (pageLevel(page.data()) == level && pageCount(page.data()) > 3) return number;
    }
  }

  Random random{11};
  Grove grove;
  Model model;
  std::uint32_t pages = 0;
};

TEST_F(TreeDamage, TheCheckNamesEachKind) {
  plant(20000);
  for (int trial = 0; trial < 40; ++trial) {
    const unsigned level = trial % 2;
    const PageNo number = pageOfLevel(level);
    const auto namedIn = [&](const std::vector<std::string>& faults) {
      return !faults.empty() && faults[0].find("Page " + std::to_string(number) + " ") == 0;
    };
    const auto swapSlots = [](std::byte* page) {
      const auto first = loadAt<std::uint16_t>(page, kTreeSlots + 2);
      storeAt(page, kTreeSlots + 2, loadAt<std::uint16_t>(page, kTreeSlots + 4));
      storeAt(page, kTreeSlots + 4, first);
    };
    EXPECT_FALSE(faultsAfter(number, swapSlots).empty());
    EXPECT_TRUE(namedIn(faultsAfter(number, [](std::byte* page) { storeAt<std::uint16_t>(page, kTreeSlots, 4095); })));
    EXPECT_TRUE(namedIn(faultsAfter(number, [](std::byte* page) { storeAt<std::uint16_t>(page, kTreeSlots, 8); })));
    EXPECT_TRUE(namedIn(faultsAfter(number, [](std::byte* page) { page[21] = std::byte{7}; })));
    EXPECT_TRUE(namedIn(faultsAfter(number, [](std::byte* page) { page[20] = std::byte{8}; })));
    EXPECT_TRUE(namedIn(faultsAfter(number, [](std::byte* page) { storeAt<std::uint16_t>(page, 22, 0); })));
    EXPECT_TRUE(namedIn(faultsAfter(number, [](std::byte* page) { storeAt<std::uint16_t>(page, 26, 1); })) ||
                loadAt<std::uint16_t>(grove.file.read(number).data(), 26) == 1);
    EXPECT_TRUE(namedIn(faultsAfter(
        number, [](std::byte* page) { storeAt(page, kTreeSlots, loadAt<std::uint16_t>(page, kTreeSlots + 2)); })));
    if (level == 0) continue;
    const auto slot = loadAt<std::uint16_t>(grove.file.read(number).data(), kTreeSlots + 2);
    const auto next = loadAt<std::uint16_t>(grove.file.read(number).data(), kTreeSlots + 4);
    EXPECT_FALSE(faultsAfter(number, [&](std::byte* page) {
                   storeAt(page, slot + 4u, loadAt<std::uint32_t>(page, slot + 4u) + 1);
                 }).empty());
    EXPECT_FALSE(
        faultsAfter(number, [&](std::byte* page) { storeAt(page, slot, loadAt<PageNo>(page, next)); }).empty());
    EXPECT_FALSE(faultsAfter(number, [&](std::byte* page) { storeAt<PageNo>(page, slot, 999999); }).empty());
    EXPECT_FALSE(faultsAfter(number, [&](std::byte* page) { storeAt<PageNo>(page, slot, number); }).empty());
  }
  grove.expectHolds(model);
}

TEST_F(TreeDamage, NonsenseNeverLeadsAstray) {
  plant(3000);
  const std::uint64_t trials = fromEnvironment("QUILLON_TRIALS", 4) * 500;
  for (std::uint64_t trial = 0; trial < trials; ++trial) {
    const auto number = below(random, 3) ? static_cast<PageNo>(1 + below(random, pages - 1)) : grove.root;
    {
      std::byte* page = grove.file.write(number).writable();
      for (std::uint64_t i = 1 + below(random, 4); i > 0; --i) {
        const std::size_t at = below(random, 2) ? 20 + below(random, 60) : 20 + below(random, kPageSize - 20);
        page[at] =
            static_cast<std::byte>(below(random, 2) ? below(random, 256) : std::to_integer<unsigned>(page[at]) ^ 1u);
      }
    }
    const auto attempt = [](auto&& operation) {
      try {
        operation();
      } catch (const StoreError& error) {
        EXPECT_EQ(error.code(), Code::damaged) << error.what();
      }
    };
    const std::string key = randomBytes(random, 1 + below(random, 60));
    const std::string present = std::next(model.begin(), static_cast<long>(below(random, model.size())))->first;
    attempt([&] { checkTree(grove.file, grove.root, {}); });
    attempt([&] { grove.tree.rank(key); });
    attempt([&] {
      TreeWalk walk(grove.tree);
      std::size_t bytes = 0;
      for (bool more = walk.seekRank(below(random, model.size())); more; more = walk.next()) bytes += walk.key().size();
      for (bool more = walk.seekBefore(key); more; more = walk.prior()) bytes += walk.payload().size();
      EXPECT_LT(bytes, std::size_t{pages} * kPageSize * 100);
    });
    for (int i = 0; i < 4; ++i) {
      attempt([&] { grove.tree.insert(randomBytes(random, 1 + below(random, 900)), randomBytes(random, 200)); });
      attempt([&] { grove.tree.erase(present); });
      attempt([&] { grove.tree.replace(std::next(model.begin(), i)->first, randomBytes(random, 300)); });
    }
    attempt([&] { grove.tree.clear(); });
    grove.undo();
  }
  grove.expectHolds(model);
}

}  // namespace
}  // namespace quillon::store
