#include "ledger/Sources.h"

#include <algorithm>

#include "form/FilterScreen.h"

namespace quillon::ledger {
namespace {

using store::Value;

constexpr const char* kSources[] = {"AP Chq", "AP Inv", "AR Inv", "AR Pmt", "GL JV", "IN Adj"};

std::string joined(const Value& source, const Value& transType) {
  const auto text = [](const Value& value) { return value.isNull() ? std::string() : value.asText(); };
  return text(source) + " " + text(transType);
}

}  // namespace

bool isSource(const Value& source, const Value& transType) {
  return std::ranges::find(kSources, joined(source, transType)) != std::end(kSources);
}

std::string sourceText(const Value& source, const Value& transType) {
  const std::string both = joined(source, transType);
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
