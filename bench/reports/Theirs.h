#pragma once

#include <string>
#include <vector>

#include "reports/Fonts.h"
#include "reports/Pages.h"

namespace quillon::bench {

// The same texts and lines in the same fonts, embedded, by libharu. It is given where each text begins.
void writeTheirPdf(const reports::PreparedPages& pages, const std::vector<reports::Pen>& pens, const std::string& path);

}  // namespace quillon::bench
