// The rows of the sample company. Vouchers of all months but the last are posted: they stand in the ledger's history
// and totals as the posting of vouchers writes them.
#include "shell/SampleCompany.h"

#include <array>
#include <map>
#include <optional>
#include <span>
#include <string_view>
#include <tuple>

#include "form/Transaction.h"
#include "shell/CountryDefaults.h"
#include "shell/NewCompany.h"
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
constexpr int kFirstVoucherNumber = 1001;
constexpr int kPostedMonths = 11;
constexpr int kNeverBackUp = 2;
constexpr double kLastYear = 0.985;  // of this year's rates

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
  // A total of the ledger: account, subaccounts and year, and the twelve months; one is null until it is added to.
  using TotalKey = std::tuple<int, int, int, int>;
  using Months = std::array<std::optional<Money>, 12>;

  void writeSettings();
  void writeSubaccounts(const char* table, std::span<const Row> rows);
  void writeForeignAccounts();
  void writeForeignCurrency();
  void writeForeignBank();
  void writeVouchers();
  void writeVoucher(const SampleVoucher& voucher, int id);
  void post(const SampleVoucher& voucher, int id);
  void addHistory(const SampleVoucher& voucher, const SampleLine& line, int id, Period period, const char* transType,
                  Money amount);
  void addTotal(const SampleLine& line, Period period, Money amount);
  void writeTotals();

  bool dollarsAreForeign() const { return std::string_view(country_.currency) != "US Dollar"; }
  std::string foreignName() const { return dollarsAreForeign() ? "US Dollar" : "Canadian Dollar"; }
  double foreignRate() const {
    return dollarsAreForeign() ? country_.usDollar : 1 / countryDefaults("Canada").usDollar;
  }
  int idOf(const std::string& account) const { return accounts_.at(account); }
  static Period periodOf(const SampleVoucher& voucher) {
    return {voucher.date.year(), static_cast<int>(voucher.date.month())};
  }

  store::Database& database_;
  const CountryDefaults& country_;
  int year_;
  std::map<std::string, int> accounts_;  // ids by numbers
  std::map<TotalKey, Months> totals_;
  Cursor jv_{database_, "JV"}, lines_{database_, "JVDet"}, history_{database_, "GLHist"};
};

Value idOrNull(int id) { return id == 0 ? Value() : Value(id); }

// Rows of a table that are added one after the other, each by a function that fills it.
template <typename Fill>
void add(Cursor& rows, const Fill& fill) {
  rows.append();
  fill();
  rows.post();
}

void Sample::write(Date today) {
  NewCompany company = suggestedCompany(country_.name, {year_, 1, year_}, today);
  company.name = kName;
  company.chart = Chart::manufacturing;
  // Work goes on in the year that follows, by the calendar, while this one is still to be closed.
  company.defaultPeriod.reset();
  company.warn.to = Period{year_ + 1, Period::kCount};
  if (company.currency.empty()) company.currency = "Home Currency";
  writeNewCompany(database_, company);
  writeSettings();
  writeSubaccounts("GLAcSub1", kDepartments);
  writeSubaccounts("GLAcSub2", kProducts);
  writeForeignAccounts();
  writeForeignCurrency();
  writeForeignBank();
  writeVouchers();
  writeTotals();
}

void Sample::writeSettings() {
  Cursor company(database_, "Company");
  company.open();
  company.edit();
  company["AddressLine1"] = "418 Ridgeway Road";
  company["Phone"] = "555-0142";
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
    add(subaccounts, [&] {
      subaccounts["SubAccountID"] = ++id;
      subaccounts["SubAccount"] = row.code;
      subaccounts["SubAccountName"] = row.name;
      subaccounts["Suspended"] = false;
    });
}

