#include "shell/CountryDefaults.h"

#include <algorithm>

#include "base/Text.h"

namespace quillon::shell {
namespace {

constexpr CountryDefaults kCountries[] = {
    {"Australia", "Australian Dollar", "Cheque Account", "GST", "G", 10, 7, "Labour", 1.5235},
    {"Canada", "Canadian Dollar", "Chequing Account", "GST", "G", 5, 1, "Labour", 1.3615},
    {"New Zealand", "New Zealand Dollar", "Cheque Account", "GST", "G", 15, 4, "Labour", 1.6520},
    {"South Africa", "South African Rand", "Cheque Account", "VAT", "V", 15, 3, "Labour", 18.2450},
    {"United Kingdom", "British Pound", "Current Account", "VAT", "V", 20, 4, "Labour", 0.7905},
    {"United States", "US Dollar", "Checking Account", "Sales Tax", "S", 0, 1, "Labor", 1},
    {"Other", "", "Bank Account", "Sales Tax", "S", 0, 1, "Labour", 1.2500},
};

}  // namespace

std::span<const CountryDefaults> knownCountries() { return kCountries; }

const CountryDefaults& countryDefaults(std::string_view name) {
  const auto* found =
      std::ranges::find_if(kCountries, [&](const CountryDefaults& some) { return equalFolded(some.name, name); });
  return found == std::end(kCountries) ? *std::prev(std::end(kCountries)) : *found;
}

}  // namespace quillon::shell
