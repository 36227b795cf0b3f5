#pragma once

#include <string>
#include <string_view>
#include <vector>

// How bytes that a mail server or a link may not carry are written. Lines end with CRLF.
namespace quillon::reports {

// Without line ends.
std::string base64(std::string_view bytes);
// In lines of 76 characters, each ended.
std::string base64Lines(std::string_view bytes);
// Of a text whose lines end with LF or CRLF: readable where it is ASCII, no line longer than 76.
std::string quotedPrintable(std::string_view text);
// Letters, digits and "-._~" stay, and what `kept` lists.
std::string percentEncoded(std::string_view bytes, std::string_view kept);

// A header's text on as many lines as it takes: as it is when it is plain and short, in encoded words otherwise. No
// control characters are left.
std::string headerText(std::string_view text);
// A person's name before an address.
std::string headerName(std::string_view name);
// A parameter of a header, on lines of its own: "; filename=..."
std::string headerParameter(std::string_view name, std::string_view value);
// Addresses, one a line.
std::string headerList(const std::vector<std::string>& addresses);

}  // namespace quillon::reports
