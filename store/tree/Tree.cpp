#include "store/tree/Tree.h"

#include <algorithm>

#include "store/Errors.h"

namespace quillon::store {

std::uint64_t Tree::count() {
  if (root_ == 0) return 0;
  const PageRef ref = file_.read(root_);
  const TreePage page(ref.data(), file_);
  page.requireSound();
  return page.totalRows();
}

std::uint64_t Tree::rank(std::string_view key) {
  if (root_ == 0) return 0;
  std::uint64_t below = 0;
  PageRef ref = file_.read(root_);
  for (unsigned level = TreePage::kAnyLevel;;) {
    const TreePage page(ref.data(), file_);
    page.requireSound(level);
    if (page.leaf()) return below + page.lowerBound(key);
    const unsigned index = page.childFor(key);
    for (unsigned i = 0; i < index; ++i) below += page.rows(i);
    level = page.level() - 1;
    ref = file_.read(page.child(index));
  }
}

bool Tree::descend(TreePath& path, std::string_view key) {
  PageNo number = root_;
  for (unsigned level = TreePage::kAnyLevel;;) {
    TreePath::Step& step = path.push(file_.read(number));
    const TreePage page(step.data, file_);
    page.requireSound(level);
    if (page.leaf()) {
      step.index = page.lowerBoundNearRun(key);
      return page.holds(step.index, key);
    }
    step.index = page.childFor(key);
    level = page.level() - 1;
    number = page.child(step.index);
  }
}

void Tree::makeWritable(TreePath& path) {
  for (unsigned i = 0; i < path.depth(); ++i) file_.write(path[i].page.number());
}

void Tree::addToAncestors(TreePath& path, int change) {
  for (unsigned i = 0; i + 1 < path.depth(); ++i) TreePageEditor(path[i].data, file_).addRows(path[i].index, change);
}

void Tree::clear() {
  if (root_ == 0) return;
  std::vector<PageNo> pages;
  collect(root_, TreePage::kAnyLevel, pages);
  // A page that is named twice would be given out twice later on.
  std::sort(pages.begin(), pages.end());
  if (std::adjacent_find(pages.begin(), pages.end()) != pages.end())
    TreePage(file_.read(root_).data(), file_).raiseDamaged();
  for (auto page = pages.rbegin(); page != pages.rend(); ++page) file_.release(*page);
  root_ = 0;
}

void Tree::collect(PageNo number, unsigned level, std::vector<PageNo>& pages) {
  pages.push_back(number);
  const PageRef ref = file_.read(number);
  const TreePage page(ref.data(), file_);
  page.requireSound(level);
  if (page.leaf()) return;
  for (unsigned i = 0; i < page.count(); ++i) {
    if (page.level() == 1) {
      pages.push_back(page.child(i));
    } else {
      collect(page.child(i), page.level() - 1, pages);
    }
  }
}

}  // namespace quillon::store
