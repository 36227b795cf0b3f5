#pragma once

#include <cstddef>
#include <string>

namespace quillon::reports {

class SheetStyles;
class ZipFile;

// The name of a workbook's only sheet as a part of the archive.
inline constexpr const char* kSheetPart = "xl/worksheets/sheet1.xml";

// What a workbook says of its sheet.
struct Workbook {
  std::string title, author = {};
  std::string moment = {};                     // "20260305120000"; empty: not told
  std::size_t headerBegin = 0, headerEnd = 0;  // the rows that stand on each printed page, from 1; 0: none
};

// The parts before the sheet, and those behind it.
void beginWorkbook(ZipFile& zip);
void endWorkbook(ZipFile& zip, const Workbook& workbook, const SheetStyles& styles);

}  // namespace quillon::reports
