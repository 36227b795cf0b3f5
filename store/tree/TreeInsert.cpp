#include <algorithm>
#include <string>

#include "store/Errors.h"
#include "store/tree/Tree.h"

namespace quillon::store {
namespace {

constexpr int kRunThatCounts = 4;

struct Place {
  unsigned index;  // where the new cell goes
  bool replacing;  // the cell that is there now goes away
  bool leftEdge;   // the page is the first, or the last, of its level
  bool rightEdge;
};

// The entries of a page as they will be: the old ones with a new cell in its place.
class Joined {
 public:
  Joined(const TreePage& page, const TreeCell& cell, const Place& place) : page_(page), cell_(cell), place_(place) {}
  unsigned count() const { return page_.count() + (place_.replacing ? 0 : 1); }
  TreeCell at(unsigned index) const {
    if (index == place_.index) return cell_;
    return page_.cell(index < place_.index || place_.replacing ? index : index - 1);
  }
  std::size_t bytes(unsigned from, unsigned to) const {
    std::size_t total = 0;
    for (unsigned i = from; i < to; ++i) total += at(i).size() + 2;
    return total;
  }

 private:
  const TreePage& page_;
  const TreeCell& cell_;
  const Place& place_;
};

// How many entries stay left when the two halves are to be as even in bytes as possible.
unsigned evenSplit(const Joined& joined, std::size_t total) {
  std::size_t left = 0, best = total;
  unsigned at = 0;
  for (unsigned i = 1; i < joined.count(); ++i) {
    left += joined.at(i - 1).size() + 2;
    const std::size_t larger = std::max(left, total - left);
    if (larger >= best) break;
    best = larger;
    at = i;
  }
  return at;
}

// How many entries stay left. Inserts that come in order at one place (an append; a group of equal values that grows at
// its end) would leave half-empty pages behind: there the page parts at the place itself. What lies on the other side
// gets a page of its own when it is more than a little, so that it does not take up room in each page that the run
// fills.
unsigned splitPoint(const TreePage& page, const Joined& joined, const Place& place, std::size_t cellBytes) {
  constexpr std::size_t kLittle = kTreeRoom / 8;
  const unsigned index = place.index, n = page.count();
  const std::size_t before = joined.bytes(0, index), after = joined.bytes(index + 1, joined.count());
  if (!place.replacing && n > 0) {
    const bool goesOn = page.run() >= kRunThatCounts && index == page.lastPlace() + 1;
    const bool goesBack = page.run() <= -kRunThatCounts && index == page.lastPlace();
    if (goesOn || (place.rightEdge && index == n)) {
      if (after >= kLittle && before + cellBytes <= kTreeRoom) return index + 1;
      if (index > 0 && after + cellBytes <= kTreeRoom) return index;
    } else if (goesBack || (place.leftEdge && index == 0)) {
      if (before >= kLittle && after + cellBytes <= kTreeRoom) return index;
      if (index < n && before + cellBytes <= kTreeRoom) return index + 1;
    }
  }
  const unsigned at = evenSplit(joined, before + cellBytes + after);
  if (at == 0 || joined.bytes(0, at) > kTreeRoom || joined.bytes(at, joined.count()) > kTreeRoom) page.raiseDamaged();
  return at;
}

// The shortest string above `left` that is not above `right`.
std::string_view separator(std::string_view left, std::string_view right) {
  const auto parted = std::mismatch(left.begin(), left.end(), right.begin(), right.end()).second;
  const std::size_t same = static_cast<std::size_t>(parted - right.begin());
  return right.substr(0, std::min(same + 1, right.size()));
}

struct Split {
  TreeCell cell;  // to be inserted
  Place place{};
  unsigned at = 0;  // entries that stay
  std::uint64_t leftRows = 0, rightRows = 0;
  PageRef right;
};

// `leftChildRows` are those of the child in front of the place, which was split itself.
void countRows(const TreePage& page, const Joined& joined, std::uint64_t leftChildRows, Split& split) {
  if (page.leaf()) {
    split.leftRows = split.at;
    split.rightRows = joined.count() - split.at;
    return;
  }
  for (unsigned i = 0; i < joined.count(); ++i)
    (i < split.at ? split.leftRows : split.rightRows) += i + 1 == split.place.index ? leftChildRows : joined.at(i).rows;
}

void carryOut(TreePageEditor left, TreePageEditor right, const Split& split) {
  const Place& place = split.place;
  const unsigned lastPlace = left.lastPlace();
  const int run = left.run();
  if (place.replacing) left.remove(place.index);
  const Place added{place.index, false, false, false};
  const Joined joined(left, split.cell, added);
  right.format(left.level());
  for (unsigned i = split.at; i < joined.count(); ++i) {
    TreeCell cell = joined.at(i);
    if (i == split.at && !left.leaf()) cell.key = {};  // it went up
    right.append(cell);
  }
  const bool goesLeft = place.index < split.at;
  left.truncate(goesLeft ? split.at - 1 : split.at);
  if (goesLeft) left.insert(place.index, split.cell);
  if (place.replacing) return;
  if (goesLeft) {
    left.noteInsert(place.index, lastPlace, run);
  } else {
    right.noteInsert(place.index - split.at, lastPlace - split.at, run);
  }
}

}  // namespace

namespace {

void requireShort(const PageFile& file, std::string_view key, std::string_view payload) {
  if (key.size() > kMaxTreeKey || key.size() + payload.size() > kMaxTreeEntry)
    throw StoreError(Code::limitReached, "An entry of '" + file.name() + "' is too long. Shorten its texts.");
}

constexpr std::uint32_t kMostRows = ~std::uint32_t{0};  // below one inner entry

}  // namespace

void Tree::raiseFull() const {
  throw StoreError(Code::limitReached, "'" + file_.name() + "' has as many entries as an index can have.");
}

bool Tree::insert(std::string_view key, std::string_view payload) { return put(key, payload, false); }

bool Tree::replace(std::string_view key, std::string_view payload) { return put(key, payload, true); }

bool Tree::put(std::string_view key, std::string_view payload, bool replacing) {
  requireShort(file_, key, payload);
  TreeCell cell{key, payload};
  if (root_ == 0) {
    if (replacing) return false;
    const PageRef page = file_.allocate(PageKind::leaf);
    TreePageEditor leaf(page.writable(), file_);
    leaf.format(0);
    leaf.append(cell);
    root_ = page.number();
    return true;
  }
  TreePath path;
  if (descend(path, key) != replacing) return false;
  if (replacing) {
    replaceAt(path, cell);
    return true;
  }
  if (path.depth() > 1 && TreePage(path[0].data, file_).rows(path[0].index) == kMostRows) raiseFull();
  const unsigned index = path.back().index;
  TreePageEditor leaf(path.back().data, file_);
  if (!leaf.fits(cell.size())) {
    split(path, cell, false);
    return true;
  }
  makeWritable(path);
  leaf.insert(index, cell);
  leaf.noteInsert(index);
  addToAncestors(path, 1);
  return true;
}

void Tree::replaceAt(TreePath& path, const TreeCell& cell) {
  const unsigned index = path.back().index;
  TreePageEditor leaf(path.back().data, file_);
  const TreeCell old = leaf.leafCell(index);
  if (leaf.used() - old.size() + cell.size() > kTreeRoom) {
    split(path, cell, true);
    path.clear();
    return;
  }
  file_.write(path.back().page.number());
  if (old.payload.size() == cell.payload.size()) {
    leaf.setPayload(index, cell.payload);
  } else {
    leaf.replace(index, cell);
  }
}

std::optional<std::string_view> TreeRewrite::find(std::string_view key) {
  if (path_.depth() > 0) {
    // Between two keys of the leaf, or at one of them, there is no other place for it.
    TreePath::Step& leaf = path_.back();
    const TreePage page(leaf.data, tree_.file_);
    leaf.index = page.lowerBound(key);
    if (page.holds(leaf.index, key)) return page.leafCell(leaf.index).payload;
    path_.clear();
  }
  if (tree_.root_ == 0) return std::nullopt;
  if (tree_.descend(path_, key)) return TreePage(path_.back().data, tree_.file_).leafCell(path_.back().index).payload;
  path_.clear();
  return std::nullopt;
}

void TreeRewrite::replace(std::string_view key, std::string_view payload) {
  requireShort(tree_.file_, key, payload);
  tree_.replaceAt(path_, {key, payload});
}

// First everything is worked out and every page is had that is needed; from then on nothing can fail. The pages are
// then changed from the top down, because a separator is a look into a page further down.
void Tree::split(TreePath& path, const TreeCell& leafCell, bool replacing) {
  Split splits[kMaxTreeDepth];
  const unsigned leaf = path.depth() - 1;
  unsigned leftEdge = 0, rightEdge = 0;  // pages of the path down to these are the first, or last, of their level
  while (leftEdge < leaf && path[leftEdge].index == 0) ++leftEdge;
  while (rightEdge < leaf && path[rightEdge].index + 1 == pageCount(path[rightEdge].data)) ++rightEdge;
  makeWritable(path);
  TreeCell cell = leafCell;
  unsigned index = path[leaf].index, top = leaf;  // `top`: the topmost page that is split
  for (;; --top) {
    const TreePage page(path[top].data, file_);
    Split& split = splits[top];
    split.cell = cell;
    split.place = {index, replacing && top == leaf, top <= leftEdge, top <= rightEdge};
    const Joined joined(page, split.cell, split.place);
    split.at = splitPoint(page, joined, split.place, cell.size() + 2);
    countRows(page, joined, top == leaf ? 0 : splits[top + 1].leftRows, split);
    const std::string_view rightKey = joined.at(split.at).key;
    cell = {page.leaf() ? separator(joined.at(split.at - 1).key, rightKey) : rightKey,
            {},
            ~PageNo{0},
            static_cast<std::uint32_t>(split.rightRows)};
    if (top == 0) break;
    index = path[top - 1].index + 1;
    if (TreePage(path[top - 1].data, file_).fits(cell.size())) break;
  }
  if (top == 0 && (TreePage(path[0].data, file_).level() + 1 >= kMaxTreeDepth ||
                   std::max(splits[0].leftRows, splits[0].rightRows) > kMostRows))
    raiseFull();

  PageRef root;
  try {
    for (unsigned i = top; i <= leaf; ++i) splits[i].right = file_.allocate(pageKind(path[i].data));
    if (top == 0) root = file_.allocate(PageKind::inner);
  } catch (...) {
    for (const Split& split : splits)
      if (split.right) file_.release(split.right.number());
    throw;
  }

  cell.child = splits[top].right.number();
  if (root) {
    TreePageEditor page(root.writable(), file_);
    page.format(TreePage(path[0].data, file_).level() + 1);
    page.append({{}, {}, path[0].page.number(), static_cast<std::uint32_t>(splits[0].leftRows)});
    page.append(cell);
    root_ = root.number();
  } else {
    TreePageEditor page(path[top - 1].data, file_);
    page.setRows(path[top - 1].index, splits[top].leftRows);
    page.insert(index, cell);
    page.noteInsert(index);
    for (unsigned i = 0; i + 1 < top && !replacing; ++i) TreePageEditor(path[i].data, file_).addRows(path[i].index, 1);
  }
  for (unsigned i = top; i <= leaf; ++i) {
    TreePageEditor page(path[i].data, file_);
    if (i < leaf) {
      page.setRows(path[i].index, splits[i + 1].leftRows);
      splits[i].cell.child = splits[i + 1].right.number();
    }
    carryOut(page, TreePageEditor(splits[i].right.writable(), file_), splits[i]);
  }
}

}  // namespace quillon::store
