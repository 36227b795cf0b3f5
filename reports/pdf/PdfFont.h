#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "reports/Fonts.h"
#include "reports/pdf/PdfFile.h"

namespace quillon::reports {

// One face in one PDF: the codes by which its glyphs are shown, and at the end the font with just these glyphs.
//
// A code stands for a glyph and for the text that it draws, since readers search and copy by codes. It is the glyph's
// own number where the glyph draws one text only, as nearly all do; further ones follow behind the glyphs. The box of
// characters that the font lacks is the one glyph that draws many.
class PdfFont {
 public:
  explicit PdfFont(const Font& font);

  // Appends what shows `glyphs`, which are `text` shaped, in letters of `size`, in the units of the page.
  void show(std::string_view text, const std::vector<Glyph>& glyphs, int size, std::string& out);
  bool used() const { return used_; }
  // Writes the font under the number that pages refer to.
  void write(PdfFile& file, int number) const;

 private:
  // A character, or from kTexts on one of texts_.
  using Meaning = std::uint32_t;
  static constexpr Meaning kTexts = 0x80000000;
  struct Code {
    Meaning meaning = 0;
    std::uint16_t glyph = 0, advance = 0;
    std::uint8_t size = 0;  // of `bytes`; 0 is not used yet
    char bytes[4] = {};     // as it stands in a string
  };

  const Code& codeOf(const Glyph& glyph, Meaning meaning);
  const Code& define(std::size_t number, const Glyph& glyph, Meaning meaning);
  Meaning meaningOf(std::string_view text);
  void appendMeaning(std::string& out, Meaning meaning) const;
  void showApart(const Glyph& glyph, const Code& code, int size, std::string& out) const;

  std::string name() const;
  std::string descriptor(int program) const;
  std::string subset() const;
  std::string widths() const;
  std::string textMap() const;
  std::string glyphMap() const;

  const Font& font_;
  std::size_t glyphs_;  // how many the face has
  std::vector<Code> codes_;
  bool used_ = false;
  std::unordered_map<std::uint64_t, std::uint16_t> further_;  // by glyph and meaning
  std::vector<std::string> texts_;
  std::unordered_map<std::string, Meaning> textNumbers_;
};

}  // namespace quillon::reports
