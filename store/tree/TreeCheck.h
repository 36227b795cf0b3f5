#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "store/pages/Page.h"

namespace quillon::store {

class PageFile;

// What a check of a tree tells; a function may be empty.
struct TreeCheckSink {
  std::function<void(PageNo)> page;  // each page of the tree, as often as it is named there
  std::function<void(std::string_view key, std::string_view payload)> entry;  // each readable one, in the tree's order
  std::function<void(const std::string&)> fault;                              // in words, naming file and page
};

// Walks a whole tree, independently of Tree, and tells every fault: pages that cannot be read or make no sense, a page
// named twice, cells outside the page or overlapping, lost bytes, wrong levels and counts, keys out of order in a page,
// against the separators above it, or from leaf to leaf. Goes on behind a damaged page. Raises nothing for what it
// finds. Returns the number of entries met.
std::uint64_t checkTree(PageFile& file, PageNo root, const TreeCheckSink& sink);

}  // namespace quillon::store
