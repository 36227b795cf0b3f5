#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillon::reports {

// The e-mail addresses of a text that a person typed: "ann@oak.example; Ben <ben@oak.example>", between commas or
// semicolons; names are left out. Error that names the first one that is no address: none of them can break out of a
// header or a command to a mail server.
std::vector<std::string> addressesIn(std::string_view text);

// A link that has the desktop's mail program write to all of them, none seeing the others. Each text is an address as
// it is on record, or several. Error when they are too many.
std::string mailLink(const std::vector<std::string>& addresses);

}  // namespace quillon::reports
