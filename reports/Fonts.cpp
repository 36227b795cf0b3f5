#include "reports/Fonts.h"

#include <hb-ot.h>
#include <hb.h>

#include <array>
#include <fstream>
#include <iterator>

#include "base/Errors.h"
#include "base/Text.h"

namespace quillon::reports {
namespace {

constexpr std::array<const char*, 4> kFiles = {"LiberationSans-Regular.ttf", "LiberationSans-Bold.ttf",
                                               "LiberationSans-Italic.ttf", "LiberationSans-BoldItalic.ttf"};
constexpr std::array<const char*, 3> kFolders = {"/usr/share/fonts/truetype/liberation2/",
                                                 "/usr/share/fonts/truetype/liberation/",
                                                 "/usr/share/fonts/liberation-sans/"};
constexpr char32_t kBox = U'\u25A1';
// Latin, Greek and Cyrillic letters and the marks of print stand one after the other and join nowhere.
constexpr char32_t kSimpleEnd = 0x2200, kMarks = 0x300, kMarksEnd = 0x370, kOtherScripts = 0x530,
                   kOtherScriptsEnd = 0x1E00, kDirections = 0x200B, kDirectionsEnd = 0x2010;

bool isSimple(char32_t c) {
  return c < kMarks || (c >= kMarksEnd && c < 0x483) || (c > 0x489 && c < kOtherScripts) ||
         (c >= kOtherScriptsEnd && c < kDirections) || (c >= kDirectionsEnd && c < kSimpleEnd);
}

}  // namespace

struct Font::Shaper {
  hb_blob_t* blob = nullptr;
  hb_face_t* face = nullptr;
  hb_font_t* font = nullptr;
  ~Shaper() {
    hb_font_destroy(font);
    hb_face_destroy(face);
    hb_blob_destroy(blob);
  }
};

Font::Font(Face face) : shaper_(std::make_unique<Shaper>()) {
  const char* name = kFiles[static_cast<std::size_t>(face)];
  for (const char* folder : kFolders) {
    std::ifstream file(std::string(folder) + name, std::ios::binary);
    if (!file) continue;
    path_ = std::string(folder) + name;
    bytes_.assign(std::istreambuf_iterator<char>(file), {});
    break;
  }
  if (bytes_.empty()) throw Error("The font of reports is not installed...\rInstall the package 'fonts-liberation2'");
  shaper_->blob =
      hb_blob_create(bytes_.data(), static_cast<unsigned>(bytes_.size()), HB_MEMORY_MODE_READONLY, nullptr, nullptr);
  shaper_->face = hb_face_create(shaper_->blob, 0);
  shaper_->font = hb_font_create(shaper_->face);
  unitsPerEm_ = static_cast<int>(hb_face_get_upem(shaper_->face));
  hb_font_extents_t extents = {};
  hb_font_get_h_extents(shaper_->font, &extents);
  ascent_ = extents.ascender, descent_ = -extents.descender;
  // The faces' own glyph for what they lack is an empty one in some.
  const auto glyphOf = [this](char32_t c) {
    hb_codepoint_t id = 0;
    if (!hb_font_get_nominal_glyph(shaper_->font, c, &id)) return box_;
    return Glyph{static_cast<std::uint16_t>(id),
                 static_cast<std::uint16_t>(hb_font_get_glyph_h_advance(shaper_->font, id))};
  };
  box_ = glyphOf(kBox);
  simple_.resize(kSimpleEnd);
  for (char32_t c = 0; c < kSimpleEnd; ++c) simple_[c] = glyphOf(c);
}

Font::~Font() = default;

const Font& Font::of(Face face) {
  static const std::array<Font, 4> all = {Font(Face::regular), Font(Face::bold), Font(Face::italic),
                                          Font(Face::boldItalic)};
  return all[static_cast<std::size_t>(face)];
}

void Font::shape(std::string_view text, std::vector<Glyph>& glyphs) const {
  glyphs.clear();
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t begin = at;
    const char32_t c = nextCodePoint(text, at);
    if (!isSimple(c)) {
      shapeBy(text, glyphs);
      return;
    }
    glyphs.push_back(simple_[c]);
    glyphs.back().text = static_cast<std::uint32_t>(begin);
  }
}

