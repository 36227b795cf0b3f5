#include "ledger/StatementFigures.h"

#include <algorithm>

namespace quillon::ledger {
namespace {

using store::Value;

void add(Figures::Year& sum, const Figures::Year& other) {
  for (std::size_t i = 0; i < sum.size(); ++i) sum[i] += other[i];
}

// Whether a row with these subaccounts is one of those that are wanted; 0 wants any.
bool fits(const std::array<int, kSubaccountLevels>& wanted, const std::array<int, kSubaccountLevels>& has) {
  for (std::size_t i = 0; i < wanted.size(); ++i)
    if (wanted[i] != 0 && wanted[i] != has[i]) return false;
  return true;
}

}  // namespace

Figures& Figures::operator+=(const Figures& other) {
  add(actual, other.actual);
  add(lastYear, other.lastYear);
  add(budget, other.budget);
  return *this;
}

StatementFigures::StatementFigures(store::Database& database, Source source)
    : source_(std::move(source)),
      accountRows_(database, "GLAccnt"),
      actual_(database, source_.actual),
      budget_(database, "GLBudget") {
  accountRows_.setIndex("GLAccount");
  for (store::Cursor* cursor : {&actual_, &budget_}) cursor->setIndex("GLAccountIDYear");
  for (store::Cursor* cursor : {&accountRows_, &actual_, &budget_}) cursor->open();
  actualFields_.emplace(actual_);
  budgetFields_.emplace(budget_);
}

std::vector<store::Table*> StatementFigures::tables() {
  std::vector<store::Table*> tables;
  for (store::Cursor* cursor : {&accountRows_, &actual_, &budget_}) tables.push_back(&cursor->table());
  return tables;
}

void StatementFigures::readAccounts() {
  const int number = accountRows_.fieldPosition("GLAccount"), id = accountRows_.fieldPosition("GLAccountID");
  for (accountRows_.first(); !accountRows_.eof(); accountRows_.next())
    accounts_.push_back({.number = accountRows_.field(number).asText(), .id = accountRows_.field(id).asInt()});
}

void StatementFigures::read(Account& account) {
  addRows(actual_, *actualFields_, account, source_.year - 1);
  if (source_.budget) addRows(budget_, *budgetFields_, account, source_.year);
  for (const Row& row : account.rows) account.sum += row.figures;
  account.read = true;
}

void StatementFigures::addRows(store::Cursor& rows, const TotalsFields& fields, Account& account, int firstYear) {
  rows.setRange({Value(account.id), Value(firstYear)}, {Value(account.id), Value(source_.year)});
  for (; !rows.eof(); rows.next()) {
    const std::array<int, kSubaccountLevels> subaccounts = fields.subaccounts();
    if (!fits(source_.subaccounts, subaccounts)) continue;
    const auto same = std::ranges::find(account.rows, subaccounts, &Row::subaccounts);
    Row& row = same != account.rows.end() ? *same : account.rows.emplace_back(Row{subaccounts, {}});
    const bool thisYear = fields.year() == source_.year;
    Figures::Year& year = &rows == &budget_ ? row.figures.budget : thisYear ? row.figures.actual : row.figures.lastYear;
    for (int period = 0; period <= kPeriods; ++period) year[static_cast<std::size_t>(period)] += fields.amount(period);
  }
}

Figures StatementFigures::of(const StatementRange& range) {
  if (accounts_.empty()) readAccounts();
  const bool anySubaccount = range.subaccounts == std::array<int, kSubaccountLevels>{};
  Figures sum;
  for (auto account = std::ranges::lower_bound(accounts_, range.from, {}, &Account::number);
       account != accounts_.end() && range.covers(account->number); ++account) {
    if (!account->read) read(*account);
    if (anySubaccount)
      sum += account->sum;
    else
      for (const Row& row : account->rows)
        if (fits(range.subaccounts, row.subaccounts)) sum += row.figures;
  }
  return sum;
}

}  // namespace quillon::ledger