void Sample::writeForeignAccounts() {
  const std::tuple<const char*, const char*, AccountType> kRows[] = {
      {kForeignBank, "Bank - ", AccountType::asset},
      {kForeignReceivable, "Accounts Receivable - ", AccountType::asset},
      {kForeignPayable, "Accounts Payable - ", AccountType::liability}};
  Cursor accounts(database_, "GLAccnt");
  accounts.open();
  for (accounts.first(); !accounts.eof(); accounts.next())
    accounts_[accounts["GLAccount"].asText()] = accounts["GLAccountID"].asInt();
  int id = static_cast<int>(accounts_.size());
  for (const auto& [number, name, type] : kRows)
    add(accounts, [&] {
      accounts_[number] = ++id;
      accounts["GLAccountID"] = id;
      accounts["GLAccount"] = number;
      accounts["AccountName"] = name + foreignName();
      accounts["AccountType"] = static_cast<int>(type);
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
  add(currency, [&] {
    for (const auto& [field, account] : ofHome) currency[field] = account;
    currency["CurrencyID"] = kForeignCurrency;
    currency["CurrencyName"] = foreignName();
    currency["ExchangeRate"] = sampleRate(foreignRate(), 12);
    currency["APGLAccountID"] = idOf(kForeignPayable);
    currency["ARGLAccountID"] = idOf(kForeignReceivable);
    for (int month = 1; month <= 12; ++month) {
      currency["ExchangeRateTY" + std::to_string(month)] = sampleRate(foreignRate(), month);
      currency["ExchangeRateLY" + std::to_string(month)] = sampleRate(foreignRate() * kLastYear, month);
    }
  });
}

void Sample::writeForeignBank() {
  Cursor bank(database_, "Bank");
  bank.open();
  add(bank, [&] {
    bank["BankID"] = kForeignBankId;
    bank["BankName"] = foreignName() + " Account";
    bank["BankGLAccountID"] = idOf(kForeignBank);
    bank["CurrencyID"] = kForeignCurrency;
  });
}

void Sample::writeVouchers() {
  for (Cursor* cursor : {&jv_, &lines_, &history_}) cursor->open();
  int count = 0;
  for (const SampleVoucher& voucher : sampleVouchers(year_, static_cast<int>(country_.taxRate), foreignRate())) {
    writeVoucher(voucher, ++count);
    if (periodOf(voucher).number <= kPostedMonths) post(voucher, count);
  }
  Cursor control(database_, "JVCtl");
  control.open();
  control.edit();
  control["NextJVID"] = count + 1;
  control["NextJVNumber"] = kFirstVoucherNumber + count;
  control.post();
}

int numberOf(int id) { return kFirstVoucherNumber + id - 1; }

void Sample::writeVoucher(const SampleVoucher& voucher, int id) {
  Money debits;
  int seq = 0;
  for (const SampleLine& line : voucher.lines) {
    debits += std::max(line.amount, Money());
    add(lines_, [&] {
      lines_["JVID"] = id;
      lines_["Seq"] = ++seq;
      lines_["GLAccountID"] = idOf(line.account);
      lines_["SubAccount1ID"] = idOrNull(line.department);
      lines_["SubAccount2ID"] = idOrNull(line.product);
      lines_["GLAmount"] = line.amount;
    });
  }
  const Period period = periodOf(voucher);
  add(jv_, [&] {
    jv_["JVID"] = id;
    jv_["GLYear"] = period.year;
    jv_["GLPeriod"] = period.number;
    jv_["JVNumber"] = numberOf(id);
    jv_["Source"] = "GL";
    jv_["TransType"] = "JV";
    jv_["TransDate"] = voucher.date;
    jv_["TransDescription"] = voucher.description;
    jv_["JVAmount"] = debits;
    jv_["Posted"] = period.number <= kPostedMonths;
    jv_["AutoReverse"] = voucher.autoReverse;
  });
}

void Sample::post(const SampleVoucher& voucher, int id) {
  const Period period = periodOf(voucher);
  for (const SampleLine& line : voucher.lines) {
    addHistory(voucher, line, id, period, "JV", line.amount);
    addTotal(line, period, line.amount);
    if (!voucher.autoReverse) continue;
    addHistory(voucher, line, id, period.next(), "JVR", -line.amount);
    addTotal(line, period.next(), -line.amount);
  }
}

void Sample::addHistory(const SampleVoucher& voucher, const SampleLine& line, int id, Period period,
                        const char* transType, Money amount) {
  add(history_, [&] {
    history_["GLAccountID"] = idOf(line.account);
    history_["SubAccount1ID"] = idOrNull(line.department);
    history_["SubAccount2ID"] = idOrNull(line.product);
    history_["GLYear"] = period.year;
    history_["GLPeriod"] = period.number;
    history_["Source"] = "GL";
    history_["TransType"] = transType;
    history_["JVNumber"] = numberOf(id);
    history_["TransDate"] = voucher.date;
    history_["Amount"] = amount;
    history_["TransDescription"] = voucher.description;
    for (const char* link :
         {"VendorID", "APInvoiceID", "ChequeID", "CustomerID", "ARInvoiceID", "PaymentID", "AdjustmentID"})
      history_[link] = 0;
    history_["JVID"] = id;
    history_["Reconciled"] = false;
    history_["Reconciling"] = false;
  });
}

void Sample::addTotal(const SampleLine& line, Period period, Money amount) {
  std::optional<Money>& month = totals_[{idOf(line.account), line.department, line.product, period.year}].at(
      static_cast<std::size_t>(period.number - 1));
  month = month.value_or(Money()) + amount;
}

void Sample::writeTotals() {
  Cursor totals(database_, "GLActual");
  totals.open();
  for (const auto& [key, months] : totals_)
    add(totals, [&, &key = key, &months = months] {
      const auto& [account, department, product, year] = key;
      totals["GLAccountID"] = account;
      totals["SubAccount1ID"] = idOrNull(department);
      totals["SubAccount2ID"] = idOrNull(product);
      totals["GLYear"] = year;
      totals["ActualBudget"] = "A";
      for (std::size_t month = 0; month < months.size(); ++month)
        if (months[month]) totals["Amount" + std::to_string(month + 1)] = *months[month];
    });
}

}  // namespace

void fillSampleCompany(store::Database& database, const CountryDefaults& country, Date today) {
  std::vector<std::string> tables = {"GLAcSub1", "GLAcSub2", "JV", "JVDet", "JVCtl", "GLHist", "GLActual"};
  tables.insert(tables.end(), kNewCompanyTables.begin(), kNewCompanyTables.end());
  form::transact(database, tables, [&] { Sample(database, country, today.year() - 1).write(today); });
}

void fillSampleCompany(Session& session) {
  fillSampleCompany(session.database(), countryDefaults(session.countryName()), session.app().today());
  session.tblCompany().refresh();
  session.sampleDataOpen = true;
}

}  // namespace quillon::shell
