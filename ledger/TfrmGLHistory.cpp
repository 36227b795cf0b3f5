// GL history: a row for each line of a posted voucher, newest first; below them all lines of the voucher that the
// current row came from.
//
// Limited to one account it reads by the index of accounts, and leaves out the columns that would say the same in each
// row.
#include <algorithm>
#include <array>

#include "form/App.h"
#include "form/Grid.h"
#include "form/ListScreen.h"
#include "form/UsedBy.h"
#include "ledger/Accounts.h"
#include "ledger/MakeScreens.h"
#include "ledger/Sources.h"
#include "shell/Periods.h"
#include "shell/Session.h"

namespace quillon::ledger {
namespace {

using form::refuse;
using store::Value;

// The documents that vouchers come from: their list, and by which field of the history they are found.
struct Origin {
  const char* source;
  const char* transType;  // empty: any
  const char* screen;
  const char* table;
  const char* key;
  const char* name;
};
constexpr std::array<Origin, 5> kOrigins = {{
    {"AP", "Inv", "TfrmAPInvoices", "APInv", "APInvoiceID", "AP Invoice"},
    {"AP", "Chq", "TfrmAPCheques", "APCheq", "ChequeID", "AP Payment"},
    {"AR", "Inv", "TfrmARInvoices", "ARInv", "ARInvoiceID", "AR Invoice"},
    {"AR", "Pmt", "TfrmARPayments", "ARPmt", "PaymentID", "AR Payment"},
    {"IN", "", "TfrmInvAdjustments", "IAdjust", "AdjustmentID", "Inventory Adjustment"},
}};

class TfrmGLHistory final : public form::ListScreen {
 public:
  explicit TfrmGLHistory(shell::Session& session)
      : ListScreen(session.app(),
                   {.title = "GL History", .record = {}, .key = "GLHistID", .filterScreen = "TfrmGLHistoryFilter"}) {}

 private:
  void build(form::Layout& layout) override;
  void showOnly(const std::string& condition) override;
  void mnuRefreshClick() override;
  void mnuSourceClick();
  void mnuJVClick();
  std::vector<std::unique_ptr<form::Control>> columns(form::Layout& l);
  form::Control& voucherPanel(form::Layout& l);
  std::string text(const char* field) { return tblGLHist[field].isNull() ? "" : tblGLHist.value(field).toText(); }
  const Origin* origin();
  bool hasSource();
  Value voucherId();
  std::vector<Value> voucher(const std::string& fields);

