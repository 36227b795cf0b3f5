// One currency: its rate, in home units for one of its own (0 and 1 translate nothing), and the control accounts of its
// customers, vendors and banks. The rates of the periods' ends are there to restate a statement.
//
// Keeps: a currency with a rate has the account that takes what translating leaves over; no rate is below zero, which
// would turn debits into credits.
#include <array>

#include "form/App.h"
#include "form/RecordScreen.h"
#include "ledger/Accounts.h"
#include "ledger/MakeScreens.h"
#include "shell/Session.h"

namespace quillon::ledger {
namespace {

using form::Control;
using form::focus;
using form::refuse;

constexpr int kPeriods = 12;
// The rates of the periods' ends; behind each stands a period's number.
constexpr const char *kLastYear = "ExchangeRateLY", *kThisYear = "ExchangeRateTY";

struct Account {
  const char* caption;
  const char* field;
};
constexpr std::array<Account, 6> kAccounts = {{
    {"Gain/Loss on Exchange:", "GainLossExchangeGLAccntID"},
    {"Accounts Payable:", "APGLAccountID"},
    {"AP Discounts:", "APDiscGLAccountID"},
    {"Accounts Receivable:", "ARGLAccountID"},
    {"AR Discounts:", "ARDiscGLAccountID"},
    {"Default AR Write-offs:", "DfltWriteOffGLAccountID"},
}};

// What a currency must have, in the order in which it is missed.
constexpr std::array<Account, 5> kRequired = {{
    {"Currency Name", "CurrencyName"},
    {"AP Account", "APGLAccountID"},
    {"AR Account", "ARGLAccountID"},
    {"AP Discounts GL Account", "APDiscGLAccountID"},
    {"AR Discounts GL Account", "ARDiscGLAccountID"},
}};

class TfrmCurrency final : public form::RecordScreen {
 public:
  explicit TfrmCurrency(shell::Session& session);
  std::string title() override { return isNew() ? "New Currency" : "Currency"; }

 private:
  void build(form::Layout& layout) override;
  void shown(const form::Open& open) override;
  void tblCurrencyBeforePost();
  Control& general(form::Layout& l);
  Control& rates(form::Layout& l, std::string caption, const std::string& field);

  form::Table tblCurrency{*this, "Currency"};
};

TfrmCurrency::TfrmCurrency(shell::Session& session)
    : RecordScreen(session.app(), {.key = "CurrencyID",
                                   .list = "frmCurrencies",
                                   .keyViolation = "Currency Name must be unique",
                                   .keyFocus = "CurrencyName",
                                   .nextId = true}) {
  tblCurrency.events.beforePost = [this] { tblCurrencyBeforePost(); };
  const auto validateRate = [](const store::Value& rate) {
    if (rate.asDouble() < 0) refuse("Exchange Rate cannot be negative");
  };
  tblCurrency.validate("ExchangeRate", validateRate);
  for (int period = 1; period <= kPeriods; ++period)
    for (const char* field : {kLastYear, kThisYear}) tblCurrency.validate(field + std::to_string(period), validateRate);
}

void TfrmCurrency::build(form::Layout& l) {
  Control& first = general(l);
  Control& lastYear = rates(l, "Last Year Exchange Rates", kLastYear);
  Control& thisYear = rates(l, "This Year Exchange Rates", kThisYear);
  l.pages(first, l.group("Exch. Rates", l.row(lastYear, thisYear)));
  l.row(l.button("btnOK", "OK", &TfrmCurrency::btnOKClick).saves().standard(),
        l.button("btnCancel", "Cancel", &TfrmCurrency::btnCancelClick).abandons());
}

Control& TfrmCurrency::general(form::Layout& l) {
  std::vector<Control*> fields = {
      &l.field("Currency Name:", tblCurrency["CurrencyName"]),
      &l.field("Exchange Rate:", tblCurrency["ExchangeRate"]).hint("Home currency for one unit of this currency")};
  for (const auto& [caption, field] : kAccounts)
    fields.push_back(&l.codeAndName(caption, tblCurrency[field], setUpAccountCode(), "AccountName"));
  return l.groupOf("General", fields);
}

Control& TfrmCurrency::rates(form::Layout& l, std::string caption, const std::string& field) {
  std::vector<Control*> all;
  for (int period = 1; period <= kPeriods; ++period) {
    const std::string number = std::to_string(period);
    all.push_back(&l.field("Period " + number + ":", tblCurrency[field + number]));
  }
  return l.groupOf(std::move(caption), all);
}

void TfrmCurrency::shown(const form::Open& open) {
  app().refreshLookUps();
  RecordScreen::shown(open);
}

void TfrmCurrency::tblCurrencyBeforePost() {
  for (const auto& [what, field] : kRequired)
    if (tblCurrency[field].isNull()) refuse(std::string("Field '") + what + "' must have a value", focus(field));
  if (tblCurrency["ExchangeRate"].asDouble() != 0 && tblCurrency["GainLossExchangeGLAccntID"].isNull())
    refuse("Field 'Gain/Loss Exchange Account' must have a value if rate is entered",
           focus("GainLossExchangeGLAccntID"));
  for (const auto& [caption, field] : kAccounts)
    if (!tblCurrency[field].isNull() && !accountExists(app(), tblCurrency.value(field)))
      refuse("GL Account no longer exists", focus(field));
}

}  // namespace

ScreenPtr makeCurrency(shell::Session& session) { return std::make_unique<TfrmCurrency>(session); }

}  // namespace quillon::ledger
