#pragma once

#include <cstddef>
#include <string_view>

namespace quillon::reports {

// The next e-mail address in a text from `at` on, a view into it, empty when there is none; `at` then stands behind it.
// Finds what people write in fields for addresses: letters, digits and . _ - + of ASCII, and a domain with a point.
std::string_view nextEmailAddress(std::string_view text, std::size_t& at);

}  // namespace quillon::reports
