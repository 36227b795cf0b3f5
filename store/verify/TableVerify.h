#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/Verify.h"
#include "store/table/BlobCheck.h"
#include "store/table/Table.h"
#include "store/verify/FileVerify.h"

namespace quillon::store {

// Checks one open table that has no changes of its own. What it finds is told; StoreError only where the table cannot
// be read at all.
//
// Method: every page first, past the cache; then the rows' tree, and from each record the keys that it should have, its
// contents and its overflow pages; then each index tree. An index has exactly the keys of the rows when their number
// and the sum of their hashes agree, which takes one walk and no memory; only when they differ is each key looked up.
class TableVerify {
 public:
  TableVerify(Table& table, FileVerify::Tell tell, std::function<void(int percent)> percent);
  TableReport run();

 private:
  struct Keys {
    std::uint64_t count = 0, sum = 0;
    void add(std::string_view key);
    friend bool operator==(const Keys&, const Keys&) = default;
  };

  void checkHeader(const LiveState& live);
  void checkPages();
  void useSchema();
  void checkRows();
  void checkRow(std::string_view key, std::string_view payload);
  bool recordOf(std::string_view payload, RowId row);  // into record_
  void checkContents(const RecordView& view, RowId row);
  void checkIndex(int position);
  void findMissing(int position);
  void findExtra(int position);
  void tellRow(RowId row, const std::string& what);
  std::string nameOf(int index) const;

  Table& table_;
  FileVerify::Tell tell_;
  std::function<void(int)> percent_;
  TableMeta meta_;
  std::array<std::unique_ptr<FileVerify>, 3> files_;
  std::optional<BlobCheck> blobs_;
  std::string contentOf_;     // whose content is being checked
  std::vector<Keys> wanted_;  // by index
  std::string record_, key_;
  std::uint64_t rows_ = 0;
  bool rowsSound_ = true;
  std::int64_t highest_ = 0;  // value of the autoInc field
  RowId highestRow_ = 0;      // that has it
};

}  // namespace quillon::store
