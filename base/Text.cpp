#include "base/Text.h"

#include <unicode/uchar.h>

namespace quillon {

namespace {

constexpr char32_t kBadByte = 0xFFFFFFFF;

struct Character {
  char32_t code = kBadByte;
  std::size_t size = 1;
};

bool isAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }

char foldAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

char upperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }

// The character at the front of `text`, which is not empty.
Character decode(std::string_view text) {
  const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return {lead, 1};
  if (lead < 0xC2 || lead > 0xF4) return {};
  const std::size_t size = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (text.size() < size) return {};
  char32_t code = lead & (0xFFU >> (size + 1));
  for (std::size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return {};
    code = code << 6 | (byte(i) & 0x3FU);
  }
  constexpr char32_t kLeastOfSize[] = {0, 0, 0x80, 0x800, 0x10000};
  if (code < kLeastOfSize[size] || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return {};
  return {code, size};
}

void append(std::string& text, char32_t code) {
  const auto tail = [code](int shift) { return static_cast<char>(0x80 | (code >> shift & 0x3F)); };
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += {static_cast<char>(0xC0 | code >> 6), tail(0)};
  } else if (code < 0x10000) {
    text += {static_cast<char>(0xE0 | code >> 12), tail(6), tail(0)};
  } else {
    text += {static_cast<char>(0xF0 | code >> 18), tail(12), tail(6), tail(0)};
  }
}

char32_t foldCode(char32_t code) {
  return static_cast<char32_t>(u_foldCase(static_cast<UChar32>(code), U_FOLD_CASE_DEFAULT));
}

char32_t upperCode(char32_t code) { return static_cast<char32_t>(u_toupper(static_cast<UChar32>(code))); }

char32_t lowerCode(char32_t code) { return static_cast<char32_t>(u_tolower(static_cast<UChar32>(code))); }

template <class AsciiMap, class CodeMap>
std::string mapped(std::string_view text, AsciiMap asciiMap, CodeMap codeMap) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    if (isAscii(text[at])) {
      result += asciiMap(text[at++]);
      continue;
    }
    const Character character = decode(text.substr(at));
    if (character.code == kBadByte) {
      result += text[at];
    } else {
      append(result, codeMap(character.code));
    }
    at += character.size;
  }
  return result;
}

// Where two texts part, case apart: what is left of both.
struct Parting {
  std::string_view a, b;
};

Parting walkFolded(std::string_view a, std::string_view b) {
  while (!a.empty() && !b.empty()) {
    if (isAscii(a.front()) && isAscii(b.front())) {
      if (foldAscii(a.front()) != foldAscii(b.front())) break;
      a.remove_prefix(1);
      b.remove_prefix(1);
      continue;
    }
    const Character left = decode(a);
    const Character right = decode(b);
    const bool bad = left.code == kBadByte || right.code == kBadByte;
    if (bad ? left.code != right.code || a.front() != b.front() : foldCode(left.code) != foldCode(right.code)) break;
    a.remove_prefix(left.size);
    b.remove_prefix(right.size);
  }
  return {a, b};
}

}  // namespace

bool isValidUtf8(std::string_view text) {
  while (!text.empty()) {
    const Character character = decode(text);
    if (character.code == kBadByte) return false;
    text.remove_prefix(character.size);
  }
  return true;
}

char32_t nextCodePoint(std::string_view text, std::size_t& at) {
  const Character character = decode(text.substr(at));
  at += character.size;
  return character.code == kBadByte ? 0xFFFD : character.code;
}

std::size_t lengthInCharacters(std::string_view text) {
  std::size_t count = 0;
  for (; !text.empty(); ++count) text.remove_prefix(decode(text).size);
  return count;
}

std::string_view firstCharacters(std::string_view text, std::size_t count) {
  std::size_t size = 0;
  for (; count > 0 && size < text.size(); --count) size += decode(text.substr(size)).size;
  return text.substr(0, size);
}

std::string foldCase(std::string_view text) { return mapped(text, foldAscii, foldCode); }

int compareFolded(std::string_view a, std::string_view b) {
  const Parting rest = walkFolded(a, b);
  if (rest.a.empty() || rest.b.empty()) return static_cast<int>(!rest.a.empty()) - static_cast<int>(!rest.b.empty());
  if (isAscii(rest.a.front()) && isAscii(rest.b.front())) return foldAscii(rest.a.front()) - foldAscii(rest.b.front());
  const Character left = decode(rest.a);
  const Character right = decode(rest.b);
  if (left.code != kBadByte && right.code != kBadByte) return foldCode(left.code) < foldCode(right.code) ? -1 : 1;
  // A bad byte may begin like a good character, so the order is only known further on.
  return foldCase(rest.a).compare(foldCase(rest.b));
}

bool equalFolded(std::string_view a, std::string_view b) {
  const Parting rest = walkFolded(a, b);
  return rest.a.empty() && rest.b.empty();
}

bool startsWithFolded(std::string_view text, std::string_view prefix) { return walkFolded(text, prefix).b.empty(); }

std::string upper(std::string_view text) { return mapped(text, upperAscii, upperCode); }

std::string lower(std::string_view text) { return mapped(text, foldAscii, lowerCode); }

std::string_view trim(std::string_view text) {
  const auto blank = [](char c) { return static_cast<unsigned char>(c) <= ' '; };
  while (!text.empty() && blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && blank(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace quillon
