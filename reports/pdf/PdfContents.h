#pragma once

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "reports/Pages.h"
#include "reports/pdf/PdfFont.h"
#include "reports/pdf/PdfPictures.h"

namespace quillon::reports {

// Draws pages one after the other as the operators of PDF. Units are 1/100 point, so that all measures are whole
// numbers; y goes up from the lower edge of the paper.
class PdfContents {
 public:
  struct MailLink {
    std::string address;
    double left = 0, bottom = 0, right = 0, top = 0;  // points
  };

  PdfContents(const PdfPictures& pictures, int pageHeight);

  // What it returns, and links(), are of this page until the next one.
  const std::string& draw(const Page& page);
  const std::vector<MailLink>& links() const { return links_; }
  // Null while nothing was set in this face.
  const PdfFont* font(Face face) const;

 private:
  void drawText(const Element& element, std::string_view text);
  void drawShape(const Element& element);
  void drawPicture(const Element& element);
  void linkAddresses(const Element& element, std::string_view text, Pen pen);

  PdfFont& fontOf(Face face);
  void beginText();
  void endText();
  void setShade(bool quiet);
  void put(long number);
  long across(double x) const;  // the nearest place in units
  long up(double y) const;

  const PdfPictures& pictures_;
  int pageHeight_;  // 1/1000 inch
  std::array<std::unique_ptr<PdfFont>, 4> fonts_;

  std::string out_;
  std::vector<MailLink> links_;
  std::vector<Glyph> glyphs_;
  // What the operators so far have set.
  bool inText_ = false, quiet_ = false;
  Style set_;
  long lineX_ = 0, lineY_ = 0;
};

}  // namespace quillon::reports
