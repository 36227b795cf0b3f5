#include "reports/TableFile.h"

#include <algorithm>

#include "base/Errors.h"
#include "base/Text.h"
#include "reports/xlsx/Sheet.h"
#include "reports/xlsx/SheetColumns.h"
#include "reports/xlsx/SheetStyles.h"
#include "reports/xlsx/SheetText.h"
#include "reports/xlsx/Workbook.h"
#include "reports/xlsx/ZipFile.h"

namespace quillon::reports {
namespace {

using store::Value;

constexpr std::size_t kBuffer = 1 << 16;
constexpr std::size_t kNarrowest = 14;  // characters
constexpr std::uint32_t kMostRows = 1'048'576;

bool isWorkbook(std::string_view path) {
  constexpr std::string_view kExtension = ".xlsx";
  return path.size() > kExtension.size() && equalFolded(path.substr(path.size() - kExtension.size()), kExtension);
}

std::string cellOf(const Value& value) {
  if (value.isNull()) return {};
  std::string text = value.toText();
  if (text.find_first_of("\t\r\n\"") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? "\"\"" : std::string(1, c);
  return quoted + "\"";
}

}  // namespace

struct TableFile::Book {
  explicit Book(OutputFile& file) : zip(file) {}
  ZipFile zip;
  SheetStyles styles;
};

TableFile::TableFile(const std::string& path, std::string title, std::vector<std::string> columns)
    : file_(path), title_(std::move(title)) {
  if (isWorkbook(path)) {
    book_ = std::make_unique<Book>(file_);
    beginWorkbook(book_->zip);
    book_->zip.beginPart(kSheetPart);
    out_ = kXml;
    out_ +=
        "<worksheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\"><sheetViews><sheetView "
        "workbookViewId=\"0\"><pane ySplit=\"1\" topLeftCell=\"A2\" activePane=\"bottomLeft\" state=\"frozen\"/>"
        "</sheetView></sheetViews><sheetFormatPr defaultRowHeight=\"12.75\"/><cols>";
    for (const std::string& column : columns) {
      names_.push_back(columnName(names_.size()));
      const std::string number = std::to_string(names_.size());
      out_ += "<col min=\"" + number + "\" max=\"" + number + "\" width=\"" +
              std::to_string(std::max(kNarrowest, column.size() + 2)) + "\" customWidth=\"1\"/>";
    }
    out_ += "</cols><sheetData>";
  }
  add(std::vector<Value>(columns.begin(), columns.end()));
}

TableFile::~TableFile() = default;

void TableFile::add(std::span<const Value> row) {
  ++row_;
  book_ ? addCells(row) : addText(row);
  flush(kBuffer);
}

void TableFile::addText(std::span<const Value> row) {
  for (std::size_t i = 0; i < row.size(); ++i) (out_ += i > 0 ? "\t" : "") += cellOf(row[i]);
  out_ += "\r\n";
}

void TableFile::addCells(std::span<const Value> row) {
  if (row_ > kMostRows)
    throw Error(
        "There are more rows than a spreadsheet can have, which is 1,048,576...\rSelect less of them, or export them "
        "to a text file");
  const std::string number = std::to_string(row_);
  out_ += "<row r=\"" + number + "\">";
  for (std::size_t i = 0; i < row.size(); ++i) {
    if (row[i].isNull()) continue;
    const std::string text = row[i].toText();
    const CellNumber cell = cellNumber(row[i], text);
    const Style style = {.face = row_ == 1 ? Face::bold : Face::regular,
                         .align = row[i].isNumber() ? Align::right : Align::left,
                         .size = 100};
    out_ += "<c r=\"" + names_[i] + number + "\" s=\"" + std::to_string(book_->styles.numberOf(style, cell.format));
    if (cell.digits.empty()) {
      out_ += "\" t=\"inlineStr\"><is><t xml:space=\"preserve\">";
      appendSheetText(out_, text);
      out_ += "</t></is></c>";
    } else {
      out_ += "\"><v>" + cell.digits + "</v></c>";
    }
  }
  out_ += "</row>";
}

void TableFile::flush(std::size_t least) {
  if (out_.size() <= least) return;
  book_ ? book_->zip.write(out_) : file_.write(out_);
  out_.clear();
}

void TableFile::finish() {
  if (book_) out_ += "</sheetData></worksheet>";
  flush(0);
  if (book_) {
    book_->zip.endPart();
    endWorkbook(book_->zip, {.title = title_, .headerBegin = 1, .headerEnd = 1}, book_->styles);
  }
  file_.finish();
}

}  // namespace quillon::reports
