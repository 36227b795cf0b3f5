#include "ledger/Audit.h"

#include <climits>
#include <map>
#include <set>

#include "base/Period.h"
#include "ledger/AuditOpenings.h"
#include "ledger/AuditedKeys.h"
#include "ledger/Sources.h"
#include "store/Cursor.h"
#include "store/Database.h"

namespace quillon::ledger {
namespace {

using store::Cursor;
using store::Value;

constexpr const char* kOfVoucher[] = {"JVNumber",    "Source",      "TransDate",   "TransDescription",
                                      "VendorID",    "APInvoiceID", "ChequeID",    "CustomerID",
                                      "ARInvoiceID", "PaymentID",   "AdjustmentID"};

using Months = std::array<Money, Period::kCount>;

class Audit {
 public:
  explicit Audit(store::Database& database) : database_(database), keys_(database) {
    for (Cursor* cursor : cursors()) cursor->open();
  }
  AuditReport take();

 private:
  struct VoucherRows {                                      // of a voucher in the history, by year and text
    std::map<std::pair<int, std::string>, int> difference;  // those that should be there less those that are
    std::map<int, int> expected;
  };

  std::array<Cursor*, 6> cursors() { return {&jv_, &lines_, &history_, &totals_, &control_, &company_}; }
  void readVouchers();
  void readHistory();
  void readLooseRow(Period period);
  void checkVoucher();
  void checkHead(const std::string& key);
  void checkBalance(const std::string& key, Money sum, Money debits);
  void checkRows(const std::string& key, const VoucherRows& rows);
  void checkLines();
  void checkTotals();
  void checkTotalsRow(const Combination& combination, int year);
  void checkControl();
  void report(Disagreement what) { report_.wrong.push_back(std::move(what)); }
  void add(const Combination& combination, Period period, Money amount);
  void use(int id) { highestId_ = std::max(highestId_, id); }

  // What a purge may have taken.
  bool voucherMayBeGone(int year) const { return year < std::max(fiscalYear_ - 1, firstPosted_); }
  bool historyMayBeGone(int year) const { return year < std::max(fiscalYear_ - 1, historyFrom_); }
  bool isKnown(int year, int month) const;

