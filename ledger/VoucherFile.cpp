#include "ledger/VoucherFile.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <optional>
#include <vector>

#include "base/Errors.h"
#include "base/Money.h"
#include "base/Text.h"
#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/Query.h"

namespace quillon::ledger {
namespace {

using store::Value;

struct Column {
  const char* name;
  std::size_t characters;  // 0: an amount
};
constexpr std::array<Column, 5> kColumns = {
    {{"Account", 10}, {"SubAccount1", 5}, {"SubAccount2", 5}, {"SubAccount3", 5}, {"Amount", 0}}};
constexpr std::int64_t kMostUnits = 100'000'000;  // ten digits, two of them decimals

std::vector<std::string> cellsOf(std::string_view line) {
  std::vector<std::string> cells;
  while (true) {
    const std::size_t end = std::min(line.find('\t'), line.size());
    std::string_view cell = trim(line.substr(0, end));
    std::string text(cell);
    if (cell.size() >= 2 && cell.front() == '"' && cell.back() == '"') {
      text.clear();
      cell = cell.substr(1, cell.size() - 2);
      for (std::size_t i = 0; i < cell.size(); ++i) {
        text += cell[i];
        if (cell[i] == '"' && i + 1 < cell.size() && cell[i + 1] == '"') ++i;
      }
    }
    cells.push_back(std::move(text));
    if (end == line.size()) return cells;
    line.remove_prefix(end + 1);
  }
}

Value amountOf(const std::string& text, std::uint64_t line) {
  if (text.empty()) return {};
  const std::optional<Money> amount = Money::parse(text);
  if (!amount || amount->raw() % 100 != 0)
    refuseLine(line, "Amount '" + text + "' is not a number with at most 2 decimals");
  if (amount->raw() / Money::kScale >= kMostUnits || amount->raw() / Money::kScale <= -kMostUnits)
    refuseLine(line, "Amount '" + text + "' has more than 10 digits");
  return *amount;
}

// For each column of ours the file's.
std::array<std::size_t, 5> readHeader(const std::vector<std::string>& names) {
  std::array<std::size_t, 5> places{};
  for (std::size_t i = 0; i < kColumns.size(); ++i) {
    places[i] = names.size();
    for (std::size_t j = 0; j < names.size(); ++j) {
      if (!equalFolded(names[j], kColumns[i].name)) continue;
      if (places[i] != names.size())
        refuseLine(1, std::string("The field '") + kColumns[i].name + "' stands twice in the list of field names");
      places[i] = j;
    }
    if (places[i] == names.size())
      refuseLine(1, std::string("The field '") + kColumns[i].name + "' is missing in the list of field names");
  }
  return places;
}

void addRow(store::Cursor& rows, const std::vector<std::string>& cells, const std::array<std::size_t, 5>& places,
            std::uint64_t line) {
  rows.append();
  for (std::size_t i = 0; i < kColumns.size(); ++i) {
    const std::string text = places[i] < cells.size() ? cells[places[i]] : "";
    if (kColumns[i].characters == 0) {
      rows[kColumns[i].name] = amountOf(text, line);
    } else if (lengthInCharacters(text) > kColumns[i].characters) {
      refuseLine(line, std::string(kColumns[i].name) + " '" + text + "' is too long");
    } else if (!text.empty()) {
      rows[kColumns[i].name] = text;
    }
  }
  rows.post();
}

}  // namespace

void refuseLine(std::uint64_t line, const std::string& what) {
  throw Error("Line " + std::to_string(line) + ": " + what);
}

void makeImportTable(store::Database& database) {
  try {
    store::Query(database, "DROP TABLE IF EXISTS \"\\Memory\\JVDataImport\"").execute();
  } catch (const store::StoreError& error) {
    if (error.code() != store::Code::tableInUse) throw;
    throw Error("Import JV Data is already running.\rMultiple instances are not allowed");
  }
  store::Query(database,
               "CREATE TABLE \"\\Memory\\JVDataImport\" (Account CHAR(10), SubAccount1 CHAR(5), SubAccount2 CHAR(5), "
               "SubAccount3 CHAR(5), Amount NUMERIC(10,2))")
      .execute();
}

void dropImportTable(store::Database& database) {
  store::Query(database, "DROP TABLE IF EXISTS \"\\Memory\\JVDataImport\"").execute();
}

std::vector<std::uint64_t> loadVoucherFile(
    store::Database& database, const std::string& path,
    const std::function<void(std::uint64_t done, std::uint64_t total)>& progress) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw Error("The file '" + path + "' cannot be read");
  const std::uint64_t total = std::filesystem::file_size(path);
  store::Cursor rows(database, kImportTable);
  rows.open();
  std::optional<std::array<std::size_t, 5>> places;
  std::vector<std::uint64_t> lines;
  std::string text;
  std::uint64_t done = 0;
  for (std::uint64_t line = 1; std::getline(file, text); ++line) {
    done += text.size() + 1;
    if (text.ends_with('\r')) text.pop_back();
    if (line == 1 && text.starts_with("\xEF\xBB\xBF")) text.erase(0, 3);
    if (!isValidUtf8(text) || text.find('\0') != std::string::npos)
      refuseLine(line, "The file is not a text in UTF-8; save it as UTF-8 and import it again");
    if (!places) {
      places = readHeader(cellsOf(text));
    } else if (!trim(text).empty()) {
      addRow(rows, cellsOf(text), *places, line);
      lines.push_back(line);
    }
    if (line % 256 == 0) progress(done, total);
  }
  if (!places) throw Error("The file is empty");
  if (file.bad()) throw Error("The file '" + path + "' cannot be read to its end");
  return lines;
}

}  // namespace quillon::ledger
