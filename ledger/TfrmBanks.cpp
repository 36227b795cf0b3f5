// The banks: a name, a ledger account and a currency each.
//
// Keeps: a bank that a payment names is not deleted.
#include <array>

#include "form/App.h"
#include "form/ListScreen.h"
#include "form/UsedBy.h"
#include "ledger/Accounts.h"
#include "ledger/MakeScreens.h"
#include "shell/Session.h"

namespace quillon::ledger {
namespace {

// In the order in which they are asked.
const std::array<form::UsedBy, 3> kBankUsers = {{
    {"APCheq", "BankID", "AP payment(s) exist for this bank"},
    {"ARPmt", "BankID", "AR payment(s) exist for this bank"},
    {"ARInv", "POSPmtBankID", "AR invoice(s) exist for this bank. (POS payment)."},
}};

class TfrmBanks final : public form::ListScreen {
 public:
  explicit TfrmBanks(shell::Session& session)
      : ListScreen(session.app(), {.title = "Banks", .record = "TfrmBank", .key = "BankID"}) {
    tblBank.events.beforeDelete = [this] {
      form::askDelete(app(), kBankUsers, tblBank.value("BankID"), tblBank["BankName"].asText());
    };
  }

 private:
  void build(form::Layout& layout) override;
  form::Control& jump(form::Layout& l, std::string name, std::string caption, const std::string& screen);

  form::Table tblBank{*this, "Bank"};
};

void TfrmBanks::build(form::Layout& l) {
  tblBank.setIndex("BankName1");
  form::Control& edit = editMenu(l);
  form::Control& book = jump(l, "mnuBankBook", "Bank &Book", "TfrmBankBook");
  l.row(edit, l.menu("&View", book, jump(l, "mnuBankRec", "Bank &Reconciliation", "TfrmBankRec"),
                     l.entry("mnuPrint", "&Print...", [this] { app().preview("TrptBanks", asShown()); })));
  listGrid(l, l.columns(l.column("Bank Name", tblBank["BankName"]),
                        l.codeColumn("GL Account", tblBank["BankGLAccountID"], accountCode()),
                        l.codeColumn("Currency", tblBank["CurrencyID"],
                                     {.table = "Currency",
                                      .idField = "CurrencyID",
                                      .shownField = "CurrencyName",
                                      .unknown = "Currency no longer exists"})));
}

form::Control& TfrmBanks::jump(form::Layout& l, std::string name, std::string caption, const std::string& screen) {
  const auto open = [this, screen] {
    form::Open bank;
    if (!tblBank.isEmpty()) bank.values["BankID"] = tblBank.value("BankID");
    app().open(screen, bank);
  };
  return l.entry(std::move(name), std::move(caption), open).enabledWhen([this, screen] { return app().has(screen); });
}

}  // namespace

ScreenPtr makeBanks(shell::Session& session) { return std::make_unique<TfrmBanks>(session); }

}  // namespace quillon::ledger
