#pragma once

#include <cstdint>
#include <string>

#include "bench/Report.h"

namespace quillon::bench {

// Each makes its companies in a folder of its own below `scratch`, the last of them with so many rows.
struct LedgerBench {
  std::string scratch;
  std::int64_t rows;
  Report& report;
};

void bank(LedgerBench& bench);
void yearEnd(LedgerBench& bench);

}  // namespace quillon::bench
