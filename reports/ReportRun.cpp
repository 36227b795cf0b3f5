#include "reports/ReportRun.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "form/App.h"
#include "form/Screen.h"
#include "platform/Desktop.h"
#include "shell/Session.h"
#include "store/Cursor.h"

namespace quillon::reports {
namespace {

using store::Value;

constexpr std::size_t kMostLinked = 200;
constexpr int kMargin = 500, kFooterRoom = 260;

std::int16_t narrow(int number) { return static_cast<std::int16_t>(number); }

// Whether they stand on one page wherever both fit.
bool isLinked(const Strip& above, const Strip& below) { return above.withNext || below.withPrevious; }

int heightOf(std::span<const Strip> strips) {
  int height = 0;
  for (const Strip& strip : strips) height += strip.height;
  return height;
}

// Ten-thousandths; a quantity is rounded to the nearest.
Money amountOf(const Value& value) {
  if (value.isNull()) return {};
  return value.kind() == Value::Kind::real ? Money::fromDouble(value.asDouble()) : value.asMoney();
}

}  // namespace

ReportRun::ReportRun(shell::Session& session, ReportPtr report, const form::Open& open)
    : session_(session),
      report_(std::move(report)),
      pages_(std::make_shared<PreparedPages>()),
      bands_(session.app().formats()) {
  report_->tell(bands_, open);
  report_->refuseUnasked(open);
  company_ = session_.tblCompany().isEmpty() ? std::string() : session_.tblCompany()["CompanyName"].asText();
  pages_->reportTitle = report_->reportTitle;
  pages_->author = company_;
  for (const char c : session_.desktop().now().toIso())
    if (c >= '0' && c <= '9' && pages_->moment.size() < 14) pages_->moment += c;
  pages_->pictures = bands_.pictures;
  choosePaper();
  rowsLeft_ = report_->first();
  placeColumns();
}

ReportRun::~ReportRun() = default;

void ReportRun::choosePaper() {
  int width = session_.paperIsA4() ? 8268 : 8500, height = session_.paperIsA4() ? 11693 : 11000;
  if (bands_.landscape) std::swap(width, height);
  pages_->width = width, pages_->height = height;
  pages_->left = pages_->right = kMargin;
  bodyWidth_ = width - 2 * kMargin;
  bottom_ = height - kMargin - kFooterRoom;
}

// The columns of the first line share the width; those of the second stand below theirs.
void ReportRun::placeColumns() {
  int told = 0;
  for (const Column& column : bands_.columns)
    if (column.upper == nullptr) told += column.width;
  places_.resize(bands_.columns.size());
  int done = 0;
  for (std::size_t i = 0; i < places_.size(); ++i) {
    const Column& column = bands_.columns[i];
    ColumnPlace& place = places_[i];
    if (!column.value) place.field = report_->positionOf(column.field);
    if (column.upper != nullptr) {
      const auto above =
          std::ranges::find_if(bands_.columns, [&](const Column& some) { return &some == column.upper; });
      const ColumnPlace& upper = places_[static_cast<std::size_t>(above - bands_.columns.begin())];
      place.line = upper.line + 1;
      place.box = upper.box;
      lines_ = std::max(lines_, place.line + 1);
      continue;
    }
    const int begin = done * bodyWidth_ / told, end = (done + column.width) * bodyWidth_ / told;
    done += column.width;
    place.box = {narrow(begin), 0, narrow(end - begin - gapAfter(i)), narrow(lineHeight(bands_.size))};
  }
  reportSums_.assign(places_.size(), {});
  groupSums_.assign(bands_.groups.size(), reportSums_);
  totals_.resize(bands_.groups.size());
  for (std::size_t i = 0; i < places_.size(); ++i) places_[i].jump = addJump(bands_.columns[i].jump);
  for (const Group& group : bands_.groups) groupLeads_.push_back({.jump = addJump(group.jump)});
  totalJump_ = addJump(bands_.totalJump);
}

std::uint8_t ReportRun::addJump(const PreparedPages::Jump& jump) {
  if (!jump) return 0;
  pages_->jumps.push_back(jump);
  return static_cast<std::uint8_t>(pages_->jumps.size());
}

// Figures end, and words begin, where the column does: without more room between them they would be read as one.
int ReportRun::gapAfter(std::size_t i) const {
  constexpr int kGapBeforeWords = 150;
  const auto next = std::find_if(bands_.columns.begin() + static_cast<std::ptrdiff_t>(i) + 1, bands_.columns.end(),
                                 [](const Column& column) { return column.upper == nullptr; });
  if (next == bands_.columns.end()) return 0;
  return bands_.columns[i].align == Align::right && next->align == Align::left ? kGapBeforeWords : kGap;
}

bool ReportRun::step() {
  if (pages_->complete) return false;
  if (!begun_) begin();
  const std::size_t before = pages_->pages.size();
  while (rowsLeft_ && pages_->pages.size() == before) {
    row();
    rowsLeft_ = report_->next();
  }
  if (!rowsLeft_) finish();
  return !pages_->complete;
}

void ReportRun::begin() {
  begun_ = true;
  if (!rowsLeft_ && !bands_.printIfEmpty) return;
  if (bands_.beforeReport) bands_.beforeReport();
  startPage(nullptr);
}

// Rows and groups.

void ReportRun::row() {
  if (bands_.calculate) bands_.calculate();
  std::vector<Value> keys;
  for (const Group& group : bands_.groups) keys.push_back(group.key());
  std::size_t changed = 0;
  while (changed < keys.size() && !first_ && keys[changed] == keys_[changed]) ++changed;
  if (!first_ && changed < keys.size()) closeGroups(changed);
  keys_ = std::move(keys);
  if (first_ || changed < keys_.size()) openGroups(first_ ? 0 : changed);
  first_ = false;
  if (bands_.details && (!bands_.detail.shown || bands_.detail.shown())) add(detail());
  for (std::size_t i = 0; i < places_.size(); ++i) {
    const Column& column = bands_.columns[i];
    if (!column.summed && !column.carried) continue;
    const Money amount = amountOf(column.value ? column.value() : report_->value(places_[i].field));
    reportSums_[i] += amount;
    for (Sums& sums : groupSums_) sums[i] = column.carried ? amount : sums[i] + amount;
  }
}

void ReportRun::openGroups(std::size_t from) {
  auto headings = std::make_shared<std::vector<Heading>>(bands_.groups.size());
  for (std::size_t level = 0; level < from; ++level) (*headings)[level] = (*headings_)[level];
  bool newPage = false;
  for (std::size_t level = from; level < bands_.groups.size(); ++level) {
    Group& group = bands_.groups[level];
    Heading& its = (*headings)[level];
    if (group.heading) its.text = group.heading();
    its.band.part = Part::groupHeader;
    its.band.add(group.header, 0);
    if (group.total) totals_[level] = group.total();
    if (group.jump) groupLeads_[level].key = group.jumpKey();
    newPage = newPage || group.newPage;
  }
  headings_ = headings;
  for (std::size_t level = from; level < bands_.groups.size(); ++level) {
    if (bands_.groups[level].together && together_++ == 0) spilled_ = false;
    Strip strip = heading(level, *headings_, "");
    strip.depth = level;
    strip.headings = headings_;
    strip.bookmark = (*headings)[level].text;
    strip.withNext = true;
    strip.newPage = newPage && !first_ && level == from;
    if (strip.height > 0 || strip.newPage) add(std::move(strip));
  }
}

void ReportRun::closeGroups(std::size_t from) {
  for (std::size_t level = bands_.groups.size(); level-- > from;) {
    Group& group = bands_.groups[level];
    if (group.total || group.footer.prints()) {
      Strip strip = sums(Part::groupFooter, group.footer, group.total ? totals_[level] : std::string(),
                         groupSums_[level], groupLeads_[level]);
      strip.depth = level + 1;
      strip.headings = headings_;
      strip.withPrevious = true;
      add(std::move(strip));
    }
    groupSums_[level].assign(places_.size(), {});
    if (group.together) --together_;
  }
}

void ReportRun::finish() {
  if (!first_) closeGroups(0);
  if (!bands_.total.empty() || bands_.summary.prints()) {
    Strip strip = sums(Part::summary, bands_.summary, bands_.total, reportSums_, {.jump = totalJump_});
    strip.withPrevious = true;
    add(std::move(strip));
  }
  flush();
  if (!first_ || bands_.printIfEmpty) endPage();
  countPages();
  pages_->complete = true;
}

// Strips to pages.

void ReportRun::add(Strip strip) {
  const bool together = together_ > 0 && !spilled_ && strip.depth > 0;
  const bool joins = !chain_.empty() && !strip.newPage && (isLinked(chain_.back(), strip) || together);
  if (!joins) flush();
  chainHeight_ += strip.height;
  chain_.push_back(std::move(strip));
  if (chainHeight_ > bottom_ - bodyTop_) spill();
}

// The chain is more than a page holds. Its end stays, since more may be linked to it.
void ReportRun::spill() {
  spilled_ = true;
  std::size_t end = chain_.size() - 1;
  while (end > 0 && isLinked(chain_[end - 1], chain_[end])) --end;
  if (end == 0 && chain_.size() < kMostLinked) return;
  std::vector<Strip> rest;
  if (end > 0)
    rest.assign(std::make_move_iterator(chain_.begin() + static_cast<std::ptrdiff_t>(end)),
                std::make_move_iterator(chain_.end()));
  chain_.resize(chain_.size() - rest.size());
  flush();
  chain_ = std::move(rest);
  chainHeight_ = heightOf(chain_);
}

void ReportRun::flush() {
  if (chain_.empty()) return;
  const bool fresh = y_ <= bodyTop_;
  if (!fresh && (chain_.front().newPage || y_ + chainHeight_ > bottom_)) startPage(&chain_.front());
  for (std::size_t begin = 0, end = 0; begin < chain_.size(); begin = end) {
    do ++end;
    while (end < chain_.size() && isLinked(chain_[end - 1], chain_[end]));
    const std::span<Strip> linked = std::span(chain_).subspan(begin, end - begin);
    if (y_ > bodyTop_ && y_ + heightOf(linked) > bottom_) startPage(&linked.front());
    for (std::size_t i = 0; i < linked.size(); ++i) {
      std::size_t next = i + 1;
      while (next < linked.size() && linked[next].withPrevious) ++next;
      const int sums = heightOf(linked.subspan(i + 1, next - i - 1));
      if (linked[i].height > bottom_ - bodyTop_) {
        appendInParts(std::move(linked[i]), sums);
        continue;
      }
      if (y_ + linked[i].height + sums > bottom_ && y_ > bodyTop_) startPage(&linked[i]);
      append(std::move(linked[i]));
    }
  }
  chain_.clear();
  chainHeight_ = 0;
}

void ReportRun::append(Strip strip) {
  if (!strip.bookmark.empty())
    pages_->bookmarks.push_back(
        {static_cast<int>(strip.depth), pages_->pageCount() + 1, y_, std::move(strip.bookmark)});
  const int height = strip.height;
  place(std::move(strip.content), page_, pages_->left, y_);
  y_ += height;
}

// More than a page holds goes on, line by line, on the next ones; its last line leaves room for the sums `below`.
void ReportRun::appendInParts(Strip strip, int below) {
  while (y_ + strip.height + below > bottom_) {
    append(cutAt(strip, std::max(1, std::min(bottom_ - y_, strip.height - 1))));
    if (strip.content.elements.empty()) return;
    startPage(&strip);
  }
  append(std::move(strip));
}

// `first`: the strip that it begins with; none for the report's first page.
void ReportRun::startPage(const Strip* first) {
  if (first != nullptr) endPage();
  y_ = kMargin;
  if (first == nullptr) append(titleStrip());
  if (Strip header{.part = Part::pageHeader, .content = {}}; first != nullptr && bands_.pageHeader.prints()) {
    header.add(bands_.pageHeader, 0);
    append(std::move(header));
  }
  append(columnHeader());
  if (first != nullptr && first->headings)
    for (std::size_t level = 0; level < first->depth; ++level) {
      Strip again = heading(level, *first->headings, " (continued)");
      for (Element& element : again.content.elements) element.again = true;
      append(std::move(again));
    }
  bodyTop_ = y_;
}

void ReportRun::endPage() {
  Strip footer = pageFooter();
  numbers_.push_back(page_.elements.size() + kNumberInFooter);
  y_ = bottom_;
  append(std::move(footer));
  pages_->pages.push_back(std::move(page_));
  page_ = {};
}

// "Page 2" becomes "Page 2 of 7".
void ReportRun::countPages() {
  const std::string count = " of " + std::to_string(pages_->pageCount());
  for (std::size_t i = 0; i < numbers_.size(); ++i) {
    Page& page = pages_->pages[i];
    Element& number = page.elements[numbers_[i]];
    const std::string text = std::string(page.textOf(number)) + count;
    number.text = static_cast<std::uint32_t>(page.texts.size());
    number.length = static_cast<std::uint32_t>(text.size());
    page.texts += text;
  }
}

}  // namespace quillon::reports
