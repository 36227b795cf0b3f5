#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "reports/Pages.h"

namespace quillon::reports {

// The texts of a page as rows, from the top, each from left to right: a text stands in the row of the one above it when
// its middle is not below that one. Kept for page after page, so that its memory is used again.
class PageRows {
 public:
  // Takes the texts for which `wanted` holds. The elements must outlive their use here.
  template <class Wanted>
  void read(const Page& page, Wanted wanted) {
    texts_.clear();
    for (const Element& element : page.elements)
      if (element.kind == Element::Kind::text && element.length > 0 && wanted(element)) texts_.push_back(&element);
    arrange();
  }
  std::size_t size() const { return ends_.size(); }
  std::span<const Element* const> row(std::size_t number) const {
    const std::size_t begin = number == 0 ? 0 : ends_[number - 1];
    return std::span(texts_).subspan(begin, ends_[number] - begin);
  }

 private:
  void arrange();

  std::vector<const Element*> texts_;
  std::vector<std::size_t> ends_;  // of the rows, in texts_
};

}  // namespace quillon::reports
