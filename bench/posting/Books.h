#pragma once

#include <string>
#include <vector>

#include "bench/Shapes.h"

namespace quillon::bench {

inline constexpr int kAccounts = 2000, kSubaccounts = 4, kLinesOfVoucher = 3;
inline constexpr int kFirstYear = 2017, kYears = 10;  // of the totals; vouchers are of the last

// A voucher as rows of JV and JVDet, and those of GLHist that posting makes of it. Its accounts are spread over all;
// one line in ten has a subaccount.
struct Voucher {
  Row head;
  std::vector<Row> lines, history;
};
Voucher voucherOf(int id);

// Vouchers that wait to be posted, in a company of ours and on their side; nothing was posted before.
void makeVouchers(const std::string& folder, const std::string& file, int vouchers);
// Totals of every account, year and subaccount, on both sides.
void makeTotals(const std::string& folder, const std::string& file);

}  // namespace quillon::bench
