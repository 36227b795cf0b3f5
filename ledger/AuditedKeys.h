#pragma once

#include <array>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "ledger/Accounts.h"
#include "ledger/Audit.h"
#include "store/Cursor.h"

namespace quillon::ledger {

// An account and its subaccounts.
using Combination = std::array<std::optional<int>, 1 + kSubaccountLevels>;

// The accounts, subaccounts and currencies of a company, and which rows point to others that are not there.
class AuditedKeys {
 public:
  explicit AuditedKeys(store::Database& database);

  // What `read` and `check` look at, for the snapshot around them.
  std::vector<store::Table*> tables() const;
  void read();
  // Of the chart of accounts itself, of budgets, currencies and banks.
  void check(std::vector<Disagreement>& wrong);
  // Of a row's account and subaccounts.
  void checkCombination(store::Cursor& row, const std::string& key, std::vector<Disagreement>& wrong) const;

  static Combination combinationOf(store::Cursor& row);
  static std::string nameOf(const Combination& combination, int year);

 private:
  using Ids = std::set<int>;
  store::Cursor& open(const char* table);
  void checkAccounts(std::vector<Disagreement>& wrong);
  void checkBudgets(std::vector<Disagreement>& wrong);

  store::Database& database_;
  std::vector<std::unique_ptr<store::Cursor>> cursors_;
  std::array<store::Cursor*, 1 + kSubaccountLevels> levels_{};
  store::Cursor &budgets_, &currencies_, &banks_, &company_;
  std::array<Ids, 1 + kSubaccountLevels> ids_;
  Ids currencyIds_;
};

inline constexpr const char* kNone = "nothing";

}  // namespace quillon::ledger
