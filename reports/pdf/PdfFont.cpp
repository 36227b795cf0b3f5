#include "reports/pdf/PdfFont.h"

#include <hb.h>

#include <algorithm>
#include <cmath>

#include "base/Text.h"

namespace quillon::reports {
namespace {

constexpr std::size_t kMostCodes = 65536;
constexpr std::size_t kLongestString = 8000;  // in glyphs; readers need not take strings beyond 32,767 bytes

}  // namespace

PdfFont::PdfFont(const Font& font) : font_(font) {
  hb_blob_t* blob = hb_blob_create(font.bytes().data(), static_cast<unsigned>(font.bytes().size()),
                                   HB_MEMORY_MODE_READONLY, nullptr, nullptr);
  hb_face_t* face = hb_face_create(blob, 0);
  glyphs_ = hb_face_get_glyph_count(face);
  hb_face_destroy(face);
  hb_blob_destroy(blob);
  codes_.resize(glyphs_);
}

const PdfFont::Code& PdfFont::define(std::size_t number, const Glyph& glyph, Meaning meaning) {
  Code& code = codes_[number];
  code.meaning = meaning, code.glyph = glyph.id, code.advance = glyph.advance;
  for (const unsigned byte : {static_cast<unsigned>(number >> 8), static_cast<unsigned>(number & 0xFF)}) {
    if (byte == '(' || byte == ')' || byte == '\\' || byte == '\r') code.bytes[code.size++] = '\\';
    code.bytes[code.size++] = byte == '\r' ? 'r' : static_cast<char>(byte);
  }
  used_ = true;
  return code;
}

const PdfFont::Code& PdfFont::codeOf(const Glyph& glyph, Meaning meaning) {
  const std::size_t own = std::min<std::size_t>(glyph.id, glyphs_ - 1);
  if (own != 0) {
    if (codes_[own].size == 0) return define(own, glyph, meaning);
    if (codes_[own].meaning == meaning) return codes_[own];
  }
  const std::uint64_t key = std::uint64_t{glyph.id} << 32 | meaning;
  const auto found = further_.find(key);
  if (found != further_.end()) return codes_[found->second];
  if (codes_.size() == kMostCodes) return codes_[own].size > 0 ? codes_[own] : define(own, glyph, meaning);
  codes_.emplace_back();
  further_.emplace(key, static_cast<std::uint16_t>(codes_.size() - 1));
  return define(codes_.size() - 1, glyph, meaning);
}

PdfFont::Meaning PdfFont::meaningOf(std::string_view text) {
  std::size_t at = 0;
  const char32_t c = text.empty() ? U'\uFFFD' : nextCodePoint(text, at);
  if (at == text.size()) return c == 0 ? U'\uFFFD' : c;
  const auto [found, fresh] = textNumbers_.emplace(text, kTexts + static_cast<Meaning>(texts_.size()));
  if (fresh) texts_.emplace_back(text);
  return found->second;
}

void PdfFont::appendMeaning(std::string& out, Meaning meaning) const {
  if (meaning < kTexts) return appendUtf16(out, meaning);
  const std::string& text = texts_[meaning - kTexts];
  for (std::size_t at = 0; at < text.size();) appendUtf16(out, nextCodePoint(text, at));
}

// In the middle of a string: a glyph that stands beside the pen, or after which the pen goes elsewhere than the code
// has it go.
void PdfFont::showApart(const Glyph& glyph, const Code& code, int size, std::string& out) const {
  const auto units = [this](int number, int ofSize) { return std::lround(number * 1.0 * ofSize / font_.unitsPerEm()); };
  constexpr int kThousand = 1000;  // of the size, in which a string's glyphs are moved to the left
  out += ")Tj ";
  if (glyph.above != 0) appendNumber(out, units(glyph.above, size)), out += " Ts ";
  out += '[';
  appendNumber(out, -units(glyph.right, kThousand));
  (out += '(').append(code.bytes, code.size) += ')';
  appendNumber(out, units(glyph.right + code.advance - glyph.advance, kThousand));
  out += "]TJ ";
  if (glyph.above != 0) out += "0 Ts ";
  out += '(';
}

// Glyphs that draw the same characters stand one after the other; a code tells the text of one glyph, so the text of
// several is told beside them.
void PdfFont::show(std::string_view text, const std::vector<Glyph>& glyphs, int size, std::string& out) {
  if (glyphs.empty()) return;
  const bool backwards = glyphs.front().text > glyphs.back().text;
  out += '(';
  std::size_t begun = 0;
  for (std::size_t i = 0, end = 0; i < glyphs.size(); i = end) {
    const std::uint32_t from = glyphs[i].text;
    for (end = i + 1; end < glyphs.size() && glyphs[end].text == from;) ++end;
    const std::size_t before = backwards ? i - 1 : end;  // the glyph of the characters that follow in the text
    const std::size_t to = before < glyphs.size() ? glyphs[before].text : text.size();
    const Meaning meaning = meaningOf(text.substr(from, to > from ? to - from : 0));
    if (end - i > 1) {
      out += ")Tj/Span<</ActualText<FEFF";
      appendMeaning(out, meaning);
      out += ">>>BDC(";
    } else if (i - begun >= kLongestString) {
      out += ")Tj(";
      begun = i;
    }
    for (std::size_t k = i; k < end; ++k) {
      const Code& code = codeOf(glyphs[k], meaning);
      if (glyphs[k].right != 0 || glyphs[k].above != 0 || glyphs[k].advance != code.advance)
        showApart(glyphs[k], code, size, out);
      else
        out.append(code.bytes, code.size);
    }
    if (end - i > 1) out += ")Tj EMC(";
  }
  out += ")Tj\n";
}

}  // namespace quillon::reports
