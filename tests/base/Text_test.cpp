#include "base/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

namespace quillon {
namespace {

std::string encoded(unsigned code) {
  const auto tail = [code](int shift) { return static_cast<char>(0x80 | ((code >> shift) & 0x3F)); };
  if (code < 0x80) return {static_cast<char>(code)};
  if (code < 0x800) return {static_cast<char>(0xC0 | (code >> 6)), tail(0)};
  if (code < 0x10000) return {static_cast<char>(0xE0 | (code >> 12)), tail(6), tail(0)};
  return {static_cast<char>(0xF0 | (code >> 18)), tail(12), tail(6), tail(0)};
}

bool isSurrogate(unsigned code) { return code >= 0xD800 && code <= 0xDFFF; }

// Letters whose case is awkward beside plain ones, marks between them, and pieces of broken characters.
std::string anyText(std::mt19937& random) {
  // Of the empty one its NUL is taken.
  static constexpr const char* kPieces[] = {
      "",       "a",        "A",        "k",          "K",          "s",           "S",      "z",      "Z",
      "[",      "_",        "0",        " ",          "\u212A",     "\u017F",      "\u00E9", "\u00C9", "\u00DF",
      "\u1E9E", "\u0130",   "\u0131",   "\u03A3",     "\u03C2",     "\u03C3",      "\u0416", "\u0436", "\u13A0",
      "\uAB70", "\uFFFD",   "\uFF21",   "\U00010400", "\U00010428", "\U0001F600",  "\x80",   "\xBF",   "\xC3",
      "\xE2",   "\xE2\x84", "\xF0\x90", "\xFF",       "\xC0\xAF",   "\xED\xA0\x80"};
  std::string text;
  for (auto size = random() % 6; size > 0; --size) {
    const char* piece = kPieces[random() % std::size(kPieces)];
    text.append(piece, std::max<std::size_t>(std::strlen(piece), 1));
  }
  return text;
}

int sign(int value) { return (value > 0) - (value < 0); }

// The well-formed sequences as ranges for each byte.
bool wellFormed(const std::string& bytes) {
  struct Form {
    unsigned char range[4][2];
    std::size_t size;
  };
  static constexpr Form kForms[] = {
      {{{0x00, 0x7F}}, 1},
      {{{0xC2, 0xDF}, {0x80, 0xBF}}, 2},
      {{{0xE0, 0xE0}, {0xA0, 0xBF}, {0x80, 0xBF}}, 3},
      {{{0xE1, 0xEC}, {0x80, 0xBF}, {0x80, 0xBF}}, 3},
      {{{0xED, 0xED}, {0x80, 0x9F}, {0x80, 0xBF}}, 3},
      {{{0xEE, 0xEF}, {0x80, 0xBF}, {0x80, 0xBF}}, 3},
      {{{0xF0, 0xF0}, {0x90, 0xBF}, {0x80, 0xBF}, {0x80, 0xBF}}, 4},
      {{{0xF1, 0xF3}, {0x80, 0xBF}, {0x80, 0xBF}, {0x80, 0xBF}}, 4},
      {{{0xF4, 0xF4}, {0x80, 0x8F}, {0x80, 0xBF}, {0x80, 0xBF}}, 4},
  };
  for (std::size_t at = 0; at < bytes.size();) {
    std::size_t taken = 0;
    for (const Form& form : kForms) {
      bool fits = at + form.size <= bytes.size();
      for (std::size_t i = 0; fits && i < form.size; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[at + i]);
        fits = byte >= form.range[i][0] && byte <= form.range[i][1];
      }
      if (fits) taken = form.size;
    }
    if (taken == 0) return false;
    at += taken;
  }
  return true;
}

TEST(Text, ValidityAgreesWithTheTableOfForms) {
  std::mt19937 random(1);
  const unsigned char edges[] = {0x00, 0x41, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xC1, 0xC2, 0xDF,
                                 0xE0, 0xE1, 0xEC, 0xED, 0xEE, 0xEF, 0xF0, 0xF1, 0xF3, 0xF4, 0xF5, 0xFF};
  for (int i = 0; i < 500000; ++i) {
    std::string bytes;
    for (auto size = random() % 6; size > 0; --size) {
      const bool tail = !bytes.empty() && random() % 3 != 0;
      bytes += static_cast<char>(tail ? 0x80 + random() % 0x40 : edges[random() % std::size(edges)]);
    }
    ASSERT_EQ(isValidUtf8(bytes), wellFormed(bytes)) << testing::PrintToString(bytes);
  }
}

TEST(Text, EveryCharacterIsOneAndStaysOneInEitherCase) {
  for (unsigned code = 0; code <= 0x10FFFF; ++code) {
    if (isSurrogate(code)) continue;
    const std::string text = encoded(code), folded = foldCase(text);
    const bool holds = isValidUtf8(text) && lengthInCharacters(text) == 1 && isValidUtf8(folded) &&
                       lengthInCharacters(folded) == 1 && foldCase(folded) == folded &&
                       lengthInCharacters(upper(text)) == 1 && lengthInCharacters(lower(text)) == 1 &&
                       equalFolded(text, folded) && compareFolded(text, folded) == 0;
    ASSERT_TRUE(holds) << "U+" << std::hex << code;
  }
}

TEST(Text, FoldedOrderIsTheByteOrderOfTheFoldedTexts) {
  std::mt19937 random(2);
  for (int i = 0; i < 300000; ++i) {
    const std::string a = anyText(random), b = i % 3 == 0 ? foldCase(a) + anyText(random) : anyText(random);
    const std::string foldedA = foldCase(a), foldedB = foldCase(b);
    ASSERT_EQ(foldCase(foldedA), foldedA) << testing::PrintToString(a);
    ASSERT_EQ(sign(compareFolded(a, b)), sign(foldedA.compare(foldedB)))
        << testing::PrintToString(a) << " and " << testing::PrintToString(b);
    ASSERT_EQ(equalFolded(a, b), foldedA == foldedB)
        << testing::PrintToString(a) << " and " << testing::PrintToString(b);
  }
}

TEST(Text, FirstCharactersAreAFoldedPrefix) {
  std::mt19937 random(3);
  for (int i = 0; i < 100000; ++i) {
    const std::string text = anyText(random);
    const std::size_t length = lengthInCharacters(text);
    ASSERT_EQ(lengthInCharacters(foldCase(text)), length) << testing::PrintToString(text);
    for (std::size_t count = 0; count <= length + 1; ++count) {
      const std::string_view first = firstCharacters(text, count);
      ASSERT_EQ(lengthInCharacters(first), std::min(count, length)) << testing::PrintToString(text);
      ASSERT_TRUE(text.starts_with(first));
      ASSERT_TRUE(startsWithFolded(text, foldCase(first))) << testing::PrintToString(text);
      ASSERT_FALSE(startsWithFolded(first, text + "x")) << testing::PrintToString(text);
    }
  }
}

TEST(Text, KnownFoldings) {
  const struct {
    const char *a, *b;
    bool equal;
  } cases[] = {{"Cash", "cASH", true},
               {"\u00C9t\u00E9", "\u00E9T\u00C9", true},
               {"\u212Aelvin", "kelvin", true},
               {"\u03A3\u03C2", "\u03C3\u03C3", true},
               {"\u1E9E", "\u00DF", true},
               {"stra\u00DFe", "strasse", false},
               {"\u0130", "i", false},
               {"\u0131", "I", false},
               {"[", "{", false},
               {"@", "`", false},
               {"\xC3", "\xE3", false},
               {"", "", true}};
  for (const auto& c : cases) EXPECT_EQ(equalFolded(c.a, c.b), c.equal) << c.a << " and " << c.b;
  EXPECT_LT(compareFolded("a_", "Aa"), 0) << "letters stand as small ones, behind the underscore";
  EXPECT_LT(compareFolded("ab", "ABC"), 0);
  EXPECT_FALSE(startsWithFolded("ab", "abc"));
  EXPECT_FALSE(startsWithFolded("\u00E9", "\xC3")) << "half a character is not its beginning";
}

TEST(Text, UpperAndLower) {
  EXPECT_EQ(upper("az[{\u00E9\u0436\u00DF\xFF"), "AZ[{\u00C9\u0416\u00DF\xFF");
  EXPECT_EQ(lower("AZ[{\u00C9\u0416\u03A3\xFF"), "az[{\u00E9\u0436\u03C3\xFF");
}

TEST(Text, LengthCountsBadBytesOneByOne) {
  EXPECT_EQ(lengthInCharacters("\xE2\x84"), 2U);
  EXPECT_EQ(lengthInCharacters("\xF0\x9F\x98\x80"), 1U);
  EXPECT_EQ(lengthInCharacters("\xED\xA0\x80"), 3U);
  EXPECT_EQ(firstCharacters("a\u00E9b", 2), "a\u00E9");
}

TEST(Text, TrimTakesBothEnds) {
  EXPECT_EQ(trim(" \t a b\r\n "), "a b");
  EXPECT_EQ(trim(" \n"), "");
  EXPECT_EQ(trim(""), "");
  EXPECT_EQ(trim("\u00E9 "), "\u00E9");
}

}  // namespace
}  // namespace quillon
