#include "ledger/Audit.h"

#include <array>
#include <climits>
#include <map>
#include <memory>
#include <set>

#include "base/Period.h"
#include "ledger/Accounts.h"
#include "ledger/AuditKeys.h"
#include "store/Cursor.h"
#include "store/Database.h"

namespace quillon::ledger {
namespace {

using store::Cursor;
using store::Value;

constexpr const char* kNone = "nothing";
constexpr const char* kOfVoucher[] = {"JVNumber",    "Source",      "TransDate",   "TransDescription",
                                      "VendorID",    "APInvoiceID", "ChequeID",    "CustomerID",
                                      "ARInvoiceID", "PaymentID",   "AdjustmentID"};

using Ids = std::set<int>;
using Combination = std::array<std::optional<int>, 1 + kSubaccountLevels>;
using Months = std::array<Money, Period::kCount>;

class Audit {
 public:
  explicit Audit(store::Database& database) : database_(database) {
    for (Cursor* cursor : {&jv_, &lines_, &history_, &totals_, &control_, &company_}) cursor->open();
    for (int level = 0; level <= kSubaccountLevels; ++level)
      keyRows_.emplace_back(std::make_unique<Cursor>(database, level == 0 ? "GLAccnt" : subaccountTable(level)))
          ->open();
  }
  AuditReport take();

 private:
  struct Found {
    int year;
    Disagreement what;
  };

  void readKeys();
  void checkVoucher();
  void checkBalance(Money sum, Money debits);
  void checkLines();
  void checkHistory();
  void checkTotals();
  void checkTotalsRow(const Combination& combination, int year);
  void checkControl();
  void checkAccounts(Cursor& row, int year, const std::string& key);
  void report(int year, Disagreement what) { found_.push_back({year, std::move(what)}); }
  std::string rowText(Cursor& line, Cursor& voucher, Period period, const Value& transType, Money amount);
  Combination combinationOf(Cursor& row);
  std::string nameOf(const Combination& combination, int year) const;
  void use(int id) { highestId_ = std::max(highestId_, id); }
  bool mayBePurged(int voucherYear) const { return voucherYear < std::max(fiscalYear_ - 1, firstPosted_); }

