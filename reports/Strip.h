#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "reports/Pages.h"

namespace quillon::reports {

struct Band;
struct Heading;

// Something across a page that is never split, before it has its place there; heights from its own upper edge.
struct Strip {
  Part part = Part::detail;
  Page content;
  int height = 0;
  bool withNext = false, withPrevious = false;  // on the same page, where both fit
  bool newPage = false;
  std::size_t depth = 0;                                      // of groups that it stands within
  std::shared_ptr<const std::vector<Heading>> headings = {};  // of these
  std::string bookmark = {};                                  // of a group's heading

  // A text is cut short with "…" where it is too long for its box; a figure is set in smaller letters instead.
  Element& text(Box box, Style style, std::string_view text, const store::Value& value = {});
  // A figure in a column that ends at the box's right edge: the parenthesis of a negative one stands behind that edge,
  // so that decimal points stand below each other.
  void figure(Box box, Style style, const std::string& text, const store::Value& value);
  void line(Box box);
  // What the band has, `top` below the upper edge; grows to hold it.
  void add(const Band& band, int top);
};

// What a group printed when it began; it prints again on each page that the group goes on to.
struct Heading {
  std::string text;
  Strip band;  // below it
};

// Puts it on a page, its corner there.
void place(Page content, Page& page, int x, int y);
// Takes off what ends above `end`, in the place where it is; `strip` keeps the rest, from its upper edge on, and is
// empty when all was taken. What is taller than that is taken whole.
Strip cutAt(Strip& strip, int end);

// The height of a line of text, of a size in tenths of a point.
int lineHeight(int size);
// The text in lines that are no wider than that.
std::vector<std::string> wrapped(std::string_view text, Style style, int width);

}  // namespace quillon::reports
