#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "base/Date.h"
#include "base/Money.h"
#include "ledger/Accounts.h"
#include "store/Cursor.h"

namespace quillon::ledger {

// The ids of an account and of the subaccounts that it is combined with; 0: none.
using AccountKey = std::array<int, 1 + kSubaccountLevels>;

// The lines of posted vouchers in a year, or in one period of it (0: all): those of one account after the other, each
// read when it is come to, in the order of periods, dates and vouchers.
class LedgerLines {
 public:
  LedgerLines(store::Database& database, int year, int period);

  store::Table& table() { return rows_.table(); }
  // Leaves out what is posted from now on, so that the lines agree with totals of this moment.
  void holdMoment();
  // To the account's first line, and to the next; false when there is none.
  bool enter(const AccountKey& account);
  bool next();
  // Behind an account's last line, with what its lines came to and what they come to by the totals of that moment.
  // Error where lines were unposted since, and are missing; totals whose history was purged never agreed, and pass.
  void requireAll(Money came, Money change);

  int id() { return rows_.field(id_).asInt(); }
  int period() { return rows_.field(period_).asInt(); }
  store::Value date() { return rows_.field(date_).value(); }
  store::Value number() { return rows_.field(number_).value(); }
  Money amount() { return rows_.field(amount_).asMoney(); }
  std::string source();
  std::string description();

 private:
  bool skipLater();  // false: behind the account's last line

  store::Cursor rows_;
  int year_, onlyPeriod_;
  int id_, period_, date_, number_, amount_, source_, transType_, description_;  // places of fields
  int last_ = 0;                                                                 // of the lines at that moment
  std::uint64_t version_ = 0;                                                    // of the table at that moment
};

}  // namespace quillon::ledger
