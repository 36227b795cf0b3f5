#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "store/pages/PageFile.h"
#include "store/tree/TreePath.h"

namespace quillon::store {

inline constexpr std::size_t kMaxTreeKey = 1010;    // bytes
inline constexpr std::size_t kMaxTreeEntry = 1320;  // key and payload together

// A counted B+tree over the pages of one file: variable keys in byte order, each with a payload (empty in an index).
// Each inner entry knows how many entries its subtree has, so that rank and "the k-th" cost a descent.
// Calls are made under the locks that PageFile asks for; a change ends every TreeWalk on the tree.
// What is given to insert and replace must not lie in the tree's own pages.
//
// Keeps: keys strictly ascending; counts exact (up to 2^32 - 1 below one inner entry); every page has at least one
// entry. Pages are joined with a neighbour when they fall below a quarter.
//
// Errors: `limitReached` for a key or an entry beyond the bounds above, and for one entry too many; those of PageFile;
// `damaged` naming the page whose bytes make no sense. A change that raises for want of space or of a readable page has
// changed nothing (clear excepted).
class Tree {
 public:
  // `root` (0: the tree is empty) lives in the table's meta page and is changed when the root moves.
  Tree(PageFile& file, PageNo& root) : file_(file), root_(root) {}
  Tree(const Tree&) = delete;
  Tree& operator=(const Tree&) = delete;

  std::uint64_t count();
  bool insert(std::string_view key, std::string_view payload);   // false, and nothing changed: the key is there
  bool replace(std::string_view key, std::string_view payload);  // false: it is not there
  bool erase(std::string_view key);                              // false: it is not there
  // Entries with a key below `key`.
  std::uint64_t rank(std::string_view key);
  void clear();  // releases every page

 private:
  friend class TreeWalk;
  friend class TreeRewrite;
  // Goes down to the leaf where `key` is or belongs; whether it is there.
  bool descend(TreePath& path, std::string_view key);
  bool put(std::string_view key, std::string_view payload, bool replacing);
  void replaceAt(TreePath& path, const TreeCell& cell);  // where the path stands; it ends when the page is split
  void split(TreePath& path, const TreeCell& cell, bool replacing);
  void shrinkRoot(TreePath& path);
  void addToAncestors(TreePath& path, int change);
  void makeWritable(TreePath& path);
  [[noreturn]] void raiseFull() const;
  void collect(PageNo number, unsigned level, std::vector<PageNo>& pages);

  PageFile& file_;
  PageNo& root_;
};

// Replaces payloads of many keys that mostly come in ascending order: of a leaf's keys only the first needs a descent.
// While one lives nothing else changes the tree.
class TreeRewrite {
 public:
  explicit TreeRewrite(Tree& tree) : tree_(tree) {}
  // The payload that stands at the key; it looks into the page. Nullopt: the key is not there.
  std::optional<std::string_view> find(std::string_view key);
  // At the key last found.
  void replace(std::string_view key, std::string_view payload);

 private:
  Tree& tree_;
  TreePath path_;
};

// A place in a tree, for reading inside one operation. key() and payload() look into the page and live until the walk
// moves or ends.
class TreeWalk {
 public:
  explicit TreeWalk(Tree& tree) : tree_(tree) {}

  bool seek(std::string_view key) {  // first entry at or above `key`
    approach(key);
    return arrive(key);
  }
  // `seek` in two steps. The first ends at the leaf's door: the page is had and asked for from memory but not looked
  // at, so that several walks can wait for their leaves at once.
  void approach(std::string_view key);
  bool arrive(std::string_view key);
  bool seekBefore(std::string_view key);  // last entry below `key`
  bool seekRank(std::uint64_t rank);      // 0 is the first
  bool first() { return seekRank(0); }
  bool last();
  bool next() {
    if (!valid()) return false;
    TreePath::Step& leaf = path_.back();
    return ++leaf.index < pageCount(leaf.data) || nextLeaf();
  }
  bool prior() {
    if (!valid()) return false;
    return path_.back().index-- > 0 || priorLeaf();
  }
  bool valid() const { return path_.depth() > 0; }
  std::string_view key() const { return cell().key; }
  std::string_view payload() const { return cell().payload; }

 private:
  TreeCell cell() const { return TreePage(path_.back().data, tree_.file_).leafCell(path_.back().index); }
  TreePage enter(PageNo number, unsigned level);
  void toFirst(PageNo number, unsigned level);
  void toLast(PageNo number, unsigned level);
  bool nextLeaf();
  bool priorLeaf();

  Tree& tree_;
  TreePath path_;  // empty: nowhere
};

}  // namespace quillon::store
