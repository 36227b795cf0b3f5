#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "ledger/StatementDefinition.h"
#include "ledger/Totals.h"
#include "store/Cursor.h"

namespace quillon::ledger {

// What accounts add up to: an opening balance and the change in each period.
struct Figures {
  using Year = std::array<Money, kPeriods + 1>;
  Year actual = {}, lastYear = {}, budget = {};

  Figures& operator+=(const Figures& other);
};

// The figures of ranges of accounts, out of the ledger's totals and the budget of a year. Each account is read once,
// when it is first asked for, by an index.
class StatementFigures {
 public:
  struct Source {
    std::string actual = "GLActual";  // the table
    int year = 0;
    bool budget = false;                                  // whether it is asked for
    std::array<int, kSubaccountLevels> subaccounts = {};  // that limit it; 0: all
  };

  StatementFigures(store::Database& database, Source source);

  // What it reads from; those who want one moment's figures hold them all.
  std::vector<store::Table*> tables();
  Figures of(const StatementRange& range);

 private:
  struct Row {
    std::array<int, kSubaccountLevels> subaccounts;
    Figures figures;
  };
  struct Account {
    std::string number;
    int id = 0;
    bool read = false;
    Figures sum = {};            // of the rows
    std::vector<Row> rows = {};  // one for each combination of subaccounts
  };
  void readAccounts();
  void read(Account& account);
  void addRows(store::Cursor& rows, const TotalsFields& fields, Account& account, int firstYear);

  Source source_;
  store::Cursor accountRows_, actual_, budget_;
  std::optional<TotalsFields> actualFields_, budgetFields_;  // while open
  std::vector<Account> accounts_;                            // by number
};

}  // namespace quillon::ledger
