// The currencies that customers, vendors and banks belong to.
//
// Keeps: one that any of them has is not deleted.
#include <array>

#include "form/App.h"
#include "form/ListScreen.h"
#include "form/UsedBy.h"
#include "ledger/MakeScreens.h"
#include "shell/Session.h"

namespace quillon::ledger {
namespace {

// In the order in which they are asked.
const std::array<form::UsedBy, 3> kCurrencyUsers = {{
    {"Bank", "CurrencyID", "Bank(s) exist for this currency"},
    {"Vendor", "CurrencyID", "Vendor(s) exist for this currency"},
    {"Customer", "CurrencyID", "Customer(s) exist for this currency"},
}};

class TfrmCurrencies final : public form::ListScreen {
 public:
  explicit TfrmCurrencies(shell::Session& session)
      : ListScreen(session.app(), {.title = "Currencies", .record = "TfrmCurrency", .key = "CurrencyID"}) {
    tblCurrency.events.beforeDelete = [this] {
      form::askDelete(app(), kCurrencyUsers, tblCurrency.value("CurrencyID"), tblCurrency["CurrencyName"].asText());
    };
  }

 private:
  void build(form::Layout& l) override {
    tblCurrency.setIndex("CurrencyName1");
    form::Control& edit = editMenu(l);
    l.row(edit,
          l.menu("&View", l.entry("mnuPrint", "&Print...", [this] { app().preview("TrptCurrencies", asShown()); })));
    listGrid(l, l.columns(l.column("Currency Name", tblCurrency["CurrencyName"]),
                          l.column("Exchange Rate", tblCurrency["ExchangeRate"])));
  }

  form::Table tblCurrency{*this, "Currency"};
};

}  // namespace

ScreenPtr makeCurrencies(shell::Session& session) { return std::make_unique<TfrmCurrencies>(session); }

}  // namespace quillon::ledger
