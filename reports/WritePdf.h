#pragma once

#include <string>

#include "reports/Pages.h"

namespace quillon::reports {

// Writes pages as a PDF 1.7: text that can be searched and copied, in fonts that come with it, links for e-mail
// addresses, and bookmarks. The same pages give the same bytes. A picture that is none is left out.
//
// The file appears whole or not at all, and an old one stays until then; Error that names it when it cannot be written.
// Beside the pages it takes memory for one page and some bytes for each.
void writePdf(const PreparedPages& report, const std::string& path);

}  // namespace quillon::reports
