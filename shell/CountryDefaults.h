#pragma once

#include <span>
#include <string_view>

namespace quillon::shell {

// What a new company in a country begins with, for the person to change.
struct CountryDefaults {
  const char* name;         // as the desktop tells it
  const char* currency;     // empty: not known
  const char* bankAccount;  // what an account for everyday payments is called
  const char* taxName;      // of the tax on sales
  const char* taxCode;
  double taxRate;    // per cent; 0: there is not one rate for the country
  int firstMonth;    // of the usual financial year
  const char* work;  // as it is spelled: Labour, Labor
  double usDollar;   // what one is worth in the currency, roughly
};

// Those that are known, and last one for all others.
std::span<const CountryDefaults> knownCountries();
// In any case; the one for all others where it is not known.
const CountryDefaults& countryDefaults(std::string_view name);

}  // namespace quillon::shell
