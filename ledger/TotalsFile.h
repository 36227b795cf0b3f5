#pragma once

#include <string>

namespace quillon::store {
class Cursor;
}

namespace quillon::ledger {

// Writes the rows of a list of totals as a text file in UTF-8: fields separated by tabs, their names in the first line,
// amounts with a decimal point. The rows have the fields GLAccount, Sub1 to Sub3, AccountName, Sub1Name to Sub3Name,
// AccountType, GLYear, OpeningBal and Period1 to Period12. Error when the file cannot be written.
void writeTotalsFile(store::Cursor& rows, const std::string& path);

}  // namespace quillon::ledger
