#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "form/Converter.h"
#include "reports/Pages.h"
#include "store/Value.h"

namespace quillon::reports {

// What prints in a place: the text, and the number or date behind it where a spreadsheet is to have that.
struct Cell {
  std::string text;
  store::Value value = {};
};

// An element of a band, in 1/1000 inch from the band's upper left corner at the left margin.
struct Item {
  Element::Kind kind = Element::Kind::text;
  Box box = {};
  Style style = {};
  std::function<Cell()> source = {};  // of a text
  bool wraps = false;                 // goes on below, and the band grows
  int picture = 0;
};

// A strip across the page. `before` and `after` are called around each time that it prints, also when it has no items.
struct Band {
  int height = 0;  // as it stands without lines that go on
  std::vector<Item> items;
  std::function<bool()> shown = {};
  std::function<void()> before = {}, after = {};

  bool prints() const { return !items.empty() || before || after; }
  Item& add(Item item);
  Item& text(Box box, std::string fixed, Style style = {});
  Item& text(Box box, std::function<std::string()> asked, Style style = {});
  void line(Box box) { add({.kind = Element::Kind::line, .box = box}); }
  void rectangle(Box box) { add({.kind = Element::Kind::rectangle, .box = box}); }
};

// A column of a report: its heading, its value in each row, and whether groups and the report add it up.
struct Column {
  std::string caption;
  int width = 1000;                          // its share of the page's width: the columns of a line together fill it
  std::string field = {};                    // of the rows; or
  std::function<store::Value()> value = {};  // worked out
  form::ConverterPtr format = {};
  Align align = Align::left;
  bool summed = false, wraps = false;
  bool carried = false;           // a group's sums show what it had in the last row
  const Column* upper = nullptr;  // stands below that column, in a second line
  PreparedPages::Jump jump = {};
  std::function<std::int32_t()> jumpKey = {};

  Column& sum() { return summed = true, *this; }
  Column& carry() { return carried = true, *this; }
  Column& wrap() { return wraps = true, *this; }
  Column& under(const Column& other) { return upper = &other, *this; }
  // A click on its figure opens what it is made of; a negative key leads nowhere.
  Column& opens(PreparedPages::Jump what, std::function<std::int32_t()> key) {
    return jump = std::move(what), jumpKey = std::move(key), *this;
  }
};

// Rows that belong together: those that follow each other with the same key.
struct Group {
  std::function<store::Value()> key;
  std::function<std::string()> heading = {};  // none: no heading
  std::function<std::string()> total = {};    // the words beside its sums; none: no sums
  bool together = false;                      // on one page where it fits
  bool newPage = false;                       // each begins one
  Band header = {};                           // below the heading; reads the group's first row
  // Above the sums. It prints when the row behind the group is read already, so it shows what the report has kept:
  // sums of its own, which it adds up in the detail's `after` and clears in this one's.
  Band footer = {};
  PreparedPages::Jump jump = {};  // of its sums; the key is asked for when the group begins
  std::function<std::int32_t()> jumpKey = {};

  // A click on one of its sums, as Column::opens.
  Group& opens(PreparedPages::Jump what, std::function<std::int32_t()> which) {
    return jump = std::move(what), jumpKey = std::move(which), *this;
  }
  Group& totalled(std::string words) {
    return total = [words = std::move(words)] { return words; }, *this;
  }
  Group& totalled(std::function<std::string()> words) { return total = std::move(words), *this; }
  Group& keepTogether() { return together = true, *this; }
  Group& onNewPage() { return newPage = true, *this; }
};

// How the row looks that is being printed.
struct RowLook {
  Face face = Face::regular;
  int indent = 0;                               // of the first column, 1/1000 inch
  int spaceAbove = 0;                           // 1/1000 inch
  bool ruleAbove = false;                       // over the numbers
  bool ruleBelow = false;                       // a double one, below them
  bool withNext = false, withPrevious = false;  // on the same page, where both fit
};

// A report as it is told: page, columns, groups and bands, in the order of the report's title, column header, group
// headers, detail, group footers, summary and page footer.
class Bands {
 public:
  explicit Bands(const form::Formats& formats) : formats_(formats) {}

  bool landscape = false;
  bool printIfEmpty = true;  // title and headings, when there is no row
  bool details = true;       // without them: groups and sums alone
  int size = 90;             // of the letters, in tenths of a point
  std::deque<Column> columns;
  std::deque<Group> groups;                             // the outermost first
  std::string total;                                    // the words beside the report's sums; empty: no sums
  PreparedPages::Jump totalJump;                        // of the report's sums, with 0
  Band title, detail, summary, pageHeader, pageFooter;  // beside what columns and groups give
  std::function<RowLook()> look = {};
  std::function<void()> beforeReport = {},
                        calculate = {};  // calculate: when a row was read, before anything of it prints
  std::vector<std::string> pictures = {};

  Column& text(std::string caption, std::string field, int width);
  Column& date(std::string caption, std::string field, int width);
  Column& whole(std::string caption, std::string field, int width);
  Column& money(std::string caption, std::string field, int width);
  Column& quantity(std::string caption, std::string field, int width);
  Column& shown(std::string caption, int width, std::function<std::string()> text);
  Column& shownMoney(std::string caption, int width, std::function<store::Value()> amount);

  Group& group(std::function<store::Value()> key, std::function<std::string()> heading = {});

 private:
  Column& add(std::string caption, std::string field, int width, form::ConverterPtr format, Align align);

  const form::Formats& formats_;
};

}  // namespace quillon::reports
