#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "ledger/Accounts.h"

namespace quillon::store {
class Database;
}

// What financial statements are made of: a title, the columns, and lines that are text, amounts of accounts, or totals
// of other lines. Kept in FStmt, FStmtLin, FStmtLAc and FStmtLTo.
namespace quillon::ledger {

enum class StatementKind { balanceSheet, incomeStatement };

// Of a revenue line a statement of changes shows the opposite of what the ledger has, of a line of liabilities or
// equity a statement of balances does: credits are negative there, and are read as what was earned or is owed.
enum class LineType { heading, detail, detailRevenue, detailLiEq, total, totalRevenue, totalLiEq };
inline constexpr std::array<std::string_view, 7> kLineTypes = {
    "Heading", "Detail", "Detail Revenue", "Detail Li Eq", "Total", "Total Revenue", "Total Li Eq"};
inline std::string_view nameOf(LineType type) { return kLineTypes[static_cast<std::size_t>(type)]; }
LineType lineTypeNamed(std::string_view name);  // a heading where it is none
bool isDetail(LineType type);
bool isTotal(LineType type);

// The choices of FStmt.ColumnFormat.
inline constexpr std::array<std::string_view, 7> kColumnFormats = {
    "Net Change: Simple", "Net Change: Compare period", "Net Change: Compare year", "Net Change: Compare budget",
    "Balance: Simple",    "Balance: Compare year",      "Balance: Compare budget"};
inline bool showsChanges(std::string_view format) { return format.starts_with("Net"); }
inline bool showsBalances(std::string_view format) { return format.starts_with("Bal"); }
inline bool showsBudget(std::string_view format) { return format.ends_with("Compare budget"); }

// Accounts by their numbers, compared as texts, both ends included; subaccount ids limit it, 0 is any.
struct StatementRange {
  std::string from, to;
  std::array<int, kSubaccountLevels> subaccounts = {};

  bool covers(std::string_view account) const { return from <= account && account <= to; }
};

struct StatementLine {
  int seq = 0;  // by which totals call it
  std::string heading;
  LineType type = LineType::heading;
  std::vector<StatementRange> ranges = {};
  std::vector<int> members = {};  // of a total: the lines that it adds up, details all
};

struct StatementDefinition {
  std::string title, format;
  std::vector<StatementLine> lines = {};  // in the order of print
};

// As it is stored; Error where there is none. A range without an end is a single account.
StatementDefinition readStatement(store::Database& database, int stmtId);

}  // namespace quillon::ledger
