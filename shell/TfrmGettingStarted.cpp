// The wizard that sets up a new company. Opened on an empty one, with its name in the value "CompanyName".
//
// Keeps: nothing is written before Finish, then all of it or nothing. Left otherwise, the company stays empty.
#include <array>

#include "base/Text.h"
#include "form/App.h"
#include "form/WizardScreen.h"
#include "shell/CountryDefaults.h"
#include "shell/MakeScreens.h"
#include "shell/MonthNames.h"
#include "shell/NewCompany.h"
#include "shell/Periods.h"
#include "shell/Session.h"
#include "store/Cursor.h"

namespace quillon::shell {
namespace {

using form::Control;
using form::focus;
using form::refuse;
using store::Value;

std::string trimmed(const form::Variable& typed) {
  return typed.value.isNull() ? std::string() : std::string(trim(typed.value.asText()));
}

class TfrmGettingStarted final : public form::WizardScreen {
 public:
  explicit TfrmGettingStarted(Session& session);
  std::string title() override { return "Getting Started"; }

 private:
  // A period that documents may not pass, typed in two halves; empty: no limit.
  struct Limit {
    const char* field;
    const char* caption;
    const char* badYear;
    form::Variable number = {}, year = {};

    std::string half(const char* end) const { return std::string("edit") + field + end; }
    std::optional<Period> period() const {
      if (number.value.isNull()) return std::nullopt;
      return Period{year.value.asInt(), number.value.asInt()};
    }
    void set(Period period) { number.set(period.number), year.set(period.year); }
  };

  void buildPages(form::Layout& layout) override;
  void buildCompany(form::Layout& layout);
  void buildBooks(form::Layout& layout);
  void buildCurrency(form::Layout& layout);
  void buildAccounts(form::Layout& layout);
  void buildBank(form::Layout& layout);
  void buildLimits(form::Layout& layout);
  void buildSummary(form::Layout& layout);
  void shown(const form::Open& open) override;
  void finish() override;
  void closed() override;

  void takeCountry();
  void checkCompany();
  void checkCurrency();
  void suggestLimits();
  void checkLimits();
  static void checkOrder(const Limit& from, const Limit& to);

  const CountryDefaults& country() const { return countryDefaults(country_.value.asText()); }
  Chart chart() const { return static_cast<Chart>(chart_.value.asInt()); }
  bool isTaxed() const { return taxed_.value.asBool(); }
  Books books() const;
  NewCompany company() const;
  form::Choices accounts() const;
  std::string summary();

