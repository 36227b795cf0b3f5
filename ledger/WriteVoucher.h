#pragma once

#include <map>
#include <string>
#include <vector>

#include "base/Period.h"
#include "ledger/VoucherLines.h"
#include "store/Cursor.h"

namespace quillon::ledger {

// A voucher that a subledger's posting hands over.
struct Voucher {
  Period period;
  std::string source, transType;  // "AR", "Inv"
  Date date;
  std::string description = {};
  std::map<std::string, int> documents = {};  // what it is of: "CustomerID", "ARInvoiceID"
  std::vector<VoucherLine> lines = {};
};

// How everything but a person makes vouchers: unposted, so that their amounts reach the ledger with the next posting
// run and not before. Its total is that of its debits.
//
// The caller holds JVCtl exclusively and a transaction over JV, JVDet and JVCtl, and rolls back on any error.
class VoucherWriter {
 public:
  // `tblJVCtl` is open, and outlives this.
  explicit VoucherWriter(store::Cursor& tblJVCtl);

  // Under the next number that is free in its period. The voucher's id.
  int write(const Voucher& voucher);

 private:
  store::Cursor& tblJVCtl_;
  store::Cursor tblJV_, tblJVNumber_, tblJVDet_;  // the second finds numbers
  int lowestId_ = 0;                              // that no voucher had before
};

}  // namespace quillon::ledger
