#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "reports/PageRows.h"
#include "reports/Pages.h"
#include "reports/xlsx/SheetColumns.h"
#include "reports/xlsx/SheetStyles.h"
#include "reports/xlsx/ZipFile.h"

namespace quillon::reports {

// What every part begins with.
constexpr std::string_view kXml = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";

// The sheet of a report as a part of its workbook, written page after page.
class Sheet {
 public:
  Sheet(const PreparedPages& report, ZipFile& zip) : report_(report), zip_(zip), columns_(report) {}

  // Error for more rows than a sheet has.
  void write();
  const SheetStyles& styles() const { return styles_; }
  // The rows of the column header, from 1; 0 when there is none.
  std::size_t headerBegin() const { return headerBegin_; }
  std::size_t headerEnd() const { return headerEnd_; }

 private:
  struct Placed {
    std::size_t column = 0;
    const Element* element = nullptr;
  };

  void findHeader();
  void writeHead();
  void writePage(const Page& page, bool withHeader);
  void writeRow(const Page& page, std::span<const Element* const> row);
  void writeCell(const Page& page, std::span<const Placed> texts);
  void flush(std::size_t least);

  const PreparedPages& report_;
  ZipFile& zip_;
  SheetColumns columns_;
  SheetStyles styles_;
  PageRows rows_;
  std::vector<Placed> placed_;  // of the row
  std::string out_, number_;
  std::size_t row_ = 0, headerBegin_ = 0, headerEnd_ = 0;
  std::size_t headerPage_ = 0;  // the page that the column header is taken from
};

}  // namespace quillon::reports
