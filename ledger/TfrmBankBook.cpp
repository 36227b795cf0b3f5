// The bank book: the history of a bank's ledger account in the order of days, and what stood there after each row.
//
// All combinations of subaccounts are the same bank, so all are in it.
#include "form/App.h"
#include "form/Grid.h"
#include "form/QueryListScreen.h"
#include "ledger/BankChooser.h"
#include "ledger/MakeScreens.h"
#include "shell/Session.h"

namespace quillon::ledger {
namespace {

using store::Value;

class TfrmBankBook final : public form::QueryListScreen {
 public:
  explicit TfrmBankBook(shell::Session& session)
      : QueryListScreen(session.app(), {.title = "Bank Book", .record = {}, .key = "GLHistID"}),
        session_(session),
        bank_(session, [this] { showBank(); }) {}

 private:
  void build(form::Layout& layout) override;
  void shown(const form::Open& open) override;
  std::string statement(const std::string& condition) const override;
  void rowsRead() override;
  void showOnly(const std::string& condition) override;
  void mnuRefreshClick() override { showOnly(""); }
  void showBank();
  std::string text(const char* field) const { return value(field).isNull() ? "" : value(field).asText(); }
  std::string payment() const;
  std::string description() const;
  Value balance() const;

  shell::Session& session_;
  BankChooser bank_;
  std::vector<Money> balances_;  // of the rows, in their order
};

void TfrmBankBook::build(form::Layout& l) {
  l.row(editMenu(l));
  l.row(bank_.control(l));
  const form::ConverterPtr date = form::dateConverter(app().formats()), money = form::moneyConverter(app().formats());
  const auto field = [this](const char* name) { return [this, name]() -> Value { return value(name); }; };
  const auto paid = [this] { return payment(); };
  const auto described = [this] { return description(); };
  const auto left = [this] { return balance(); };
  l.grid("grdGLHist", rows(),
         l.columns(l.shownColumn("TransDate", "Date", field("TransDate"), date, 10),
                   l.shownColumn("Source", "Payment/Deposit", paid, 18),
                   l.shownColumn("TransDescription", "Description", described, 42),
                   l.shownColumn("Amount", "Amount", field("Amount"), money, 15),
                   l.shownColumn("Balance", "Balance", left, money, 15)));
}

// What happened last is what somebody opens it for.
void TfrmBankBook::shown(const form::Open& open) {
  bank_.begin(open);
  QueryListScreen::shown(open);
  rows().last();
}

void TfrmBankBook::showBank() {
  showOnly("");
  rows().last();
}

void TfrmBankBook::showOnly(const std::string& condition) {
  setParameter("SelectedGLAccountID", bank_.account());
  QueryListScreen::showOnly(condition);
}

std::string TfrmBankBook::statement(const std::string& /*condition*/) const {
  return "SELECT GLHistID, GLAccountID, TransDate, Source, Amount, TransDescription, VendorID, CustomerID, ChequeID "
         "FROM GLHist WHERE GLAccountID=:SelectedGLAccountID ORDER BY TransDate, GLHistID";
}

void TfrmBankBook::rowsRead() {
  balances_.clear();
  balances_.reserve(rows().recordCount());
  const store::Field amount = rows()["Amount"];
  Money sum;
  for (rows().first(); !rows().eof(); rows().next()) balances_.push_back(sum += amount.asMoney());
  rows().first();
}

std::string TfrmBankBook::payment() const {
  const std::string source = text("Source");
  if (source == "AR") return "Deposit";
  if (source != "AP") return {};
  const Value number = app().lookUp("APCheq").lookup("ChequeID", {value("ChequeID")}, "ChequeNo");
  return std::string(session_.countryName() == "United States" ? "AP Check" : "AP Cheque") +
         (number.isNull() ? "" : " " + number.asText());
}

std::string TfrmBankBook::description() const {
  const bool ofVendor = text("Source") == "AP";
  if (!ofVendor && text("Source") != "AR") return text("TransDescription");
  const std::string kind = ofVendor ? "Vendor" : "Customer", id = kind + "ID";
  const std::vector<Value> party = app().lookUp(kind).lookupAll(id, {value(id.c_str())}, kind + "Name;" + kind + "No");
  if (party.empty()) return text("TransDescription");
  return text("TransDescription") + " - " + party[0].asText() + " (" + party[1].asText() + ")";
}

Value TfrmBankBook::balance() const {
  const std::uint64_t number = rows().isOpen() ? rows().recordNumber() : 0;
  return number == 0 ? Value() : Value(balances_.at(number - 1));
}

}  // namespace

ScreenPtr makeBankBook(shell::Session& session) { return std::make_unique<TfrmBankBook>(session); }

}  // namespace quillon::ledger
