// "Your Company": what a company decides once and for all, in its one row, with its logo and its documents' next
// numbers.
//
// Keeps: the company has a name and a fiscal year; a year is moved forward by hand only while the books are empty.
#include <array>

#include "base/Text.h"
#include "form/App.h"
#include "form/RecordScreen.h"
#include "shell/DocumentNumbers.h"
#include "shell/MakeScreens.h"
#include "shell/PictureFile.h"
#include "shell/Session.h"

namespace quillon::shell {
namespace {

using form::Control;
using form::focus;
using form::refuse;
using store::Value;

constexpr int kFirstYear = 1989, kLastYear = 2050;
constexpr int kStandardStyle = 1, kStandardCopies = 1;  // of printed invoices

class TfrmCompany final : public form::RecordScreen {
 public:
  explicit TfrmCompany(Session& session);
  std::string title() override { return "Your Company"; }

 private:
  void build(form::Layout& layout) override;
  void shown(const form::Open& open) override;
  void recordShown(const form::Open& /*open*/) override { numbers_.read(); }
  void tblCompanyNewRecord();
  void validateFiscalYear(const Value& next);
  void requireNameAndYear();
  bool isUnsaved() const override { return RecordScreen::isUnsaved() || numbers_.changed(); }
  void save() override;
  void btnYearEndClick();
  void closeYear(int year);
  void btnLoadClick();
  void btnClearClick();

  Control& general(form::Layout& l);
  Control& logo(form::Layout& l);
  Control& apOptions(form::Layout& l);
  Control& arOptions(form::Layout& l);
  Control& email(form::Layout& l);
  Control& notes(form::Layout& l);
  Control& backup(form::Layout& l);
  Control& year(form::Layout& l, std::string caption, const char* field, const std::string& what);
  Control& period(form::Layout& l, std::string caption, const std::string& fields, const std::string& what);
  Control& account(form::Layout& l, std::string caption, const char* field);
  form::ConverterPtr rowsOf(const char* table, const char* id, const char* shown);
  void setLogo(const Value& picture);

