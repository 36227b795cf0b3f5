#include "ledger/AuditOpenings.h"

#include <map>
#include <set>

#include "form/RowKey.h"
#include "ledger/CarryForward.h"
#include "ledger/Totals.h"
#include "store/Cursor.h"

namespace quillon::ledger {
namespace {

struct Account {
  AccountType type;
  bool retainedEarnings;
};

struct Total {
  int account;
  Money opening, closing;
};

using Year = std::map<std::string, Total>;  // by "7;-;3;-"

class Openings {
 public:
  Openings(store::Cursor& accounts, store::Cursor& totals, int lastYear) {
    for (accounts.first(); !accounts.eof(); accounts.next()) {
      const Account account{static_cast<AccountType>(accounts["AccountType"].asInt()),
                            accounts["RetainedEarnings"].asBool()};
      accounts_.emplace(accounts["GLAccountID"].asInt(), account);
      if (account.type == AccountType::equity && account.retainedEarnings)
        retained_.insert(accounts["GLAccountID"].value().toText() + ";-;-;-");
    }
    for (totals.first(); !totals.eof(); totals.next())
      if (const int year = totals["GLYear"].asInt(); year <= lastYear)
        years_[year].emplace(combinationOf(totals), Total{totals["GLAccountID"].asInt(), totals["OpeningBal"].asMoney(),
                                                          closingBalance(totals)});
    for (const auto& [year, rows] : years_)
      if (year < lastYear) check(year, rows);
  }

  std::vector<Disagreement> found;

 private:
  static std::string combinationOf(store::Cursor& row) {
    std::string text;
    for (const store::Value& id : form::valuesOf(row, "GLAccountID;SubAccount1ID;SubAccount2ID;SubAccount3ID"))
      text += (text.empty() ? "" : ";") + (id.isNull() ? "-" : id.toText());
    return text;
  }

  // What `rows` of a year leave to the next.
  void check(int year, const Year& rows) {
    CarryForward forward;
    std::map<std::string, Money> openings;
    for (const auto& [combination, total] : rows) {
      const auto account = accounts_.find(total.account);
      if (account != accounts_.end())
        openings[combination] = forward.next(account->second.type, account->second.retainedEarnings, total.closing);
    }
    if (retained_.size() == 1)
      openings[*retained_.begin()] = forward.retained();
    else
      found.push_back({"GLAccnt", "the table", "retained earnings accounts", std::to_string(retained_.size()), "1"});
    compare(year + 1, openings);
  }

  void compare(int year, std::map<std::string, Money>& openings) {
    const auto there = years_.find(year);
    const Year rows = there == years_.end() ? Year() : there->second;
    for (const auto& [combination, total] : rows) openings.try_emplace(combination);
    for (const auto& [combination, opening] : openings) {
      const auto row = rows.find(combination);
      const Money stored = row == rows.end() ? Money() : row->second.opening;
      if (stored != opening)
        found.push_back({"GLActual", combination + ";" + std::to_string(year), "OpeningBal",
                         row == rows.end() ? "no row" : stored.toText(), opening.toText()});
    }
  }

  std::map<int, Account> accounts_;
  std::set<std::string> retained_;  // combinations
  std::map<int, Year> years_;
};

}  // namespace

std::vector<Disagreement> auditOpenings(store::Database& database, int fiscalYear) {
  store::Cursor accounts(database, "GLAccnt"), totals(database, "GLActual");
  accounts.open();
  totals.open();
  return Openings(accounts, totals, fiscalYear).found;
}

}  // namespace quillon::ledger
