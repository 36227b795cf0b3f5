#include "shell/SampleLedger.h"

#include <algorithm>
#include <array>
#include <optional>
#include <tuple>
#include <utility>
#include <vector>

#include "shell/AccountType.h"

namespace quillon::shell {
namespace {

using store::Cursor;
using store::Value;

constexpr int kFirstVoucherNumber = 1001;
constexpr unsigned kTickedUpTo = 20;  // day of the month that is being reconciled

int numberOf(int id) { return kFirstVoucherNumber + id - 1; }
Value idOrNull(int id) { return id == 0 ? Value() : Value(id); }
Period periodOf(const SampleVoucher& voucher) { return {voucher.date.year(), static_cast<int>(voucher.date.month())}; }

class Ledger {
 public:
  Ledger(store::Database& database, const std::map<std::string, int>& accounts, Period lastPosted)
      : database_(database), accounts_(accounts), lastPosted_(lastPosted) {}
  void write(std::span<const SampleVoucher> vouchers);

 private:
  // Year, account and subaccounts; the balance at its start, and the months, each null until something is added to it.
  using TotalKey = std::tuple<int, int, int, int>;
  struct Total {
    std::optional<Money> opening;
    std::array<std::optional<Money>, 12> months = {};
    Money closing() const {
      Money sum = opening.value_or(Money());
      for (const auto& month : months) sum += month.value_or(Money());
      return sum;
    }
  };

  void writeVoucher(const SampleVoucher& voucher, int id, bool posted);
  void post(const SampleVoucher& voucher, int id);
  void addHistory(const SampleVoucher& voucher, const SampleLine& line, int id, Period period, const char* transType,
                  Money amount);
  void addTotal(const SampleLine& line, Period period, Money amount);
  void carryForward(int year);
  void writeTotals();
  int idOf(const std::string& account) const { return accounts_.at(account); }

  store::Database& database_;
  const std::map<std::string, int>& accounts_;
  Period lastPosted_;
  std::map<TotalKey, Total> totals_;
  Cursor jv_{database_, "JV"}, lines_{database_, "JVDet"}, history_{database_, "GLHist"};
};

void Ledger::write(std::span<const SampleVoucher> vouchers) {
  for (Cursor* cursor : {&jv_, &lines_, &history_}) cursor->open();
  int count = 0;
  for (const SampleVoucher& voucher : vouchers) {
    const bool posted = periodOf(voucher) <= lastPosted_;
    writeVoucher(voucher, ++count, posted);
    if (posted) post(voucher, count);
  }
  for (int year = vouchers.front().date.year(); year < lastPosted_.year; ++year) carryForward(year);
  writeTotals();
  Cursor control(database_, "JVCtl");
  control.open();
  control.edit();
  control["NextJVID"] = count + 1;
  control["NextJVNumber"] = kFirstVoucherNumber + count;
  control.post();
}

void Ledger::writeVoucher(const SampleVoucher& voucher, int id, bool posted) {
  Money debits;
  int seq = 0;
  for (const SampleLine& line : voucher.lines) {
    debits += std::max(line.amount, Money());
    addRow(lines_, [&] {
      lines_["JVID"] = id;
      lines_["Seq"] = ++seq;
      lines_["GLAccountID"] = idOf(line.account);
      lines_["SubAccount1ID"] = idOrNull(line.department);
      lines_["SubAccount2ID"] = idOrNull(line.product);
      lines_["GLAmount"] = line.amount;
    });
  }
  const Period period = periodOf(voucher);
  addRow(jv_, [&] {
    jv_["JVID"] = id;
    jv_["GLYear"] = period.year;
    jv_["GLPeriod"] = period.number;
    jv_["JVNumber"] = numberOf(id);
    jv_["Source"] = "GL";
    jv_["TransType"] = "JV";
    jv_["TransDate"] = voucher.date;
    jv_["TransDescription"] = voucher.description;
    jv_["JVAmount"] = debits;
    jv_["Posted"] = posted;
    jv_["AutoReverse"] = voucher.autoReverse;
  });
}

void Ledger::post(const SampleVoucher& voucher, int id) {
  const Period period = periodOf(voucher);
  for (const SampleLine& line : voucher.lines) {
    addHistory(voucher, line, id, period, "JV", line.amount);
    addTotal(line, period, line.amount);
    if (!voucher.autoReverse) continue;
    addHistory(voucher, line, id, period.next(), "JVR", -line.amount);
    addTotal(line, period.next(), -line.amount);
  }
}

void Ledger::addHistory(const SampleVoucher& voucher, const SampleLine& line, int id, Period period,
                        const char* transType, Money amount) {
  const bool ofBank = line.account == kHomeBank || line.account == kForeignBank;
  const Period own = periodOf(voucher);  // a row that reverses goes with the one that it reverses
  const bool reconciled = ofBank && own < lastPosted_;
  const bool ticked = reconciled || (ofBank && own == lastPosted_ && voucher.date.day() <= kTickedUpTo);
  addRow(history_, [&] {
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
    history_["Reconciled"] = reconciled;
    history_["Reconciling"] = ticked;
  });
}

void Ledger::addTotal(const SampleLine& line, Period period, Money amount) {
  std::optional<Money>& month = totals_[{period.year, idOf(line.account), line.department, line.product}].months.at(
      static_cast<std::size_t>(period.number - 1));
  month = month.value_or(Money()) + amount;
}

// As the end of a year does it.
void Ledger::carryForward(int year) {
  Cursor accounts(database_, "GLAccnt");
  accounts.open();
  Money result;
  int retained = 0;
  const auto closed = std::pair(totals_.lower_bound({year, 0, 0, 0}), totals_.lower_bound({year + 1, 0, 0, 0}));
  const std::vector<std::pair<TotalKey, Total>> all(closed.first, closed.second);
  for (accounts.first(); !accounts.eof(); accounts.next()) {
    const int id = accounts["GLAccountID"].asInt();
    const auto type = static_cast<AccountType>(accounts["AccountType"].asInt());
    if (accounts["RetainedEarnings"].asBool()) retained = id;
    const bool ends = type == AccountType::revenue || type == AccountType::expense || retained == id;
    for (const auto& [key, total] : all) {
      const auto& [_, account, department, product] = key;
      if (account != id) continue;
      if (ends)
        result += total.closing();
      else if (total.closing() != Money())
        totals_[{year + 1, account, department, product}].opening = total.closing();
    }
  }
  totals_[{year + 1, retained, 0, 0}].opening = result;
}

void Ledger::writeTotals() {
  Cursor totals(database_, "GLActual");
  totals.open();
  for (const auto& [key, total] : totals_) {
    totals.append();
    const auto& [year, account, department, product] = key;
    totals["GLAccountID"] = account;
    totals["SubAccount1ID"] = idOrNull(department);
    totals["SubAccount2ID"] = idOrNull(product);
    totals["GLYear"] = year;
    totals["ActualBudget"] = "A";
    if (total.opening) totals["OpeningBal"] = *total.opening;
    for (std::size_t month = 0; month < total.months.size(); ++month)
      if (total.months[month]) totals["Amount" + std::to_string(month + 1)] = *total.months[month];
    totals.post();
  }
}

}  // namespace

void writeSampleLedger(store::Database& database, const std::map<std::string, int>& accounts,
                       std::span<const SampleVoucher> vouchers, Period lastPosted) {
  Ledger(database, accounts, lastPosted).write(vouchers);
}

}  // namespace quillon::shell
