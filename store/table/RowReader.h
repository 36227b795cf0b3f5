#pragma once

#include <array>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "store/table/Table.h"

namespace quillon::store {

// Reads the records that an index names, inside a read of the table. One that stands near the one read before costs no
// search: rows entered one behind the other often follow each other in an index too. damaged when there is no such
// record.
class RowReader {
 public:
  explicit RowReader(Table& table) : table_(table) {}

  using Each = std::function<bool(RowId row, std::string_view record)>;

  // Lives until the next call.
  std::string_view read(RowId row);
  // Each of them, in this order. The pages of those that lie apart are asked for together, so that they are waited for
  // once. False from the callback ends it.
  bool readEach(std::span<const RowId> rows, const Each& each);

 private:
  static constexpr std::size_t kTogether = 16;
  bool moveTo(RowId row);  // from a row near it
  void approach(std::size_t slot, RowId row);
  void arrive(std::size_t slot, RowId row);

  Table& table_;
  // Those that are sent ahead are of the half in which the one read last does not stand: it may stay for whole batches.
  std::array<std::optional<TreeWalk>, 2 * kTogether> walks_;
  std::size_t half_ = 0;    // in which that one stands
  TreeWalk* at_ = nullptr;  // that one
  RowId last_ = 0;
  std::string key_, scratch_;
};

}  // namespace quillon::store
