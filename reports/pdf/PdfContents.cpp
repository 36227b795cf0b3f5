#include "reports/pdf/PdfContents.h"

#include <cmath>

#include "reports/EmailAddresses.h"
#include "reports/Picture.h"

namespace quillon::reports {
namespace {

constexpr double kUnits = 7.2;    // in 1/1000 inch
constexpr int kUnitsOfSize = 10;  // in a tenth of a point

}  // namespace

PdfContents::PdfContents(const PdfPictures& pictures, int pageHeight) : pictures_(pictures), pageHeight_(pageHeight) {}

const PdfFont* PdfContents::font(Face face) const { return fonts_[static_cast<std::size_t>(face)].get(); }

PdfFont& PdfContents::fontOf(Face face) {
  std::unique_ptr<PdfFont>& font = fonts_[static_cast<std::size_t>(face)];
  if (!font) font = std::make_unique<PdfFont>(Font::of(face));
  return *font;
}

long PdfContents::across(double x) const { return std::lround(x * kUnits); }
long PdfContents::up(double y) const { return std::lround((pageHeight_ - y) * kUnits); }

void PdfContents::put(long number) {
  appendNumber(out_, number);
  out_ += ' ';
}

const std::string& PdfContents::draw(const Page& page) {
  out_ = ".01 0 0 .01 0 0 cm\n";
  put(across(kLineWidth));
  out_ += "w\n";
  links_.clear();
  inText_ = quiet_ = false;
  set_.size = 0;
  for (const Element& element : page.elements) switch (element.kind) {
      case Element::Kind::text:
        if (element.length > 0) drawText(element, page.textOf(element));
        break;
      case Element::Kind::line:
      case Element::Kind::rectangle:
        drawShape(element);
        break;
      case Element::Kind::picture:
        drawPicture(element);
        break;
    }
  endText();
  return out_;
}

void PdfContents::beginText() {
  if (inText_) return;
  out_ += "BT\n";
  inText_ = true;
  lineX_ = lineY_ = 0;
}

void PdfContents::endText() {
  if (inText_) out_ += "ET\n";
  inText_ = false;
}

void PdfContents::setShade(bool quiet) {
  if (quiet_ == quiet) return;
  quiet_ = quiet;
  const double shade = quiet ? kQuietShade / 255.0 : 0;
  for (const char* name : {" g ", " G\n"}) {
    appendNumber(out_, shade);
    out_ += name;
  }
}

void PdfContents::drawText(const Element& element, std::string_view text) {
  const Font& font = Font::of(element.style.face);
  font.shape(text, glyphs_);
  if (glyphs_.empty()) return;
  int width = 0;
  if (element.style.align != Align::left)
    for (const Glyph& glyph : glyphs_) width += glyph.advance;
  const Pen pen = penOf(element, width * font.scale(element.style.size));
  beginText();
  setShade(element.style.quiet);
  if (element.style.face != set_.face || element.style.size != set_.size) {
    set_ = element.style;
    out_ += "/F";
    put(static_cast<long>(set_.face));
    put(set_.size * kUnitsOfSize);
    out_ += "Tf\n";
  }
  const long x = across(pen.x), y = up(pen.y);
  put(x - lineX_);
  put(y - lineY_);
  out_ += "Td";
  lineX_ = x, lineY_ = y;
  fontOf(element.style.face).show(text, glyphs_, element.style.size * kUnitsOfSize, out_);
  linkAddresses(element, text, pen);
}

void PdfContents::linkAddresses(const Element& element, std::string_view text, Pen pen) {
  const Font& font = Font::of(element.style.face);
  const int size = element.style.size;
  for (std::size_t at = 0; at < text.size();) {
    const std::string_view address = nextEmailAddress(text, at);
    if (address.empty()) return;
    const double left = pen.x + font.width(text.substr(0, at - address.size()), size);
    const double right = left + font.width(address, size);
    const double bottom = pageHeight_ - pen.y - font.descent() * font.scale(size);
    const double top = pageHeight_ - pen.y + font.ascent() * font.scale(size);
    links_.push_back({std::string(address), left * kPoints, bottom * kPoints, right * kPoints, top * kPoints});
  }
}

void PdfContents::drawShape(const Element& element) {
  endText();
  setShade(element.style.quiet);
  const Box& box = element.box;
  put(across(box.x));
  if (element.kind == Element::Kind::line) {
    put(up(box.y));
    out_ += "m ";
    put(across(box.right()));
    put(up(box.bottom()));
    out_ += "l S\n";
  } else {
    put(up(box.bottom()));
    put(across(box.right()) - across(box.x));
    put(up(box.y) - up(box.bottom()));
    out_ += "re S\n";
  }
}

void PdfContents::drawPicture(const Element& element) {
  const PdfPictures::Picture* picture = pictures_.find(element.text);
  if (picture == nullptr) return;
  const PicturePlace place = placeOf(element, picture->width, picture->height);
  endText();
  out_ += "q ";
  put(across(place.width));
  out_ += "0 0 ";
  put(across(place.height));
  put(across(place.x));
  put(up(place.y + place.height));
  out_ += "cm/P";
  put(static_cast<long>(element.text));
  out_ += "Do Q\n";
}

}  // namespace quillon::reports
