#include "shell/SampleBudget.h"

#include <array>
#include <numeric>
#include <tuple>

#include "base/Money.h"
#include "shell/SampleLedger.h"
#include "shell/SampleVouchers.h"
#include "store/Cursor.h"

namespace quillon::shell {
namespace {

using store::Cursor;
using store::Value;

constexpr std::size_t kMonths = 12;
constexpr int kRise = 4;  // of revenue and expenses in the next year, per cent
constexpr const char* kRetainedEarnings = "3900";

struct Budget {
  const char* account;
  int month, more = 0;  // of the first month, and of each further one; debit positive
  SampleDepartment department = noDepartment;
  SampleProduct product = noProduct;
};
// Money in the bank is what is left.
constexpr Budget kBudgets[] = {
    {"1100", 600},
    {"1200", 100},
    {"1220", 100},
    {"1510", -180},
    {"1530", -420},
    {"1540", 1500},
    {"1550", -950},
    {"2000", -200},
    {"2500", 833},
    {"3100", 3000},
    {"4000", -36500, -950, showroom, tables},
    {"4000", -23000, -540, showroom, chairs},
    {"4100", 35, 0, showroom, chairs},
    {"4200", 400, 5},
    {"5000", 35200, 900},
    {"5100", -220, -5},
    {"5300", 11400, 180, workshop},
    {"5400", 350, 0, workshop},
    {"5410", 2600, 0, workshop},
    {"5420", 135, 0, workshop},
    {"5430", 950, 0, workshop},
    {"5500", -13900, -220},
    {"6000", 6200, 0, office},
    {"6000", 4900, 0, showroom},
    {"6050", 1600, 8, office},
    {"6100", 1400, 0, showroom},
    {"6150", 450, 0, workshop},
    {"6150", 190, 0, showroom},
    {"6200", 250, 0, office},
    {"6250", 95, 0, office},
    {"6300", 600, 0, office},
    {"6400", 380, 0, showroom},
    {"6450", 300, 0, showroom},
    {"6550", 400, 0, office},
    {"6650", 640, 0, showroom},
    {"6700", 40, 0, office},
    {"6750", 340, -5, office},
    {"6800", 55, 0, office},
    {"6850", 600, 0, office},
    {"7900", 1100},
};

using Combination = std::tuple<std::string, int, int>;  // account number, department, product
using Year = std::array<Money, 1 + kMonths>;            // the opening, then the months
using Plan = std::map<Combination, Year>;

bool isResult(const std::string& account) { return account.front() >= '4'; }

Plan openings(store::Database& database, const std::map<std::string, int>& accounts, int year) {
  std::map<int, std::string> numbers;
  for (const auto& [number, id] : accounts) numbers[id] = number;
  Cursor totals(database, "GLActual");
  totals.open();
  Plan plan;
  for (totals.first(); !totals.eof(); totals.next())
    if (const Money opening = totals["OpeningBal"].asMoney(); totals["GLYear"].asInt() == year && opening != Money())
      plan[{numbers.at(totals["GLAccountID"].asInt()), 0, 0}][0] += opening;
  return plan;
}

void fill(Plan& plan, int percent) {
  const Money drawings = plan[{"3100", 0, 0}][0];  // of the year before, to the owners' capital
  plan[{"3100", 0, 0}][1] -= drawings;
  plan[{"3000", 0, 0}][1] += drawings;
  for (const Budget& row : kBudgets)
    for (std::size_t month = 0; month < kMonths; ++month) {
      const int amount = row.month + static_cast<int>(month) * row.more;
      const Money planned = Money::fromRaw(amount * (isResult(row.account) ? percent : 100) / 100 * Money::kScale);
      plan[{row.account, row.department, row.product}][1 + month] += planned;
      plan[{kHomeBank, 0, 0}][1 + month] -= planned;
    }
}

// With which the year behind it begins.
Plan carriedForward(const Plan& plan) {
  Plan next;
  for (const auto& [combination, year] : plan) {
    const std::string& account = std::get<0>(combination);
    next[{isResult(account) ? kRetainedEarnings : account, 0, 0}][0] +=
        std::accumulate(year.begin(), year.end(), Money());
  }
  return next;
}

void write(store::Database& database, const std::map<std::string, int>& accounts, int year, const Plan& plan) {
  Cursor budget(database, "GLBudget");
  budget.open();
  for (const auto& planned : plan)
    addRow(budget, [&] {
      const auto& [account, department, product] = planned.first;
      const auto& amounts = planned.second;
      budget["GLAccountID"] = accounts.at(account);
      if (department != noDepartment) budget["SubAccount1ID"] = Value(department);
      if (product != noProduct) budget["SubAccount2ID"] = Value(product);
      budget["GLYear"] = year;
      budget["ActualBudget"] = "B";
      if (amounts[0] != Money()) budget["OpeningBal"] = amounts[0];
      for (std::size_t month = 1; month <= kMonths; ++month)
        budget["Amount" + std::to_string(month)] = amounts.at(month);
    });
}

}  // namespace

void writeSampleBudget(store::Database& database, const std::map<std::string, int>& accounts, int year) {
  Plan plan = openings(database, accounts, year);
  fill(plan, 100);
  write(database, accounts, year, plan);
  plan = carriedForward(plan);
  fill(plan, 100 + kRise);
  write(database, accounts, year + 1, plan);
}

}  // namespace quillon::shell
