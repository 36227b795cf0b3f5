#pragma once

#include "base/Money.h"

namespace quillon::ledger {

// What a document's currency does to the lines of its voucher. The ledger has one amount a line and no currency: the
// control account adds up the document's own units, income and expenses go over to home currency, and the difference
// goes to the currency's account for gain and loss on exchange, so that the voucher balances in plain sum.
class Exchange {
 public:
  // Home units for one of the document's. At 0 and 1 amounts stay as they are, to the last decimal.
  explicit Exchange(double rate) : rate_(rate) {}

  bool translates() const { return rate_ != 0 && rate_ != 1; }
  // An income or expense amount as it stands in the voucher, to two decimals. Error when it is out of Money's range.
  Money toHome(Money amount);
  // What toHome has added so far. Where it is not zero, its negative is the voucher's last line.
  Money difference() const { return difference_; }

 private:
  double rate_;
  Money difference_;
};

}  // namespace quillon::ledger
