#include "reports/pdf/PdfOutline.h"

#include <algorithm>

namespace quillon::reports {
namespace {

// Places in the list of items; the root is the first. 0 is none.
struct Item {
  const Bookmark* bookmark = nullptr;
  std::size_t parent = 0, previous = 0, next = 0, first = 0, last = 0, children = 0;
};

std::vector<Item> itemsOf(const PreparedPages& report, std::size_t pages) {
  std::vector<Item> items(1);
  std::vector<std::size_t> above = {0};  // the item last seen at each level, below the root
  for (const Bookmark& bookmark : report.bookmarks) {
    if (bookmark.page < 1 || static_cast<std::size_t>(bookmark.page) > pages) continue;
    const std::size_t depth = std::min(static_cast<std::size_t>(std::max(0, bookmark.level)) + 1, above.size());
    above.resize(depth);
    const std::size_t self = items.size(), parent = above.back();
    items.push_back({&bookmark, parent, items[parent].last});
    if (items[parent].first == 0)
      items[parent].first = self;
    else
      items[items[parent].last].next = self;
    items[parent].last = self;
    ++items[parent].children;
    above.push_back(self);
  }
  return items;
}

}  // namespace

int writeOutline(PdfFile& file, const PreparedPages& report, const std::vector<int>& pages) {
  const std::vector<Item> items = itemsOf(report, pages.size());
  if (items.size() == 1) return 0;
  std::vector<int> numbers;
  for (std::size_t i = 0; i < items.size(); ++i) numbers.push_back(file.reserve());
  for (std::size_t i = 0; i < items.size(); ++i) {
    const Item& item = items[i];
    std::string body = "<<";
    const auto link = [&](const char* name, std::size_t to) {
      if (to != 0) body += name + reference(numbers[to]);
    };
    link("/First ", item.first);
    link("/Last ", item.last);
    link("/Prev ", item.previous);
    link("/Next ", item.next);
    if (item.children > 0) body += (i == 0 ? "/Count " : "/Count -") + std::to_string(item.children);
    if (i == 0) {
      body += "/Type/Outlines";
    } else {
      const Bookmark& mark = *item.bookmark;
      body += "/Parent " + reference(numbers[item.parent]) + "/Title" + pdfText(mark.text) + "/Dest[" +
              reference(pages[static_cast<std::size_t>(mark.page - 1)]) + "/XYZ null ";
      appendNumber(body, (report.height - mark.y) * kPoints);
      body += " null]";
    }
    file.object(numbers[i], body += ">>");
  }
  return numbers[0];
}

}  // namespace quillon::reports
