#pragma once

#include <string>

#include "reports/Pages.h"

namespace quillon::reports {

// Writes pages as a workbook of one sheet (.xlsx), its cells by the texts' places: a row for each line of the pages,
// columns by the boxes of the column header and the details. What shows a number or a date is one, with its format.
// The column header stands once, frozen with the title above it; page headers and footers are left out. The same pages
// give the same bytes.
//
// The file appears whole or not at all, and an old one stays until then; Error that names it when it cannot be written,
// and Error for more rows than a sheet has. Takes memory for one page.
void writeSpreadsheet(const PreparedPages& report, const std::string& path);

}  // namespace quillon::reports
