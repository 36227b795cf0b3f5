#pragma once

#include <string>

#include "store/Errors.h"

namespace quillon::store {

// Somebody else has a table, or a record of it, in hand: recordLocked, and tableInUse for an open. A front end words it
// anew, as `holder` and `table` are all that a person can act on.
class InUseError final : public StoreError {
 public:
  // The holder is a person at a machine, "another user" where nobody knows, and empty for this program itself.
  InUseError(Code code, const std::string& table, bool isRecord, const std::string& holder)
      : StoreError(code, (isRecord ? "The record of table '" : "Table '") + table + "' is in use " +
                             (holder.empty() ? "in another window of this program." : "by " + holder + ".")),
        table_(table),
        holder_(holder),
        isRecord_(isRecord) {}
  const std::string& table() const { return table_; }
  const std::string& holder() const { return holder_; }
  bool isRecord() const { return isRecord_; }

 private:
  std::string table_, holder_;
  bool isRecord_;
};

}  // namespace quillon::store
