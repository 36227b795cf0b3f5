#pragma once

#include <string>

#include "form/Binding.h"
#include "form/Layout.h"

namespace quillon::ledger {

// A text as a literal of a condition.
std::string quoted(const std::string& text);

// A filter's condition on account numbers: from one to another, both included, case apart; an end that is empty is
// open.
struct AccountRange {
  form::Variable from = {}, to = {};

  // editAccountFrom and editAccountTo, side by side.
  form::Control& told(form::Layout& layout);
  // On `field`, which holds the number; empty for all.
  std::string condition(const std::string& field) const;
};

}  // namespace quillon::ledger