  form::Table tblGLHist{*this, "GLHist"};
  form::Table tblJVDet{*this, "JVDet", store::follows{tblGLHist, "JVID"}};
  bool oneAccount_ = false;
};

void TfrmGLHistory::build(form::Layout& l) {
  tblGLHist.setIndex("PeriodDateJVDESC");
  form::Control& edit = editMenu(l);
  form::Control& source =
      l.entry("mnuSource", "&Source", &TfrmGLHistory::mnuSourceClick).enabledWhen([this] { return hasSource(); });
  form::Control& jv = l.entry("mnuJV", "&JV", &TfrmGLHistory::mnuJVClick);
  l.row(edit, l.menu("&View", source, jv,
                     l.entry("mnuPrint", "&Print...", [this] { app().preview("TrptGLHistory", asShown()); })));
  l.grid(tblGLHist, columns(l)).opens([this] { mnuJVClick(); });
  voucherPanel(l);
}

std::vector<std::unique_ptr<form::Control>> TfrmGLHistory::columns(form::Layout& l) {
  const auto period = [this] {
    if (tblGLHist["GLPeriod"].isNull()) return std::string();
    return shell::periodText({tblGLHist["GLYear"].asInt(), tblGLHist["GLPeriod"].asInt()});
  };
  const auto source = [this] { return sourceText(tblGLHist.value("Source"), tblGLHist.value("TransType")); };
  const auto name = [this] {
    return accountNames(
        app(), tblGLHist.value("GLAccountID"),
        {tblGLHist.value("SubAccount1ID"), tblGLHist.value("SubAccount2ID"), tblGLHist.value("SubAccount3ID")});
  };
  auto all = l.columns(l.shownColumn("GLPeriod", "Period", period, 7), l.column("Date", tblGLHist["TransDate"]),
                       l.column("JV no.", tblGLHist["JVNumber"]), l.shownColumn("Source", "Source", source, 6),
                       l.column("Description", tblGLHist["TransDescription"]), l.column("Amount", tblGLHist["Amount"]),
                       l.codeColumn("Account no.", tblGLHist["GLAccountID"], accountCode()),
                       l.shownColumn("Name", "Name", name, 40));
  for (std::size_t i = all.size() - 2; i < all.size(); ++i) all[i]->visibleWhen([this] { return !oneAccount_; });
  return all;
}

form::Control& TfrmGLHistory::voucherPanel(form::Layout& l) {
  const auto heading = [this] {
    const std::vector<Value> jv = voucher("JVNumber;JVAmount");
    if (jv.empty()) return std::string();
    return "JV " + jv[0].toText() + ": " + form::moneyConverter(app().formats())->show(jv[1]);
  };
  const auto reverses = [this] {
    const std::vector<Value> jv = voucher("AutoReverse");
    return !jv.empty() && jv[0].asBool();
  };
  const auto name = [this] {
    return accountNames(
        app(), tblJVDet.value("GLAccountID"),
        {tblJVDet.value("SubAccount1ID"), tblJVDet.value("SubAccount2ID"), tblJVDet.value("SubAccount3ID")});
  };
  form::Control& title = l.row(l.label("lblJV", heading), l.mark("lblAutoReverse", "Auto-Reverse", reverses));
  return l.group(
      "Voucher", title,
      l.grid(tblJVDet, l.columns(l.codeColumn("Account no.", tblJVDet["GLAccountID"], accountCode()),
                                 l.shownColumn("Name", "Name", name, 40), l.column("Amount", tblJVDet["GLAmount"])))
          .opens([this] { mnuJVClick(); }));
}

// The clause of one account becomes a range of the accounts' index.
void TfrmGLHistory::showOnly(const std::string& condition) {
  constexpr std::string_view kBegin = "(GLAccountID = ", kAnd = " AND ";
  std::string rest = condition;
  const std::size_t begin = rest.find(kBegin);
  oneAccount_ = begin != std::string::npos;
  tblGLHist.cancelRange();
  tblGLHist.setIndex(oneAccount_ ? "GLAccntIDPeriodDateJVDESC" : "PeriodDateJVDESC");
  if (oneAccount_) {
    const std::size_t end = rest.find(')', begin);
    const Value id(std::stoi(rest.substr(begin + kBegin.size(), end - begin - kBegin.size())));
    rest.erase(begin, end + 1 - begin);
    if (rest.substr(begin).starts_with(kAnd))
      rest.erase(begin, kAnd.size());
    else if (rest.ends_with(kAnd))
      rest.erase(rest.size() - kAnd.size());
    tblGLHist.setRange({id}, {id});
  }
  ListScreen::showOnly(rest);
  tblGLHist.first();
}

void TfrmGLHistory::mnuRefreshClick() {
  ListScreen::mnuRefreshClick();
  tblJVDet.refresh();
}

// The voucher of the current row.

// A reversing row is of the period after its voucher's; one without an id cancels a voucher whose own rows were purged.
Value TfrmGLHistory::voucherId() {
  if (tblGLHist.isEmpty()) return {};
  store::Cursor& vouchers = app().lookUp("JV");
  const bool reverses = text("TransType") == "JVR";
  if (const Value id = tblGLHist.value("JVID"); !id.isNull() && !reverses) return vouchers.lookup("JVID", {id}, "JVID");
  Period period{tblGLHist["GLYear"].asInt(), tblGLHist["GLPeriod"].asInt()};
  if (reverses) period = period.previous();
  return vouchers.lookup("GLYear;GLPeriod;JVNumber",
                         {Value(period.year), Value(period.number), tblGLHist.value("JVNumber")}, "JVID");
}

// What the panel's voucher has in these fields; nothing when it is gone.
std::vector<Value> TfrmGLHistory::voucher(const std::string& fields) {
  const Value id = tblGLHist.isOpen() && !tblGLHist.isEmpty() ? tblGLHist.value("JVID") : Value();
  return id.isNull() ? std::vector<Value>() : app().lookUp("JV").lookupAll("JVID", {id}, fields);
}

// Commands.

const Origin* TfrmGLHistory::origin() {
  const std::string source = text("Source"), type = text("TransType");
  const auto found = std::ranges::find_if(kOrigins, [&](const Origin& some) {
    return source == some.source && (*some.transType == '\0' || type == some.transType);
  });
  return found == kOrigins.end() ? nullptr : &*found;
}

bool TfrmGLHistory::hasSource() {
  if (!tblGLHist.isOpen() || tblGLHist.isEmpty()) return false;
  if (text("Source") == "GL") return app().has("TfrmJV");
  const Origin* from = origin();
  return from != nullptr && app().has(from->screen);
}

void TfrmGLHistory::mnuSourceClick() {
  requireRow();
  if (text("Source") == "GL") {
    const Value id = voucherId();
    if (id.isNull()) refuse("JV " + text("JVNumber") + " not found...\rIt may have been purged.");
    app().open("TfrmJV", {.locate = {{"JVID", id}}});
    return;
  }
  const Origin* from = origin();
  if (from == nullptr) form::abort();
  const Value id = tblGLHist.value(from->key);
  if (id.isNull() || !form::isUsed(database(), {from->table, from->key, {}}, id))
    refuse(std::string(from->name) + " not found...\rIt may have been purged.");
  app().open(from->screen, {.locate = {{from->key, id}}});
}

void TfrmGLHistory::mnuJVClick() {
  requireRow();
  const Value id = voucherId();
  if (id.isNull()) refuse("JV " + text("JVNumber") + " not found...\rIt may have been deleted or purged.");
  app().open("TfrmJVs", {.locate = {{"JVID", id}}});
}

}  // namespace

ScreenPtr makeGLHistory(shell::Session& session) { return std::make_unique<TfrmGLHistory>(session); }

}  // namespace quillon::ledger
