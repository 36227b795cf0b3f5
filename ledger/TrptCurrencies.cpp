// Currencies, with the rate and the control accounts of each.
#include <array>

#include "form/App.h"
#include "form/Screen.h"
#include "ledger/MakeReports.h"
#include "reports/Report.h"

namespace quillon::ledger {
namespace {

struct ControlAccount {
  const char* caption;
  const char* field;
};
constexpr std::array<ControlAccount, 5> kAccounts = {{{"Gain/Loss", "GainLossExchangeGLAccntID"},
                                                      {"AP", "APGLAccountID"},
                                                      {"AP Discount", "APDiscGLAccountID"},
                                                      {"AR", "ARGLAccountID"},
                                                      {"AR Discount", "ARDiscGLAccountID"}}};

class TrptCurrencies final : public reports::Report {
 public:
  using Report::Report;
  void tell(reports::Bands& b, const form::Open& open) override {
    reportTitle = "Currencies";
    select("SELECT * FROM Currency" + whereOf(open) + " ORDER BY CurrencyName NOCASE");
    b.text("Currency Name", "CurrencyName", 1600);
    b.quantity("Exchange Rate", "ExchangeRate", 1200);
    for (const ControlAccount& account : kAccounts)
      b.shown(account.caption, 900, [this, field = account.field] {
        return app().lookUp("GLAccnt").lookup("GLAccountID", {value(field)}, "GLAccount").asText();
      });
  }
};

}  // namespace

ReportPtr makeTrptCurrencies(shell::Session& session) { return std::make_unique<TrptCurrencies>(session); }

}  // namespace quillon::ledger
