#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "base/Date.h"
#include "base/Period.h"
#include "form/Place.h"
#include "shell/ChartOfAccounts.h"

namespace quillon::store {
class Database;
}

namespace quillon::shell {

inline constexpr int kFirstFiscalYear = 1989, kLastFiscalYear = 2050;

// The first fiscal year of a company's books. Its periods are calendar months, and the first of them need not be
// January; the program counts periods and years only, so whoever works with it has to know.
struct Books {
  int fiscalYear = 0;  // as the company calls it
  int firstMonth = 1;  // the calendar month of period 1,
  int firstYear = 0;   // and its calendar year

  // The period of a day, also of another fiscal year.
  Period periodOf(Date day) const;
  // "Period 1 is April 2026, period 12 is March 2027."
  std::string calendar() const;
};

struct NewTax {
  std::string name, code;
  double rate = 0;  // per cent
};

// Whom the program should warn, or refuse, when a document's period lies outside.
struct PeriodLimits {
  std::optional<Period> from, to;
};

// What a company is set up with.
struct NewCompany {
  std::string name;
  std::string country;  // in whose words the accounts are called
  Books books;
  std::optional<Period> defaultPeriod;  // of new documents; none: by the calendar
  PeriodLimits warn, error;
  std::string currency;
  std::optional<NewTax> tax;
  Chart chart = Chart::trade;
  std::string bankName;
};

// What the country and the books suggest: all but the name and the chart.
NewCompany suggestedCompany(const std::string& country, const Books& books, Date today);

// Error in words for the person when the name belongs to the sample company.
void requireUsableName(const std::string& name, const form::Place& place = {});
// The same, and when a name is missing or too long, or the year cannot be.
void requireSound(const NewCompany& company);
// Error in words for the person when something is entered in the company already: it can be set up only while it is
// empty, and by one person.
void requireNotSetUp(store::Database& database);

// Sets up the company, all of it or nothing: the settings with the chart of accounts, the home currency, a tax and a
// bank. Errors of requireSound and requireNotSetUp; StoreError while others hold the tables.
void fillCompany(store::Database& database, const NewCompany& company);

// The same in a transaction that the caller began over these tables.
inline constexpr std::array<const char*, 5> kNewCompanyTables = {"Company", "GLAccnt", "Currency", "Bank", "Tax"};
void writeNewCompany(store::Database& database, const NewCompany& company);

}  // namespace quillon::shell
