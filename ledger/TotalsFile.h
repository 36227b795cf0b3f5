#pragma once

#include <string>

namespace quillon::store {
class Cursor;
}

namespace quillon::ledger {

// Writes the rows of a list of totals as a workbook or a text, by the file's name (reports::TableFile). The rows have
// the fields GLAccount, Sub1 to Sub3, AccountName, Sub1Name to Sub3Name, AccountType, GLYear, OpeningBal and Period1 to
// Period12; the sum of these is put behind them. Error when the file cannot be written.
void writeTotalsFile(store::Cursor& rows, const std::string& title, const std::string& path);

}  // namespace quillon::ledger
