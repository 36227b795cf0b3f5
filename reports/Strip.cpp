#include "reports/Strip.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "base/Text.h"
#include "reports/Bands.h"
#include "reports/Fonts.h"

namespace quillon::reports {
namespace {

constexpr const char* kEllipsis = "…";
constexpr int kLeastSize = 50;  // tenths of a point that can still be read

std::string cutShort(std::string_view text, Style style, double width) {
  const Font& font = Font::of(style.face);
  std::size_t few = 0, many = lengthInCharacters(text);
  while (few + 1 < many) {
    const std::size_t middle = (few + many) / 2;
    const std::string some = std::string(firstCharacters(text, middle)) + kEllipsis;
    (font.width(some, style.size) <= width ? few : many) = middle;
  }
  return std::string(firstCharacters(text, few)) + kEllipsis;
}

bool isFigure(const store::Value& value) { return value.isNumber() || value.kind() == store::Value::Kind::date; }

// A control character has no drawing; the end of a line in a text of one line is a blank.
std::string plain(std::string_view text) {
  std::string all(text);
  std::ranges::replace_if(
      all, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, ' ');
  return all;
}

bool isPlain(std::string_view text) {
  return std::ranges::none_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
}

}  // namespace

void place(Page content, Page& page, int x, int y) {
  const auto texts = static_cast<std::uint32_t>(page.texts.size());
  const auto values = static_cast<std::int32_t>(page.values.size());
  for (Element element : content.elements) {
    element.box.x = static_cast<std::int16_t>(element.box.x + x);
    element.box.y += y;
    if (element.kind == Element::Kind::text) element.text += texts;
    if (element.value >= 0) element.value += values;
    page.elements.push_back(element);
  }
  page.texts += content.texts;
  std::ranges::move(content.values, std::back_inserter(page.values));
}

Strip cutAt(Strip& strip, int end) {
  Strip upper{.part = strip.part, .content = {}, .depth = strip.depth, .bookmark = std::exchange(strip.bookmark, {})};
  Page all = std::exchange(strip.content, {});
  int top = end;
  for (const Element& element : all.elements)
    if (element.box.y > 0 && element.box.bottom() > end) top = std::min(top, element.box.y);
  for (Element& element : all.elements) {
    const bool stays = element.box.y >= top;
    Page& page = stays ? strip.content : upper.content;
    if (element.kind == Element::Kind::text) {
      const std::string_view text = all.textOf(element);
      element.text = static_cast<std::uint32_t>(page.texts.size());
      page.texts += text;
    }
    if (element.value >= 0) {
      page.values.push_back(all.valueOf(element));
      element.value = static_cast<std::int32_t>(page.values.size()) - 1;
    }
    if (stays) element.box.y -= top;
    page.elements.push_back(element);
  }
  upper.height = std::min(top, strip.height);
  strip.height -= upper.height;
  return upper;
}

int lineHeight(int size) { return size * 1000 / 720 * 13 / 10; }

Element& Strip::text(Box box, Style style, std::string_view text, const store::Value& value) {
  const std::string safe = isPlain(text) ? std::string() : plain(text);
  if (!safe.empty()) text = safe;
  const double width = Font::of(style.face).width(text, style.size);
  std::string cut;
  if (width > box.width && box.width > 0) {
    if (isFigure(value)) {
      const int fits = static_cast<int>(style.size * box.width / width);
      style.size = static_cast<std::uint16_t>(std::max(kLeastSize, fits));
    } else {
      cut = cutShort(text, style, box.width);
    }
  }
  Element element{.kind = Element::Kind::text, .part = part, .style = style, .box = box};
  const std::string_view shown = cut.empty() ? text : cut;
  element.text = static_cast<std::uint32_t>(content.texts.size());
  element.length = static_cast<std::uint32_t>(shown.size());
  content.texts += shown;
  if (isFigure(value) || !cut.empty()) {
    element.value = static_cast<std::int32_t>(content.values.size());
    content.values.push_back(isFigure(value) ? value : store::Value(text));
  }
  height = std::max(height, box.bottom());
  return content.elements.emplace_back(element);
}

void Strip::figure(Box box, Style style, const std::string& shown, const store::Value& value) {
  const auto hang = static_cast<int>(std::lround(Font::of(style.face).width(")", style.size)));
  if (!shown.ends_with(')')) box.width = static_cast<std::int16_t>(box.width - hang);
  text(box, style, shown, value);
}

void Strip::line(Box box) {
  content.elements.push_back({.kind = Element::Kind::line, .part = part, .box = box});
  height = std::max(height, box.bottom());
}

void Strip::add(const Band& band, int top) {
  if (band.shown && !band.shown()) return;
  if (band.before) band.before();
  int grown = 0;
  for (const Item& item : band.items) {
    Box box = item.box;
    box.y += top;
    if (item.kind == Element::Kind::text && item.wraps) {
      const int one = lineHeight(item.style.size);
      int y = box.y;
      for (const std::string& some : wrapped(item.source().text, item.style, box.width)) {
        text({box.x, y, box.width, static_cast<std::int16_t>(one)}, item.style, some);
        y += one;
      }
      grown = std::max(grown, y - box.bottom());
    } else if (item.kind == Element::Kind::text) {
      const Cell cell = item.source();
      text(box, item.style, cell.text, cell.value);
    } else {
      Element element{.kind = item.kind, .part = part, .style = item.style, .box = box};
      if (item.kind == Element::Kind::picture) element.text = static_cast<std::uint32_t>(item.picture);
      content.elements.push_back(element);
    }
  }
  height = std::max(height, top + band.height + grown);
  if (band.after) band.after();
}

std::vector<std::string> wrapped(std::string_view text, Style style, int width) {
  const Font& font = Font::of(style.face);
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    std::string_view rest = text.substr(0, end);
    do {
      const auto fits = [&](std::size_t length) { return font.width(rest.substr(0, length), style.size) <= width; };
      std::size_t take = 0;
      for (std::size_t more = 0; more < rest.size() && take == more;) {
        more = std::min(rest.find(' ', more + 1), rest.size());
        if (fits(more)) take = more;
      }
      if (take == 0 && !rest.empty()) {  // a word wider than the line
        take = firstCharacters(rest, 1).size();
        for (std::size_t more = take; more <= rest.size() && fits(more);) {
          take = more;
          if (more == rest.size()) break;
          more += firstCharacters(rest.substr(more), 1).size();
        }
      }
      lines.emplace_back(rest.substr(0, take));
      rest.remove_prefix(take);
      rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    } while (!rest.empty());
    text.remove_prefix(end);
    if (text.starts_with("\r\n")) text.remove_prefix(1);
    if (!text.empty()) text.remove_prefix(1);
  }
  return lines;
}

}  // namespace quillon::reports
