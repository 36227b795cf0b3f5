// Journal voucher entry: a header and its debit and credit lines, saved line by line.
//
// Keeps: a saved voucher balances and its period is open; a posted voucher is read-only until it is unposted. Cancel
// puts the lines back as they were before the first change (form::LineSnapshot).
#include <map>

#include "form/Grid.h"
#include "form/RecordScreen.h"
#include "form/RunLocks.h"
#include "form/Transaction.h"
#include "ledger/Accounts.h"
#include "ledger/MakeScreens.h"
#include "ledger/PostVouchers.h"
#include "ledger/VoucherLines.h"
#include "ledger/VoucherNumbers.h"
#include "shell/Periods.h"
#include "shell/Session.h"
#include "store/Database.h"
#include "store/Glance.h"

namespace quillon::ledger {
namespace {

using form::focus;
using form::grid;
using form::refuse;
using store::Value;

// What OK & New carries over.
constexpr const char* kKeptFields[] = {"GLYear", "GLPeriod", "TransDate"};

constexpr const char* kClosedYear =
    "JV is from a previous closed year.\r\rYou need to re-open the year before you can unpost this JV.\rMenu File | "
    "General | Your Company\rChange the Fiscal Year.";
constexpr const char* kPosted =
    "Posted JVs cannot be changed...\r\rTo make changes you need to unpost the JV using the button at the top "
    "right\r(not available for JVs from a prior closed year, but you can re-open the year).";

class TfrmJV final : public form::RecordScreen, public VoucherLineTaker {
 public:
  explicit TfrmJV(shell::Session& session);
  std::string title() override;
  void addLine(const VoucherLine& line) override;

 private:
  void build(form::Layout& layout) override;
  void recordShown(const form::Open& open) override;
  void tblJVNewRecord();
  void tblJVBeforeEdit();
  void tblJVBeforePost();
  void tblJVDetBeforeChange();
  void tblJVDetBeforePost();
  void tblJVDetAfterPost();
  void tblJVDetAfterDelete();
  void btnUnpostClick();
  void btnOKNewClick();
  void btnNewClick();
  void btnDeleteClick();
  void mnuImportJVDataClick();

  form::Control& headerFields(form::Layout& l);
  std::vector<std::unique_ptr<form::Control>> lineColumns(form::Layout& l);
  bool isPosted() { return tblJV.isOpen() && tblJV["Posted"].asBool(); }
  void readAgain(const Value& id);
  void unpost(const Value& id);
  void copyFrom(const Value& id);
  void sumLines();
  void moveTotals(Money before, Money after);
  std::string totalsText() const;

