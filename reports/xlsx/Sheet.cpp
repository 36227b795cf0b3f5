#include "reports/xlsx/Sheet.h"

#include <algorithm>
#include <cmath>

#include "base/Errors.h"
#include "reports/xlsx/SheetText.h"

namespace quillon::reports {
namespace {

constexpr std::size_t kMostRows = 1'048'576;
constexpr std::size_t kMostFrozen = 15;  // rows; more would leave a small window nothing to scroll
constexpr std::size_t kBuffer = 1 << 16;
// A column holds its page's width in characters of 7 of 96 pixels an inch, 5 pixels of margins, and a tenth more, since
// programs set a sheet a little wider than paper.
constexpr double kPixels = 0.096, kMargins = 5, kCharacter = 7, kWider = 1.1;

bool isHeader(const Element& element) { return element.part == Part::columnHeader; }
bool isOfSheet(const Element& element) {
  return element.part != Part::pageHeader && element.part != Part::pageFooter && !element.again;
}
// Without what was cut off for want of room on the page.
std::string_view wholeText(const Page& page, const Element& element) {
  if (element.value < 0) return page.textOf(element);
  const store::Value& value = page.values[static_cast<std::size_t>(element.value)];
  return value.kind() == store::Value::Kind::text ? std::string_view(value.asText()) : page.textOf(element);
}
bool isOfSheetAgain(const Element& element) { return isOfSheet(element) && !isHeader(element); }

}  // namespace

void Sheet::findHeader() {
  std::size_t row = 0;
  for (const Page& page : report_.pages) {
    rows_.read(page, isOfSheet);
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      ++row;
      if (std::ranges::none_of(rows_.row(i), [](const Element* element) { return isHeader(*element); })) continue;
      if (headerBegin_ == 0) headerBegin_ = row;
      headerEnd_ = row;
    }
    if (headerEnd_ != 0) return;
    ++headerPage_;
  }
}

void Sheet::write() {
  findHeader();
  writeHead();
  for (std::size_t i = 0; i < report_.pages.size(); ++i) writePage(report_.pages[i], i == headerPage_);
  out_ +=
      "</sheetData><pageMargins left=\"0.5\" right=\"0.5\" top=\"0.5\" bottom=\"0.5\" header=\"0.3\" footer=\"0.3\"/>"
      "<pageSetup fitToHeight=\"0\" paperSize=\"";
  out_ += std::max(report_.width, report_.height) > 11'500 ? "9" : "1";  // A4, letter
  out_ +=
      report_.landscape() ? "\" orientation=\"landscape\"/></worksheet>" : "\" orientation=\"portrait\"/></worksheet>";
  flush(0);
}

void Sheet::writeHead() {
  out_ = kXml;
  out_ +=
      "<worksheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\"><sheetPr><pageSetUpPr "
      "fitToPage=\"1\"/></sheetPr><sheetViews><sheetView workbookViewId=\"0\">";
  if (headerEnd_ > 0 && headerEnd_ <= kMostFrozen) {
    const std::string below = "A" + std::to_string(headerEnd_ + 1);
    out_ += "<pane ySplit=\"" + std::to_string(headerEnd_) + "\" topLeftCell=\"" + below +
            "\" activePane=\"bottomLeft\" state=\"frozen\"/><selection pane=\"bottomLeft\" activeCell=\"" + below +
            "\" sqref=\"" + below + "\"/>";
  }
  out_ += "</sheetView></sheetViews><sheetFormatPr defaultRowHeight=\"12.75\"/><cols>";
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    const double characters = (columns_.width(i) * kPixels * kWider + kMargins) / kCharacter;
    const std::string number = std::to_string(i + 1);
    out_ += "<col min=\"" + number + "\" max=\"" + number + "\" width=\"" +
            std::to_string(std::lround(std::ceil(characters))) + "\" customWidth=\"1\"/>";
  }
  out_ += "</cols><sheetData>";
}

void Sheet::writePage(const Page& page, bool withHeader) {
  rows_.read(page, withHeader ? isOfSheet : isOfSheetAgain);
  for (std::size_t i = 0; i < rows_.size(); ++i) writeRow(page, rows_.row(i));
  flush(kBuffer);
}

void Sheet::flush(std::size_t least) {
  if (out_.size() <= least) return;
  zip_.write(out_);
  out_.clear();
}

// Texts that share a column share a cell.
void Sheet::writeRow(const Page& page, std::span<const Element* const> row) {
  if (++row_ > kMostRows)
    throw Error(
        "The report has more rows than a spreadsheet can have, which is 1,048,576...\rSelect less of it, or export it "
        "to PDF");
  number_ = std::to_string(row_);
  out_ += "<row r=\"";
  out_ += number_;
  out_ += "\">";
  // In the order of columns, which is that of places but for texts that stand across several.
  placed_.clear();
  for (const Element* element : row) placed_.push_back({columns_.of(*element), element});
  std::ranges::stable_sort(placed_, {}, &Placed::column);
  for (std::size_t begin = 0, end = 0; begin < placed_.size(); begin = end) {
    while (end < placed_.size() && placed_[end].column == placed_[begin].column) ++end;
    writeCell(page, std::span(placed_).subspan(begin, end - begin));
  }
  out_ += "</row>";
}

void Sheet::writeCell(const Page& page, std::span<const Placed> texts) {
  const Element& first = *texts.front().element;
  const std::size_t column = texts.front().column;
  const CellNumber number =
      texts.size() == 1 && first.value >= 0 ? cellNumber(page.valueOf(first), page.textOf(first)) : CellNumber();
  Style style = first.style;
  const bool across = first.box.width > 2 * columns_.width(column);
  if (across && style.align == Align::centre) style.align = Align::left;
  out_ += "<c r=\"";
  out_ += columns_.name(column);
  out_ += number_;
  out_ += "\" s=\"";
  out_ += std::to_string(styles_.numberOf(style, number.format));
  if (!number.digits.empty()) {
    out_ += "\"><v>";
    out_ += number.digits;
    out_ += "</v></c>";
    return;
  }
  out_ += "\" t=\"inlineStr\"><is><t xml:space=\"preserve\">";
  if (texts.size() == 1) {
    appendSheetText(out_, wholeText(page, first));
  } else {
    std::string joined;
    for (const Placed& some : texts) (joined += joined.empty() ? "" : " ") += wholeText(page, *some.element);
    appendSheetText(out_, joined);
  }
  out_ += "</t></is></c>";
}

}  // namespace quillon::reports
