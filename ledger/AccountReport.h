#pragma once

#include <string>
#include <vector>

#include "ledger/LedgerAccounts.h"
#include "reports/Report.h"

namespace quillon::ledger {

// A report with a line for each account of a year or a period that has anything to say. An account's name opens its
// history of the year.
class AccountReport : public reports::Report {
 public:
  using Report::Report;
  bool first() override;
  bool next() override { return ++account_ != accounts_.end(); }
  int positionOf(std::string_view /*field*/) override { return -1; }

 protected:
  // Title and period, and the columns "Account no." and "Name", of these widths.
  void tellAccounts(reports::Bands& bands, const form::Open& open, std::string title, int numberWidth, int nameWidth);
  virtual bool isLeftOut(const LedgerAccount& account) const = 0;
  const LedgerAccount& account() const { return *account_; }
  int year() const { return year_; }
  int period() const { return period_; }  // 0: all of the year

 private:
  int year_ = 0, period_ = 0;
  std::vector<LedgerAccount> accounts_;
  std::vector<LedgerAccount>::const_iterator account_;
};

}  // namespace quillon::ledger
