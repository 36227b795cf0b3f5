#pragma once

#include <vector>

#include "reports/Pages.h"
#include "reports/pdf/PdfFile.h"

namespace quillon::reports {

// Writes the bookmarks as the contents beside a PDF, closed below the outermost. `pages` has the number of each page's
// object; bookmarks of other pages are left out, and a level without one above it moves up. Gives the number of the
// outline's object, 0 when it would be empty.
int writeOutline(PdfFile& file, const PreparedPages& report, const std::vector<int>& pages);

}  // namespace quillon::reports
