#pragma once

#include <string>

#include "form/Binding.h"
#include "form/Layout.h"

namespace quillon::ledger {

// A filter's condition on account numbers: from one to another, both included; an end that is empty is open.
struct AccountRange {
  form::Variable from = {}, to = {};

  // editAccountFrom and editAccountTo, side by side.
  form::Control& told(form::Layout& layout);
  // On `field`, which holds the number: "(g.GLAccount >= '1000') AND (g.GLAccount <= '1999')"; empty for all.
  std::string condition(const std::string& field) const;
};

}  // namespace quillon::ledger
