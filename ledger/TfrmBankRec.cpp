// Bank reconciliation: the rows of a bank's ledger account that no bank statement has shown yet. What the statement at
// hand shows is ticked, and when the adjusted balance is the statement's, Reconcile takes the ticked rows off for good.
//
// Keeps: a tick is saved at once, so that the work can be left and gone on with. Nothing but the row is locked: several
// people may tick in one bank.
#include "form/App.h"
#include "form/Grid.h"
#include "form/ListScreen.h"
#include "ledger/Accounts.h"
#include "ledger/BankChooser.h"
#include "ledger/BankFigures.h"
#include "ledger/HistoryOrigin.h"
#include "ledger/MakeScreens.h"
#include "ledger/Reconcile.h"
#include "ledger/Sources.h"
#include "shell/Periods.h"
#include "shell/Session.h"
#include "store/Errors.h"
#include "store/OneMoment.h"
#include "store/table/Table.h"

namespace quillon::ledger {
namespace {

using store::Value;

constexpr const char* kVoucherGone = "It may have been unposted and deleted.";

class TfrmBankRec final : public form::ListScreen {
 public:
  explicit TfrmBankRec(shell::Session& session);

 private:
  void build(form::Layout& layout) override;
  void shown(const form::Open& open) override;
  void showOnly(const std::string& condition) override;
  void mnuRefreshClick() override;
  void mnuUnreconcileClick();
  void change(void (*deed)(store::Database&, const Value&));
  void readFigures();
  void adjustFigures();
  std::string figures() const;
  std::string clause(const char* condition) const;

  BankChooser bank_;
  form::Table tblGLHist{*this, "GLHist"};
  Value account_;
  Money balance_, outstanding_;
  // Of the row being edited.
  bool wasTicked_ = false, othersWrote_ = false;
  std::uint64_t version_ = 0;  // of the table, that the figures belong to
};

TfrmBankRec::TfrmBankRec(shell::Session& session)
    : ListScreen(session.app(), {.title = "Bank Reconciliation", .record = {}, .key = "GLHistID"}),
      bank_(session, [this] { showOnly(""); }) {
  tblGLHist.events.afterEdit = [this] {
    wasTicked_ = tblGLHist["Reconciling"].asBool();
    othersWrote_ = tblGLHist.table().version() != version_;
  };
  tblGLHist.events.onEditError = [this](const store::StoreError& error) {
    const store::ErrorAnswer answer = app().editError(tblGLHist, error);
    if (error.code() == store::Code::recordChanged) readFigures();
    return answer;
  };
  tblGLHist.events.afterPost = [this] { adjustFigures(); };
}

void TfrmBankRec::build(form::Layout& l) {
  tblGLHist.setIndex("TransDate");
  form::Control& refresh = l.entry("mnuRefresh", "&Refresh", &TfrmBankRec::mnuRefreshClick).key("F5");
  form::Control& unreconcile = l.entry("mnuUnreconcile", "&Unreconcile All Previously Reconciled Transactions",
                                       &TfrmBankRec::mnuUnreconcileClick);
  form::Control& source = l.entry("mnuSource", "&Source", [this] {
                             openSource(app(), tblGLHist, kVoucherGone);
                           }).enabledWhen([this] { return hasSource(app(), tblGLHist); });
  form::Control& jv = l.entry("mnuJV", "&JV", [this] { openVoucher(app(), tblGLHist, kVoucherGone); });
  l.row(l.menu("&Edit", unreconcile, refresh), l.menu("&View", source, jv));
  l.row(bank_.control(l));
  const auto period = [this] {
    return tblGLHist["GLPeriod"].isNull()
               ? std::string()
               : shell::periodText({tblGLHist["GLYear"].asInt(), tblGLHist["GLPeriod"].asInt()});
  };
  const auto from = [this] { return sourceText(tblGLHist.value("Source"), tblGLHist.value("TransType")); };
  l.grid(tblGLHist,
         l.columns(l.tickColumn("Select", tblGLHist["Reconciling"]), l.column("Date", tblGLHist["TransDate"]),
                   l.shownColumn("GLPeriod", "Period", period, 7), l.shownColumn("Source", "Source", from, 7),
                   l.column("Payment/Deposit", tblGLHist["Amount"]),
                   l.column("Description", tblGLHist["TransDescription"])))
      .opens([this] { openVoucher(app(), tblGLHist, kVoucherGone); });
  l.row(l.label("lblFigures", [this] { return figures(); }).wide(120));
  l.row(l.button("btnReconcile", "Reconcile", [this] { change(reconcileTicked); }),
        l.button("btnClose", "Close (Save)", [this] { app().closeLater(*this); }),
        l.button("btnSelectAll", "Select All", [this] { change(tickAll); }),
        l.button("btnSelectNone", "Select None", [this] { change(untickAll); }));
}

void TfrmBankRec::shown(const form::Open& open) {
  bank_.begin(open);
  ListScreen::shown(open);
}

void TfrmBankRec::showOnly(const std::string& /*condition*/) {
  account_ = bank_.account();
  ListScreen::showOnly(clause("(Reconciled <> true)"));
  readFigures();
}

std::string TfrmBankRec::clause(const char* condition) const {
  return "(GLAccountID = " + (account_.isNull() ? "null" : account_.toText()) + ") AND " + condition;
}

// Figures.

void TfrmBankRec::readFigures() {
  store::atOneMoment(database(), {"GLActual", "GLHist"}, [this] {
    balance_ = ledgerBalance(database(), account_);
    outstanding_ = outstandingAmount(database(), account_);
  });
  version_ = tblGLHist.table().version();
}

// A row more or less; but all anew where somebody else has written meanwhile.
void TfrmBankRec::adjustFigures() {
  if (othersWrote_) return readFigures();
  const bool ticked = tblGLHist["Reconciling"].asBool();
  const Money amount = tblGLHist["Amount"].asMoney();
  if (ticked != wasTicked_) outstanding_ += ticked ? -amount : amount;
  version_ = tblGLHist.table().version();
}

std::string TfrmBankRec::figures() const {
  const form::ConverterPtr money = form::moneyConverter(app().formats());
  return "Balance: " + money->show(balance_) + "       Outstanding: " + money->show(outstanding_) +
         "       Adjusted Balance: " + money->show(balance_ - outstanding_);
}

// Commands.

void TfrmBankRec::mnuRefreshClick() {
  ListScreen::mnuRefreshClick();
  showOnly("");
}

// Somebody else may have one of the rows at this moment.
void TfrmBankRec::change(void (*deed)(store::Database&, const Value&)) {
  for (bool done = false; !done;) {
    try {
      deed(database(), account_);
      done = true;
    } catch (const store::StoreError& error) {
      if (error.code() != store::Code::recordLocked) throw;
      if (app().editError(tblGLHist, error) != store::ErrorAnswer::retry) form::abort();
    }
  }
  mnuRefreshClick();
}

void TfrmBankRec::mnuUnreconcileClick() {
  if (!app().person().confirm("Unreconcile all previously reconciled transactions for this bank account?"))
    form::abort();
  change(unreconcileAll);
}

}  // namespace

ScreenPtr makeBankRec(shell::Session& session) { return std::make_unique<TfrmBankRec>(session); }

}  // namespace quillon::ledger