  store::Database& database_;
  Cursor jv_{database_, "JV"}, lines_{database_, "JVDet"}, history_{database_, "GLHist"},
      totals_{database_, "GLActual"}, control_{database_, "JVCtl"}, company_{database_, "Company"};
  AuditKeys setUp_{database_};
  std::vector<std::unique_ptr<Cursor>> keyRows_;  // accounts, subaccounts by level
  std::array<Ids, 1 + kSubaccountLevels> keys_;
  Ids vouchers_, historyYears_;
  std::map<std::pair<Combination, int>, Months> sums_;  // by year
  int fiscalYear_ = 0, highestId_ = 0;
  int firstPosted_ = INT_MAX, lastCancelled_ = INT_MIN;  // years
  std::vector<Found> found_;
  AuditReport report_;
};

std::string fieldOf(int level) { return level == 0 ? "GLAccountID" : subaccountField(level); }

AuditReport Audit::take() {
  std::vector<store::Table*> tables;
  for (Cursor* cursor : {&jv_, &lines_, &history_, &totals_, &control_, &company_}) tables.push_back(&cursor->table());
  for (const auto& cursor : keyRows_) tables.push_back(&cursor->table());
  setUp_.addTables(tables);
  const store::Database::Snapshot moment(database_, tables);
  company_.first();
  fiscalYear_ = company_["FiscalYear"].asInt();
  readKeys();
  history_.setIndex("JVID");
  for (jv_.first(); !jv_.eof(); jv_.next()) checkVoucher();
  lines_.cancelRange();
  history_.cancelRange();
  checkLines();
  checkHistory();
  checkTotals();
  checkControl();
  for (Disagreement& fault : setUp_.faults(keys_.front())) report(INT_MAX, std::move(fault));
  // A purge takes whole years, up to one: what was posted again since stands in them.
  const auto behind = historyYears_.upper_bound(lastCancelled_);
  const int first = behind != historyYears_.end() ? *behind : lastCancelled_ + 1;
  for (Found& found : found_) {
    if (found.year >= first)
      report_.wrong.push_back(std::move(found.what));
    else
      report_.historyFrom = first;
  }
  return std::move(report_);
}

void Audit::readKeys() {
  for (std::size_t level = 0; level < keys_.size(); ++level) {
    Cursor& rows = *keyRows_.at(level);
    for (rows.first(); !rows.eof(); rows.next())
      keys_.at(level).insert(rows[level == 0 ? "GLAccountID" : "SubAccountID"].asInt());
  }
  for (jv_.first(); !jv_.eof(); jv_.next()) {
    vouchers_.insert(jv_["JVID"].asInt());
    if (jv_["Posted"].asBool()) firstPosted_ = std::min(firstPosted_, jv_["GLYear"].asInt());
  }
}

Combination Audit::combinationOf(Cursor& row) {
  Combination combination;
  for (int level = 0; level <= kSubaccountLevels; ++level)
    if (const Value id = row.value(fieldOf(level)); !id.isNull())
      combination.at(static_cast<std::size_t>(level)) = id.asInt();
  return combination;
}

std::string Audit::nameOf(const Combination& combination, int year) const {
  std::string text;
  for (const auto& id : combination) text += (id ? std::to_string(*id) : "-") + ";";
  return text + std::to_string(year);
}

// What tells a row of history; `voucher` gives what both have of the voucher.
std::string Audit::rowText(Cursor& line, Cursor& voucher, Period period, const Value& transType, Money amount) {
  std::string text = nameOf(combinationOf(line), period.year) + "/" + std::to_string(period.number) + " " +
                     transType.asText() + " " + amount.toText();
  for (const char* field : kOfVoucher) {
    const Value value = voucher.value(field);
    const bool document = std::string_view(field).ends_with("ID");
    text += " " + (document ? std::to_string(value.asInt()) : value.toText());
  }
  return text;
}

void Audit::checkVoucher() {
  const int id = jv_["JVID"].asInt();
  const bool posted = jv_["Posted"].asBool(), reverses = jv_["AutoReverse"].asBool();
  const Period period{jv_["GLYear"].asInt(), jv_["GLPeriod"].asInt()};
  const Value type = jv_.value("TransType");
  use(id);
  Money debits, sum;
  std::map<std::pair<int, std::string>, int> difference;  // rows by year that should be there, less those that are
  lines_.setRange({id}, {id});
  for (lines_.first(); !lines_.eof(); lines_.next()) {
    const Money amount = lines_["GLAmount"].asMoney();
    sum += amount;
    debits += std::max(amount, Money());
    if (!posted) continue;
    ++difference[{period.year, rowText(lines_, jv_, period, type, amount)}];
    if (reverses) ++difference[{period.next().year, rowText(lines_, jv_, period.next(), "JVR", -amount)}];
  }
  history_.setRange({id}, {id});
  for (history_.first(); !history_.eof(); history_.next()) {
    const Period there{history_["GLYear"].asInt(), history_["GLPeriod"].asInt()};
    --difference[{there.year,
                  rowText(history_, history_, there, history_.value("TransType"), history_["Amount"].asMoney())}];
  }
  checkBalance(sum, debits);
  const std::string key = "JVID " + std::to_string(id);
  for (const auto& [row, count] : difference)
    if (count > 0)
      report(row.first, {"GLHist", key, "a row of the voucher", kNone, row.second});
    else if (count < 0)
      report(INT_MAX, {"GLHist", key, "a row of the voucher", row.second, kNone});
}

void Audit::checkBalance(Money sum, Money debits) {
  const std::string key = "JVID " + jv_["JVID"].value().toText();
  const Money total = jv_["JVAmount"].asMoney();
  std::vector<Disagreement> faults;
  if (sum != Money()) faults.push_back({"JV", key, "debits plus credits", sum.toText(), "0"});
  if (total != debits) faults.push_back({"JV", key, "JVAmount", total.toText(), debits.toText()});
  for (Disagreement& fault : faults) {
    if (jv_["Posted"].asBool())
      report(INT_MAX, std::move(fault));
    else
      report_.interrupted.push_back(std::move(fault));
  }
}

void Audit::checkAccounts(Cursor& row, int year, const std::string& key) {
  const Combination combination = combinationOf(row);
  for (int level = 0; level <= kSubaccountLevels; ++level) {
    const auto& id = combination.at(static_cast<std::size_t>(level));
    if (id ? keys_.at(static_cast<std::size_t>(level)).contains(*id) : level > 0) continue;
    report(year, {row.definition().name, key, fieldOf(level), id ? std::to_string(*id) : kNone,
                  level == 0 ? "an account" : "a subaccount"});
  }
}

void Audit::checkLines() {
  int told = INT_MIN;
  for (lines_.first(); !lines_.eof(); lines_.next()) {
    const int id = lines_["JVID"].asInt();
    use(id);
    const std::string key = "JVID " + std::to_string(id);
    // A line that is entered is saved before its voucher is.
    if (vouchers_.contains(id))
      checkAccounts(lines_, INT_MAX, key + ", Seq " + lines_["Seq"].value().toText());
    else if (std::exchange(told, id) != id)
      report_.interrupted.push_back({"JVDet", key, "lines without a voucher", key, kNone});
  }
}

void Audit::checkHistory() {
  for (history_.first(); !history_.eof(); history_.next()) {
    const Period period{history_["GLYear"].asInt(), history_["GLPeriod"].asInt()};
    const std::string key = "GLHistID " + history_["GLHistID"].value().toText();
    checkAccounts(history_, INT_MAX, key);
    if (period.number >= 1 && period.number <= Period::kCount)
      sums_[{combinationOf(history_), period.year}].at(static_cast<std::size_t>(period.number - 1)) +=
          history_["Amount"].asMoney();
    if (history_["JVID"].isNull()) {
      lastCancelled_ = std::max(lastCancelled_, period.year);
      continue;
    }
    const int id = history_["JVID"].asInt();
    use(id);
    historyYears_.insert(period.year);
    const bool reversal = history_["TransType"].asText() == "JVR" && period.number == 1;
    if (!vouchers_.contains(id) && !mayBePurged(period.year - (reversal ? 1 : 0)))
      report(INT_MAX, {"GLHist", key, "JVID", std::to_string(id), "a voucher"});
  }
}

void Audit::checkTotals() {
  for (totals_.first(); !totals_.eof(); totals_.next())
    checkTotalsRow(combinationOf(totals_), totals_["GLYear"].asInt());
  for (const auto& [key, months] : sums_)
    for (std::size_t month = 0; month < months.size(); ++month)
      if (months.at(month) != Money())
        report(key.second, {"GLActual", nameOf(key.first, key.second), "Amount" + std::to_string(month + 1), "no row",
                            months.at(month).toText()});
}

void Audit::checkTotalsRow(const Combination& combination, int year) {
  const std::string key = nameOf(combination, year);
  checkAccounts(totals_, INT_MAX, key);
  if (const std::string kind = totals_["ActualBudget"].asText(); kind != "A")
    report(INT_MAX, {"GLActual", key, "ActualBudget", kind, "A"});
  const auto sums = sums_.extract({combination, year});
  for (int month = 1; month <= Period::kCount; ++month) {
    const std::string field = "Amount" + std::to_string(month);
    const Money stored = totals_[field].asMoney();
    const Money derived = sums ? sums.mapped().at(static_cast<std::size_t>(month - 1)) : Money();
    if (stored == derived) continue;
    report(year, {"GLActual", key, field, stored.toText(), derived.toText()});
  }
}

void Audit::checkControl() {
  if (control_.recordCount() != 1)
    return report(INT_MAX, {"JVCtl", "the table", "rows", std::to_string(control_.recordCount()), "1"});
  const int next = control_["NextJVID"].asInt();
  if (next <= highestId_)
    report(INT_MAX, {"JVCtl", "the row", "NextJVID", std::to_string(next), "more than " + std::to_string(highestId_)});
}

}  // namespace

AuditReport auditLedger(store::Database& database) {
  Audit audit(database);
  return audit.take();
}

}  // namespace quillon::ledger
