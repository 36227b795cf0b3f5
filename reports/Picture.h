#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "reports/Pages.h"

namespace quillon::reports {

// A JPEG file's head: what a PDF must say of it to hold it as it is.
struct JpegHead {
  int width = 0, height = 0;
  int components = 0;     // 1 grey, 3 colours, 4 inks
  bool inverted = false;  // inks are told by what they leave out
};
// None when the bytes are not a JPEG that a PDF can hold.
std::optional<JpegHead> readJpegHead(std::string_view bytes);

// A picture in memory, 8 bits a sample, rows from the top.
struct Pixels {
  int width = 0, height = 0;
  std::string colours;  // red, green, blue
  std::string opacity;  // one for each; empty when nothing shines through
};
// None when the bytes are not a PNG, or one too large to be meant for a page.
std::optional<Pixels> readPng(std::string_view bytes);

// Where a picture is drawn: as large as its element's box allows with its proportions, at the top, and from left to
// right as the element is aligned. In 1/1000 inch.
struct PicturePlace {
  double x = 0, y = 0, width = 0, height = 0;
};
PicturePlace placeOf(const Element& picture, int width, int height);

}  // namespace quillon::reports