  store::Database& database_;
  Cursor jv_{database_, "JV"}, lines_{database_, "JVDet"}, history_{database_, "GLHist"},
      totals_{database_, "GLActual"}, control_{database_, "JVCtl"}, company_{database_, "Company"};
  AuditedKeys keys_;
  std::set<int> vouchers_, gone_;                       // ids; gone: that only history has
  std::map<std::pair<Combination, int>, Months> sums_;  // by year
  int fiscalYear_ = 0, highestId_ = 0;
  int firstPosted_ = INT_MAX, historyFrom_ = INT_MIN;  // years
  bool hasHistory_ = false;
  AuditReport report_;
};

Period periodOf(Cursor& row) { return {row["GLYear"].asInt(), row["GLPeriod"].asInt()}; }

std::string textOf(Period period) { return std::to_string(period.year) + "/" + std::to_string(period.number); }

// What a row of history has of its voucher, or is to have.
std::string headText(Cursor& voucher, Period period, const Value& transType) {
  std::string text = textOf(period) + " " + transType.toText();
  for (const char* field : kOfVoucher) {
    const Value value = voucher.value(field);
    const bool document = std::string_view(field).ends_with("ID");
    text += " " + (document ? std::to_string(value.asInt()) : value.toText());
  }
  return text;
}

std::string rowText(Cursor& line, Cursor& voucher, Period period, const Value& transType, Money amount) {
  return AuditedKeys::nameOf(AuditedKeys::combinationOf(line), period.year) + " " + amount.toText() + " " +
         headText(voucher, period, transType);
}

AuditReport Audit::take() {
  std::vector<store::Table*> tables = keys_.tables();
  for (Cursor* cursor : cursors()) tables.push_back(&cursor->table());
  const store::Database::Snapshot moment(database_, tables);
  company_.first();
  fiscalYear_ = company_["FiscalYear"].asInt();
  keys_.read();
  readVouchers();
  readHistory();
  history_.setIndex("JVID");
  for (jv_.first(); !jv_.eof(); jv_.next()) checkVoucher();
  lines_.cancelRange();
  checkLines();
  checkTotals();
  checkControl();
  keys_.check(report_.wrong);
  for (Disagreement& one : auditOpenings(database_, fiscalYear_)) report(std::move(one));
  return std::move(report_);
}

void Audit::add(const Combination& combination, Period period, Money amount) {
  if (period.number < 1 || period.number > Period::kCount) return;
  sums_[{combination, period.year}].at(static_cast<std::size_t>(period.number - 1)) += amount;
}

void Audit::readVouchers() {
  for (jv_.first(); !jv_.eof(); jv_.next()) {
    vouchers_.insert(jv_["JVID"].asInt());
    if (jv_["Posted"].asBool()) firstPosted_ = std::min(firstPosted_, jv_["GLYear"].asInt());
  }
}

// History.

// Rows that no voucher is there for, of which each document balances in each period: those of vouchers that are gone,
// and those without an id, which cancel a voucher whose history was purged. Of these the amounts are in no total: what
// they cancel is not there any more.
void Audit::readHistory() {
  std::set<int> years;
  int lastCancelled = INT_MIN;
  std::map<std::pair<std::string, std::string>, Money> documents;  // by name and everything that their rows share
  for (history_.first(); !history_.eof(); history_.next()) {
    const Period period = periodOf(history_);
    const Value id = history_.value("JVID");
    const std::string key = "GLHistID " + history_.value("GLHistID").toText();
    keys_.checkCombination(history_, key, report_.wrong);
    // It was ticked before it was reconciled, and both go together.
    if (history_["Reconciled"].asBool() && !history_["Reconciling"].asBool())
      report({"GLHist", key, "Reconciling", "False", "True, as it is reconciled"});
    if (id.isNull())
      lastCancelled = std::max(lastCancelled, period.year);
    else
      years.insert(period.year);
    if (!id.isNull() && vouchers_.contains(id.asInt())) continue;
    if (!id.isNull()) readLooseRow(period);
    const std::string name = id.isNull() ? "JVNumber " + history_.value("JVNumber").toText() : "JVID " + id.toText();
    documents[{name, headText(history_, period, history_.value("TransType"))}] += history_["Amount"].asMoney();
  }
  for (const auto& [document, sum] : documents)
    if (sum != Money())
      report({"GLHist", document.first + ", " + document.second, "debits plus credits", sum.toText(), "0"});
  // A purge takes whole years, up to one: what was posted again since stands in them.
  hasHistory_ = !years.empty() || lastCancelled != INT_MIN;
  if (!hasHistory_) return;
  const auto behind = years.upper_bound(lastCancelled);
  historyFrom_ = behind != years.end() ? *behind : lastCancelled + 1;
}

// Of a voucher that is gone.
void Audit::readLooseRow(Period period) {
  const int id = history_["JVID"].asInt();
  use(id);
  add(AuditedKeys::combinationOf(history_), period, history_["Amount"].asMoney());
  if (!gone_.insert(id).second) return;
  const bool reversal = history_["TransType"].asText() == "JVR" && period.number == 1;
  if (!voucherMayBeGone(period.year - (reversal ? 1 : 0)))
    report({"GLHist", "GLHistID " + history_.value("GLHistID").toText(), "JVID", std::to_string(id), "a voucher"});
}

// Vouchers.

void Audit::checkVoucher() {
  const Value id = jv_.value("JVID"), type = jv_.value("TransType");
  const std::string key = "JVID " + id.toText();
  const bool posted = jv_["Posted"].asBool(), reverses = jv_["AutoReverse"].asBool();
  const Period period = periodOf(jv_);
  use(id.asInt());
  Money debits, sum;
  VoucherRows rows;
  const auto expect = [&](Period there, const Value& transType, Money amount) {
    add(AuditedKeys::combinationOf(lines_), there, amount);
    ++rows.difference[{there.year, rowText(lines_, jv_, there, transType, amount)}];
    ++rows.expected[there.year];
  };
  lines_.setRange({id}, {id});
  for (lines_.first(); !lines_.eof(); lines_.next()) {
    const Money amount = lines_["GLAmount"].asMoney();
    sum += amount;
    debits += std::max(amount, Money());
    if (!posted) continue;
    expect(period, type, amount);
    if (reverses) expect(period.next(), "JVR", -amount);
  }
  history_.setRange({id}, {id});
  for (history_.first(); !history_.eof(); history_.next()) {
    const Period there = periodOf(history_);
    --rows.difference[{there.year,
                       rowText(history_, history_, there, history_.value("TransType"), history_["Amount"].asMoney())}];
    for (const char* mark : {"Reconciled", "Reconciling"})
      if (history_.value(mark).isNull())
        report({"GLHist", "GLHistID " + history_.value("GLHistID").toText(), mark, kNone, "True or False"});
  }
  checkHead(key);
  checkBalance(key, sum, debits);
  checkRows(key, rows);
}

// Without these a voucher could not be posted, or reached no total.
void Audit::checkHead(const std::string& key) {
  for (const char* field : {"JVID", "JVNumber", "TransDate", "Posted"})
    if (jv_.value(field).isNull()) report({"JV", key, field, kNone, "a value"});
  if (const Period period = periodOf(jv_); !period.valid())
    report({"JV", key, "GLYear and GLPeriod", textOf(period), "a year, and a period from 1 to 12"});
  const Value source = jv_.value("Source"), type = jv_.value("TransType");
  if (!isSource(source, type))
    report({"JV", key, "Source and TransType", source.toText() + " " + type.toText(), "a source of vouchers"});
}

void Audit::checkBalance(const std::string& key, Money sum, Money debits) {
  const Money total = jv_["JVAmount"].asMoney();
  std::vector<Disagreement>& to = jv_["Posted"].asBool() ? report_.wrong : report_.interrupted;
  if (sum != Money()) to.push_back({"JV", key, "debits plus credits", sum.toText(), "0"});
  if (total != debits) to.push_back({"JV", key, "JVAmount", total.toText(), debits.toText()});
}

// A purge takes all rows of a year, so that some that are left, or others, belie it.
void Audit::checkRows(const std::string& key, const VoucherRows& rows) {
  std::map<int, int> missing;
  bool others = false;
  for (const auto& [row, count] : rows.difference) {
    if (count > 0) missing[row.first] += count;
    others = others || count < 0;
  }
  const auto purged = [&](int year) {
    return !others && missing.at(year) == rows.expected.at(year) && historyMayBeGone(year);
  };
  for (const auto& [row, count] : rows.difference)
    if (count < 0)
      report({"GLHist", key, "a row of the voucher", row.second, kNone});
    else if (count > 0 && !purged(row.first))
      report({"GLHist", key, "a row of the voucher", kNone, row.second});
  for (const auto& [year, count] : missing)
    if (purged(year)) ++report_.withoutHistory[year];
}

void Audit::checkLines() {
  int told = INT_MIN;
  for (lines_.first(); !lines_.eof(); lines_.next()) {
    const int id = lines_["JVID"].asInt();
    use(id);
    const std::string key = "JVID " + std::to_string(id);
    if (vouchers_.contains(id)) {
      keys_.checkCombination(lines_, key + ", Seq " + lines_.value("Seq").toText(), report_.wrong);
      continue;
    }
    // A line that is entered is saved before its voucher is; one that was posted goes with its voucher.
    std::vector<Disagreement>& to = gone_.contains(id) ? report_.wrong : report_.interrupted;
    if (std::exchange(told, id) != id) to.push_back({"JVDet", key, "lines without a voucher", key, kNone});
  }
}

// Totals.

// Whether what a month's totals follow from is there: the history, or all vouchers, of which one that was purged may
// have been reversed into the first month. Where there is neither at all, only what a purge leaves alone is known.
bool Audit::isKnown(int year, int month) const {
  if (!hasHistory_ && firstPosted_ == INT_MAX) return year >= fiscalYear_ - 1;
  if (hasHistory_ && year >= historyFrom_ && !report_.withoutHistory.contains(year)) return true;
  return year > firstPosted_ || (year == firstPosted_ && (month > 1 || year > fiscalYear_ - 1));
}

void Audit::checkTotals() {
  std::map<int, Money> openings;
  for (totals_.first(); !totals_.eof(); totals_.next()) {
    const int year = totals_["GLYear"].asInt();
    checkTotalsRow(AuditedKeys::combinationOf(totals_), year);
    openings[year] += totals_["OpeningBal"].asMoney();
  }
  for (const auto& [year, sum] : openings)
    if (sum != Money() && isKnown(year, Period::kCount))
      report({"GLActual", "the rows of " + std::to_string(year), "OpeningBal in all", sum.toText(), "0"});
  for (const auto& [key, months] : sums_)
    for (std::size_t month = 0; month < months.size(); ++month)
      if (months.at(month) != Money() && isKnown(key.second, static_cast<int>(month) + 1))
        report({"GLActual", AuditedKeys::nameOf(key.first, key.second), "Amount" + std::to_string(month + 1), "no row",
                months.at(month).toText()});
}

void Audit::checkTotalsRow(const Combination& combination, int year) {
  const std::string key = AuditedKeys::nameOf(combination, year);
  keys_.checkCombination(totals_, key, report_.wrong);
  if (const std::string kind = totals_["ActualBudget"].asText(); kind != "A")
    report({"GLActual", key, "ActualBudget", kind, "A"});
  const auto sums = sums_.extract({combination, year});
  for (int month = 1; month <= Period::kCount; ++month) {
    const std::string field = "Amount" + std::to_string(month);
    const Money stored = totals_[field].asMoney();
    const Money derived = sums ? sums.mapped().at(static_cast<std::size_t>(month - 1)) : Money();
    if (stored != derived && isKnown(year, month)) report({"GLActual", key, field, stored.toText(), derived.toText()});
  }
}

void Audit::checkControl() {
  if (control_.recordCount() != 1)
    return report({"JVCtl", "the table", "rows", std::to_string(control_.recordCount()), "1"});
  const int next = control_["NextJVID"].asInt();
  if (next <= highestId_)
    report({"JVCtl", "the row", "NextJVID", std::to_string(next), "more than " + std::to_string(highestId_)});
}

}  // namespace

AuditReport auditLedger(store::Database& database) {
  Audit audit(database);
  return audit.take();
}

}  // namespace quillon::ledger
