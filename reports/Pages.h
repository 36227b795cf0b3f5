#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "form/PageView.h"
#include "store/Value.h"

namespace quillon::form {
class App;
}

namespace quillon::reports {

enum class Align : std::uint8_t { left, centre, right };
enum class Face : std::uint8_t { regular, bold, italic, boldItalic };
// The part of a report that an element was printed by.
enum class Part : std::uint8_t {
  title,
  pageHeader,
  columnHeader,
  groupHeader,
  detail,
  groupFooter,
  summary,
  pageFooter
};

// In 1/1000 inch, from the upper left corner of the paper.
struct Box {
  std::int16_t x = 0;
  std::int32_t y = 0;  // far below the paper in a row that has no place yet
  std::int16_t width = 0, height = 0;
  int right() const { return x + width; }
  int bottom() const { return y + height; }
  friend bool operator==(const Box&, const Box&) = default;
};

struct Style {
  Face face = Face::regular;
  Align align = Align::left;
  std::uint16_t size = 90;  // in tenths of a point
  bool quiet = false;       // in grey: what stands beside the matter
};

// What is drawn in one place. Small, since a ledger has a million of them; texts and values lie with the page.
struct Element {
  enum class Kind : std::uint8_t { text, line, rectangle, picture };

  Kind kind = Kind::text;
  Part part = Part::detail;
  Style style = {};
  Box box = {};                        // a line is a box without width or without height
  std::uint32_t text = 0, length = 0;  // of a text: its place in the page's texts; of a picture: its number
  std::int32_t value = -1;             // the number or date that the text shows: its place in the page's values
  std::int32_t jumpKey = 0;
  std::uint8_t jump = 0;  // one more than its place in the pages' jumps; 0 leads nowhere
  bool again = false;     // said on an earlier page already, and here for the page's sake
};

// How all outputs draw what an element does not say.
constexpr int kLineWidth = 7;     // of lines and of a rectangle's, 1/1000 inch
constexpr int kQuietShade = 110;  // of what is quiet: 0 is black and 255 white

// A line of the contents: of a group's heading.
struct Bookmark {
  int level = 0;  // 0 is the outermost
  int page = 1;
  int y = 0;
  std::string text;
};

struct Page {
  std::vector<Element> elements;  // in reading order
  std::string texts;
  std::vector<store::Value> values;

  std::string_view textOf(const Element& element) const {
    return std::string_view(texts).substr(element.text, element.length);
  }
  // Null where the text alone says it.
  store::Value valueOf(const Element& element) const {
    return element.value < 0 ? store::Value() : values[static_cast<std::size_t>(element.value)];
  }
};

// What a report prints: pages of placed elements, which know no device. Screen, paper, PDF, spreadsheet and text all
// draw the same list.
//
// Grows by whole pages while the report is laid out; a page does not change any more, but for its number, which also
// tells how many there are once all are. Texts are UTF-8.
class PreparedPages final : public form::PageSource {
 public:
  // Opens what a figure is made of; the key tells which.
  using Jump = std::function<void(form::App& app, std::int32_t key)>;

  std::string reportTitle, author;
  std::string moment;                // of the run, as in a PDF: "20260305120000"
  int width = 8500, height = 11000;  // of the paper, 1/1000 inch
  int left = 500, right = 500;       // margins
  bool landscape() const { return width > height; }
  std::vector<Page> pages;
  std::vector<std::string> pictures;  // PNG or JPEG files
  std::vector<Jump> jumps;
  std::vector<Bookmark> bookmarks;
  bool complete = false;  // no more pages come

  int pageCount() const override { return static_cast<int>(pages.size()); }
  std::string title() const override { return reportTitle; }
  std::string pageText(int page) const override;
  std::vector<form::PageLink> links(int page) const override;
  void follow(form::App& app, int page, std::size_t link) const override;
  const Page& page(int number) const { return pages.at(static_cast<std::size_t>(number - 1)); }  // 1 is the first
};

}  // namespace quillon::reports
