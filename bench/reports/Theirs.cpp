#include "bench/reports/Theirs.h"

#include <hpdf.h>

#include <array>

#include "base/Errors.h"

namespace quillon::bench {
namespace {

constexpr float kPoints = 0.072f;  // in 1/1000 inch

using reports::Element;

void refuse(HPDF_STATUS error, HPDF_STATUS detail, void*) {
  throw Error("libharu failed with " + std::to_string(error) + ", " + std::to_string(detail));
}

struct Document {
  HPDF_Doc doc = HPDF_New(refuse, nullptr);
  ~Document() { HPDF_Free(doc); }
};

}  // namespace

void writeTheirPdf(const reports::PreparedPages& pages, const std::vector<reports::Pen>& pens,
                   const std::string& path) {
  const Document document;
  HPDF_SetCompressionMode(document.doc, HPDF_COMP_ALL);
  HPDF_UseUTFEncodings(document.doc);
  std::array<HPDF_Font, 4> fonts = {};
  auto pen = pens.begin();
  const float height = static_cast<float>(pages.height);
  for (const reports::Page& page : pages.pages) {
    const HPDF_Page theirs = HPDF_AddPage(document.doc);
    HPDF_Page_SetWidth(theirs, static_cast<float>(pages.width) * kPoints);
    HPDF_Page_SetHeight(theirs, height * kPoints);
    for (const Element& element : page.elements) {
      if (element.kind == Element::Kind::line) {
        HPDF_Page_MoveTo(theirs, element.box.x * kPoints, (height - static_cast<float>(element.box.y)) * kPoints);
        HPDF_Page_LineTo(theirs, static_cast<float>(element.box.right()) * kPoints,
                         (height - static_cast<float>(element.box.bottom())) * kPoints);
        HPDF_Page_Stroke(theirs);
        continue;
      }
      HPDF_Font& font = fonts[static_cast<std::size_t>(element.style.face)];
      if (font == nullptr) {
        const std::string& file = reports::Font::of(element.style.face).path();
        font = HPDF_GetFont(document.doc, HPDF_LoadTTFontFromFile(document.doc, file.c_str(), HPDF_TRUE), "UTF-8");
      }
      HPDF_Page_BeginText(theirs);
      HPDF_Page_SetFontAndSize(theirs, font, static_cast<float>(element.style.size) / 10);
      const std::string text(page.textOf(element));
      HPDF_Page_TextOut(theirs, static_cast<float>(pen->x) * kPoints, (height - static_cast<float>(pen->y)) * kPoints,
                        text.c_str());
      HPDF_Page_EndText(theirs);
      ++pen;
    }
  }
  HPDF_SaveToFile(document.doc, path.c_str());
}

}  // namespace quillon::bench
