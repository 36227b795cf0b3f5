#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "ledger/Accounts.h"
#include "ledger/StatementDefinition.h"
#include "store/Value.h"

namespace quillon::store {
class Database;
}

namespace quillon::ledger {

class RestatedLedger;

// What a statement is worked out for.
struct StatementRequest {
  int stmtId = 0;  // of a stored definition; 0: the one that AutoCreate would make of the chart as it is now
  StatementKind builtIn = StatementKind::balanceSheet;  // which of the two, where stmtId is 0
  std::string format = {};                              // of the columns; empty: the definition's own
  int year = 0;
  int period = 1;                                       // 1 to 12
  int upperPeriod = 0;                                  // the last of a range; 0: the period alone
  std::array<int, kSubaccountLevels> subaccounts = {};  // ids that limit it; 0: all
  // Accounts in foreign currency at the rates of the periods' ends, in a copy in memory that lives as long as the
  // statement; there can be one at a time.
  bool autoForex = false;
};

// A financial statement: the lines of a definition with their amounts, from the ledger's totals and the budget as they
// are when it is made. Amounts are exact; those of revenue, liabilities and equity come with the sign in which they are
// read.
//
// Errors: Error where there is no such definition, where period, range or format is none, and where another restated
// statement lives ("This report (with Auto-Forex) is already running.\rMultiple instances are not allowed").
class Statement {
 public:
  static constexpr int kMostColumns = 6;

  struct Line {
    int seq = 0;
    std::string heading;
    LineType type = LineType::heading;
    std::array<store::Value, kMostColumns> values;  // as many as there are columns; null of a heading
    // The accounts that it adds up, of a total those of its members.
    std::vector<StatementRange> ranges;
  };

  // What the figures of a column are made of: totals of the year, of the one before, the year's budget.
  struct Source {
    bool thisYear = false, lastYear = false, budget = false;
  };

  Statement(store::Database& database, const StatementRequest& request);
  ~Statement();
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  const std::string& title() const { return title_; }
  const std::string& format() const { return format_; }
  const std::string& periodCaption() const { return periodCaption_; }   // "Period: 3/2026 - 5/2026"
  const std::vector<std::string>& columns() const { return columns_; }  // captions, 1 to 6; that of one may be empty
  const std::vector<Source>& sources() const { return sources_; }       // of the columns
  const std::vector<Line>& lines() const { return lines_; }             // in the order of print

 private:
  std::unique_ptr<RestatedLedger> restated_;
  std::string title_, format_, periodCaption_;
  std::vector<std::string> columns_;
  std::vector<Source> sources_;
  std::vector<Line> lines_;
};

}  // namespace quillon::ledger
