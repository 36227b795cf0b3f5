#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "store/Value.h"

namespace quillon::store {
struct FieldDef;
}

// The text of values and rows outside the program: lines of cells with tabs between, and JSON.
//
// Numbers, money and quantities are told in the shortest form that is exact, days as YYYY-MM-DD, truths as true and
// false, blobs as hexadecimal digits.
namespace quillon::apps {

// What some programs put before a text in a file to tell that it is UTF-8.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// A cell: null is \N; a tab, a line end and a backslash inside a text are \t, \r, \n and \\.
void appendCell(std::string& line, const store::Value& value);
void appendEscaped(std::string& line, std::string_view text);

// The cells of a line without its line end, still escaped; they look into the line.
std::vector<std::string_view> cellsOf(std::string_view line);
// Error for a backslash that begins nothing known.
std::string unescaped(std::string_view cell);
// What appendCell made of a value of the field. An empty cell is null but for texts, memos and blobs. Error that says
// what is needed.
store::Value valueOfCell(std::string_view cell, const store::FieldDef& field);

// As JSON: null, true, a number, or a text in quotes.
void appendJson(std::string& out, const store::Value& value);
void appendJsonText(std::string& out, std::string_view text);  // what is not UTF-8 becomes U+FFFD

}  // namespace quillon::apps
