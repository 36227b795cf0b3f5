// Journal vouchers with their lines: the one that is selected, or all that pass a condition.
#include "form/App.h"
#include "form/Screen.h"
#include "ledger/Accounts.h"
#include "ledger/MakeReports.h"
#include "ledger/Sources.h"
#include "reports/Report.h"
#include "shell/Periods.h"

namespace quillon::ledger {
namespace {

using store::Value;

class TrptJV final : public reports::Report {
 public:
  using Report::Report;
  void tell(reports::Bands& b, const form::Open& open) override;

 private:
  std::string heading();
  std::string state();
  Value part(bool debit) {
    const Value amount = value("GLAmount");
    if (amount.isNull() || (amount.asMoney() >= Money{}) != debit) return {};
    return Value(debit ? amount.asMoney() : -amount.asMoney());
  }
};

void TrptJV::tell(reports::Bands& b, const form::Open& open) {
  reportTitle = "Journal Voucher";
  select(
      "SELECT V.JVID, V.JVNumber, V.GLYear, V.GLPeriod, V.TransDate, V.TransDescription, V.Source, V.TransType, "
      "V.Posted, V.AutoReverse, D.Seq, D.GLAccountID, D.SubAccount1ID, D.SubAccount2ID, D.SubAccount3ID, D.GLAmount "
      "FROM JV V LEFT OUTER JOIN JVDet D ON D.JVID = V.JVID" +
      whereOf(open) + " ORDER BY V.GLYear, V.GLPeriod, V.JVNumber, V.JVID, D.Seq");
  reports::Group& voucher = b.group([this] { return value("JVID"); }, [this] { return heading(); });
  voucher.totalled("Total").keepTogether();
  voucher.header.text({120, 0, 6500, 165}, [this] { return state(); });
  b.text("Account no.", "GLAccountID", 1100).format = nullptr;
  b.columns.back().value = [this] {
    return app().lookUp("GLAccnt").lookup("GLAccountID", {value("GLAccountID")}, "GLAccount");
  };
  b.columns.back().format = form::textConverter(0);
  b.shown("Name", 4000, [this] {
    return accountNames(app(), value("GLAccountID"),
                        {value("SubAccount1ID"), value("SubAccount2ID"), value("SubAccount3ID")});
  });
  b.shownMoney("Debit", 1200, [this] { return part(true); }).sum();
  b.shownMoney("Credit", 1200, [this] { return part(false); }).sum();
}

std::string TrptJV::heading() {
  const Value date = value("TransDate");
  return "JV " + value("JVNumber").toText() +
         "     Period: " + shell::periodText({value("GLYear").asInt(), value("GLPeriod").asInt()}) +
         (date.isNull() ? "" : "     Date: " + reports::longDate(app(), date.asDate())) +
         "     Source: " + sourceText(value("Source"), value("TransType"));
}

std::string TrptJV::state() {
  std::string text = value("TransDescription").isNull() ? "" : value("TransDescription").asText();
  if (value("AutoReverse").asBool()) text += "     Auto-Reverse";
  if (!value("Posted").asBool()) text += "     Not posted";
  text.erase(0, std::min(text.find_first_not_of(' '), text.size()));
  return text;
}

}  // namespace

ReportPtr makeTrptJV(shell::Session& session) { return std::make_unique<TrptJV>(session); }

}  // namespace quillon::ledger
