#pragma once

// The tree against a std::map: random histories over several shapes of keys, with commits, undone overlays and a cache
// far smaller than the tree. After every stretch an independent check walks the whole tree and accounts for each page.
// QUILLON_SEED and QUILLON_TRIALS repeat or lengthen a run.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

#include "store/tree/Tree.h"
#include "store/tree/TreeCheck.h"
#include "support/LonePageFile.h"

// A tree in a file of its own, and the bytes that its tests put into it.
namespace quillon::store {

using Model = std::map<std::string, std::string>;
using Random = std::mt19937_64;
using sim::fromEnvironment;

inline std::uint64_t below(Random& random, std::uint64_t bound) { return random() % bound; }

inline std::string rowId(std::uint64_t number) {
  std::string key(5, '\0');
  for (std::size_t i = 5; i-- > 0; number >>= 8) key[i] = static_cast<char>(number & 255);
  return key;
}

inline std::string randomBytes(Random& random, std::size_t size, unsigned letters = 256) {
  std::string text(size, '\0');
  for (char& letter : text) letter = static_cast<char>(below(random, letters));
  return text;
}

// A tree in a file of its own.
class Grove : public sim::LonePageFile {
 public:
  using LonePageFile::LonePageFile;
  void commit() {
    LonePageFile::commit();
    savedRoot_ = root;
  }
  void undo() {
    LonePageFile::undo();
    root = savedRoot_;
  }
  // Sound, holding exactly what the model holds, and every page of the file in use once or free.
  void expectHolds(const Model& model) {
    std::size_t pages = 0;
    auto expected = model.begin();
    bool same = true;
    const std::uint64_t entries =
        checkTree(file, root,
                  {[&](PageNo) { ++pages; },
                   [&](std::string_view key, std::string_view payload) {
                     same = same && expected != model.end() && expected->first == key && expected->second == payload;
                     if (same) ++expected;
                   },
                   [](const std::string& fault) { ADD_FAILURE() << fault; }});
    EXPECT_TRUE(same && expected == model.end()) << "the tree's entries are not the model's";
    EXPECT_EQ(entries, model.size());
    EXPECT_EQ(tree.count(), model.size());
    EXPECT_EQ(1 + pages + space.freePages, space.pages) << "pages lost or used twice";
    EXPECT_EQ(root == 0, model.empty());
  }
  // Bytes of entries with their slots and lengths, over the bytes of the tree's pages.
  double fill() {
    std::size_t pages = 0, bytes = 0;
    checkTree(file, root,
              {[&](PageNo) { ++pages; },
               [&](std::string_view key, std::string_view payload) {
                 bytes += TreeCell{key, payload}.size() + 2;
               },
               {}});
    return static_cast<double>(bytes) / static_cast<double>(pages * kPageSize);
  }

  PageNo root = 0;
  Tree tree{file, root};

 private:
  PageNo savedRoot_ = 0;
};

}  // namespace quillon::store
