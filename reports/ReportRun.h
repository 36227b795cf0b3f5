#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "form/PageRun.h"
#include "reports/Report.h"
#include "reports/Strip.h"

namespace quillon::form {
struct Open;
}

namespace quillon::reports {

// Lays a report out in pages, a page at a time.
//
// Keeps: a row is never split, but for one that is more than a page holds; a heading stands with the first row below
// it, and a sum with the last one above it; the column header stands on every page, and the headings of the groups that
// go on there. Rows are read as they are laid out; no row is added any more.
class ReportRun final : public form::PageRun {
 public:
  // Tells the report and runs its query. Errors of the statement.
  ReportRun(shell::Session& session, ReportPtr report, const form::Open& open);
  ~ReportRun() override;

  bool step() override;
  std::shared_ptr<form::PageSource> pages() const override { return pages_; }

 private:
  static constexpr int kGap = 60;                    // between columns, 1/1000 inch
  static constexpr std::size_t kNumberInFooter = 2;  // behind the line and the words
  struct ColumnPlace {
    int field = -1;  // the position in the rows
    Box box;
    int line = 0;
    std::uint8_t jump = 0;  // one more than its place in the pages' jumps; 0: none
  };
  using Sums = std::vector<Money>;  // by column

  void choosePaper();
  void placeColumns();
  int gapAfter(std::size_t column) const;
  void begin();
  void row();
  void finish();
  void closeGroups(std::size_t from);
  void openGroups(std::size_t from);
  void add(Strip strip);
  void spill();
  void flush();
  void append(Strip strip);
  void appendInParts(Strip strip, int below);
  void startPage(const Strip* first);
  void endPage();
  void countPages();
  Strip titleStrip();
  Strip pageFooter() const;
  Strip columnHeader() const;
  Strip heading(std::size_t level, const std::vector<Heading>& headings, const char* more) const;
  Strip detail();
  // Where figures lead: the place of a jump behind that of the first, 0 for nowhere.
  struct Leads {
    std::uint8_t jump = 0;
    std::int32_t key = 0;
  };
  std::uint8_t addJump(const PreparedPages::Jump& jump);
  // The sums of a group or of the report; a group also has what its columns carry.
  Strip sums(Part part, const Band& band, const std::string& words, const Sums& sums, Leads leads) const;
  int detailCell(Strip& strip, std::size_t column, const RowLook& look);
  Style style(Face face = Face::regular) const;
  Box lineBox(int x, int y, int width, int size) const;

  shell::Session& session_;
  ReportPtr report_;
  std::shared_ptr<PreparedPages> pages_;
  Bands bands_;
  std::vector<ColumnPlace> places_;
  int lines_ = 1;  // of the columns in a row
  int bodyWidth_ = 0, bottom_ = 0;
  std::string company_;

  bool rowsLeft_ = false;
  std::vector<store::Value> keys_;
  std::shared_ptr<const std::vector<Heading>> headings_;
  std::vector<std::string> totals_;  // the words of each open group
  Sums reportSums_;
  std::vector<Sums> groupSums_;
  std::vector<Leads> groupLeads_;
  std::uint8_t totalJump_ = 0;
  bool first_ = true;
  bool begun_ = false;

  Page page_;
  std::vector<std::size_t> numbers_;  // of each page: the element that tells its number
  int y_ = 0, bodyTop_ = 0;
  std::vector<Strip> chain_;  // strips that want to stand on one page
  int chainHeight_ = 0;
  std::size_t together_ = 0;  // open groups that are kept together
  bool spilled_ = false;      // they are more than a page holds
};

}  // namespace quillon::reports
