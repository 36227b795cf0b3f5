// The ledger's history, a line for each line of a posted voucher, as its list shows it. A line opens its voucher.
#include "form/App.h"
#include "ledger/Accounts.h"
#include "ledger/Breakdown.h"
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
    qryMain().setLive(true);  // each line is read when it is laid out, so that a long history begins soon
    b.size = 80;
    const auto line = [this] { return value("GLHistID").asInt(); };
    b.shown("Period", 500, [this] { return shell::periodText({value("GLYear").asInt(), value("GLPeriod").asInt()}); });
    b.date("Date", "TransDate", 650);
    b.whole("JV no.", "JVNumber", 550).opens(openVoucherOfLine, line);
    b.shown("Source", 500, [this] { return sourceText(value("Source"), value("TransType")); });
    b.text("Description", "TransDescription", 1850);
    b.shown("Account no.", 750, [this] {
      return app().lookUp("GLAccnt").lookup("GLAccountID", {value("GLAccountID")}, "GLAccount").asText();
    });
    b.shown("Name", 2200, [this] {
      return accountNames(app(), value("GLAccountID"),
                          {value("SubAccount1ID"), value("SubAccount2ID"), value("SubAccount3ID")});
    });
    b.money("Amount", "Amount", 850).sum().opens(openVoucherOfLine, line);
    b.total = "Report Total:";
  }
};

}  // namespace

ReportPtr makeTrptGLHistory(shell::Session& session) { return std::make_unique<TrptGLHistory>(session); }

}  // namespace quillon::ledger
