#pragma once

#include <string>

#include "form/Binding.h"
#include "form/Converter.h"
#include "shell/AccountType.h"

namespace quillon::form {
class App;
}

// The chart of accounts: one flat list of accounts, and beside it three independent lists of subaccounts that can be
// combined with any account on a line.
namespace quillon::ledger {

inline constexpr int kSubaccountLevels = 3;

using shell::AccountType;
form::ConverterPtr accountTypes();
// Whether balances are carried from year to year: revenue and expense begin each year with nothing.
bool isCarriedForward(AccountType type);

// "GLAcSub1" to "GLAcSub3".
std::string subaccountTable(int level);
// "SubAccount1ID" to "SubAccount3ID", as lines and totals call them.
std::string subaccountField(int level);

// How an account and a subaccount are typed and shown.
form::CodeOf accountCode();
form::CodeOf subaccountCode(int level);

// The same for a record that is set up with an account, also one that is suspended.
form::CodeOf setUpAccountCode();

// An account or subaccount that is typed into a line has to exist and must not be suspended; null is neither.
void requireUsableAccount(form::App& app, const store::Value& id);
void requireUsableSubaccount(form::App& app, int level, const store::Value& id);
// For a line that is saved: whether the rows are still there.
bool accountExists(form::App& app, const store::Value& id);
bool subaccountExists(form::App& app, int level, const store::Value& id);

// "(GLAccountID = 7)": what limits a list of history to one account.
std::string accountClause(const store::Value& id);

// "(g.GLAccountID = 7)": a list of totals or budgets.
std::string totalsClause(const store::Value& id);

// The names of an account and its subaccounts, joined by " - "; those that are null or gone are left out.
std::string accountNames(form::App& app, const store::Value& account, const store::Value (&subaccounts)[3]);

}  // namespace quillon::ledger
