#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "reports/Pages.h"

namespace quillon::reports {

// A drawing of the font, and where the pen goes after it. Measures are in units of the font.
struct Glyph {
  std::uint16_t id = 0;
  std::uint16_t advance = 0;
  std::uint32_t text = 0;             // where the characters that it draws begin in the text, in bytes
  std::int16_t right = 0, above = 0;  // of the pen, where it is drawn: a mark stands on the letter before it
};

// One face of the family that reports are set in. Its measures come from the font's file, so that preview, paper and
// PDF agree. Cannot be changed and lives as long as the process.
class Font {
 public:
  // Error that names the package when the family is not installed.
  static const Font& of(Face face);
  ~Font();

  // From left to right as drawn; replaces what is there. Never fails: what the font lacks is a box.
  void shape(std::string_view text, std::vector<Glyph>& glyphs) const;
  // In 1/1000 inch, at a size in tenths of a point.
  double width(std::string_view text, int size) const;

  const std::string& path() const { return path_; }
  const std::string& bytes() const { return bytes_; }  // of the whole file
  int unitsPerEm() const { return unitsPerEm_; }
  int ascent() const { return ascent_; }    // above the base line, in units
  int descent() const { return descent_; }  // below it, positive
  // 1/1000 inch for one unit at a size in tenths of a point.
  double scale(int size) const { return size * 1000.0 / 720.0 / unitsPerEm_; }

 private:
  explicit Font(Face face);
  void shapeBy(std::string_view text, std::vector<Glyph>& glyphs) const;
  void setOn(const Glyph& letter, Glyph& mark) const;

  struct Shaper;
  std::string path_, bytes_;
  int unitsPerEm_ = 1000, ascent_ = 0, descent_ = 0;
  std::unique_ptr<Shaper> shaper_;
  Glyph box_;                  // of characters that the font does not have
  std::vector<Glyph> simple_;  // by code point, of those that need no shaping
};

// Where the text of an element begins, and its base line, in 1/1000 inch.
struct Pen {
  double x = 0, y = 0;
};
Pen penOf(const Element& element, std::string_view text);
// The same for a text whose width is known.
Pen penOf(const Element& element, double width);

}  // namespace quillon::reports
