#include "shell/ChartOfAccounts.h"

#include "base/Text.h"
#include "shell/CountryDefaults.h"

namespace quillon::shell {
namespace {

using enum AccountType;
using enum AccountUse;

constexpr int kService = static_cast<int>(Chart::service);
constexpr int kTrade = static_cast<int>(Chart::trade);
constexpr int kMade = static_cast<int>(Chart::manufacturing);
constexpr int kGoods = kTrade | kMade;
constexpr int kAll = kService | kGoods;

struct Row {
  int charts;
  const char* number;
  const char* name;  // with {bank}, {tax}, {work} as the country calls them
  AccountType type;
  AccountUse use = none;
};

constexpr Row kAccounts[] = {
    {kAll, "1000", "Petty Cash", asset},
    {kAll, "1010", "{bank}", asset, bank},
    {kAll, "1100", "Accounts Receivable", asset, receivable},
    {kAll, "1150", "Allowance for Doubtful Accounts", asset},
    {kService, "1200", "Supplies on Hand", asset, inventory},
    {kTrade, "1200", "Merchandise Inventory", asset, inventory},
    {kMade, "1200", "Raw Materials", asset},
    {kMade, "1210", "Work in Process", asset},
    {kMade, "1220", "Finished Goods", asset, inventory},
    {kAll, "1300", "Prepaid Expenses", asset},
    {kAll, "1500", "Office Furniture and Equipment", asset},
    {kAll, "1510", "Accumulated Depreciation - Office", asset},
    {kAll, "1520", "Vehicles", asset},
    {kAll, "1530", "Accumulated Depreciation - Vehicles", asset},
    {kMade, "1540", "Machinery", asset},
    {kMade, "1550", "Accumulated Depreciation - Machinery", asset},
    {kAll, "2000", "Accounts Payable", liability, payable},
    {kAll, "2050", "Customer Deposits", liability},
    {kAll, "2100", "{tax} Payable", liability, tax},
    {kAll, "2200", "Payroll Deductions Payable", liability},
    {kAll, "2250", "Wages Payable", liability},
    {kAll, "2300", "Accrued Liabilities", liability},
    {kAll, "2400", "Income Tax Payable", liability},
    {kAll, "2500", "Bank Loan", liability},
    {kAll, "3000", "Owners' Capital", equity},
    {kAll, "3100", "Owners' Drawings", equity},
    {kAll, "3900", "Retained Earnings", equity, retainedEarnings},
    {kService, "4000", "Service Revenue", revenue, sales},
    {kGoods, "4000", "Sales", revenue, sales},
    {kGoods, "4100", "Sales Returns and Allowances", revenue},
    {kAll, "4200", "Sales Discounts", revenue, receivableDiscount},
    {kGoods, "4300", "Freight Recovered", revenue},
    {kAll, "4800", "Interest Income", revenue},
    {kAll, "4900", "Other Income", revenue},
    {kService, "5000", "Cost of Services", expense, costOfSales},
    {kGoods, "5000", "Cost of Goods Sold", expense, costOfSales},
    {kService, "5050", "Subcontractors", expense},
    {kAll, "5100", "Purchase Discounts", expense, payableDiscount},
    {kGoods, "5200", "Freight In", expense},
    {kMade, "5300", "Direct {work}", expense},
    {kMade, "5400", "Factory Supplies", expense},
    {kMade, "5410", "Factory Rent", expense},
    {kMade, "5420", "Machine Maintenance", expense},
    {kMade, "5430", "Depreciation - Machinery", expense},
    {kMade, "5500", "{work} and Overhead Applied", expense},
    {kGoods, "5600", "Inventory Adjustments", expense},
    {kAll, "6000", "Wages and Salaries", expense},
    {kAll, "6050", "Employer Payroll Costs", expense},
    {kAll, "6100", "Rent", expense},
    {kAll, "6150", "Electricity, Heat and Water", expense},
    {kAll, "6200", "Telephone and Internet", expense},
    {kAll, "6250", "Office Supplies", expense},
    {kAll, "6300", "Insurance", expense},
    {kAll, "6350", "Repairs and Maintenance", expense},
    {kAll, "6400", "Vehicle Expenses", expense},
    {kAll, "6450", "Advertising", expense},
    {kAll, "6500", "Travel", expense},
    {kAll, "6550", "Professional Fees", expense},
    {kService, "6600", "Training", expense},
    {kGoods, "6650", "Shipping and Delivery", expense},
    {kAll, "6700", "Bank Charges", expense},
    {kAll, "6750", "Interest Expense", expense},
    {kAll, "6800", "Bad Debts", expense, writeOff},
    {kAll, "6850", "Depreciation", expense},
    {kAll, "6900", "Other Expenses", expense},
    {kAll, "7000", "Gain or Loss on Exchange", expense, exchange},
    {kAll, "7900", "Income Tax", expense},
};

void replace(std::string& text, std::string_view mark, std::string_view word) {
  if (const std::size_t at = text.find(mark); at != std::string::npos) text.replace(at, mark.size(), word);
}

}  // namespace

std::optional<Chart> chartNamed(std::string_view name) {
  if (equalFolded(name, "service")) return Chart::service;
  if (equalFolded(name, "trade")) return Chart::trade;
  if (equalFolded(name, "manufacturing")) return Chart::manufacturing;
  return std::nullopt;
}

std::vector<ChartAccount> chartOfAccounts(Chart chart, const CountryDefaults& country) {
  std::vector<ChartAccount> accounts;
  for (const Row& row : kAccounts) {
    if ((row.charts & static_cast<int>(chart)) == 0) continue;
    std::string name = row.name;
    replace(name, "{bank}", country.bankAccount);
    replace(name, "{tax}", country.taxName);
    replace(name, "{work}", country.work);
    accounts.push_back({row.number, std::move(name), row.type, row.use});
  }
  return accounts;
}

}  // namespace quillon::shell
