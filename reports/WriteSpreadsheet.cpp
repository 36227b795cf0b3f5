#include "reports/WriteSpreadsheet.h"

#include "reports/OutputFile.h"
#include "reports/xlsx/Sheet.h"
#include "reports/xlsx/Workbook.h"
#include "reports/xlsx/ZipFile.h"

namespace quillon::reports {

void writeSpreadsheet(const PreparedPages& report, const std::string& path) {
  OutputFile out(path);
  ZipFile zip(out);
  Sheet sheet(report, zip);
  beginWorkbook(zip);
  zip.beginPart(kSheetPart);
  sheet.write();
  zip.endPart();
  endWorkbook(zip,
              {.title = report.reportTitle,
               .author = report.author,
               .moment = report.moment,
               .headerBegin = sheet.headerBegin(),
               .headerEnd = sheet.headerEnd()},
              sheet.styles());
  out.finish();
}

}  // namespace quillon::reports
