#pragma once

#include <string>
#include <string_view>

namespace quillon::reports {

// Appends text to XML, any text: what XML or a sheet gives a meaning is written so that it has none, what XML cannot
// hold becomes U+FFFD, and what is longer than a cell is cut, with "…".
void appendSheetText(std::string& out, std::string_view text);

// A name that a sheet may have, as near to `title` as can be.
std::string sheetName(std::string_view title);

}  // namespace quillon::reports
