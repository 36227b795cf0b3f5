#include "store/tree/Tree.h"

namespace quillon::store {
namespace {
constexpr std::size_t kLine = 64;  // bytes of the processor's cache lines
}

TreePage TreeWalk::enter(PageNo number, unsigned level) {
  const TreePage page(path_.push(tree_.file_.read(number)).data, tree_.file_);
  page.requireSound(level);
  return page;
}

void TreeWalk::approach(std::string_view key) {
  path_.clear();
  if (tree_.root_ == 0) return;
  PageNo number = tree_.root_;
  for (unsigned level = TreePage::kAnyLevel; level != 0;) {
    TreePath::Step& step = path_.push(tree_.file_.read(number));
    const TreePage page(step.data, tree_.file_);
    page.requireSound(level);
    if (page.leaf()) return;
    step.index = page.childFor(key);
    level = page.level() - 1;
    number = page.child(step.index);
  }
  const std::byte* leaf = path_.push(tree_.file_.read(number)).data;
  // The header with the first slots, and the cells that were put in first.
  for (const std::size_t at : {std::size_t{0}, kLine, 2 * kLine, 3 * kLine, kPageSize - 2 * kLine, kPageSize - kLine})
    __builtin_prefetch(leaf + at);
}

bool TreeWalk::arrive(std::string_view key) {
  if (!valid()) return false;
  TreePath::Step& leaf = path_.back();
  const TreePage page(leaf.data, tree_.file_);
  page.requireSound(0);
  leaf.index = page.lowerBound(key);
  return leaf.index < page.count() || nextLeaf();
}

bool TreeWalk::seekBefore(std::string_view key) {
  path_.clear();
  if (tree_.root_ == 0) return false;
  TreePage page = enter(tree_.root_, TreePage::kAnyLevel);
  while (!page.leaf()) {
    path_.back().index = page.childFor(key);
    page = enter(page.child(path_.back().index), page.level() - 1);
  }
  path_.back().index = page.lowerBound(key);
  return path_.back().index-- > 0 || priorLeaf();
}

bool TreeWalk::seekRank(std::uint64_t rank) {
  path_.clear();
  if (tree_.root_ == 0) return false;
  TreePage page = enter(tree_.root_, TreePage::kAnyLevel);
  if (rank >= page.totalRows()) {
    path_.clear();
    return false;
  }
  while (!page.leaf()) {
    unsigned index = 0;
    for (; rank >= page.rows(index); ++index) {
      rank -= page.rows(index);
      if (index + 1 == page.count()) page.raiseDamaged();
    }
    path_.back().index = index;
    page = enter(page.child(index), page.level() - 1);
  }
  if (rank >= page.count()) page.raiseDamaged();
  path_.back().index = static_cast<unsigned>(rank);
  return true;
}

bool TreeWalk::last() {
  path_.clear();
  if (tree_.root_ == 0) return false;
  toLast(tree_.root_, TreePage::kAnyLevel);
  return true;
}

void TreeWalk::toFirst(PageNo number, unsigned level) {
  TreePage page = enter(number, level);
  while (!page.leaf()) page = enter(page.child(0), page.level() - 1);
}

void TreeWalk::toLast(PageNo number, unsigned level) {
  TreePage page = enter(number, level);
  for (;;) {
    const unsigned index = path_.back().index = page.count() - 1;
    if (page.leaf()) return;
    page = enter(page.child(index), page.level() - 1);
  }
}

bool TreeWalk::nextLeaf() {
  for (path_.pop(); path_.depth() > 0; path_.pop()) {
    TreePath::Step& step = path_.back();
    if (++step.index >= pageCount(step.data)) continue;
    const TreePage page(step.data, tree_.file_);
    toFirst(page.child(step.index), page.level() - 1);
    return true;
  }
  return false;
}

bool TreeWalk::priorLeaf() {
  for (path_.pop(); path_.depth() > 0; path_.pop()) {
    TreePath::Step& step = path_.back();
    if (step.index-- == 0) continue;
    const TreePage page(step.data, tree_.file_);
    toLast(page.child(step.index), page.level() - 1);
    return true;
  }
  return false;
}

}  // namespace quillon::store
