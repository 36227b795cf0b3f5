#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "shell/AccountType.h"

namespace quillon::shell {

struct CountryDefaults;

// The charts that a new company can begin with.
enum class Chart { service = 1, trade = 2, manufacturing = 4 };
std::optional<Chart> chartNamed(std::string_view name);  // "service", "trade", "manufacturing", in any case

// What an account of a new chart is for, where something else of the company points to it. Every chart has exactly one
// account for each use but `none`.
enum class AccountUse {
  none,
  bank,
  receivable,
  receivableDiscount,
  payable,
  payableDiscount,
  exchange,  // gain or loss
  writeOff,
  sales,
  costOfSales,
  inventory,
  tax,  // on sales
  retainedEarnings,
};

struct ChartAccount {
  std::string number, name;
  AccountType type;
  AccountUse use;
};

// Sorted by number, in the country's words.
std::vector<ChartAccount> chartOfAccounts(Chart chart, const CountryDefaults& country);

}  // namespace quillon::shell
