#include "store/tree/Tree.h"

namespace quillon::store {
namespace {

constexpr std::size_t kSparse = kTreeRoom / 4;       // a page with less is joined with a neighbour
constexpr std::size_t kJoined = kTreeRoom * 9 / 10;  // when both together take no more than this

// What becomes of a page of the path that loses an entry.
struct Loss {
  enum Kind { none, emptied, intoLeft, takesRight } kind = none;
  PageRef neighbour;
  unsigned parentIndex = 0;  // the entry that the parent loses
};

// Bytes of the two pages below parent entries `right - 1` and `right`, put together.
bool canJoin(const TreePage& parent, unsigned right, const TreePage& neighbour, std::size_t used) {
  const std::size_t separator = neighbour.leaf() ? 0 : parent.innerCell(right).key.size() + 1;
  return used + neighbour.used() + separator <= kJoined;
}

Loss lossOf(PageFile& file, TreePath::Step& step, TreePath::Step& above, std::size_t lostBytes) {
  const TreePage page(step.data, file), parent(above.data, file);
  const unsigned index = above.index;
  if (page.count() == 1) return {Loss::emptied, {}, index};
  const std::size_t used = page.used() - lostBytes;
  if (used >= kSparse) return {};
  const auto neighbour = [&](unsigned at) {
    PageRef ref = file.read(parent.child(at));
    TreePage(ref.data(), file).requireSound(page.level());
    return ref;
  };
  if (index > 0) {
    PageRef left = neighbour(index - 1);
    if (canJoin(parent, index, TreePage(left.data(), file), used)) return {Loss::intoLeft, std::move(left), index};
  }
  if (index + 1 < parent.count()) {
    PageRef right = neighbour(index + 1);
    if (canJoin(parent, index + 1, TreePage(right.data(), file), used))
      return {Loss::takesRight, std::move(right), index + 1};
  }
  return {};
}

// Moves all entries of `right` behind those of `left`, its neighbour on the left.
void join(TreePageEditor left, const TreePage& right, std::string_view separator) {
  for (unsigned i = 0; i < right.count(); ++i) {
    TreeCell cell = right.cell(i);
    if (i == 0 && !right.leaf()) cell.key = separator;
    left.append(cell);
  }
}

}  // namespace

// As with a split: first all pages are had, then nothing can fail.
bool Tree::erase(std::string_view key) {
  if (root_ == 0) return false;
  TreePath path;
  if (!descend(path, key)) return false;
  const unsigned leaf = path.depth() - 1;
  Loss losses[kMaxTreeDepth];
  unsigned top = leaf;  // the topmost page that loses an entry
  std::size_t lostBytes = TreePage(path[leaf].data, file_).cellSize(path[leaf].index) + 2;
  for (; top > 0; --top) {
    losses[top] = lossOf(file_, path[top], path[top - 1], lostBytes);
    if (losses[top].kind == Loss::none) break;
    if (losses[top].neighbour) file_.write(losses[top].neighbour.number());
    lostBytes = TreePage(path[top - 1].data, file_).cellSize(losses[top].parentIndex) + 2;
  }
  makeWritable(path);

  addToAncestors(path, -1);
  TreePageEditor(path[leaf].data, file_).remove(path[leaf].index);
  for (unsigned i = leaf; i > top; --i) {
    const Loss& loss = losses[i];
    TreePageEditor page(path[i].data, file_), parent(path[i - 1].data, file_);
    if (loss.kind == Loss::emptied) {
      file_.release(path[i].page.number());
    } else {
      const bool intoLeft = loss.kind == Loss::intoLeft;
      TreePageEditor neighbour(loss.neighbour.writable(), file_);
      join(intoLeft ? neighbour : page, intoLeft ? page : neighbour, parent.key(loss.parentIndex));
      const unsigned joined = loss.parentIndex - 1;
      parent.setRows(joined, std::uint64_t{parent.rows(joined)} + parent.rows(joined + 1));
      file_.release(intoLeft ? path[i].page.number() : loss.neighbour.number());
    }
    parent.remove(loss.parentIndex);
  }
  shrinkRoot(path);
  return true;
}

// An empty root ends the tree, and one with a single child gives way to it. When the child has a single child too, the
// next erase sees to that: here nothing more may be read.
void Tree::shrinkRoot(TreePath& path) {
  const TreePage root(path[0].data, file_);
  if (root.count() > (root.leaf() ? 0 : 1)) return;
  root_ = root.count() == 0 ? 0 : root.child(0);
  file_.release(path[0].page.number());
}

}  // namespace quillon::store
