#pragma once

#include <functional>

#include "form/Binding.h"
#include "form/Screen.h"
#include "store/Value.h"

namespace quillon::shell {
class Session;
}

namespace quillon::ledger {

// The bank that a screen is about, chosen from all there are. A bank has no transactions but the history of its ledger
// account, so what the screen shows is that account's.
class BankChooser {
 public:
  // `chosen` is told when another bank was chosen.
  BankChooser(shell::Session& session, std::function<void()> chosen);
  form::Control& control(form::Layout& layout);

  // When the screen comes on view: the bank that it was asked for with, the one that was chosen already, or that in the
  // company's own currency.
  void begin(const form::Open& open);
  // The ledger account; null while none is chosen, and where the bank is not there any more.
  store::Value account() const;

 private:
  store::Value ofOwnCurrency() const;

  shell::Session& session_;
  std::function<void()> chosen_;
  form::Variable bank_;
};

}  // namespace quillon::ledger
