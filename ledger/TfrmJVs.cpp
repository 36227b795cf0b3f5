// The list of journal vouchers, of every source.
//
// Keeps: only an unposted voucher that was made by hand is deleted, with its lines, and only such a one is copied.
#include "form/App.h"
#include "form/ListScreen.h"
#include "form/Transaction.h"
#include "ledger/MakeScreens.h"
#include "ledger/Sources.h"
#include "shell/Periods.h"
#include "shell/Session.h"
#include "store/Database.h"
#include "store/Query.h"

namespace quillon::ledger {
namespace {

using store::Value;

class TfrmJVs final : public form::ListScreen {
 public:
  explicit TfrmJVs(shell::Session& session);

 private:
  void build(form::Layout& layout) override;
  void mnuDeleteClick() override;
  void mnuPostClick();
  void mnuCopyClick();
  void mnuUnpostClick();
  void mnuHistoryClick();
  void mnuPrintClick();
  void find(const std::string& typed) override;
  std::string number() { return tblJV["JVNumber"].value().toText(); }
  std::string periodText();

  form::Table tblJV{*this, "JV"};
};

TfrmJVs::TfrmJVs(shell::Session& session)
    : ListScreen(session.app(), {.title = "Journal Vouchers",
                                 .record = "TfrmJV",
                                 .key = "JVID",
                                 .filterScreen = "TfrmJVsFilter",
                                 .find = "TfrmJVsFind"}) {}

void TfrmJVs::build(form::Layout& l) {
  tblJV.setIndex("PeriodJVNumberDESC");
  form::Control& edit = editMenu(l);
  form::Control& post = l.entry("mnuPost", "&Post...", &TfrmJVs::mnuPostClick);
  form::Control& copy = l.entry("mnuCopy", "&Copy", &TfrmJVs::mnuCopyClick);
  form::Control& unpost = l.entry("mnuUnpost", "&Unpost Selected JV", &TfrmJVs::mnuUnpostClick);
  form::Control& history = l.entry("mnuHistory", "&History", &TfrmJVs::mnuHistoryClick);
  form::Control& printList = l.entry("mnuPrintList", "Print &List...", [this] { app().preview("TrptJVs", asShown()); });
  form::Control& print = l.entry("mnuPrint", "Print &Selected JV...", &TfrmJVs::mnuPrintClick).key("Ctrl+P");
  form::Control& sort = l.menu("&Sort by", sortEntry(l, "mnuSortPeriod", "Period &ascending", "PeriodJVNumber"),
                               sortEntry(l, "mnuSortPeriodDESC", "Period &descending", "PeriodJVNumberDESC"),
                               sortEntry(l, "mnuSortJVNo", "&JV no.", "JVNumber"),
                               sortEntry(l, "mnuSortDescription", "D&escription", "Description_PeriodJVNumberDESC"));
  l.row(edit, l.menu("&JV", copy, post, unpost, history, printList, print), sort);
  listGrid(l, l.columns(l.shownColumn(
                            "GLPeriod", "Period", [this] { return periodText(); }, 7),
                        l.column("JV no.", tblJV["JVNumber"]),
                        l.shownColumn(
                            "Source", "Source",
                            [this] { return sourceText(tblJV.value("Source"), tblJV.value("TransType")); }, 6),
                        l.column("Date", tblJV["TransDate"]), l.column("Description", tblJV["TransDescription"]),
                        l.column("Amount", tblJV["JVAmount"])));
}

std::string TfrmJVs::periodText() {
  if (tblJV["GLPeriod"].isNull()) return {};
  return shell::periodText({tblJV["GLYear"].asInt(), tblJV["GLPeriod"].asInt()});
}

// The lines go with their voucher, or neither goes.
void TfrmJVs::mnuDeleteClick() {
  requireRow();
  const std::string name = number();
  if (!app().person().confirm("Delete JV '" + name + "'?")) form::abort();
  const std::string refusal = "Unable to delete JV '" + name + "'...\r";
  if (tblJV["Source"].asText() != "GL") form::refuse(refusal + "Its source is not GL");
  // Under the lock the row is as it is now, and nobody has it open.
  tblJV.edit();
  const bool posted = tblJV["Posted"].asBool();
  tblJV.cancel();
  if (posted)
    form::refuse(refusal + "It has already been posted.\r(Posted JVs can be unposted from the \"Edit\" screen).");
  form::transact(database(), {"JV", "JVDet"}, [this] {
    store::Query lines(database(), "DELETE FROM JVDet WHERE JVID = :id");
    lines.setParameter("id", tblJV.value("JVID"));
    lines.execute();
    tblJV.remove();
  });
}

void TfrmJVs::mnuPostClick() {
  if (app().runModal("TfrmJVsPost").confirmed) mnuRefreshClick();
}

void TfrmJVs::mnuCopyClick() {
  requireRow();
  if (tblJV["Source"].asText() != "GL") form::refuse("Unable to copy JV '" + number() + "'...\rIts source is not GL");
  const Value id = tblJV.value("JVID");
  // A voucher that is being entered is settled first: nobody is asked while others wait for the tables.
  if (form::Screen* frmJV = app().find("frmJV"); frmJV != nullptr && !app().close(*frmJV)) form::abort();
  form::transact(database(), {"JV", "JVDet", "JVCtl"}, [&] {
    app().open("TfrmJV", {.newRow = true, .values = {{"copyFrom", id}}});
  });
}

void TfrmJVs::mnuUnpostClick() {
  app().person().show(form::Tone::information,
                      "Posted JVs (except those from prior years, but you can re-open the year) can be unposted\rfrom "
                      "the “Edit” screen if they need to be edited or deleted.");
}

void TfrmJVs::mnuHistoryClick() {
  requireRow();
  app().open("TfrmGLHistory", {.filter = "(JVID = " + tblJV.value("JVID").toText() + ")"});
}

void TfrmJVs::mnuPrintClick() {
  requireRow();
  app().preview("TrptJV", {.filter = "V.JVID = " + tblJV.value("JVID").toText()});
}

void TfrmJVs::find(const std::string& typed) { app().runModal("TfrmJVsFind", {.values = {{"text", Value(typed)}}}); }

}  // namespace

ScreenPtr makeJVs(shell::Session& session) { return std::make_unique<TfrmJVs>(session); }

}  // namespace quillon::ledger
