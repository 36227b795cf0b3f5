#pragma once

#include <string>

#include "store/Value.h"

// What the import of voucher lines hands to the voucher that is being entered.
namespace quillon::ledger {

struct VoucherLine {
  store::Value account;  // ids; null for a subaccount that is not used
  store::Value subaccounts[3];
  store::Value amount;  // debit positive
};

// Takes lines one by one, through the rules of the voucher's own entry.
class VoucherLineTaker {
 public:
  virtual ~VoucherLineTaker() = default;
  virtual void addLine(const VoucherLine& line) = 0;
};

}  // namespace quillon::ledger
