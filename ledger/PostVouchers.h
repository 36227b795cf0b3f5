#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/Period.h"
#include "store/Cursor.h"

namespace quillon::ledger {

// What a posting or unposting changes, for the transaction around it.
inline const std::vector<std::string> kPostingTables = {"JV", "GLActual", "GLHist"};
inline constexpr const char* kTotalsAreLocked =
    "Unable to lock GL Actual table... this table is being updated by another job.";

// The way of a voucher into the ledger and out of it. The ledger has two stores of posted figures: GLHist, a row for
// each posted line, and GLActual, the running amounts of each combination of account and subaccounts by year and
// period. Nothing else adds to them or takes from them. A debit is positive. A combination has a row of totals of its
// own, in which no other's are summed up; an auto-reversed voucher stands in its period and, with the opposite amounts,
// in the next.
//
// Nothing is checked: whether a voucher balances and its period is open was settled when it was entered.
//
// The caller holds the table lock on GLActual and a transaction over kPostingTables, and rolls back on any error.
class PostVouchers {
 public:
  explicit PostVouchers(store::Database& database);

  // Marks the voucher posted and adds its lines.
  void post(const store::Value& id);
  // Takes them out again. Its history goes; where that was purged, rows that cancel it are added, which are no part of
  // the voucher's own. Refused when another process unposted it meanwhile.
  void unpost(const store::Value& id);

 private:
  struct Entry {  // what a line means to one period
    Period period;
    store::Value transType;
    Money amount;
  };
  enum class Direction { in, out };

  void find(const store::Value& id);
  void setPosted(bool posted);
  void eachEntry(Direction direction, const std::function<void(const Entry&)>& action);
  void addHistory(const Entry& entry, bool linked);
  void addTotal(const Entry& entry);
  bool removeHistory(const store::Value& id);

  store::Cursor tblJV_, tblJVDet_, tblGLHist_, tblGLActual_;
  // What a row of history takes from its voucher, and from its line: where it stands in either, and the values of the
  // voucher found last.
  std::vector<std::pair<store::Field, store::Field>> ofVoucher_, ofLine_;
  std::vector<store::Value> head_;
};

}  // namespace quillon::ledger
