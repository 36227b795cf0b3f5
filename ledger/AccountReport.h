#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ledger/Breakdown.h"
#include "ledger/LedgerAccounts.h"
#include "reports/Report.h"

namespace quillon::ledger {

// A report on each account of a year or a period that has anything to say: a line, or the lines of each. Figures open
// what they are made of, for as long as the pages are there.
class AccountReport : public reports::Report {
 public:
  using Report::Report;
  bool first() override;
  bool next() override { return goOn(++place_); }
  int positionOf(std::string_view /*field*/) override { return -1; }

 protected:
  using Breakdown = std::function<void(form::App& app, const AccountKey& account)>;

  // Title and period, and what the report's sums open.
  void tellPeriod(reports::Bands& bands, const form::Open& open, std::string title);
  // The same with the columns "Account no." and "Name" of these widths; a name opens the account's history of the year.
  void tellAccounts(reports::Bands& bands, const form::Open& open, std::string title, int numberWidth, int nameWidth);
  // What a figure of the account opens; `place()` is the key that goes with it.
  reports::PreparedPages::Jump opensOf(Breakdown breakdown) const;
  std::int32_t place() const { return static_cast<std::int32_t>(place_); }
  void figureOpens(reports::Column& column, Breakdown breakdown) const;

  // What the report has of the accounts, as of one moment.
  virtual void read();
  // Called for each account when it is come to.
  virtual bool isLeftOut() = 0;
  // Lines whose moment is that of the accounts.
  virtual LedgerLines* lines() { return nullptr; }

  std::shared_ptr<const std::vector<LedgerAccount>> accounts() const { return accounts_; }  // those of the run
  const LedgerAccount& account() const { return (*accounts_)[place_]; }
  int year() const { return year_; }
  int period() const { return period_; }  // 0: all of the year
  int firstPeriod() const { return period_ == 0 ? 1 : period_; }
  int lastPeriod() const;

 private:
  bool goOn(std::size_t place);

  int year_ = 0, period_ = 0;
  std::shared_ptr<std::vector<LedgerAccount>> accounts_ = std::make_shared<std::vector<LedgerAccount>>();
  std::size_t place_ = 0;
};

}  // namespace quillon::ledger
