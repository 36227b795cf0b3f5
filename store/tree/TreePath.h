#pragma once

#include <new>
#include <utility>

#include "store/pages/PageCache.h"
#include "store/tree/TreePage.h"

namespace quillon::store {

// The pages from a tree's root down to a leaf, pinned, with the entry taken in each. Costs only for the steps it has.
class TreePath {
 public:
  struct Step {
    PageRef page;
    std::byte* data = nullptr;  // of the page; stays when the page becomes writable
    unsigned index = 0;
  };

  TreePath() {}
  TreePath(const TreePath&) = delete;
  TreePath& operator=(const TreePath&) = delete;
  ~TreePath() { clear(); }

  // At most kMaxTreeDepth steps, which the levels of sound pages guarantee.
  Step& push(PageRef page) {
    Step* step = new (&steps_[depth_++]) Step{std::move(page)};
    step->data = step->page.writable();
    return *step;
  }
  void pop() { steps_[--depth_].~Step(); }
  void clear() {
    while (depth_ > 0) pop();
  }
  unsigned depth() const { return depth_; }
  Step& operator[](unsigned index) { return steps_[index]; }
  Step& back() { return steps_[depth_ - 1]; }
  const Step& back() const { return steps_[depth_ - 1]; }

 private:
  union {
    Step steps_[kMaxTreeDepth];
  };
  unsigned depth_ = 0;
};

}  // namespace quillon::store
