#pragma once

#include <string>

#include "form/Converter.h"
#include "store/Value.h"

// Where a voucher and its history come from, which Source and TransType tell together.
namespace quillon::ledger {

// Whether there are vouchers with these two.
bool isSource(const store::Value& source, const store::Value& transType);

// What a list shows: "AP Inv", "AP Pmt", "GL JV".
std::string sourceText(const store::Value& source, const store::Value& transType);

// All, and each source: its value is the condition on the two fields.
form::ConverterPtr sourceConditions();

}  // namespace quillon::ledger
