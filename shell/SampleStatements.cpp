#include "shell/SampleStatements.h"

#include <span>
#include <string_view>

#include "shell/SampleBudget.h"
#include "shell/SampleLedger.h"
#include "shell/SampleVouchers.h"

namespace quillon::shell {
namespace {

using store::Cursor;

constexpr const char *kHeading = "Heading", *kDetail = "Detail", *kRevenue = "Detail Revenue",
                     *kLiabilityOrEquity = "Detail Li Eq", *kTotal = "Total", *kTotalRevenue = "Total Revenue",
                     *kTotalLiEq = "Total Li Eq";

struct Line {
  const char* heading;
  const char* type;
  const char *from = "", *to = "";  // accounts of a detail
  std::string_view totals = {};     // the letters of the totals that it goes into; of a total its own
  SampleProduct product = noProduct;
};

constexpr Line kIncomeStatement[] = {
    {"Revenue", kHeading},
    {"Sales", kRevenue, "4000", "4099", "RGN"},
    {"Returns and Discounts", kRevenue, "4100", "4299", "RGN"},
    {"Other Income", kRevenue, "4300", "4999", "RGN"},
    {.heading = "Total Revenue", .type = kTotalRevenue, .totals = "R"},
    {"Cost of Sales", kHeading},
    {"Cost of Goods Sold", kDetail, "5000", "5099", "CGN"},
    {"Purchase Discounts and Freight", kDetail, "5100", "5299", "CGN"},
    {"Workshop", kDetail, "5300", "5599", "CGN"},
    {"Inventory Adjustments", kDetail, "5600", "5999", "CGN"},
    {.heading = "Total Cost of Sales", .type = kTotal, .totals = "C"},
    {.heading = "Gross Profit", .type = kTotalRevenue, .totals = "G"},
    {"Expenses", kHeading},
    {"Wages and Payroll Costs", kDetail, "6000", "6099", "EN"},
    {"Premises", kDetail, "6100", "6199", "EN"},
    {"Office and Insurance", kDetail, "6200", "6349", "EN"},
    {"Repairs and Vehicles", kDetail, "6350", "6449", "EN"},
    {"Advertising, Travel and Delivery", kDetail, "6450", "6699", "EN"},
    {"Bank Charges and Interest", kDetail, "6700", "6799", "EN"},
    {"Bad Debts and Depreciation", kDetail, "6800", "6899", "EN"},
    {"Other Expenses", kDetail, "6900", "6999", "EN"},
    {"Gain or Loss on Exchange", kDetail, "7000", "7099", "EN"},
    {"Income Tax", kDetail, "7900", "7999", "EN"},
    {.heading = "Total Expenses", .type = kTotal, .totals = "E"},
    {.heading = "Net Income", .type = kTotalRevenue, .totals = "N"},
};

constexpr Line kBalanceSheet[] = {
    {"ASSETS", kHeading},
    {"Cash and Banks", kDetail, "1000", "1099", "CA"},
    {"Receivables", kDetail, "1100", "1199", "CA"},
    {"Inventory", kDetail, "1200", "1299", "CA"},
    {"Prepaid Expenses", kDetail, "1300", "1499", "CA"},
    {.heading = "Current Assets", .type = kTotal, .totals = "C"},
    {"Furniture, Vehicles and Machinery", kDetail, "1500", "1999", "A"},
    {.heading = "Total Assets", .type = kTotal, .totals = "A"},
    {"LIABILITIES & EQUITY", kHeading},
    {"Accounts Payable", kLiabilityOrEquity, "2000", "2049", "LB"},
    {"Customer Deposits", kLiabilityOrEquity, "2050", "2099", "LB"},
    {"Taxes on Sales", kLiabilityOrEquity, "2100", "2199", "LB"},
    {"Wages and Payroll Deductions", kLiabilityOrEquity, "2200", "2299", "LB"},
    {"Accrued Liabilities and Income Tax", kLiabilityOrEquity, "2300", "2499", "LB"},
    {"Bank Loan", kLiabilityOrEquity, "2500", "2999", "LB"},
    {.heading = "Total Liabilities", .type = kTotalLiEq, .totals = "L"},
    {"Owners' Capital less Drawings", kLiabilityOrEquity, "3000", "3899", "EB"},
    {"Retained Earnings", kLiabilityOrEquity, "3900", "3999", "EB"},
    {"Retained Earnings Current Year", kLiabilityOrEquity, "4000", "7999", "EB"},
    {.heading = "Total Equity", .type = kTotalLiEq, .totals = "E"},
    {.heading = "Total Liabilities & Equity", .type = kTotalLiEq, .totals = "B"},
};

constexpr Line kSalesByProduct[] = {
    {"Sales", kHeading},
    {"Tables", kRevenue, "4000", "4099", "S", tables},
    {"Chairs", kRevenue, "4000", "4099", "S", chairs},
    {.heading = "Total Sales", .type = kTotalRevenue, .totals = "S"},
    {"Returns", kHeading},
    {"Tables", kDetail, "4100", "4199", "R", tables},
    {"Chairs", kDetail, "4100", "4199", "R", chairs},
    {.heading = "Total Returns", .type = kTotal, .totals = "R"},
};

class Writer {
 public:
  explicit Writer(store::Database& database) : database_(database) {
    for (Cursor* cursor : {&head_, &lines_, &ranges_, &members_}) cursor->open();
  }

