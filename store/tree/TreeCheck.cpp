#include "store/tree/TreeCheck.h"

#include <algorithm>
#include <optional>
#include <unordered_set>
#include <vector>

#include "store/Errors.h"
#include "store/pages/PageFile.h"
#include "store/tree/Tree.h"

namespace quillon::store {
namespace {

using Bound = std::optional<std::string_view>;

class TreeCheck {
 public:
  TreeCheck(PageFile& file, const TreeCheckSink& sink) : file_(file), sink_(sink) {}

  // Keys below lie in [low, high). Entries met, or nothing when some could not be counted.
  std::optional<std::uint64_t> checkPage(PageNo number, unsigned level, Bound low, Bound high);
  std::uint64_t entries() const { return entries_; }

 private:
  bool fault(PageNo number, const std::string& what);
  bool checkCells(const TreePage& page, PageNo number);
  void checkKeys(const TreePage& page, PageNo number, Bound low, Bound high);
  void leafEntries(const TreePage& page, PageNo number);
  std::optional<std::uint64_t> children(const TreePage& page, PageNo number, Bound low, Bound high);

  PageFile& file_;
  const TreeCheckSink& sink_;
  std::unordered_set<PageNo> seen_;
  std::optional<std::string> lastKey_;
  std::uint64_t entries_ = 0;
};

bool TreeCheck::fault(PageNo number, const std::string& what) {
  if (sink_.fault) sink_.fault("Page " + std::to_string(number) + " of '" + file_.name() + "': " + what);
  return false;
}

std::optional<std::uint64_t> TreeCheck::checkPage(PageNo number, unsigned level, Bound low, Bound high) {
  if (sink_.page) sink_.page(number);
  if (!seen_.insert(number).second) {
    fault(number, "named twice in one tree");
    return {};
  }
  PageRef ref;
  try {
    ref = file_.read(number);
    TreePage(ref.data(), file_).requireSound(level);
  } catch (const StoreError& error) {
    if (!ref) {
      fault(number, error.what());
    } else {
      fault(number, "no page of a tree, or not of this level");
    }
    return {};
  }
  const TreePage page(ref.data(), file_);
  if (!checkCells(page, number)) return {};
  checkKeys(page, number, low, high);
  if (!page.leaf()) return children(page, number, low, high);
  leafEntries(page, number);
  return page.count();
}

bool TreeCheck::checkCells(const TreePage& page, PageNo number) {
  std::vector<std::pair<std::size_t, std::size_t>> cells;  // offset, size
  std::size_t live = 0;
  try {
    for (unsigned i = 0; i < page.count(); ++i) {
      const TreeCell cell = page.cell(i);
      if (!page.leaf() && cell.child == 0) return fault(number, "an entry without a child");
      if (cell.key.size() > kMaxTreeKey || cell.key.size() + cell.payload.size() > kMaxTreeEntry)
        return fault(number, "an entry is too long");
      cells.emplace_back(page.slot(i), cell.size());
      live += cell.size();
    }
  } catch (const StoreError&) {
    return fault(number, "an entry leaves the page");
  }
  std::sort(cells.begin(), cells.end());
  if (cells.front().first < page.heapTop()) return fault(number, "an entry lies below the heap");
  for (std::size_t i = 1; i < cells.size(); ++i)
    if (cells[i - 1].first + cells[i - 1].second > cells[i].first) return fault(number, "entries overlap");
  if (live + page.dead() != kPageSize - page.heapTop()) fault(number, "the count of dead bytes is wrong");
  return true;
}

void TreeCheck::checkKeys(const TreePage& page, PageNo number, Bound low, Bound high) {
  const unsigned from = page.leaf() ? 0 : 1;
  for (unsigned i = from; i < page.count(); ++i) {
    const std::string_view key = page.key(i);
    if (i > from && page.key(i - 1) >= key) fault(number, "keys out of order");
    if (low && (page.leaf() ? key < *low : key <= *low)) fault(number, "a key below the page's range");
    if (high && key >= *high) fault(number, "a key above the page's range");
  }
}

void TreeCheck::leafEntries(const TreePage& page, PageNo number) {
  if (lastKey_ && page.key(0) <= *lastKey_) fault(number, "not behind the leaf before it");
  for (unsigned i = 0; i < page.count(); ++i) {
    const TreeCell cell = page.leafCell(i);
    if (sink_.entry) sink_.entry(cell.key, cell.payload);
  }
  entries_ += page.count();
  lastKey_ = page.key(page.count() - 1);
}

std::optional<std::uint64_t> TreeCheck::children(const TreePage& page, PageNo number, Bound low, Bound high) {
  std::optional<std::uint64_t> total = 0;
  for (unsigned i = 0; i < page.count(); ++i) {
    const Bound childLow = i == 0 ? low : Bound(page.key(i));
    const Bound childHigh = i + 1 == page.count() ? high : Bound(page.key(i + 1));
    const auto rows = checkPage(page.child(i), page.level() - 1, childLow, childHigh);
    if (rows && *rows != page.rows(i)) fault(number, "the count of entry " + std::to_string(i) + " is wrong");
    if (rows && total) {
      *total += *rows;
    } else {
      total.reset();
    }
  }
  return total;
}

}  // namespace

std::uint64_t checkTree(PageFile& file, PageNo root, const TreeCheckSink& sink) {
  TreeCheck check(file, sink);
  if (root != 0) check.checkPage(root, TreePage::kAnyLevel, {}, {});
  return check.entries();
}

}  // namespace quillon::store
