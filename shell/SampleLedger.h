#pragma once

#include <map>
#include <span>
#include <string>

#include "base/Period.h"
#include "shell/SampleVouchers.h"
#include "store/Cursor.h"

namespace quillon::shell {

// Writes vouchers into a company that has none; `accounts` has the ids by numbers. Those of periods up to `lastPosted`
// are posted: they stand in the ledger's history and totals as the posting of vouchers leaves them there, a reversed
// one in the next period, too. Years before that of `lastPosted` are carried forward to the next. The banks are
// reconciled up to the month before the last one, which is in work. In a transaction of the caller over the tables
// named.
inline constexpr const char* kSampleLedgerTables[] = {"JV", "JVDet", "JVCtl", "GLHist", "GLActual"};
void writeSampleLedger(store::Database& database, const std::map<std::string, int>& accounts,
                       std::span<const SampleVoucher> vouchers, Period lastPosted);

// Adds a row to a table: `fill` sets its fields.
template <typename Fill>
void addRow(store::Cursor& rows, const Fill& fill) {
  rows.append();
  fill();
  rows.post();
}

}  // namespace quillon::shell
