// How a font stands in a PDF: the glyphs' outlines, their widths, and the text that each code stands for.
#include <hb-ot.h>
#include <hb-subset.h>
#include <hb.h>

#include <array>
#include <memory>
#include <stdexcept>

#include "reports/pdf/PdfFont.h"

namespace quillon::reports {
namespace {

constexpr std::size_t kMostMappings = 100;  // in one block of a text map

template <auto destroy>
struct Destroy {
  template <class T>
  void operator()(T* thing) const {
    destroy(thing);
  }
};
using Blob = std::unique_ptr<hb_blob_t, Destroy<hb_blob_destroy>>;
using FontFace = std::unique_ptr<hb_face_t, Destroy<hb_face_destroy>>;
using SubsetInput = std::unique_ptr<hb_subset_input_t, Destroy<hb_subset_input_destroy>>;

FontFace faceOf(const Font& font) {
  const Blob blob(hb_blob_create(font.bytes().data(), static_cast<unsigned>(font.bytes().size()),
                                 HB_MEMORY_MODE_READONLY, nullptr, nullptr));
  return FontFace(hb_face_create(blob.get(), 0));
}

std::string_view bytesOf(const Blob& blob) {
  unsigned length = 0;
  const char* bytes = hb_blob_get_data(blob.get(), &length);
  return {bytes, length};
}

// A number of two bytes in one of the font's tables; 0 past its end.
int shortAt(std::string_view table, std::size_t at) {
  if (table.size() < at + 2) return 0;
  return static_cast<std::int16_t>(static_cast<unsigned char>(table[at]) << 8 |
                                   static_cast<unsigned char>(table[at + 1]));
}

void appendHex(std::string& out, std::size_t code) { appendUtf16(out, static_cast<char32_t>(code)); }

}  // namespace

// The six letters in front of the name mark a part of a font; they follow from what is in it.
std::string PdfFont::name() const {
  std::uint32_t sum = 2166136261u;
  for (const Code& code : codes_) sum = (sum ^ (code.size == 0 ? 0 : code.glyph + 1u)) * 16777619u;
  std::string name;
  for (int i = 0; i < 6; ++i, sum /= 26) name += static_cast<char>('A' + sum % 26);
  std::array<char, 64> given = {};
  unsigned size = given.size();
  hb_ot_name_get_utf8(faceOf(font_).get(), HB_OT_NAME_ID_POSTSCRIPT_NAME, HB_LANGUAGE_INVALID, &size, given.data());
  return name + "+" + given.data();
}

std::string PdfFont::subset() const {
  const FontFace face = faceOf(font_);
  const SubsetInput input(hb_subset_input_create_or_fail());
  if (!input) throw std::bad_alloc();
  hb_subset_input_set_flags(input.get(),
                            HB_SUBSET_FLAGS_RETAIN_GIDS | HB_SUBSET_FLAGS_NO_HINTING | HB_SUBSET_FLAGS_NOTDEF_OUTLINE);
  hb_set_t* dropped = hb_subset_input_set(input.get(), HB_SUBSET_SETS_DROP_TABLE_TAG);
  for (const char* table : {"GSUB", "GPOS", "GDEF", "name", "OS/2", "post", "cmap", "DSIG", "FFTM"})
    hb_set_add(dropped, hb_tag_from_string(table, -1));
  hb_set_t* glyphs = hb_subset_input_glyph_set(input.get());
  for (const Code& code : codes_)
    if (code.size > 0) hb_set_add(glyphs, code.glyph);
  const FontFace part(hb_subset_or_fail(face.get(), input.get()));
  if (!part) throw std::bad_alloc();
  return std::string(bytesOf(Blob(hb_face_reference_blob(part.get()))));
}

// In thousandths of the font's size, [first [width width ...] first [...]].
std::string PdfFont::widths() const {
  std::string out = "[";
  bool open = false;
  for (std::size_t i = 0; i < codes_.size(); ++i) {
    const bool is = codes_[i].size > 0;
    if (is && !open) appendNumber(out, static_cast<long>(i));
    if (is != open) out += is ? '[' : ']';
    if (is) {
      appendNumber(out, codes_[i].advance * 1000.0 / font_.unitsPerEm());
      out += ' ';
    }
    open = is;
  }
  return out += open ? "]]" : "]";
}

std::string PdfFont::textMap() const {
  std::string out =
      "/CIDInit/ProcSet findresource begin\n12 dict begin\nbegincmap\n"
      "/CIDSystemInfo<</Registry(Adobe)/Ordering(UCS)/Supplement 0>>def\n/CMapName/Adobe-Identity-UCS def\n"
      "/CMapType 2 def\n1 begincodespacerange\n<0000><FFFF>\nendcodespacerange\n";
  std::string block;
  std::size_t count = 0;
  const auto close = [&] {
    if (count > 0) out += std::to_string(count) + " beginbfchar\n" + block + "endbfchar\n";
    block.clear();
    count = 0;
  };
  for (std::size_t i = 0; i < codes_.size(); ++i) {
    if (codes_[i].size == 0) continue;
    if (count == kMostMappings) close();
    ++count;
    appendHex(block += '<', i);
    appendMeaning(block += "><", codes_[i].meaning);
    block += ">\n";
  }
  close();
  return out + "endcmap\nCMapName currentdict/CMap defineresource pop\nend\nend\n";
}

// The glyph of every code, two bytes each.
std::string PdfFont::glyphMap() const {
  std::string out;
  for (const Code& code : codes_) out += {static_cast<char>(code.glyph >> 8), static_cast<char>(code.glyph & 0xFF)};
  return out;
}

std::string PdfFont::descriptor(int program) const {
  const FontFace face = faceOf(font_);
  const Blob head(hb_face_reference_table(face.get(), HB_TAG('h', 'e', 'a', 'd'))),
      os2(hb_face_reference_table(face.get(), HB_TAG('O', 'S', '/', '2'))),
      post(hb_face_reference_table(face.get(), HB_TAG('p', 'o', 's', 't')));
  const auto scaled = [this](int units) { return std::to_string(units * 1000 / font_.unitsPerEm()); };
  std::string box;
  for (const std::size_t at : {36u, 38u, 40u, 42u}) box += scaled(shortAt(bytesOf(head), at)) + " ";
  const bool bold = (shortAt(bytesOf(head), 44) & 1) != 0;
  return "<</Type/FontDescriptor/FontName/" + name() + "/Flags 4/FontBBox[" + box + "]/ItalicAngle " +
         std::to_string(shortAt(bytesOf(post), 4)) + "/Ascent " + scaled(font_.ascent()) + "/Descent " +
         scaled(-font_.descent()) + "/CapHeight " + scaled(shortAt(bytesOf(os2), 88)) + "/StemV " +
         (bold ? "140" : "80") + "/FontFile2 " + reference(program) + ">>";
}

void PdfFont::write(PdfFile& file, int number) const {
  const int inner = file.reserve(), program = file.reserve(), described = file.reserve(), text = file.reserve();
  std::string map = "/Identity";
  if (codes_.size() > glyphs_) {
    const int glyphs = file.reserve();
    file.stream(glyphs, "", glyphMap());
    map = " " + reference(glyphs);
  }
  const std::string outlines = subset();
  file.stream(program, "/Length1 " + std::to_string(outlines.size()), outlines);
  file.object(described, descriptor(program));
  file.stream(text, "", textMap());
  file.object(inner, "<</Type/Font/Subtype/CIDFontType2/BaseFont/" + name() +
                         "/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)/Supplement 0>>/FontDescriptor " +
                         reference(described) + "/CIDToGIDMap" + map + "/W" + widths() + ">>");
  file.object(number, "<</Type/Font/Subtype/Type0/BaseFont/" + name() + "/Encoding/Identity-H/DescendantFonts[" +
                          reference(inner) + "]/ToUnicode " + reference(text) + ">>");
}

}  // namespace quillon::reports
