#include "reports/Pages.h"

#include <algorithm>

#include "base/Text.h"
#include "reports/PageRows.h"

namespace quillon::reports {
namespace {

constexpr int kCharacter = 62;  // 1/1000 inch: the room that a letter takes on average

// A line of text whose columns stand below each other as they do on paper.
class TextLine {
 public:
  void place(int column, std::string_view text) {
    if (length_ > 0) column = std::max(column, length_ + 1);
    line_.append(static_cast<std::size_t>(std::max(0, column - length_)), ' ');
    line_ += text;
    length_ = std::max(column, length_) + static_cast<int>(lengthInCharacters(text));
  }
  const std::string& text() const { return line_; }

 private:
  std::string line_;
  int length_ = 0;
};

int columnOf(const Element& element, std::string_view text) {
  const int length = static_cast<int>(lengthInCharacters(text));
  const int begin = element.box.x / kCharacter, end = element.box.right() / kCharacter;
  switch (element.style.align) {
    case Align::left:
      return begin;
    case Align::centre:
      return std::max(0, (begin + end - length) / 2);
    case Align::right:
      break;
  }
  return std::max(0, end - length);
}

}  // namespace

std::string PreparedPages::pageText(int number) const {
  const Page& page = this->page(number);
  PageRows rows;
  rows.read(page, [](const Element&) { return true; });
  std::string all;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    TextLine line;
    for (const Element* element : rows.row(i)) {
      const std::string_view text = page.textOf(*element);
      line.place(columnOf(*element, text) - left / kCharacter, text);
    }
    all += line.text() + "\n";
  }
  return all;
}

std::vector<form::PageLink> PreparedPages::links(int number) const {
  const Page& page = this->page(number);
  std::vector<form::PageLink> all;
  for (const Element& element : page.elements)
    if (element.jump > 0)
      all.push_back(
          {std::string(page.textOf(element)), element.box.x, element.box.y, element.box.width, element.box.height});
  return all;
}

void PreparedPages::follow(form::App& app, int number, std::size_t link) const {
  for (const Element& element : page(number).elements)
    if (element.jump > 0 && link-- == 0) return jumps.at(element.jump - 1U)(app, element.jumpKey);
}

}  // namespace quillon::reports
