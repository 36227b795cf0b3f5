#include "ledger/Sources.h"

#include "form/FilterScreen.h"

namespace quillon::ledger {

using store::Value;

std::string sourceText(const Value& source, const Value& transType) {
  const auto text = [](const Value& value) { return value.isNull() ? std::string() : value.asText(); };
  const std::string both = text(source) + " " + text(transType);
  return both == "AP Chq" ? "AP Pmt" : both;
}

form::ConverterPtr sourceConditions() {
  return form::orAllConverter({{Value("(Source = 'AP') AND (TransType = 'Inv')"), "AP Invoices"},
                               {Value("(Source = 'AP') AND (TransType = 'Chq')"), "AP Payments"},
                               {Value("(Source = 'AR') AND (TransType = 'Inv')"), "AR Invoices"},
                               {Value("(Source = 'AR') AND (TransType = 'Pmt')"), "AR Payments"},
                               {Value("(Source = 'GL')"), "GL JVs"},
                               {Value("(Source = 'IN')"), "Inv Adjustments"}});
}

}  // namespace quillon::ledger
