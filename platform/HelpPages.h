#pragma once

#include <string>

namespace quillon::platform {

// The manual's page for a help context number (0 is the contents): manual/NNN.html in the folders where an installed
// program and one still in its build folder find it. A number without a page of its own gives the contents.
// Error when there is no manual.
std::string helpPage(const std::string& programFolder, int context);

}  // namespace quillon::platform
