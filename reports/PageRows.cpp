#include "reports/PageRows.h"

#include <algorithm>

namespace quillon::reports {

void PageRows::arrange() {
  const auto middle = [](const Element* element) { return element->box.y + element->box.height / 2; };
  std::ranges::stable_sort(texts_, {}, middle);
  ends_.clear();
  for (std::size_t begin = 0, end = 0; begin < texts_.size(); begin = end) {
    while (end < texts_.size() && (end == begin || middle(texts_[end]) < texts_[begin]->box.bottom())) ++end;
    std::stable_sort(texts_.begin() + static_cast<std::ptrdiff_t>(begin),
                     texts_.begin() + static_cast<std::ptrdiff_t>(end),
                     [](const Element* a, const Element* b) { return a->box.x < b->box.x; });
    ends_.push_back(end);
  }
}

}  // namespace quillon::reports
