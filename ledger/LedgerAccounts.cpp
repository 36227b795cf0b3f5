#include "ledger/LedgerAccounts.h"

#include <algorithm>
#include <map>
#include <tuple>

#include "ledger/Totals.h"
#include "store/Cursor.h"
#include "store/Database.h"

namespace quillon::ledger {
namespace {

using store::Cursor;
using store::Value;

// Codes and names of the subaccounts of a level, by their ids.
using Subaccounts = std::map<int, std::pair<std::string, std::string>>;

// A year's totals and budgets of one account after the other, at one moment.
class Reader {
 public:
  Reader(store::Database& database, int year, int period)
      : year_(year),
        period_(period),
        accounts_(database, "GLAccnt"),
        actual_(database, "GLActual"),
        budget_(database, "GLBudget") {
    accounts_.setIndex("GLAccount");
    for (Cursor* totals : {&actual_, &budget_}) totals->setIndex("GLAccountIDYear");
    for (Cursor* cursor : {&accounts_, &actual_, &budget_}) cursor->open();
    for (int level = 1; level <= kSubaccountLevels; ++level) readSubaccounts(database, level);
  }

  std::vector<store::Table*> tables() { return {&accounts_.table(), &actual_.table(), &budget_.table()}; }

  std::vector<LedgerAccount> all() {
    const TotalsFields actual(actual_), budget(budget_);
    const int id = accounts_.fieldPosition("GLAccountID"), number = accounts_.fieldPosition("GLAccount"),
              name = accounts_.fieldPosition("AccountName");
    for (accounts_.first(); !accounts_.eof(); accounts_.next()) {
      account_ = accounts_.field(id).asInt();
      number_ = accounts_.field(number).asText(), name_ = accounts_.field(name).asText();
      begin_ = all_.size();
      add(actual_, actual, false);
      add(budget_, budget, true);
      std::sort(all_.begin() + static_cast<std::ptrdiff_t>(begin_), all_.end(), [](const auto& one, const auto& other) {
        return std::tie(one.subaccounts, one.ids) < std::tie(other.subaccounts, other.ids);
      });
    }
    return std::move(all_);
  }

 private:
  void readSubaccounts(store::Database& database, int level) {
    Cursor rows(database, subaccountTable(level));
    rows.open();
    for (; !rows.eof(); rows.next())
      names_[static_cast<std::size_t>(level - 1)][rows["SubAccountID"].asInt()] = {rows["SubAccount"].asText(),
                                                                                   rows["SubAccountName"].asText()};
  }

  // The account's rows of the year.
  void add(Cursor& rows, const TotalsFields& fields, bool planned) {
    rows.setRange({Value(account_), Value(year_)}, {Value(account_), Value(year_)});
    for (; !rows.eof(); rows.next()) {
      LedgerAccount& account = at(fields.subaccounts());
      Money before = fields.amount(0), change;
      for (int some = 1; some <= kPeriods; ++some) {
        if (period_ == 0 || some == period_)
          change += fields.amount(some);
        else if (some < period_)
          before += fields.amount(some);
      }
      (planned ? account.budget : account.opening) += before;
      (planned ? account.budget : account.change) += change;
    }
  }

  LedgerAccount& at(const std::array<int, kSubaccountLevels>& subaccounts) {
    AccountKey ids = {account_};
    std::ranges::copy(subaccounts, ids.begin() + 1);
    const auto same = std::find_if(all_.begin() + static_cast<std::ptrdiff_t>(begin_), all_.end(),
                                   [&](const LedgerAccount& some) { return some.ids == ids; });
    if (same != all_.end()) return *same;
    LedgerAccount& account = all_.emplace_back();
    account.ids = ids;
    account.number = number_, account.name = name_;
    for (std::size_t level = 0; level < subaccounts.size(); ++level) {
      const auto found = names_[level].find(subaccounts[level]);
      if (found == names_[level].end()) continue;
      account.subaccounts[level] = found->second.first;
      account.name += " - " + found->second.second;
    }
    return account;
  }

  int year_, period_;
  Cursor accounts_, actual_, budget_;
  std::array<Subaccounts, kSubaccountLevels> names_;
  std::vector<LedgerAccount> all_;
  std::size_t begin_ = 0;  // of the account's
  int account_ = 0;
  std::string number_, name_;
};

}  // namespace

std::vector<LedgerAccount> ledgerAccounts(store::Database& database, int year, int period, LedgerLines* lines) {
  Reader reader(database, year, period);
  std::vector<store::Table*> tables = reader.tables();
  if (lines != nullptr) tables.push_back(&lines->table());
  const store::Database::Snapshot moment(database, tables);
  if (lines != nullptr) lines->holdMoment();
  return reader.all();
}

}  // namespace quillon::ledger
