// The general ledger of a year or a period: of each account the balance before it, every line of a posted voucher with
// the balance after it, and their sums. A line opens its voucher.
#include "form/App.h"
#include "form/Screen.h"
#include "ledger/LedgerAccounts.h"
#include "ledger/MakeReports.h"
#include "reports/LauncherScreen.h"
#include "reports/Report.h"
#include "shell/Periods.h"

namespace quillon::ledger {
namespace {

using store::Value;

class TrptGeneralLedger final : public reports::Report {
 public:
  using Report::Report;
  void tell(reports::Bands& b, const form::Open& open) override;
  bool first() override;
  bool next() override;
  int positionOf(std::string_view /*field*/) override { return -1; }

 private:
  // Of the account: its opening row, then its lines.
  bool isOpening() const { return line_ == lines_->begin() && atOpening_; }
  void enterAccount();
  Value part(bool debit) const;

  int year_ = 0, period_ = 0;
  std::vector<LedgerAccount> accounts_;
  std::map<std::array<int, 1 + kSubaccountLevels>, std::vector<LedgerLine>> all_;
  const std::vector<LedgerLine> none_;
  std::vector<LedgerAccount>::const_iterator account_;
  const std::vector<LedgerLine>* lines_ = &none_;
  std::vector<LedgerLine>::const_iterator line_;
  bool atOpening_ = false;
  Money balance_;
};

void TrptGeneralLedger::tell(reports::Bands& b, const form::Open& open) {
  reportTitle = "General Ledger";
  year_ = yearOf(open), period_ = periodOf(open);
  lblSelection = reports::periodWords(Value(year_), period_ == 0 ? Value() : Value(period_));
  b.group([this] { return Value(account_ - accounts_.begin()); },
          [this] { return account_->number + "   " + account_->name; })
      .totalled([this] { return "Total " + account_->number; });
  b.shown("Period", 550, [this] { return isOpening() ? "" : shell::periodText({year_, line_->period}); });
  b.shown("Date", 750, {}).value = [this] { return isOpening() || !line_->date ? Value() : Value(*line_->date); };
  b.columns.back().format = form::dateConverter(app().formats());
  b.whole("JV no.", "", 650)
      .opens(
          [](form::App& some, std::int32_t id) {
            some.open("TfrmJV", {.locate = {{"JVID", Value(id)}}});
          },
          [this] { return isOpening() || line_->voucher == 0 ? -1 : line_->voucher; });
  b.columns.back().value = [this] { return isOpening() ? Value() : Value(line_->number); };
  b.shown("Source", 600, [this] { return isOpening() ? std::string() : line_->source; });
  b.shown("Description", 2200, [this] { return isOpening() ? std::string("Opening Balance") : line_->description; });
  b.shownMoney("Debit", 950, [this] { return part(true); }).sum();
  b.shownMoney("Credit", 950, [this] { return part(false); }).sum();
  b.shownMoney("Balance", 1000, [this] { return Value(balance_); });
  b.total = "Report Totals:";
}

Value TrptGeneralLedger::part(bool debit) const {
  if (isOpening() || (line_->amount >= Money{}) != debit) return {};
  return Value(debit ? line_->amount : -line_->amount);
}

bool TrptGeneralLedger::first() {
  accounts_ = ledgerAccounts(app(), year_, period_);
  all_ = ledgerLines(app(), year_, period_);
  std::erase_if(accounts_, [this](const LedgerAccount& some) {
    return some.opening == Money{} && some.change == Money{} && !all_.contains(some.ids);
  });
  account_ = accounts_.begin();
  if (account_ == accounts_.end()) return false;
  enterAccount();
  return true;
}

void TrptGeneralLedger::enterAccount() {
  const auto found = all_.find(account_->ids);
  lines_ = found == all_.end() ? &none_ : &found->second;
  line_ = lines_->begin();
  atOpening_ = true;
  balance_ = account_->opening;
}

bool TrptGeneralLedger::next() {
  if (atOpening_)
    atOpening_ = false;
  else
    ++line_;
  if (line_ != lines_->end()) {
    balance_ += line_->amount;
    return true;
  }
  if (++account_ == accounts_.end()) return false;
  enterAccount();
  return true;
}

}  // namespace

ReportPtr makeTrptGeneralLedger(shell::Session& session) { return std::make_unique<TrptGeneralLedger>(session); }

}  // namespace quillon::ledger