  void write(int id, const char* title, const char* format, const char* notes, std::span<const Line> lines) {
    addRow(head_, [&] {
      head_["StmtID"] = id;
      head_["StmtTitle"] = title;
      head_["ColumnFormat"] = format;
      head_["Notes"] = notes;
    });
    for (std::size_t i = 0; i < lines.size(); ++i) writeLine(id, lines, i);
  }

  void writeControl(int next) {
    Cursor control(database_, "FStmtCtl");
    control.open();
    control.edit();
    control["NextStmtID"] = next;
    control.post();
  }

 private:
  static int seqOf(std::size_t place) { return static_cast<int>(place) + 1; }

  void writeLine(int id, std::span<const Line> lines, std::size_t place) {
    const Line& line = lines[place];
    addRow(lines_, [&] {
      lines_["StmtID"] = id;
      lines_["Seq"] = seqOf(place);
      lines_["LineNo"] = seqOf(place);
      lines_["LineHeading"] = line.heading;
      lines_["LineType"] = line.type;
    });
    const bool isTotal = *line.from == '\0';
    if (isTotal || line.totals.empty()) return;
    addRow(ranges_, [&] {
      ranges_["StmtID"] = id;
      ranges_["Seq"] = seqOf(place);
      ranges_["AccountFrom"] = line.from;
      ranges_["AccountTo"] = line.to;
      if (line.product != noProduct) ranges_["SubAccount2ID"] = static_cast<int>(line.product);
    });
    for (const char letter : line.totals)
      for (std::size_t total = 0; total < lines.size(); ++total)
        if (*lines[total].from == '\0' && lines[total].totals == std::string_view(&letter, 1))
          addMember(id, seqOf(place), seqOf(total));
  }

  void addMember(int id, int seq, int totalSeq) {
    addRow(members_, [&] {
      members_["StmtID"] = id;
      members_["Seq"] = seq;
      members_["TotalLineSeq"] = totalSeq;
    });
  }

  store::Database& database_;
  Cursor head_{database_, "FStmt"}, lines_{database_, "FStmtLin"}, ranges_{database_, "FStmtLAc"},
      members_{database_, "FStmtLTo"};
};

}  // namespace

void writeSampleStatements(store::Database& database, const std::map<std::string, int>& accounts, int year) {
  Writer writer(database);
  writer.write(1, "Balance Sheet", "Balance: Simple", "By groups of accounts.", kBalanceSheet);
  writer.write(2, "Income Statement", "Net Change: Compare budget", "By groups of accounts, with the budget.",
               kIncomeStatement);
  writer.write(3, "Balance Sheet, two years", "Balance: Compare year", "By groups of accounts, with the year before.",
               kBalanceSheet);
  writer.write(4, "Income Statement, two years", "Net Change: Compare year",
               "By groups of accounts, with the year before.", kIncomeStatement);
  writer.write(5, "Sales by Product", "Net Change: Compare year", "Accounts narrowed by a subaccount.",
               kSalesByProduct);
  writer.writeControl(6);
  writeSampleBudget(database, accounts, year);
}

}  // namespace quillon::shell
