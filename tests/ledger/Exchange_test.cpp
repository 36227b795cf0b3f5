#include "ledger/Exchange.h"

#include <gtest/gtest.h>

namespace quillon::ledger {
namespace {

TEST(Exchange, TranslatesToTheHundredthAndKeepsTheDifference) {
  struct Case {
    double rate;
    const char *amount, *home, *difference;
  };
  const Case cases[] = {
      {1.25, "100", "125", "25"},
      {1.3333, "10.01", "13.35", "3.34"},
      {1.3333, "-10.01", "-13.35", "-3.34"},
      {0.5, "0.01", "0.01", "0"},
      {0.5, "-0.01", "-0.01", "0"},
      {1.005, "1", "1.01", "0.01"},
      {1.0001, "0.1234", "0.12", "-0.0034"},
      {0, "0.1234", "0.1234", "0"},
      {1, "-7.0001", "-7.0001", "0"},
  };
  for (const Case& one : cases) {
    Exchange exchange(one.rate);
    EXPECT_EQ(exchange.toHome(*Money::parse(one.amount)).toText(), one.home) << one.rate << " * " << one.amount;
    EXPECT_EQ(exchange.difference().toText(), one.difference) << one.rate << " * " << one.amount;
  }
}

TEST(Exchange, AddsUpTheDifferencesOfADocument) {
  Exchange exchange(1.3333);
  for (const char* amount : {"10.01", "-4", "0"}) exchange.toHome(*Money::parse(amount));
  EXPECT_EQ(exchange.difference().toText(), "2.01");  // 3.34 - 1.33
}

}  // namespace
}  // namespace quillon::ledger
