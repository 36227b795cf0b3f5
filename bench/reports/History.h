#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "form/PageRun.h"

namespace quillon::shell {
class Session;
}

namespace quillon::bench {

// A new company in an empty folder, with so many lines of posted vouchers, four to each, in the ledger's history.
void makeHistory(const std::string& folder, std::int64_t lines);

// The report of that history, before its first page.
std::unique_ptr<form::PageRun> startHistory(shell::Session& session);

}  // namespace quillon::bench
