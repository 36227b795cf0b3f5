#pragma once

#include <cstdint>
#include <string>

#include "bench/Bench.h"

// A company's books on both sides, the same rows under the same indexes:
//   GLHist     the fact table, with as many rows as asked for, three lines a voucher, over 2026 in the order of dates
//   GLAccount  60 accounts; Customer 900; JV the vouchers, without every tenth
//   JVDet      the lines of the first vouchers, so that a tenth of them are orphans
//   ARInvoice  invoices of the customers
namespace quillon::bench {

inline constexpr int kAccounts = 60;
inline constexpr int kCustomers = 900;

// A folder for ours, a file for theirs, filled at the first call of the program.
struct Ledger {
  std::string folder, file;
};
Ledger ledger(const Bench& bench);

std::int64_t lines(const Bench& bench);     // of JVDet: 300,000 with a million rows
std::int64_t invoices(const Bench& bench);  // 100,000 with a million rows

}  // namespace quillon::bench
