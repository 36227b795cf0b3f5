// GL history: a row for each line of a posted voucher, newest first; below them all lines of the voucher that the
// current row came from.
//
// Limited to one account it reads by the index of accounts, and leaves out the columns that would say the same in each
// row.
#include "form/App.h"
#include "form/Grid.h"
#include "form/ListScreen.h"
#include "ledger/Accounts.h"
#include "ledger/HistoryOrigin.h"
#include "ledger/MakeScreens.h"
#include "ledger/Sources.h"
#include "shell/Periods.h"
#include "shell/Session.h"

namespace quillon::ledger {
namespace {

using store::Value;

class TfrmGLHistory final : public form::ListScreen {
 public:
  explicit TfrmGLHistory(shell::Session& session)
      : ListScreen(session.app(),
                   {.title = "GL History", .record = {}, .key = "GLHistID", .filterScreen = "TfrmGLHistoryFilter"}) {}

 private:
  void build(form::Layout& layout) override;
  void showOnly(const std::string& condition) override;
  void mnuRefreshClick() override;
  void mnuSourceClick() { openSource(app(), tblGLHist, "It may have been purged."); }
  void mnuJVClick() { openVoucher(app(), tblGLHist, "It may have been deleted or purged."); }
  std::vector<std::unique_ptr<form::Control>> columns(form::Layout& l);
  form::Control& voucherPanel(form::Layout& l);
  std::vector<Value> voucher(const std::string& fields);

  form::Table tblGLHist{*this, "GLHist"};
  form::Table tblJVDet{*this, "JVDet", store::follows{tblGLHist, "JVID"}};
  bool oneAccount_ = false;
};

void TfrmGLHistory::build(form::Layout& l) {
  tblGLHist.setIndex("PeriodDateJVDESC");
  form::Control& edit = editMenu(l);
  form::Control& source = l.entry("mnuSource", "&Source", &TfrmGLHistory::mnuSourceClick).enabledWhen([this] {
    return hasSource(app(), tblGLHist);
  });
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

// What the panel's voucher has in these fields; nothing when it is gone.
std::vector<Value> TfrmGLHistory::voucher(const std::string& fields) {
  const Value id = tblGLHist.isOpen() && !tblGLHist.isEmpty() ? tblGLHist.value("JVID") : Value();
  return id.isNull() ? std::vector<Value>() : app().lookUp("JV").lookupAll("JVID", {id}, fields);
}

}  // namespace

ScreenPtr makeGLHistory(shell::Session& session) { return std::make_unique<TfrmGLHistory>(session); }

}  // namespace quillon::ledger
