// The ledger's history, a line for each line of a posted voucher, as its list shows it.
#include "form/App.h"
#include "form/Screen.h"
#include "ledger/Accounts.h"
#include "ledger/HistoryOrigin.h"
#include "ledger/MakeReports.h"
#include "ledger/Sources.h"
#include "reports/Report.h"
#include "shell/Periods.h"

namespace quillon::ledger {
namespace {

class TrptGLHistory final : public reports::Report {
 public:
  using Report::Report;
  void tell(reports::Bands& b, const form::Open& open) override {
    reportTitle = "GL History";
    lblSelection = wordOf(open, "selection");
    select("SELECT * FROM GLHist" + whereOf(open) +
           orderOf(open, "GLYear DESC, GLPeriod DESC, TransDate DESC, JVNumber DESC, GLHistID DESC"));
    b.shown("Period", 550, [this] { return shell::periodText({value("GLYear").asInt(), value("GLPeriod").asInt()}); });
    b.date("Date", "TransDate", 750);
    b.whole("JV no.", "JVNumber", 600)
        .opens(
            [](form::App& app, std::int32_t id) {
              app.open("TfrmJV", {.locate = {{"JVID", store::Value(id)}}});
            },
            [this] {
              const store::Value voucher = voucherOf(app(), qryMain());
              return voucher.isNull() ? -1 : voucher.asInt();
            });
    b.shown("Source", 550, [this] { return sourceText(value("Source"), value("TransType")); });
    b.text("Description", "TransDescription", 2000);
    b.shown("Account no.", 850, [this] {
      return app().lookUp("GLAccnt").lookup("GLAccountID", {value("GLAccountID")}, "GLAccount").asText();
    });
    b.shown("Name", 1700, [this] {
      return accountNames(app(), value("GLAccountID"),
                          {value("SubAccount1ID"), value("SubAccount2ID"), value("SubAccount3ID")});
    });
    b.money("Amount", "Amount", 1050).sum();
    b.total = "Report Total:";
  }
};

}  // namespace

ReportPtr makeTrptGLHistory(shell::Session& session) { return std::make_unique<TrptGLHistory>(session); }

}  // namespace quillon::ledger
