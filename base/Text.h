#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Text is UTF-8. A character is a code point; a byte that belongs to no well-formed character counts as one character,
// folds to itself and is never an error. Case is that of Unicode's simple, one to one mappings, the same in every
// country, so that two desktops always agree on the order of an index.
namespace quillon {

// No overlong forms, no surrogates, nothing above U+10FFFF.
bool isValidUtf8(std::string_view text);
std::size_t lengthInCharacters(std::string_view text);
// The code point that begins at `at`, which then stands behind it; U+FFFD for a byte of none.
char32_t nextCodePoint(std::string_view text, std::size_t& at);
// The first `count` characters, or all when there are fewer; a view into `text`.
std::string_view firstCharacters(std::string_view text, std::size_t count);

// The form under which texts that differ only in case are the same bytes; folding it again changes nothing.
std::string foldCase(std::string_view text);
// Negative, zero or positive: the byte order of the folded texts, which is also the order of their code points.
int compareFolded(std::string_view a, std::string_view b);
bool equalFolded(std::string_view a, std::string_view b);
// Whether `text` begins with the characters of `prefix`, case apart.
bool startsWithFolded(std::string_view text, std::string_view prefix);

std::string upper(std::string_view text);
std::string lower(std::string_view text);

// Without spaces and control characters (up to U+0020) at both ends; a view into `text`.
std::string_view trim(std::string_view text);

}  // namespace quillon
