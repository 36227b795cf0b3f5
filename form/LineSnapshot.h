#pragma once

#include <functional>
#include <string>
#include <vector>

#include "store/Value.h"

namespace quillon::form {

class Table;

// The lines of a document as they were before the first change, which Cancel puts back: lines are saved one by one
// while the header is still being edited.
class LineSnapshot {
 public:
  explicit LineSnapshot(Table& lines) : lines_(lines) {}

  // Before a change of a line; does nothing when it was taken already. The cursor keeps its row.
  void take();
  // For a document that is new: there were no lines.
  void takeEmpty();
  void drop() { taken_ = false, rows_.clear(); }
  // Whether there may be something to put back.
  bool changed() const;
  // Puts the lines back in one change, without events, and drops the snapshot. The header must still be standing on the
  // document. Nothing where none was taken.
  void restore();

  std::function<void()> restored;  // for counts that are kept elsewhere

 private:
  using Row = std::vector<store::Value>;
  struct Kept {
    std::size_t first = 0, last = 0;
  };
  Row current() const;
  Kept kept(std::size_t now) const;

  Table& lines_;
  std::vector<Row> rows_;
  bool taken_ = false;
};

}  // namespace quillon::form
