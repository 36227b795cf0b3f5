#pragma once

#include <cstdint>

#include "reports/Pages.h"

namespace quillon::bench {

// A general ledger's history of so many lines, a heading and a total for every thirty of them.
reports::PreparedPages ledgerHistory(std::int64_t lines);

}  // namespace quillon::bench
