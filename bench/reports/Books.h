#pragma once

#include <cstdint>
#include <string>

#include "bench/Report.h"

namespace quillon::bench {

// What the ledger's standing reports take of a company with so many lines posted in its last year, an account for each
// fifty of them, each with four subaccounts and totals of ten years: a statement of 200 lines, the trial balance and
// the general ledger, all of them as pages. Beside them the peer's queries for the same rows, which end where the rows
// are read and added up; both come to the same sums.
struct BooksCosts {
  double statement = 0, trialBalance = 0, ledger = 0;  // milliseconds for all pages
};
BooksCosts measureBooks(const std::string& scratch, std::int64_t lines, Report& report);

}  // namespace quillon::bench
