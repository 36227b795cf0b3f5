#include "shell/NewCompany.h"

#include <algorithm>
#include <map>
#include <utility>

#include "base/Errors.h"
#include "base/Text.h"
#include "form/Transaction.h"
#include "shell/Companies.h"
#include "shell/CountryDefaults.h"
#include "shell/MonthNames.h"
#include "shell/Session.h"
#include "store/Cursor.h"
#include "store/Database.h"

namespace quillon::shell {
namespace {

using store::Cursor;
using store::Value;

using IdByUse = std::map<AccountUse, int>;

// There is one row of each but for accounts.
constexpr int kOnly = 1;

std::string monthText(int monthsOfYearZero) {
  return std::string(monthName(monthsOfYearZero % 12 + 1)) + " " + std::to_string(monthsOfYearZero / 12);
}

IdByUse writeAccounts(store::Database& database, const NewCompany& company) {
  IdByUse ids;
  Cursor accounts(database, "GLAccnt");
  accounts.open();
  int id = 0;
  for (const ChartAccount& account : chartOfAccounts(company.chart, countryDefaults(company.country))) {
    accounts.append();
    accounts["GLAccountID"] = ++id;
    accounts["GLAccount"] = account.number;
    accounts["AccountName"] = account.name;
    accounts["AccountType"] = static_cast<int>(account.type);
    accounts["RetainedEarnings"] = account.use == AccountUse::retainedEarnings;
    accounts["Suspended"] = false;
    accounts.post();
    if (account.use != AccountUse::none) ids[account.use] = id;
  }
  return ids;
}

void writeCurrency(store::Database& database, const NewCompany& company, const IdByUse& accounts) {
  Cursor currency(database, "Currency");
  currency.open();
  currency.append();
  currency["CurrencyID"] = kOnly;
  currency["CurrencyName"] = company.currency;
  currency["GainLossExchangeGLAccntID"] = accounts.at(AccountUse::exchange);
  currency["APGLAccountID"] = accounts.at(AccountUse::payable);
  currency["APDiscGLAccountID"] = accounts.at(AccountUse::payableDiscount);
  currency["ARGLAccountID"] = accounts.at(AccountUse::receivable);
  currency["ARDiscGLAccountID"] = accounts.at(AccountUse::receivableDiscount);
  currency["DfltWriteOffGLAccountID"] = accounts.at(AccountUse::writeOff);
  currency.post();
}

void writeBank(store::Database& database, const NewCompany& company, const IdByUse& accounts) {
  Cursor bank(database, "Bank");
  bank.open();
  bank.append();
  bank["BankID"] = kOnly;
  bank["BankName"] = company.bankName;
  bank["BankGLAccountID"] = accounts.at(AccountUse::bank);
  bank["CurrencyID"] = kOnly;
  bank.post();
}

void writeTax(store::Database& database, const NewTax& some, const IdByUse& accounts) {
  Cursor tax(database, "Tax");
  tax.open();
  tax.append();
  tax["TaxID"] = kOnly;
  tax["TaxName"] = some.name;
  tax["TaxCode"] = some.code;
  tax["TaxDescription"] = some.name;
  tax["Rate"] = some.rate;
  tax["TaxGLAccountID"] = accounts.at(AccountUse::tax);
  tax.post();
}

void setPeriod(Cursor& company, const std::string& name, const std::optional<Period>& period) {
  company[name + "YYYY"] = period ? Value(period->year) : Value();
  company[name + "PP"] = period ? Value(period->number) : Value();
}

void writeSettings(store::Database& database, const NewCompany& some, const IdByUse& accounts) {
  Cursor company(database, "Company");
  company.open();
  company.append();
  company["CompanyNo"] = kOnly;
  company["CompanyName"] = some.name;
  company["FiscalYear"] = some.books.fiscalYear;
  setPeriod(company, "DefaultPeriod", some.defaultPeriod);
  setPeriod(company, "WPeriodFrom", some.warn.from);
  setPeriod(company, "WPeriodTo", some.warn.to);
  setPeriod(company, "EPeriodFrom", some.error.from);
  setPeriod(company, "EPeriodTo", some.error.to);
  company["DefaultCurrencyID"] = kOnly;
  company["DfltSalesGLAccountID"] = accounts.at(AccountUse::sales);
  company["DfltCOGSGLAccountID"] = accounts.at(AccountUse::costOfSales);
  company["DfltInventoryGLAccountID"] = accounts.at(AccountUse::inventory);
  if (some.tax) company["DfltTax1ID"] = kOnly;
  company["APInvPONumbers"] = false;
  company["APInvDescriptions"] = false;
  company["ARInvoiceStyle"] = 1;
  company["ARInvoiceCopies"] = 1;
  company["ApplicationVersion"] = kVersion;
  if (some.books.firstMonth != 1) company["Notes"] = some.books.calendar();
  company.post();
}

void requireText(const std::string& text, const char* field, std::size_t most) {
  if (trim(text).empty()) throw Error("Field '" + std::string(field) + "' must have a value");
  if (lengthInCharacters(text) > most)
    throw Error("Field '" + std::string(field) + "' may have at most " + std::to_string(most) + " characters");
}

}  // namespace

Period Books::periodOf(Date day) const {
  const int months = (day.year() - firstYear) * 12 + static_cast<int>(day.month()) - firstMonth;
  const int years = months >= 0 ? months / 12 : (months - 11) / 12;
  return {fiscalYear + years, months - years * 12 + 1};
}

std::string Books::calendar() const {
  const int first = firstYear * 12 + firstMonth - 1;
  return "Period 1 is " + monthText(first) + ", period 12 is " + monthText(first + 11) + ".";
}

// Where periods are months and years are those of the calendar, a new document takes today's and nothing need be set.
NewCompany suggestedCompany(const std::string& country, const Books& books, Date today) {
  const CountryDefaults& defaults = countryDefaults(country);
  NewCompany company;
  company.country = country;
  company.books = books;
  const Period first{books.fiscalYear, 1}, last{books.fiscalYear, Period::kCount}, now = books.periodOf(today);
  if (now != Period{today.year(), static_cast<int>(today.month())} || now < first || now > last)
    company.defaultPeriod = std::clamp(now, first, last);
  company.warn = {first, last};
  company.currency = defaults.currency;
  if (defaults.taxRate > 0) company.tax = NewTax{defaults.taxName, defaults.taxCode, defaults.taxRate};
  company.bankName = defaults.bankAccount;
  return company;
}

void requireNotSetUp(store::Database& database) {
  constexpr std::pair<const char*, const char*> kEmpty[] = {
      {"GLAccnt", "Accounts"}, {"Currency", "Currencies"}, {"Bank", "Banks"}, {"Tax", "Taxes"}};
  const auto holdsRows = [&](const char* table) {
    Cursor cursor(database, table);
    cursor.open();
    return !cursor.isEmpty();
  };
  if (holdsRows("Company")) throw Error("This company has been set up already");
  for (const auto& [table, rows] : kEmpty)
    if (holdsRows(table))
      throw Error(std::string(rows) +
                  " have been entered in this company already...\rOnly an empty company can be set up here.\r\rEnter "
                  "its settings yourself: menu File | General | Your Company");
}

void requireUsableName(const std::string& name, const form::Place& place) {
  if (startsWithFolded(name, kSampleData))
    form::refuse("Company Name 'Sample Data' is reserved for system generated sample data", place);
}

void requireSound(const NewCompany& company) {
  requireText(company.name, "Company Name", 40);
  requireUsableName(company.name);
  if (company.books.fiscalYear < kFirstFiscalYear || company.books.fiscalYear > kLastFiscalYear)
    throw Error("Fiscal Year must be between 1989 and 2050");
  requireText(company.currency, "Currency Name", 20);
  requireText(company.bankName, "Bank Name", 40);
}

void writeNewCompany(store::Database& database, const NewCompany& company) {
  requireNotSetUp(database);
  const IdByUse accounts = writeAccounts(database, company);
  writeCurrency(database, company, accounts);
  writeBank(database, company, accounts);
  if (company.tax) writeTax(database, *company.tax, accounts);
  writeSettings(database, company, accounts);
}

void fillCompany(store::Database& database, const NewCompany& company) {
  requireSound(company);
  form::transact(database, {kNewCompanyTables.begin(), kNewCompanyTables.end()},
                 [&] { writeNewCompany(database, company); });
}

}  // namespace quillon::shell