  Session& session_;
  form::Table tblCompany{*this, "Company"};
  form::Table tblLogo{*this, "Logo"};
  DocumentNumbers numbers_;
  form::Variable wordWrap_{.value = true};
};

TfrmCompany::TfrmCompany(Session& session)
    : RecordScreen(session.app(), {.key = "CompanyNo",
                                   .list = {},
                                   .keyViolation = "Your Company has been entered by another user meanwhile",
                                   .keyFocus = "CompanyName"}),
      session_(session),
      numbers_(session.app()) {
  tblCompany.events.onNewRecord = [this] { tblCompanyNewRecord(); };
  tblCompany.events.beforePost = [this] { tblCompany["ApplicationVersion"] = kVersion; };
  tblCompany.validate("FiscalYear", [this](const Value& next) { validateFiscalYear(next); });
}

// The pages.

void TfrmCompany::build(form::Layout& l) {
  l.pages(general(l), logo(l), apOptions(l), arOptions(l), numbers_.told(l), email(l), notes(l), backup(l))
      .named("pagAll");
  l.row(l.button("btnOK", "OK", &TfrmCompany::btnOKClick).saves().standard(),
        l.button("btnCancel", "Cancel", &TfrmCompany::btnCancelClick).abandons());
}

Control& TfrmCompany::general(form::Layout& l) {
  return l.group(
      "General", l.field("Company Name:", tblCompany["CompanyName"]),
      l.row(year(l, "Fiscal Year:", "FiscalYear", "Current Fiscal Year"),
            l.button("btnYearEnd", "Year End", &TfrmCompany::btnYearEndClick).enabledWhen([this] {
              return app().has("TfrmYearEnd");
            })),
      period(l, "Default Period:", "DefaultPeriod", "Default Period"),
      l.row(period(l, "Warn if before:", "WPeriodFrom", "Warn Before Period"),
            period(l, "Warn if after:", "WPeriodTo", "Warn After Period")),
      l.row(period(l, "Error if before:", "EPeriodFrom", "Error Before Period"),
            period(l, "Error if after:", "EPeriodTo", "Error After Period")),
      l.chooser("Default Currency:", tblCompany["DefaultCurrencyID"], rowsOf("Currency", "CurrencyID", "CurrencyName")),
      l.field("Address:", tblCompany["AddressLine1"]), l.field("", tblCompany["AddressLine2"]),
      l.field("", tblCompany["AddressLine3"]), l.field("Phone:", tblCompany["Phone"]),
      l.field("Tax/Business no.:", tblCompany["TaxNo"]));
}

Control& TfrmCompany::year(form::Layout& l, std::string caption, const char* field, const std::string& what) {
  return l
      .field(std::move(caption), tblCompany[field],
             form::fullYearConverter(what + " invalid...\rEnter year as 2 digits"))
      .wide(4);
}

Control& TfrmCompany::period(form::Layout& l, std::string caption, const std::string& fields, const std::string& what) {
  Control& number = l.field(std::move(caption), tblCompany[fields + "PP"],
                            form::wholeConverter(app().formats(), 1, 12, "Period must be between 1 and 12"));
  return l.row(number.wide(2), year(l, "/", (fields + "YYYY").c_str(), what));
}

Control& TfrmCompany::logo(form::Layout& l) {
  return l.group("Logo", l.label("Logo for invoices, quotes, POs, etc."),
                 l.picture("imgLogo", [this] { return tblLogo.isOpen() ? tblLogo.value("Logo") : Value(); }),
                 l.row(l.button("btnLoad", "Load...", &TfrmCompany::btnLoadClick),
                       l.button("btnClear", "Clear", &TfrmCompany::btnClearClick).enabledWhen([this] {
                         return tblLogo.isOpen() && !tblLogo.value("Logo").isNull();
                       })));
}

Control& TfrmCompany::apOptions(form::Layout& l) {
  return l.group("AP Options", l.group("Optional Entry Fields", l.check("Purchase Order", tblCompany["APInvPONumbers"]),
                                       l.check("Invoice Description", tblCompany["APInvDescriptions"])));
}

Control& TfrmCompany::arOptions(form::Layout& l) {
  return l.group("AR Options",
                 l.group("Default GL Accounts", account(l, "Sales:", "DfltSalesGLAccountID"),
                         account(l, "Cost of Goods Sold:", "DfltCOGSGLAccountID"),
                         account(l, "Inventory:", "DfltInventoryGLAccountID")),
                 l.group("New Customer Defaults",
                         l.chooser("Price List:", tblCompany["DfltPriceListID"],
                                   rowsOf("PriceLst", "PriceListID", "PriceListName")),
                         l.chooser("Tax 1:", tblCompany["DfltTax1ID"], rowsOf("Tax", "TaxID", "TaxName")),
                         l.chooser("Tax 2:", tblCompany["DfltTax2ID"], rowsOf("Tax", "TaxID", "TaxName"))));
}

Control& TfrmCompany::account(form::Layout& l, std::string caption, const char* field) {
  return l.codeAndName(std::move(caption), tblCompany[field],
                       {.table = "GLAccnt",
                        .idField = "GLAccountID",
                        .shownField = "GLAccount",
                        .unknown = "GL Account not found",
                        .picker = "TfrmGLAccountSearch",
                        .title = "GL Account",
                        .index = "GLAccount"},
                       "AccountName");
}

form::ConverterPtr TfrmCompany::rowsOf(const char* table, const char* id, const char* shown) {
  return form::rowsConverter(app(), table, id, shown, shown + std::string("1"));
}

Control& TfrmCompany::email(form::Layout& l) {
  return l.group(
      "Email", l.field("Host:", tblCompany["EmailHost"]), l.field("UserID:", tblCompany["EmailUserID"]),
      l.field("Password:", tblCompany["EmailPassword"], form::secretConverter(20)).secret(),
      l.field("From Name:", tblCompany["EmailFromName"]), l.field("From Address:", tblCompany["EmailFromAddress"]),
      l.field("CC List:", tblCompany["EmailCCAddress"]), l.field("BCC List:", tblCompany["EmailBCCAddress"]));
}

Control& TfrmCompany::notes(form::Layout& l) {
  return l.group("Notes", l.memo("", tblCompany["Notes"]).wrapsWhen([this] { return wordWrap_.value.asBool(); }),
                 l.check("chkWordWrap", "Word Wrap", wordWrap_));
}

Control& TfrmCompany::backup(form::Layout& l) {
  return l.group("Backup",
                 l.choice("Backup on Exit", tblCompany["BackupOnExit"],
                          form::choicesConverter({{Value(1), "Always"}, {Value(2), "Never"}, {Value(3), "Ask"}})));
}

// The record.

void TfrmCompany::shown(const form::Open& open) {
  app().refreshLookUps();
  tblCompany.refresh();
  tblLogo.refresh();
  form::Open asked = open;
  asked.newRow = tblCompany.isEmpty();
  RecordScreen::shown(asked);
}

void TfrmCompany::tblCompanyNewRecord() {
  tblCompany["CompanyNo"] = 1;
  tblCompany["ARInvoiceStyle"] = kStandardStyle;
  tblCompany["ARInvoiceCopies"] = kStandardCopies;
  tblCompany["ApplicationVersion"] = kVersion;
}

// Books that hold anything go into another year by the year end only. A company without a year yet may enter one.
void TfrmCompany::validateFiscalYear(const Value& next) {
  constexpr std::array<std::array<const char*, 2>, 4> kBooks = {{{"JV", "Journal Voucher(s) exist."},
                                                                 {"APInv", "AP Invoice(s) exist."},
                                                                 {"ARInv", "AR Invoice(s) exist."},
                                                                 {"GLHist", "GL History exists."}}};
  if (isNew() || session_.sampleDataOpen) return;
  store::Cursor& saved = session_.tblCompany();
  saved.refresh();
  const int year = saved["FiscalYear"].asInt();
  if (year == 0 || next.asInt() <= year) return;
  for (const auto& [table, reason] : kBooks) {
    store::Cursor rows(database(), table);
    rows.open();
    if (!rows.isEmpty())
      refuse("Fiscal Year cannot be changed forward by typing here...\r" + std::string(reason) +
                 "\rPress Esc to undo.\rUse the Year-End button to move the year forward",
             focus("FiscalYear"));
  }
}

void TfrmCompany::requireNameAndYear() {
  if (trim(tblCompany["CompanyName"].asText()).empty())
    refuse("Field 'Company Name' must have a value", focus("CompanyName"));
  const int year = tblCompany["FiscalYear"].asInt();
  if (year < kFirstYear || year > kLastYear) refuse("Fiscal Year must be between 1989 and 2050", focus("FiscalYear"));
}

// Nothing is written before everything has been checked.
void TfrmCompany::save() {
  numbers_.requireNoZero();
  if (tblCompany.isEditing()) requireNameAndYear();
  numbers_.write();
  RecordScreen::save();
  session_.tblCompany().refresh();
}

// Commands.

// Carrying forward and closing are two decisions: statements can be printed after the first, and the second waits until
// no more vouchers come.
void TfrmCompany::btnYearEndClick() {
  if (isUnsaved() || isNew()) {
    if (!app().person().confirm("Changes must be saved before year-end can proceed...\rSave now?")) form::abort();
    save();
  }
  requireNameAndYear();
  const int year = tblCompany["FiscalYear"].asInt();
  if (!app().runModal("TfrmYearEnd", {.values = {{"year", Value(year)}}}).confirmed) return;
  if (app().person().confirm("Year End: Permanently close " + std::to_string(year) +
                                 "?\r\rGL balances have been carried forward, etc. so you can now print financial "
                                 "statements for " +
                                 std::to_string(year) + ".  You can leave " + std::to_string(year) +
                                 " open if there will be more transactions.",
                             form::Tone::confirmation, form::Button::no))
    closeYear(year);
}

// The person still has to save it.
void TfrmCompany::closeYear(int year) {
  tblCompany.edit();
  const store::Cursor::Silence silence(tblCompany);
  const auto set = [this](const std::string& period, const Value& itsYear, const Value& number) {
    tblCompany[period + "YYYY"] = itsYear;
    tblCompany[period + "PP"] = number;
  };
  tblCompany["FiscalYear"] = year + 1;
  if (tblCompany["DefaultPeriodYYYY"].asInt() > 0) tblCompany["DefaultPeriodYYYY"] = year + 1;
  if (tblCompany["DefaultPeriodPP"].asInt() > 0) tblCompany["DefaultPeriodPP"] = 1;
  set("WPeriodFrom", year + 1, 1);
  set("WPeriodTo", year + 1, 12);
  set("EPeriodFrom", {}, {});
  set("EPeriodTo", {}, {});
}

void TfrmCompany::btnLoadClick() {
  const std::optional<std::string> path = app().person().chooseFile(
      {.title = "Load Logo", .filter = "Pictures (*.png;*.jpg;*.jpeg;*.bmp)|*.png;*.jpg;*.jpeg;*.bmp"});
  if (!path) form::abort();
  setLogo(store::Blob{readPicture(*path)});
}

void TfrmCompany::btnClearClick() { setLogo({}); }

void TfrmCompany::setLogo(const Value& picture) {
  if (tblLogo.isEmpty())
    tblLogo.append();
  else
    tblLogo.edit();
  if (!tblLogo.isEditing()) form::abort();
  tblLogo["Logo"] = picture;
}

}  // namespace

ScreenPtr makeCompanySettings(Session& session) { return std::make_unique<TfrmCompany>(session); }

}  // namespace quillon::shell
