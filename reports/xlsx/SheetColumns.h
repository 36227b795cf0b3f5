#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "reports/Pages.h"

namespace quillon::reports {

// "A", "B", ... "AA"; 0 is the first.
std::string columnName(std::size_t column);

// The columns of a sheet, found from where the column header and the details of a report stand on the page.
//
// Boxes that lie above each other for the most part are one column. A box that lies across several, such as a remark
// below a line of figures, makes none.
class SheetColumns {
 public:
  explicit SheetColumns(const PreparedPages& report);

  std::size_t size() const { return columns_.size(); }  // one at least
  // The column of an element: the one that most of it lies in, or else the one at the edge that its text stands at.
  std::size_t of(const Element& element);
  // In 1/1000 inch, with the gap to the next.
  int width(std::size_t column) const;
  const std::string& name(std::size_t column) const { return names_[column]; }

 private:
  struct Column {
    int left = 0, right = 0;
  };

  std::size_t find(const Element& element) const;

  std::vector<Column> columns_;  // from left to right
  std::vector<std::string> names_;
  std::unordered_map<std::uint64_t, std::size_t> found_;  // by place and alignment
};

}  // namespace quillon::reports
