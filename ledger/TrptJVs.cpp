// Journal vouchers, a line each, as their list shows them.
#include "form/App.h"
#include "form/Screen.h"
#include "ledger/MakeReports.h"
#include "ledger/Sources.h"
#include "reports/Report.h"
#include "shell/Periods.h"

namespace quillon::ledger {
namespace {

class TrptJVs final : public reports::Report {
 public:
  using Report::Report;
  void tell(reports::Bands& b, const form::Open& open) override {
    reportTitle = "Journal Vouchers";
    lblSelection = wordOf(open, "selection");
    select("SELECT * FROM JV" + whereOf(open) + orderOf(open, "GLYear, GLPeriod, JVNumber"));
    b.shown("Period", 600, [this] { return shell::periodText({value("GLYear").asInt(), value("GLPeriod").asInt()}); });
    b.whole("JV no.", "JVNumber", 700)
        .opens(
            [](form::App& app, std::int32_t id) {
              app.open("TfrmJV", {.locate = {{"JVID", store::Value(id)}}});
            },
            [this] { return value("JVID").asInt(); });
    b.shown("Source", 600, [this] { return sourceText(value("Source"), value("TransType")); });
    b.date("Date", "TransDate", 800);
    b.text("Description", "TransDescription", 3100);
    b.shown("", 800, [this] { return value("Posted").asBool() ? "" : "Not posted"; });
    b.money("Amount", "JVAmount", 1200).sum();
    b.total = "Report Total:";
  }
};

}  // namespace

ReportPtr makeTrptJVs(shell::Session& session) { return std::make_unique<TrptJVs>(session); }

}  // namespace quillon::ledger
