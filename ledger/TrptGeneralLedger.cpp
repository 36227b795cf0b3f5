// The general ledger of a year or a period: of each account the balance before it, every line of a posted voucher with
// the balance after it, their sums and the balance that is left. A line opens its voucher.
#include <optional>

#include "form/App.h"
#include "ledger/AccountReport.h"
#include "ledger/MakeReports.h"
#include "ledger/Totals.h"
#include "shell/Periods.h"

namespace quillon::ledger {
namespace {

using store::Value;

class TrptGeneralLedger final : public AccountReport {
 public:
  using AccountReport::AccountReport;
  void tell(reports::Bands& b, const form::Open& open) override;
  bool next() override;

 private:
  void tellLine(reports::Bands& b);
  void tellFigures(reports::Bands& b);
  LedgerLines* lines() override { return &lines_.emplace(database(), year(), period()); }
  bool isLeftOut() override;
  Value part(bool debit);
  // On the voucher of a line, from any of its columns.
  void opensVoucher(reports::Column& column) {
    column.opens(openVoucherOfLine, [this] { return atOpening_ ? -1 : lines_->id(); });
  }

  std::optional<LedgerLines> lines_;
  bool atOpening_ = false, anyLine_ = false;  // of the account: its opening row, then its lines
  Money balance_;
};

void TrptGeneralLedger::tell(reports::Bands& b, const form::Open& open) {
  tellPeriod(b, open, "General Ledger");
  b.group([this] { return Value(place()); }, [this] { return account().number + "   " + account().name; })
      .totalled([this] { return "Total " + account().number + ", Closing Balance"; })
      .opens(opensOf([year = year(), from = firstPeriod(), to = lastPeriod()](form::App& some, const AccountKey& ids) {
               openLines(some, ids, year, from, to);
             }),
             [this] { return place(); });
  tellLine(b);
  tellFigures(b);
}

void TrptGeneralLedger::tellLine(reports::Bands& b) {
  b.shown("Period", 550, [this] { return atOpening_ ? "" : shell::periodText({year(), lines_->period()}); });
  b.shown("Date", 750, {}).value = [this] { return atOpening_ ? Value() : lines_->date(); };
  b.columns.back().format = form::dateConverter(app().formats());
  b.whole("JV no.", "", 650).value = [this] { return atOpening_ ? Value() : lines_->number(); };
  opensVoucher(b.columns.back());
  b.shown("Source", 600, [this] { return atOpening_ ? std::string() : lines_->source(); });
  b.shown("Description", 2200, [this] { return atOpening_ ? std::string("Opening Balance") : lines_->description(); });
}

// A balance opens the lines that led to it, and one before any line the year's totals.
void TrptGeneralLedger::tellFigures(reports::Bands& b) {
  constexpr std::int32_t kKeys = kPeriods + 1;  // of an account: its opening, and the periods
  opensVoucher(b.shownMoney("Debit", 950, [this] { return part(true); }).sum());
  opensVoucher(b.shownMoney("Credit", 950, [this] { return part(false); }).sum());
  b.shownMoney("Balance", 1000, [this] { return Value(balance_); })
      .carry()
      .opens(
          [all = accounts(), year = year()](form::App& some, std::int32_t key) {
            const AccountKey& ids = all->at(static_cast<std::size_t>(key / kKeys)).ids;
            const int last = key % kKeys;
            last == 0 ? openTotals(some, ids, year) : openLines(some, ids, year, 1, last);
          },
          [this] { return place() * kKeys + (atOpening_ ? 0 : lines_->period()); });
}

Value TrptGeneralLedger::part(bool debit) {
  if (atOpening_) return {};
  const Money amount = lines_->amount();
  if ((amount >= Money{}) != debit) return {};
  return Value(debit ? amount : -amount);
}

bool TrptGeneralLedger::isLeftOut() {
  anyLine_ = lines_->enter(account().ids);
  atOpening_ = true;
  balance_ = account().opening;
  return !anyLine_ && account().opening == Money{} && account().change == Money{};
}

bool TrptGeneralLedger::next() {
  const bool more = atOpening_ ? anyLine_ : lines_->next();
  if (!more) {
    lines_->requireAll(balance_ - account().opening, account().change);
    return AccountReport::next();
  }
  atOpening_ = false;
  balance_ += lines_->amount();
  return true;
}

}  // namespace

ReportPtr makeTrptGeneralLedger(shell::Session& session) { return std::make_unique<TrptGeneralLedger>(session); }

}  // namespace quillon::ledger
