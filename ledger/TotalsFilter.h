#pragma once

#include <array>
#include <string>

#include "form/FilterScreen.h"
#include "ledger/AccountRange.h"
#include "ledger/Accounts.h"

namespace quillon::ledger {

// The conditions of a list of totals (TotalsList).
class TotalsFilter final : public form::FilterScreen {
 public:
  // `alias` is that of the list's rows.
  TotalsFilter(form::App& app, const std::string& list, std::string title, std::string alias);
  std::string title() override { return title_; }

 private:
  void build(form::Layout& l) override;
  std::string expression() const override;

  std::string title_, alias_;
  AccountRange accounts_;
  form::Variable type_, year_;
  std::array<form::Variable, kSubaccountLevels> subaccounts_;
};

}  // namespace quillon::ledger
