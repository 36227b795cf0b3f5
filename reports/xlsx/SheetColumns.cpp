#include "reports/xlsx/SheetColumns.h"

#include <algorithm>
#include <set>
#include <utility>

namespace quillon::reports {
namespace {

// Whether the part that both have is half of the narrower one or more.
template <class A, class B>
bool isOver(const A& a, const B& b) {
  const int common = std::min<int>(a.right, b.right) - std::max<int>(a.left, b.left);
  return common > 0 && 2 * common >= std::min(a.right - a.left, b.right - b.left);
}

}  // namespace

std::string columnName(std::size_t column) {
  std::string name;
  for (std::size_t rest = column + 1; rest > 0; rest = (rest - 1) / 26)
    name.insert(name.begin(), static_cast<char>('A' + (rest - 1) % 26));
  return name;
}

SheetColumns::SheetColumns(const PreparedPages& report) {
  std::set<std::pair<int, int>> boxes;  // width, left: the narrow ones first
  std::pair<int, int> last{-1, -1};
  for (const Page& page : report.pages)
    for (const Element& element : page.elements) {
      if (element.kind != Element::Kind::text || element.box.width <= 0) continue;
      if (element.part != Part::columnHeader && element.part != Part::detail) continue;
      const std::pair<int, int> box{element.box.width, element.box.x};
      if (box != last) boxes.insert(last = box);
    }
  for (const auto& [width, left] : boxes) {
    const Column box{left, left + width};
    const auto over = [&](const Column& column) { return isOver(column, box); };
    const auto first = std::ranges::find_if(columns_, over);
    if (first == columns_.end()) {
      columns_.push_back(box);
    } else if (std::find_if(first + 1, columns_.end(), over) == columns_.end()) {
      first->left = std::min(first->left, box.left);
      first->right = std::max(first->right, box.right);
    }
  }
  if (columns_.empty()) columns_.push_back({report.left, report.width - report.right});
  std::ranges::sort(columns_, {}, &Column::left);
  for (std::size_t i = 0; i < columns_.size(); ++i) names_.push_back(columnName(i));
}

std::size_t SheetColumns::of(const Element& element) {
  const std::uint64_t key = static_cast<std::uint64_t>(static_cast<std::uint16_t>(element.box.x)) << 32 |
                            static_cast<std::uint64_t>(static_cast<std::uint16_t>(element.box.width)) << 8 |
                            static_cast<std::uint64_t>(element.style.align);
  const auto [place, fresh] = found_.try_emplace(key);
  if (fresh) place->second = find(element);
  return place->second;
}

std::size_t SheetColumns::find(const Element& element) const {
  const Box& box = element.box;
  // Words that go on over further columns belong where they begin.
  const bool words = element.style.align == Align::left;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    const int common = std::min(columns_[i].right, box.right()) - std::max(columns_[i].left, int{box.x});
    const int whole = words ? std::min<int>(box.width, columns_[i].right - columns_[i].left) : box.width;
    if (common > 0 && 2 * common > whole) return i;
  }
  std::size_t edge = columns_.size() - 1;
  if (element.style.align == Align::right)
    while (edge > 0 && columns_[edge].left >= box.right()) --edge;
  else
    while (edge > 0 && columns_[edge - 1].right > box.x) --edge;
  return edge;
}

int SheetColumns::width(std::size_t column) const {
  const Column& self = columns_[column];
  const int own = self.right - self.left;
  return column + 1 < columns_.size() ? std::max(own, columns_[column + 1].left - self.left) : own;
}

}  // namespace quillon::reports
