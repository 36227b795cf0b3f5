// The conditions of the list of GL totals.
#include <array>

#include "form/FilterScreen.h"
#include "ledger/AccountRange.h"
#include "ledger/Accounts.h"
#include "ledger/MakeScreens.h"
#include "shell/Session.h"

namespace quillon::ledger {
namespace {

class TfrmGLBalancesFilter final : public form::FilterScreen {
 public:
  explicit TfrmGLBalancesFilter(shell::Session& session) : FilterScreen(session.app(), "TfrmGLBalances") {
    for (form::Variable* variable : {&accounts_.from, &accounts_.to, &type_, &year_}) clears(*variable);
    for (form::Variable& subaccount : subaccounts_) clears(subaccount);
  }
  std::string title() override { return "GL Totals Filter"; }

 private:
  void build(form::Layout& l) override {
    accounts_.told(l);
    l.chooser("cboAccountType", "&Type:", type_, form::orAllConverter(accountTypes()->choices()));
    for (int level = 1; level <= kSubaccountLevels; ++level) {
      const std::string number = std::to_string(level);
      l.code("editSubAccount" + number, "Subaccount &" + number + ":", subaccounts_.at(level - 1U),
             subaccountCode(level));
    }
    l.edit("editGLYear", "&Year:", year_, form::twoDigitYearConverter("Year invalid...\rEnter year as 2 digits"));
    buttons(l);
  }

  std::string expression() const override {
    const auto is = [](const std::string& field, const form::Variable& variable) {
      return variable.value.isNull() ? "" : "(" + field + " = " + variable.value.toText() + ")";
    };
    std::string all =
        form::allOf({accounts_.condition("g.GLAccount"), is("g.AccountType", type_), is("a.GLYear", year_)});
    for (int level = 1; level <= kSubaccountLevels; ++level)
      all = form::allOf({all, is("a." + subaccountField(level), subaccounts_.at(level - 1U))});
    return all;
  }

  AccountRange accounts_;
  form::Variable type_, year_;
  std::array<form::Variable, kSubaccountLevels> subaccounts_;
};

}  // namespace

ScreenPtr makeGLBalancesFilter(shell::Session& session) { return std::make_unique<TfrmGLBalancesFilter>(session); }

}  // namespace quillon::ledger
