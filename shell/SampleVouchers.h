#pragma once

#include <string>
#include <vector>

#include "base/Date.h"
#include "base/Money.h"

namespace quillon::shell {

// The account of the bank at home; and those that the sample company has beside a manufacturer's chart, for what it
// holds in foreign currency.
inline constexpr const char* kHomeBank = "1010";
inline constexpr const char* kForeignBank = "1020";
inline constexpr const char* kForeignReceivable = "1110";
inline constexpr const char* kForeignPayable = "2010";

// The subaccounts of the sample company, in the order of their ids, which count from 1; 0 is none.
enum SampleDepartment { noDepartment, workshop, office, showroom };
enum SampleProduct { noProduct, tables, chairs };

struct SampleLine {
  std::string account;  // number
  SampleDepartment department = noDepartment;
  SampleProduct product = noProduct;
  Money amount;  // debit positive
};

struct SampleVoucher {
  Date date;  // its month is the period
  std::string description;
  bool autoReverse = false;
  std::vector<SampleLine> lines;
};

// What the foreign currency is worth in the home currency at the end of a month, as rates move over a year, in the last
// of the sample company's years or the one before it.
double sampleRate(double usual, int month, bool yearBefore = false);

// Two calendar years, `year` and the one before it, in the life of a small maker of furniture, as its bookkeeper would
// enter them, in the order of days: opening balances, sales and what they cost, materials, production, payroll, rent,
// taxes, depreciation, accruals that are reversed in the next month, sales and purchases in foreign currency and their
// revaluation. The same figures each time; every voucher balances. `taxRate` in whole per cent; 0: no tax on sales.
// `usualRate`: home units for one foreign unit.
std::vector<SampleVoucher> sampleVouchers(int year, int taxRate, double usualRate);

}  // namespace quillon::shell
