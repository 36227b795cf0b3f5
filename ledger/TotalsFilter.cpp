#include "ledger/TotalsFilter.h"

namespace quillon::ledger {

TotalsFilter::TotalsFilter(form::App& app, const std::string& list, std::string title, std::string alias)
    : FilterScreen(app, list), title_(std::move(title)), alias_(std::move(alias)) {
  for (form::Variable* variable : {&accounts_.from, &accounts_.to, &type_, &year_}) clears(*variable);
  for (form::Variable& subaccount : subaccounts_) clears(subaccount);
}

void TotalsFilter::build(form::Layout& l) {
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

std::string TotalsFilter::expression() const {
  const auto is = [](const std::string& field, const form::Variable& variable) {
    return variable.value.isNull() ? "" : "(" + field + " = " + variable.value.toText() + ")";
  };
  std::string all =
      form::allOf({accounts_.condition("g.GLAccount"), is("g.AccountType", type_), is(alias_ + ".GLYear", year_)});
  for (int level = 1; level <= kSubaccountLevels; ++level)
    all = form::allOf({all, is(alias_ + "." + subaccountField(level), subaccounts_.at(level - 1U))});
  return all;
}

}  // namespace quillon::ledger
