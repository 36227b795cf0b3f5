#include "ledger/LedgerAccounts.h"

#include "form/App.h"
#include "ledger/Sources.h"
#include "store/Query.h"

namespace quillon::ledger {
namespace {

using store::Value;
using Key = std::array<int, 1 + kSubaccountLevels>;

std::string fieldOf(std::size_t level) { return level == 0 ? "GLAccountID" : subaccountField(static_cast<int>(level)); }

Key keyOf(store::Query& row) {
  Key key;
  for (std::size_t level = 0; level < key.size(); ++level) {
    const Value id = row.value(fieldOf(level));
    key[level] = id.isNull() ? 0 : id.asInt();
  }
  return key;
}

std::string totalsStatement(const std::string& table, int year) {
  std::string ids = "t.GLAccountID", joins, order = "g.GLAccount", amounts = ", t.OpeningBal";
  for (int level = 1; level <= kSubaccountLevels; ++level) {
    const std::string s = "s" + std::to_string(level), id = "t." + subaccountField(level);
    ids += ", " + id;
    joins += " LEFT OUTER JOIN " + subaccountTable(level) + " " + s + " ON " + s + ".SubAccountID = " + id;
    order += ", " + s + ".SubAccount";
  }
  for (int period = 1; period <= kPeriods; ++period) amounts += ", t." + amountField(period);
  return "SELECT g.GLAccount, " + ids + amounts + " FROM " + table +
         " t INNER JOIN GLAccnt g ON g.GLAccountID = t.GLAccountID" + joins +
         " WHERE t.GLYear = " + std::to_string(year) + " ORDER BY " + order;
}

// What stood before the first of the periods, and what they changed; all of the year where `period` is 0.
std::pair<Money, Money> figuresOf(store::Query& row, int period) {
  Money before = row.value("OpeningBal").asMoney(), change;
  for (int some = 1; some <= kPeriods; ++some) {
    const Money amount = row.value(amountField(some)).asMoney();
    if (period == 0 || some == period)
      change += amount;
    else if (some < period)
      before += amount;
  }
  return {before, change};
}

}  // namespace

std::vector<LedgerAccount> ledgerAccounts(form::App& app, int year, int period) {
  std::map<Key, Money> budgets;
  store::Query rows(app.database(), totalsStatement("GLBudget", year));
  rows.open();
  for (; !rows.eof(); rows.next()) {
    const auto [before, change] = figuresOf(rows, period);
    budgets[keyOf(rows)] += before + change;
  }
  rows.close();
  rows.setStatement(totalsStatement("GLActual", year));
  rows.open();
  std::vector<LedgerAccount> all;
  for (; !rows.eof(); rows.next()) {
    const auto [before, change] = figuresOf(rows, period);
    LedgerAccount account{.ids = keyOf(rows),
                          .number = rows.value("GLAccount").asText(),
                          .name = {},
                          .opening = before,
                          .change = change,
                          .budget = {}};
    if (const auto planned = budgets.find(account.ids); planned != budgets.end()) account.budget = planned->second;
    account.name = accountNames(app, rows.value(fieldOf(0)),
                                {rows.value(fieldOf(1)), rows.value(fieldOf(2)), rows.value(fieldOf(3))});
    all.push_back(std::move(account));
  }
  return all;
}

std::map<Key, std::vector<LedgerLine>> ledgerLines(form::App& app, int year, int period) {
  std::string condition = "GLYear = " + std::to_string(year);
  if (period > 0) condition += " AND GLPeriod = " + std::to_string(period);
  store::Query rows(app.database(),
                    "SELECT * FROM GLHist WHERE " + condition + " ORDER BY GLPeriod, TransDate, JVNumber, GLHistID");
  rows.open();
  std::map<Key, std::vector<LedgerLine>> all;
  for (; !rows.eof(); rows.next()) {
    const Value voucher = rows.value("JVID"), description = rows.value("TransDescription");
    all[keyOf(rows)].push_back({.period = rows.value("GLPeriod").asInt(),
                                .number = rows.value("JVNumber").isNull() ? 0 : rows.value("JVNumber").asInt(),
                                .voucher = voucher.isNull() ? 0 : voucher.asInt(),
                                .date = rows.value("TransDate").dateOrNone(),
                                .source = sourceText(rows.value("Source"), rows.value("TransType")),
                                .description = description.isNull() ? std::string() : description.asText(),
                                .amount = rows.value("Amount").asMoney()});
  }
  return all;
}

}  // namespace quillon::ledger
