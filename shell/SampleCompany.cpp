#include "shell/SampleCompany.h"

#include <iterator>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "form/Transaction.h"
#include "shell/CountryDefaults.h"
#include "shell/NewCompany.h"
#include "shell/SampleLedger.h"
#include "shell/SampleStatements.h"
#include "shell/SampleVouchers.h"
#include "shell/Session.h"
#include "store/Cursor.h"
#include "store/Database.h"

namespace quillon::shell {
namespace {

using store::Cursor;
using store::Value;

constexpr const char* kName = "Sample Data Ridgeway Furniture";
constexpr int kForeignCurrency = 2, kForeignBankId = 2;
constexpr int kPostedMonths = 11;
constexpr int kNeverBackUp = 2;

struct Row {
  const char* code;
  const char* name;
};
constexpr Row kDepartments[] = {{"SHOP", "Workshop"}, {"OFFIC", "Office"}, {"SHOW", "Showroom"}};
constexpr Row kProducts[] = {{"TAB", "Tables"}, {"CHA", "Chairs"}};

class Sample {
 public:
  Sample(store::Database& database, const CountryDefaults& country, int year)
      : database_(database), country_(country), year_(year) {}
  void write(Date today);

 private:
  void writeSettings();
  void writeSubaccounts(const char* table, std::span<const Row> rows);
  void writeForeignAccounts();
  void writeForeignCurrency();
  void writeForeignBank();

  bool dollarsAreForeign() const { return std::string_view(country_.currency) != "US Dollar"; }
  std::string foreignName() const { return dollarsAreForeign() ? "US Dollar" : "Canadian Dollar"; }
  double foreignRate() const {
    return dollarsAreForeign() ? country_.usDollar : 1 / countryDefaults("Canada").usDollar;
  }
  int idOf(const std::string& account) const { return accounts_.at(account); }

  store::Database& database_;
  const CountryDefaults& country_;
  int year_;
  std::map<std::string, int> accounts_;  // ids by numbers
};

void Sample::write(Date today) {
  NewCompany company = suggestedCompany(country_.name, {year_, 1, year_}, today);
  company.name = kName;
  company.chart = Chart::manufacturing;
  // The last that is posted, so that reports show something at once.
  company.defaultPeriod = Period{year_, kPostedMonths};
  company.warn.to = Period{year_ + 1, Period::kCount};
  if (company.currency.empty()) company.currency = "Home Currency";
  writeNewCompany(database_, company);
  writeSettings();
  writeSubaccounts("GLAcSub1", kDepartments);
  writeSubaccounts("GLAcSub2", kProducts);
  writeForeignAccounts();
  writeForeignCurrency();
  writeForeignBank();
  writeSampleLedger(database_, accounts_, sampleVouchers(year_, static_cast<int>(country_.taxRate), foreignRate()),
                    {year_, kPostedMonths});
  writeSampleStatements(database_, accounts_, year_);
}

void Sample::writeSettings() {
  Cursor company(database_, "Company");
  company.open();
  company.edit();
  company["AddressLine1"] = "418 Ridgeway Road";
  company["AddressLine2"] = "Millbrook";
  company["Phone"] = "555-0142";
  company["EmailFromName"] = "Ridgeway Furniture";
  company["EmailFromAddress"] = "office@ridgeway.example";
  company["Notes"] =
      "Tables and chairs in oak and ash, made to order and for stock.\rDeliveries on Tuesday and Friday.";
  company["ARInvoiceMessage"] = "Thank you for your business.";
  company["APInvDescriptions"] = true;
  company["BackupOnExit"] = kNeverBackUp;
  company.post();
}

void Sample::writeSubaccounts(const char* table, std::span<const Row> rows) {
  Cursor subaccounts(database_, table);
  subaccounts.open();
  int id = 0;
  for (const Row& row : rows)
    addRow(subaccounts, [&] {
      subaccounts["SubAccountID"] = ++id;
      subaccounts["SubAccount"] = row.code;
      subaccounts["SubAccountName"] = row.name;
      subaccounts["Suspended"] = false;
    });
}

void Sample::writeForeignAccounts() {
  struct Account {
    const char* number;
    const char* name;
    AccountType type;
  };
  const Account kRows[] = {{kForeignBank, "Bank - ", AccountType::asset},
                           {kForeignReceivable, "Accounts Receivable - ", AccountType::asset},
                           {kForeignPayable, "Accounts Payable - ", AccountType::liability}};
  Cursor accounts(database_, "GLAccnt");
  accounts.open();
  for (accounts.first(); !accounts.eof(); accounts.next())
    accounts_[accounts["GLAccount"].asText()] = accounts["GLAccountID"].asInt();
  int id = static_cast<int>(accounts_.size());
  for (const Account& account : kRows)
    addRow(accounts, [&] {
      accounts_[account.number] = ++id;
      accounts["GLAccountID"] = id;
      accounts["GLAccount"] = account.number;
      accounts["AccountName"] = account.name + foreignName();
      accounts["AccountType"] = static_cast<int>(account.type);
      accounts["RetainedEarnings"] = false;
      accounts["Suspended"] = false;
    });
}

// Its discounts, gains, losses and write-offs are booked to the accounts of the home currency.
void Sample::writeForeignCurrency() {
  Cursor currency(database_, "Currency");
  currency.open();
  std::map<std::string, Value> ofHome;
  for (const char* field :
       {"GainLossExchangeGLAccntID", "APDiscGLAccountID", "ARDiscGLAccountID", "DfltWriteOffGLAccountID"})
    ofHome[field] = currency.value(field);
  addRow(currency, [&] {
    for (const auto& [field, account] : ofHome) currency[field] = account;
    currency["CurrencyID"] = kForeignCurrency;
    currency["CurrencyName"] = foreignName();
    currency["ExchangeRate"] = sampleRate(foreignRate(), 12);
    currency["APGLAccountID"] = idOf(kForeignPayable);
    currency["ARGLAccountID"] = idOf(kForeignReceivable);
    for (int month = 1; month <= 12; ++month) {
      currency["ExchangeRateTY" + std::to_string(month)] = sampleRate(foreignRate(), month);
      currency["ExchangeRateLY" + std::to_string(month)] = sampleRate(foreignRate(), month, true);
    }
  });
}

void Sample::writeForeignBank() {
  Cursor bank(database_, "Bank");
  bank.open();
  addRow(bank, [&] {
    bank["BankID"] = kForeignBankId;
    bank["BankName"] = foreignName() + " Account";
    bank["BankGLAccountID"] = idOf(kForeignBank);
    bank["CurrencyID"] = kForeignCurrency;
  });
}

}  // namespace

void fillSampleCompany(store::Database& database, const CountryDefaults& country, Date today) {
  std::vector<std::string> tables = {"GLAcSub1", "GLAcSub2"};
  tables.insert(tables.end(), kNewCompanyTables.begin(), kNewCompanyTables.end());
  tables.insert(tables.end(), std::begin(kSampleLedgerTables), std::end(kSampleLedgerTables));
  tables.insert(tables.end(), std::begin(kSampleStatementTables), std::end(kSampleStatementTables));
  form::transact(database, tables, [&] { Sample(database, country, today.year() - 1).write(today); });
}

void fillSampleCompany(Session& session) {
  fillSampleCompany(session.database(), countryDefaults(session.countryName()), session.app().today());
  session.tblCompany().refresh();
  session.sampleDataOpen = true;
}

}  // namespace quillon::shell