  shell::Session& session_;
  form::Table tblJV{*this, "JV"};
  form::Table tblJVDet{*this, "JVDet", store::follows{tblJV, "JVID"}};
  form::LineSnapshot lines_{tblJVDet};
  Money debits_, credits_;  // credits stay negative
  int nextSeq_ = 1;
  Money oldAmount_;  // of the line being edited or deleted
  bool copied_ = false, importing_ = false;
  std::map<std::string, Value> kept_;  // for the next voucher, of the one just saved
};

TfrmJV::TfrmJV(shell::Session& session)
    : RecordScreen(session.app(), {.key = "JVID",
                                   .list = "frmJVs",
                                   .keyViolation = "JV no. already exists for this period",
                                   .keyFocus = "JVNumber"}),
      session_(session) {
  restores(lines_);
  lines_.restored = [this] { sumLines(); };
  tblJV.events.onNewRecord = [this] { tblJVNewRecord(); };
  tblJV.events.beforeEdit = [this] { tblJVBeforeEdit(); };
  tblJV.events.afterEdit = [this] { sumLines(); };
  tblJV.events.beforePost = [this] { tblJVBeforePost(); };
  tblJVDet.events.beforeEdit = tblJVDet.events.beforeInsert = [this] { tblJVDetBeforeChange(); };
  tblJVDet.events.afterEdit = [this] { oldAmount_ = tblJVDet["GLAmount"].asMoney(); };
  tblJVDet.events.afterInsert = [this] { oldAmount_ = {}; };
  tblJVDet.events.beforeDelete = [this] {
    tblJVDetBeforeChange();
    oldAmount_ = tblJVDet["GLAmount"].asMoney();
  };
  tblJVDet.events.beforePost = [this] { tblJVDetBeforePost(); };
  tblJVDet.events.afterPost = [this] { tblJVDetAfterPost(); };
  tblJVDet.events.afterDelete = [this] { tblJVDetAfterDelete(); };
  tblJVDet.validate("GLAccountID", [this](const Value& id) { requireUsableAccount(app(), id); });
  for (int level = 1; level <= kSubaccountLevels; ++level)
    tblJVDet.validate(subaccountField(level),
                      [this, level](const Value& id) { requireUsableSubaccount(app(), level, id); });
}

std::string TfrmJV::title() {
  if (isNew() && copied_) return "New (copied) Journal Voucher";
  if (isNew() && (tblJV["JVNumber"].asInt() == 0 || tblJV["TransDescription"].isNull())) return "New Journal Voucher";
  return "JV " + tblJV["JVNumber"].value().toText();
}

void TfrmJV::build(form::Layout& l) {
  headerFields(l);
  form::Control& lines = l.lines(tblJVDet, lineColumns(l));
  lines.grid()->mayChangeWhen([this] { return !isPosted(); });
  lines.readOnlyWhen([this] { return isPosted(); }).explains(std::string(kPosted));
  l.label("lblTotals", [this] { return totalsText(); });
  const auto mayChange = [this] { return !isPosted(); };
  l.row(l.button("btnNew", "&New", &TfrmJV::btnNewClick).hint("New line").enabledWhen(mayChange),
        l.button("btnDelete", "&Delete", &TfrmJV::btnDeleteClick).hint("Delete line").enabledWhen(mayChange).abandons(),
        l.button("btnOK", "OK", &TfrmJV::btnOKClick).saves().standard(),
        l.button("btnOKNew", "OK && Ne&w", &TfrmJV::btnOKNewClick).saves(),
        l.button("btnCancel", "Cancel", &TfrmJV::btnCancelClick).abandons());
  l.menu("&Lines", l.entry("mnuNew", "&New", &TfrmJV::btnNewClick).enabledWhen(mayChange),
         l.entry("mnuDelete", "&Delete", &TfrmJV::btnDeleteClick).enabledWhen(mayChange).abandons(),
         l.entry("mnuImportJVData", "&Import JV Data", &TfrmJV::mnuImportJVDataClick).enabledWhen(mayChange).saves());
}

form::Control& TfrmJV::headerFields(form::Layout& l) {
  form::Control& period = l.period("GL&Period:", tblJV["GLPeriod"], tblJV["GLYear"]);
  form::Control& number = l.field("&JV no.:", tblJV["JVNumber"]);
  form::Control& date = l.date("Da&te:", tblJV["TransDate"]);
  form::Control& description = l.field("D&escription:", tblJV["TransDescription"]);
  form::Control& reverse = l.check("&Auto-Reverse", tblJV["AutoReverse"]).hint("Create reversing JV in next period");
  const auto posted = [this] { return isPosted(); };
  for (const auto& half : period.children()) half->readOnlyWhen(posted).explains(std::string(kPosted));
  for (form::Control* control : {&number, &date, &description, &reverse})
    control->readOnlyWhen(posted).explains(std::string(kPosted));
  l.row(period, number, date, l.pickButton("btnTransDate", date), l.mark("lblPosted", "POSTED", posted),
        l.button("btnUnpost", "Unpost", &TfrmJV::btnUnpostClick).hint("Unpost this JV").visibleWhen(posted));
  return l.row(description, reverse);
}

std::vector<std::unique_ptr<form::Control>> TfrmJV::lineColumns(form::Layout& l) {
  auto columns = l.columns(l.codeColumn("Account", tblJVDet["GLAccountID"], accountCode()));
  for (int level = 1; level <= kSubaccountLevels; ++level)
    columns.push_back(
        l.codeColumn("Sub" + std::to_string(level), tblJVDet[subaccountField(level)], subaccountCode(level)));
  columns.push_back(l.shownColumn(
      "Name", "Name",
      [this] {
        return accountNames(
            app(), tblJVDet.value("GLAccountID"),
            {tblJVDet.value("SubAccount1ID"), tblJVDet.value("SubAccount2ID"), tblJVDet.value("SubAccount3ID")});
      },
      40));
  columns.push_back(l.column("Amount", tblJVDet["GLAmount"]));
  return columns;
}

void TfrmJV::recordShown(const form::Open& open) {
  copied_ = false;
  sumLines();
  if (const auto from = open.values.find("copyFrom"); from != open.values.end()) copyFrom(from->second);
}

// The header.

void TfrmJV::tblJVNewRecord() {
  const VoucherNumbers numbers = takeVoucherNumbers(app());
  const Period period = shell::defaultPeriod(session_);
  tblJV["JVID"] = numbers.id;
  tblJV["JVNumber"] = numbers.number;
  tblJV["TransDate"] = app().today();
  tblJV["Posted"] = false;
  tblJV["AutoReverse"] = false;
  tblJV["Source"] = "GL";
  tblJV["TransType"] = "JV";
  tblJV["GLPeriod"] = period.number;
  tblJV["GLYear"] = period.year;
  for (const auto& [field, value] : std::exchange(kept_, {})) tblJV[field] = value;
  debits_ = credits_ = {};
  nextSeq_ = 1;
  copied_ = false;
}

void TfrmJV::tblJVBeforeEdit() {
  if (!isPosted()) return;
  app().person().show(form::Tone::information, kPosted);
  form::abort();
}

void TfrmJV::tblJVBeforePost() {
  if (isPosted()) return;
  if (tblJV["GLPeriod"].isNull()) refuse("Field 'Period' must have a value", focus("GLPeriod"));
  if (tblJV["GLYear"].isNull()) refuse("Field 'Year of Period' must have a value", focus("GLYear"));
  // Posting could write no history without them, of this voucher and of all that wait with it.
  if (tblJV["JVNumber"].isNull()) refuse("Field 'JV no.' must have a value", focus("JVNumber"));
  if (tblJV["TransDate"].isNull()) refuse("Field 'Date' must have a value", focus("TransDate"));
  shell::requireOpenPeriod(session_, {tblJV["GLYear"].asInt(), tblJV["GLPeriod"].asInt()}, focus("GLPeriod"));
  if (tblJVDet.isEmpty()) refuse("Amounts and GL Accounts have not been entered", grid(tblJVDet));
  if (debits_ == Money())
    refuse(
        "No debits have been entered...\rYou must enter at least one debit amount.\rTip: Debits are entered as "
        "positive "
        "amounts. Example 10.00",
        grid(tblJVDet).append());
  if (credits_ == Money())
    refuse(
        "No credits have been entered...\rYou must enter at least one credit amount.\rTip: Credits are entered as "
        "minus "
        "amounts. Example -10.00",
        grid(tblJVDet).append());
  if (debits_ + credits_ != Money()) refuse("Debits and Credits are out of balance", grid(tblJVDet));
  tblJV["JVAmount"] = debits_;
}

// The lines.

// A line changes only under the header's lock.
void TfrmJV::tblJVDetBeforeChange() {
  tblJV.edit();
  if (!tblJV.isEditing()) form::abort();
  lines_.take();
}

void TfrmJV::tblJVDetBeforePost() {
  const auto at = [this](const std::string& column) { return grid(tblJVDet).at(column); };
  const Value account = tblJVDet.value("GLAccountID");
  if (account.isNull())
    refuse("Field 'GL Account' must have a value...\rMake changes or press Esc to undo", at("GLAccount"));
  if (!accountExists(app(), account))
    refuse("GL Account not found...\rMake changes or press Esc to undo", at("GLAccount"));
  for (int level = 1; level <= kSubaccountLevels; ++level) {
    const Value id = tblJVDet.value(subaccountField(level));
    if (!id.isNull() && !subaccountExists(app(), level, id))
      refuse("Subaccount " + std::to_string(level) + " not found...\rMake changes or press Esc to undo",
             at("SubAccount" + std::to_string(level)));
  }
  if (tblJVDet["Seq"].isNull()) tblJVDet["Seq"] = nextSeq_++;
}

void TfrmJV::tblJVDetAfterPost() {
  if (!importing_) tblJVDet.flush();
  moveTotals(oldAmount_, tblJVDet["GLAmount"].asMoney());
}

void TfrmJV::tblJVDetAfterDelete() {
  tblJVDet.flush();
  moveTotals(oldAmount_, {});
}

void TfrmJV::moveTotals(Money before, Money after) {
  (before > Money() ? debits_ : credits_) -= before;
  (after > Money() ? debits_ : credits_) += after;
  oldAmount_ = after;
  tblJV["JVAmount"] = debits_;
}

void TfrmJV::sumLines() {
  debits_ = credits_ = {};
  int highest = 0;
  store::Glance glance(tblJVDet);
  for (bool there = glance.first(); there; there = glance.next()) {
    const Money amount = tblJVDet["GLAmount"].asMoney();
    (amount > Money() ? debits_ : credits_) += amount;
    highest = std::max(highest, tblJVDet["Seq"].asInt());
  }
  nextSeq_ = highest + 1;
}

std::string TfrmJV::totalsText() const {
  const AmountFormat debit("#,###,##0.00#;(#,###,##0.00#)", app().formats().numbers);
  const AmountFormat credit("#,###,##0.00#;#,###,##0.00#CR", app().formats().numbers);
  std::string text = "Debits: " + debit.format(debits_) + "   Credits: " + credit.format(credits_);
  const Money difference = -(debits_ + credits_);
  if (difference != Money()) text += "   Diff: " + credit.format(difference);
  return text;
}

// Commands.

void TfrmJV::btnUnpostClick() {
  session_.tblCompany().refresh();
  if (tblJV["GLYear"].asInt() < session_.tblCompany()["FiscalYear"].asInt())
    return app().person().show(form::Tone::information, kClosedYear);
  if (!app().person().confirm("Unpost this JV?")) return;
  const Value id = tblJV.value("JVID");
  readAgain(id);
  {
    // Whoever edits the voucher is met here, where nobody waits for the tables.
    const store::Cursor::Silence ofPosted(tblJV);
    tblJV.edit();
    tblJV.cancel();
  }
  try {
    unpost(id);
  } catch (...) {
    readAgain(id);
    throw;
  }
  readAgain(id);
  moveList();
}

void TfrmJV::unpost(const Value& id) {
  form::RunLocks locks(app());
  locks.take({"GLActual", form::RunLock::table, kTotalsAreLocked});
  app().person().hourglass(true);
  form::transact(database(), kPostingTables, [&] { PostVouchers(database()).unpost(id); });
}

// One that somebody deleted meanwhile is closed: what stands behind it is another.
void TfrmJV::readAgain(const Value& id) {
  tblJV.rereadRow();
  if (tblJV.isEmpty() || tblJV.value("JVID") != id) {
    app().closeLater(*this);
    refuse("This record has been deleted by another user");
  }
  tblJVDet.refresh();
  sumLines();
}

void TfrmJV::btnOKNewClick() {
  save();
  for (const char* field : kKeptFields) kept_[field] = tblJV.value(field);
  startNew();
  goTo(focus("GLPeriod"));
}

void TfrmJV::btnNewClick() {
  tblJVDet.append();
  goTo(grid(tblJVDet).at("GLAccount"));
}

void TfrmJV::btnDeleteClick() {
  if (tblJVDet.isEmpty()) return;
  tblJVDet.remove();
}

// Lines that are copied or imported come through the table's rules, but for the copy's, which were checked once.
void TfrmJV::copyFrom(const Value& id) {
  store::Cursor from(database(), "JV"), fromLines(database(), "JVDet", store::follows{from, "JVID"});
  from.open();
  fromLines.open();
  if (!from.locate("JVID", {id})) refuse("This record has been deleted by another user");
  for (const char* field : {"TransDescription", "JVAmount", "AutoReverse"}) tblJV[field] = from.value(field);
  {
    const store::Cursor::Silence silence(tblJVDet);
    for (fromLines.first(); !fromLines.eof(); fromLines.next()) {
      tblJVDet.append();
      for (const char* field : {"Seq", "GLAccountID", "SubAccount1ID", "SubAccount2ID", "SubAccount3ID", "GLAmount"})
        tblJVDet[field] = fromLines.value(field);
      tblJVDet.post();
    }
  }
  sumLines();
  copied_ = true;
}

void TfrmJV::mnuImportJVDataClick() {
  form::Open open;
  open.draft = static_cast<VoucherLineTaker*>(this);
  importing_ = true;
  try {
    app().runModal("TfrmImportJVData", open);
  } catch (...) {
    importing_ = false;
    throw;
  }
  importing_ = false;
  tblJVDet.flush();
  tblJVDet.first();
  goTo(grid(tblJVDet).at("GLAccount"));
}

void TfrmJV::addLine(const VoucherLine& line) {
  tblJVDet.append();
  try {
    tblJVDet["GLAccountID"] = line.account;
    for (int level = 1; level <= kSubaccountLevels; ++level)
      tblJVDet[subaccountField(level)] = line.subaccounts[level - 1];
    tblJVDet["GLAmount"] = line.amount;
    tblJVDet.post();
  } catch (...) {
    tblJVDet.cancel();
    throw;
  }
}

}  // namespace

ScreenPtr makeJV(shell::Session& session) { return std::make_unique<TfrmJV>(session); }

}  // namespace quillon::ledger
