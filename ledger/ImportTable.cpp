#include "ledger/ImportTable.h"

#include <charconv>
#include <filesystem>
#include <fstream>
#include <optional>

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
using Kind = ImportColumn::Kind;

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

std::int64_t power(std::int64_t base, int exponent) { return exponent == 0 ? 1 : base * power(base, exponent - 1); }

std::string typeOf(const ImportColumn& column) {
  if (column.kind == Kind::year) return "SMALLINT";
  if (column.kind == Kind::text) return "CHAR(" + std::to_string(column.digits) + ")";
  return "NUMERIC(" + std::to_string(column.digits) + "," + std::to_string(column.decimals) + ")";
}

Value amountOf(const ImportColumn& column, const std::string& text, std::uint64_t line) {
  const std::optional<Money> amount = Money::parse(text);
  if (!amount || amount->raw() % (Money::kScale / power(10, column.decimals)) != 0)
    refuseLine(line, column.name + " '" + text + "' is not a number with at most " + std::to_string(column.decimals) +
                         " decimals");
  const std::int64_t units = amount->raw() / Money::kScale, limit = power(10, column.digits - column.decimals);
  if (units >= limit || units <= -limit)
    refuseLine(line, column.name + " '" + text + "' has more than " + std::to_string(column.digits) + " digits");
  return *amount;
}

Value yearOf(const ImportColumn& column, const std::string& text, std::uint64_t line) {
  int year = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), year);
  if (error != std::errc() || end != text.data() + text.size() || year < 1000 || year > 9999)
    refuseLine(line, column.name + " '" + text + "' is not a year of 4 digits");
  return year;
}

Value valueOf(const ImportColumn& column, const std::string& text, std::uint64_t line) {
  if (text.empty()) return {};
  if (column.kind == Kind::amount) return amountOf(column, text, line);
  if (column.kind == Kind::year) return yearOf(column, text, line);
  if (lengthInCharacters(text) > static_cast<std::size_t>(column.digits))
    refuseLine(line, column.name + " '" + text + "' is too long");
  return text;
}

}  // namespace

void refuseLine(std::uint64_t line, const std::string& what) {
  throw Error("Line " + std::to_string(line) + ": " + what);
}

ImportTable::ImportTable(store::Database& database, std::string name, std::vector<ImportColumn> columns,
                         const std::string& busy)
    : database_(database), name_(std::move(name)), columns_(std::move(columns)) {
  try {
    store::Query(database_, "DROP TABLE IF EXISTS " + quotedName()).execute();
  } catch (const store::StoreError& error) {
    if (error.code() != store::Code::tableInUse) throw;
    throw Error(busy);
  }
  std::string fields;
  for (const ImportColumn& column : columns_)
    fields += (fields.empty() ? "" : ", ") + column.name + " " + typeOf(column);
  store::Query(database_, "CREATE TABLE " + quotedName() + " (" + fields + ")").execute();
}

ImportTable::~ImportTable() {
  try {
    store::Query(database_, "DROP TABLE IF EXISTS " + quotedName()).execute();
  } catch (const store::StoreError&) {
    // It takes memory until the next import drops it, or the program ends.
  }
}

std::string ImportTable::quotedName() const { return "\"\\Memory\\" + name_ + "\""; }

// For each column of ours the file's.
std::vector<std::size_t> ImportTable::readHeader(const std::vector<std::string>& names) const {
  std::vector<std::size_t> places;
  for (const ImportColumn& column : columns_) {
    std::size_t place = kMissing;
    for (std::size_t i = 0; i < names.size(); ++i) {
      if (!equalFolded(names[i], column.name)) continue;
      if (place != kMissing) refuseLine(1, "The field '" + column.name + "' stands twice in the list of field names");
      place = i;
    }
    if (place == kMissing && column.required)
      refuseLine(1, "The field '" + column.name + "' is missing in the list of field names");
    places.push_back(place);
  }
  return places;
}

void ImportTable::addRow(store::Cursor& rows, const std::vector<std::string>& cells,
                         const std::vector<std::size_t>& places, std::uint64_t line) const {
  rows.append();
  for (std::size_t i = 0; i < columns_.size(); ++i)
    if (places[i] < cells.size()) rows[columns_[i].name] = valueOf(columns_[i], cells[places[i]], line);
  rows.post();
}

std::vector<std::uint64_t> ImportTable::load(
    const std::string& path, const std::function<void(std::uint64_t done, std::uint64_t total)>& progress) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw Error("The file '" + path + "' cannot be read");
  const std::uint64_t total = std::filesystem::file_size(path);
  store::Cursor rows(database_, "\\Memory\\" + name_);
  rows.open();
  std::optional<std::vector<std::size_t>> places;
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