  Session& session_;
  form::Variable name_, country_, month_, year_, calledByLast_, currency_, taxed_, taxName_, taxCode_, taxRate_, chart_,
      account_, bank_;
  std::array<Limit, 4> limits_ = {
      {{"WPeriodFrom", "&Warn if before:", "Warn Before Period invalid...\rEnter year as 2 digits"},
       {"WPeriodTo", "Warn if &after:", "Warn After Period invalid...\rEnter year as 2 digits"},
       {"EPeriodFrom", "&Error if before:", "Error Before Period invalid...\rEnter year as 2 digits"},
       {"EPeriodTo", "E&rror if after:", "Error After Period invalid...\rEnter year as 2 digits"}}};
  Limit& warnFrom_ = limits_[0];
  Limit& warnTo_ = limits_[1];
  Limit& errorFrom_ = limits_[2];
  Limit& errorTo_ = limits_[3];
  int limitsFor_ = 0;  // the fiscal year that they were suggested for
};

TfrmGettingStarted::TfrmGettingStarted(Session& session) : WizardScreen(session.app()), session_(session) {
  country_.change = [this](const Value& old) {
    if (country_.value.isNull()) country_.value = old;
    takeCountry();
  };
  year_.change = [this](const Value&) {
    const int typed = year_.value.asInt();
    if (const auto year = yearFromTwoDigits(typed); year && !year_.value.isNull()) year_.value = Value(*year);
  };
}

// Pages.

void TfrmGettingStarted::buildPages(form::Layout& l) {
  buildCompany(l);
  buildBooks(l);
  buildCurrency(l);
  buildAccounts(l);
  buildBank(l);
  buildLimits(l);
  buildSummary(l);
}

void TfrmGettingStarted::buildCompany(form::Layout& l) {
  form::Choices countries;
  for (const CountryDefaults& some : knownCountries()) countries.emplace_back(Value(some.name), some.name);
  page(l, {.caption = "Your company", .checked = [this] { checkCompany(); }},
       l.label("lblWelcome",
               [] {
                 return std::string(
                     "This sets up your company: its books, currency, accounts and bank. Nothing is written before you "
                     "choose Finish on the last page.");
               }),
       l.edit("editCompanyName", "Company &Name:", name_, form::textConverter(40)).wide(40),
       l.chooser("cboCountry", "C&ountry:", country_, form::choicesConverter(countries))
           .hint("Fills in the following pages as is usual there"));
}

void TfrmGettingStarted::buildBooks(form::Layout& l) {
  form::Choices months;
  for (int month = 1; month <= 12; ++month) months.emplace_back(Value(month), monthName(month));
  const auto years = [this] {
    const int year = year_.value.asInt();
    return form::Choices{{Value(false), std::to_string(year)}, {Value(true), std::to_string(year + 1)}};
  };
  const auto year =
      form::wholeConverter(app().formats(), 0, kLastFiscalYear, "Enter the year with two or four digits, up to 2050");
  page(l,
       {.caption = "First month of the books",
        .checked =
            [this] {
              if (year_.value.isNull()) refuse("Field 'Year' must have a value", focus("editFirstYear"));
              const int fiscalYear = books().fiscalYear;
              if (fiscalYear < kFirstFiscalYear || fiscalYear > kLastFiscalYear)
                refuse("Fiscal Year must be between 1989 and 2050", focus("editFirstYear"));
            }},
       l.row(l.chooser("cboFirstMonth", "First &month:", month_, form::choicesConverter(months)),
             l.edit("editFirstYear", "&Year:", year_, year).wide(4)),
       l.choice("optFiscalYear", "The fiscal year is &called", calledByLast_, form::choicesConverter(years))
           .visibleWhen([this] { return month_.value.asInt() != 1; }),
       l.label("lblCalendar", [this] {
         if (year_.value.isNull()) return std::string();
         return "Fiscal year " + std::to_string(books().fiscalYear) + ": " + books().calendar();
       }));
}

void TfrmGettingStarted::buildCurrency(form::Layout& l) {
  const auto taxed = [this] { return isTaxed(); };
  page(
      l, {.caption = "Currency and tax", .checked = [this] { checkCurrency(); }},
      l.edit("editCurrencyName", "Home &currency:", currency_, form::textConverter(20)).wide(20),
      l.check("chkTax", "Set up a &tax on sales", taxed_),
      l.edit("editTaxName", "Tax na&me:", taxName_, form::textConverter(20)).wide(20).enabledWhen(taxed),
      l.edit("editTaxCode", "C&ode:", taxCode_, form::textConverter(1))
          .wide(1)
          .hint("The letter that items name this tax by")
          .enabledWhen(taxed),
      l.edit("editTaxRate", "&Rate %:", taxRate_, form::quantityConverter(app().formats())).wide(8).enabledWhen(taxed));
}

void TfrmGettingStarted::buildAccounts(form::Layout& l) {
  const form::Choices charts = {{Value(static_cast<int>(Chart::service)), "Service"},
                                {Value(static_cast<int>(Chart::trade)), "Trade"},
                                {Value(static_cast<int>(Chart::manufacturing)), "Manufacturing"}};
  page(
      l, {.caption = "Accounts"}, l.choice("optChart", "&Chart of accounts", chart_, form::choicesConverter(charts)),
      l.list("lstAccounts", "&Accounts of this chart:", account_, form::choicesConverter([this] { return accounts(); }))
          .hint("You can add, rename and delete accounts later"));
}

void TfrmGettingStarted::buildBank(form::Layout& l) {
  page(l,
       {.caption = "Bank",
        .checked =
            [this] {
              if (trimmed(bank_).empty()) refuse("Field 'Bank Name' must have a value", focus("editBankName"));
            }},
       l.edit("editBankName", "Bank n&ame:", bank_, form::textConverter(40)).wide(40),
       l.label("lblBankAccount", [this] {
         for (const ChartAccount& account : chartOfAccounts(chart(), country()))
           if (account.use == AccountUse::bank) return "Its account: " + account.number + " " + account.name;
         return std::string();
       }));
}

void TfrmGettingStarted::buildLimits(form::Layout& l) {
  std::array<Control*, 4> rows = {};
  for (std::size_t i = 0; i < limits_.size(); ++i) {
    Limit& limit = limits_[i];
    const auto number = form::wholeConverter(app().formats(), 1, Period::kCount, "Period must be between 1 and 12");
    rows[i] = &l.row(l.edit(limit.half("PP"), limit.caption, limit.number, number).wide(2),
                     l.edit(limit.half("YYYY"), "/", limit.year, form::twoDigitYearConverter(limit.badYear)).wide(2));
  }
  page(l, {.caption = "Period limits", .entered = [this] { suggestLimits(); }, .checked = [this] { checkLimits(); }},
       l.label("lblLimits",
               [] {
                 return std::string(
                     "A document outside these periods gives a warning, or is refused. Leave them empty for no limit.");
               }),
       *rows[0], *rows[1], *rows[2], *rows[3]);
}

void TfrmGettingStarted::buildSummary(form::Layout& l) {
  page(l, {.caption = "Ready"}, l.label("lblSummary", [this] { return summary(); }), l.label("lblNoPrinter", [] {
    return std::string(
        "If you have no printer: pages are laid out for one, so a printer must be defined, though not necessarily "
        "attached. Install any printer driver, or one that prints into a file; then reports can be previewed, "
        "printed and exported. When you are asked whether you have a printer installed, answer Yes.");
  }));
}

void TfrmGettingStarted::shown(const form::Open& open) {
  country_.set(Value(countryDefaults(session_.countryName()).name));
  const auto name = open.values.find("CompanyName");
  name_.set(name == open.values.end() ? Value() : name->second);
  chart_.set(static_cast<int>(Chart::trade));
  account_.reset();
  for (Limit& limit : limits_) limit.number.reset(), limit.year.reset();
  limitsFor_ = 0;
  WizardScreen::shown(open);
}

// What the person chose.

void TfrmGettingStarted::takeCountry() {
  const CountryDefaults& defaults = country();
  const Date today = app().today();
  const auto text = [](const char* some) { return *some == '\0' ? Value() : Value(some); };
  month_.set(defaults.firstMonth);
  year_.set(today.year() - (static_cast<int>(today.month()) < defaults.firstMonth ? 1 : 0));
  calledByLast_.set(true);
  currency_.set(text(defaults.currency));
  taxed_.set(defaults.taxRate > 0);
  taxName_.set(text(defaults.taxName));
  taxCode_.set(text(defaults.taxCode));
  taxRate_.set(defaults.taxRate > 0 ? Value(defaults.taxRate) : Value());
  bank_.set(text(defaults.bankAccount));
}

Books TfrmGettingStarted::books() const {
  const int month = month_.value.asInt(), year = year_.value.asInt();
  return {year + (month != 1 && calledByLast_.value.asBool() ? 1 : 0), month, year};
}

NewCompany TfrmGettingStarted::company() const {
  NewCompany company = suggestedCompany(country().name, books(), app().today());
  company.name = trimmed(name_);
  company.currency = trimmed(currency_);
  company.tax.reset();
  if (isTaxed()) company.tax = NewTax{trimmed(taxName_), trimmed(taxCode_), taxRate_.value.asDouble()};
  company.chart = chart();
  company.bankName = trimmed(bank_);
  company.warn = {warnFrom_.period(), warnTo_.period()};
  company.error = {errorFrom_.period(), errorTo_.period()};
  return company;
}

form::Choices TfrmGettingStarted::accounts() const {
  form::Choices choices;
  for (const ChartAccount& account : chartOfAccounts(chart(), country()))
    choices.emplace_back(Value(account.number), account.number + "  " + account.name);
  return choices;
}

std::string TfrmGettingStarted::summary() {
  const NewCompany some = company();
  const auto limited = [](const char* what, const PeriodLimits& limits) {
    std::string text;
    if (limits.from) text += " before " + periodText(*limits.from);
    if (limits.to) text += std::string(text.empty() ? "" : " or") + " after " + periodText(*limits.to);
    return text.empty() ? text : what + text + "\r";
  };
  std::string text = "Company: " + some.name + "\rFiscal year: " + std::to_string(some.books.fiscalYear) + ". " +
                     some.books.calendar() + "\rHome currency: " + some.currency + "\r";
  if (some.tax)
    text += "Tax on sales: " + some.tax->name + " " + form::quantityConverter(app().formats())->show(some.tax->rate) +
            "%\r";
  text += "Chart of accounts: " + find("optChart")->binding()->text() + ", " + std::to_string(accounts().size()) +
          " accounts\rBank: " + some.bankName + "\r" + limited("Warning for a period", some.warn) +
          limited("Error for a period", some.error);
  text += "New documents: " +
          (some.defaultPeriod ? "period " + periodText(*some.defaultPeriod) + ", until you change it in Your Company"
                              : std::string("the period of the day"));
  return text;
}

void TfrmGettingStarted::checkCompany() {
  if (trimmed(name_).empty()) refuse("Field 'Company Name' must have a value", focus("editCompanyName"));
  requireUsableName(trimmed(name_), focus("editCompanyName"));
  requireNotSetUp(database());
}

void TfrmGettingStarted::checkCurrency() {
  if (trimmed(currency_).empty()) refuse("Field 'Currency Name' must have a value", focus("editCurrencyName"));
  if (!isTaxed()) return;
  if (trimmed(taxName_).empty()) refuse("Field 'Tax Name' must have a value", focus("editTaxName"));
  if (trimmed(taxCode_).empty()) refuse("Field 'Code' must have a value", focus("editTaxCode"));
  if (taxRate_.value.isNull()) refuse("Field 'Rate' must have a value", focus("editTaxRate"));
  const double rate = taxRate_.value.asDouble();
  if (rate < 0 || rate > 100) refuse("Rate must be between 0 and 100", focus("editTaxRate"));
}

void TfrmGettingStarted::suggestLimits() {
  const int year = books().fiscalYear;
  if (limitsFor_ == year) return;
  limitsFor_ = year;
  warnFrom_.set({year, 1});
  warnTo_.set({year, Period::kCount});
}

void TfrmGettingStarted::checkLimits() {
  for (const Limit& limit : limits_)
    if (limit.number.value.isNull() != limit.year.value.isNull())
      refuse("Enter both the period and its year, or neither",
             focus(limit.half(limit.number.value.isNull() ? "PP" : "YYYY")));
  checkOrder(warnFrom_, warnTo_);
  checkOrder(errorFrom_, errorTo_);
  if (errorTo_.period() && errorTo_.period()->year < books().fiscalYear)
    refuse("No period could be used...\rThe last one allowed is before the fiscal year " +
               std::to_string(books().fiscalYear),
           focus(errorTo_.half("PP")));
}

void TfrmGettingStarted::checkOrder(const Limit& from, const Limit& to) {
  if (from.period() && to.period() && *to.period() < *from.period())
    refuse("The last period is before the first", focus(to.half("PP")));
}

void TfrmGettingStarted::finish() {
  fillCompany(database(), company());
  app().refreshLookUps();
}

// Somebody else may have set it up meanwhile.
void TfrmGettingStarted::closed() {
  if (session_.hasCompany()) session_.tblCompany().refresh();
}

}  // namespace

ScreenPtr makeGettingStarted(Session& session) { return std::make_unique<TfrmGettingStarted>(session); }

}  // namespace quillon::shell
