#include "ledger/TotalsFile.h"

#include <fstream>
#include <vector>

#include "base/Errors.h"
#include "base/Money.h"
#include "ledger/Totals.h"
#include "store/Cursor.h"
#include "store/Glance.h"

namespace quillon::ledger {
namespace {

std::string cellOf(const store::Value& value) {
  if (value.isNull()) return {};
  const std::string text = value.toText();
  if (text.find_first_of("\t\r\n\"") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? "\"\"" : std::string(1, c);
  return quoted + "\"";
}

std::vector<std::string> columns() {
  std::vector<std::string> names = {"GLAccount", "Sub1",     "Sub2",        "Sub3",   "AccountName", "Sub1Name",
                                    "Sub2Name",  "Sub3Name", "AccountType", "GLYear", "OpeningBal"};
  for (int period = 1; period <= kPeriods; ++period) names.push_back("Period" + std::to_string(period));
  return names;
}

}  // namespace

void writeTotalsFile(store::Cursor& rows, const std::string& path) {
  std::ofstream file(path, std::ios::binary);
  const std::vector<std::string> names = columns();
  for (const std::string& name : names) file << name << '\t';
  file << "Total Change\r\n";
  store::Glance glance(rows);
  for (bool there = glance.first(); there; there = glance.next()) {
    Money change;
    for (const std::string& name : names) {
      file << cellOf(rows.value(name)) << '\t';
      if (name.starts_with("Period")) change += rows[name].asMoney();
    }
    file << change.toText() << "\r\n";
  }
  file.close();
  if (!file) throw Error("The file '" + path + "' cannot be written");
}

}  // namespace quillon::ledger