void Font::shapeBy(std::string_view text, std::vector<Glyph>& glyphs) const {
  static const std::array<hb_feature_t, 2> apart = {{{HB_TAG('k', 'e', 'r', 'n'), 0, 0, HB_FEATURE_GLOBAL_END},
                                                     {HB_TAG('l', 'i', 'g', 'a'), 0, 0, HB_FEATURE_GLOBAL_END}}};
  glyphs.clear();
  hb_buffer_t* buffer = hb_buffer_create();
  hb_buffer_add_utf8(buffer, text.data(), static_cast<int>(text.size()), 0, static_cast<int>(text.size()));
  hb_buffer_guess_segment_properties(buffer);
  hb_shape(shaper_->font, buffer, apart.data(), apart.size());
  unsigned count = 0;
  const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer, &count);
  const hb_glyph_position_t* positions = hb_buffer_get_glyph_positions(buffer, &count);
  for (unsigned i = 0; i < count; ++i) {
    const bool lacks = infos[i].codepoint == 0;
    glyphs.push_back(lacks ? box_
                           : Glyph{.id = static_cast<std::uint16_t>(infos[i].codepoint),
                                   .advance = static_cast<std::uint16_t>(std::max(0, positions[i].x_advance)),
                                   .right = static_cast<std::int16_t>(positions[i].x_offset),
                                   .above = static_cast<std::int16_t>(positions[i].y_offset)});
    glyphs.back().text = infos[i].cluster;
    if (i > 0 && !lacks && infos[i].cluster == infos[i - 1].cluster && positions[i].x_advance == 0 &&
        positions[i].x_offset == 0)
      setOn(glyphs[i - 1], glyphs[i]);
  }
  hb_buffer_destroy(buffer);
}

// A mark that the font has no place for on that letter: in the middle, and not within the letter.
void Font::setOn(const Glyph& letter, Glyph& mark) const {
  constexpr int kGap = 20;  // of an em: the part that stands between them
  hb_glyph_extents_t on = {}, its = {};
  if (letter.advance == 0 || !hb_font_get_glyph_extents(shaper_->font, letter.id, &on) ||
      !hb_font_get_glyph_extents(shaper_->font, mark.id, &its))
    return;
  const int gap = unitsPerEm_ / kGap;
  mark.right = static_cast<std::int16_t>(on.x_bearing + on.width / 2 - letter.advance - its.x_bearing - its.width / 2);
  const int bottom = its.y_bearing + its.height;  // heights go down
  if (bottom > 0)
    mark.above = static_cast<std::int16_t>(std::max(0, on.y_bearing + gap - bottom));
  else if (its.y_bearing <= 0)
    mark.above = static_cast<std::int16_t>(std::min(0, on.y_bearing + on.height - gap - its.y_bearing));
}

double Font::width(std::string_view text, int size) const {
  int units = 0;
  bool simple = true;
  for (std::size_t at = 0; at < text.size() && simple;) {
    const char32_t c = nextCodePoint(text, at);
    simple = isSimple(c);
    if (simple) units += simple_[c].advance;
  }
  if (!simple) {
    std::vector<Glyph> glyphs;
    shapeBy(text, glyphs);
    units = 0;
    for (const Glyph& glyph : glyphs) units += glyph.advance;
  }
  return units * scale(size);
}

Pen penOf(const Element& element, std::string_view text) {
  const bool measured = element.style.align != Align::left;
  return penOf(element, measured ? Font::of(element.style.face).width(text, element.style.size) : 0);
}

Pen penOf(const Element& element, double width) {
  const Font& font = Font::of(element.style.face);
  const double scale = font.scale(element.style.size);
  Pen pen{static_cast<double>(element.box.x), 0};
  if (element.style.align != Align::left) {
    const double room = element.box.width - width;
    pen.x += element.style.align == Align::right ? room : room / 2;
  }
  const double height = (font.ascent() + font.descent()) * scale;
  pen.y = element.box.y + (element.box.height - height) / 2 + font.ascent() * scale;
  return pen;
}

}  // namespace quillon::reports
