#include "ledger/LedgerLines.h"

#include "base/Errors.h"
#include "ledger/Sources.h"
#include "store/table/Table.h"

namespace quillon::ledger {

using store::Value;

LedgerLines::LedgerLines(store::Database& database, int year, int period)
    : rows_(database, "GLHist"), year_(year), onlyPeriod_(period) {
  rows_.open();
  id_ = rows_.fieldPosition("GLHistID"), period_ = rows_.fieldPosition("GLPeriod");
  date_ = rows_.fieldPosition("TransDate"), number_ = rows_.fieldPosition("JVNumber");
  amount_ = rows_.fieldPosition("Amount"), source_ = rows_.fieldPosition("Source");
  transType_ = rows_.fieldPosition("TransType"), description_ = rows_.fieldPosition("TransDescription");
  holdMoment();
}

void LedgerLines::holdMoment() {
  rows_.cancelRange();
  rows_.setIndex({});
  rows_.last();
  last_ = rows_.isEmpty() ? 0 : id();
  version_ = table().version();
  rows_.setIndex("GLAccountIDPeriodDateJV");
}

bool LedgerLines::enter(const AccountKey& account) {
  std::vector<Value> key = {Value(account[0])};
  for (std::size_t level = 1; level < account.size(); ++level) {
    key.emplace_back();
    if (account[level] != 0) key.back() = Value(account[level]);
  }
  key.emplace_back(year_);
  if (onlyPeriod_ > 0) key.emplace_back(onlyPeriod_);
  rows_.setRange(key, key);
  return skipLater();
}

bool LedgerLines::next() {
  rows_.next();
  return skipLater();
}

void LedgerLines::requireAll(Money came, Money change) {
  if (came != change && table().version() != version_)
    throw Error("The ledger was changed while it was read...\rPrint it again");
}

bool LedgerLines::skipLater() {
  while (!rows_.eof() && id() > last_) rows_.next();
  return !rows_.eof();
}

std::string LedgerLines::source() { return sourceText(rows_.field(source_).value(), rows_.field(transType_).value()); }

std::string LedgerLines::description() { return rows_.field(description_).asText(); }

}  // namespace quillon::ledger
