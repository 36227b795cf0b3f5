#include "reports/ReportRun.h"

#include <algorithm>

#include "form/App.h"
#include "form/Screen.h"
#include "platform/Desktop.h"
#include "shell/Session.h"
#include "store/Cursor.h"

namespace quillon::reports {
namespace {

using store::Value;

constexpr int kMargin = 500, kGap = 60, kRuleRoom = 25, kFooterRoom = 260;
constexpr int kTitleSize = 160, kCompanyName = 110, kSmall = 80;
constexpr int kLeastLabel = 900;  // a total's words have their own line where there is less room

std::int16_t narrow(int number) { return static_cast<std::int16_t>(number); }

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
    place.box = {narrow(begin), 0, narrow(end - begin - (done == told ? 0 : kGap)), narrow(lineHeight(bands_.size))};
  }
  reportSums_.assign(places_.size(), {});
  groupSums_.assign(bands_.groups.size(), reportSums_);
  totals_.resize(bands_.groups.size());
  for (std::size_t i = 0; i < places_.size(); ++i)
    if (bands_.columns[i].jump) pages_->jumps.push_back(bands_.columns[i].jump);
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
    if (!column.summed) continue;
    const Money amount = amountOf(column.value ? column.value() : report_->value(places_[i].field));
    reportSums_[i] += amount;
    for (Sums& sums : groupSums_) sums[i] += amount;
  }
}

void ReportRun::openGroups(std::size_t from) {
  auto headings = std::make_shared<std::vector<std::string>>(bands_.groups.size());
  for (std::size_t level = 0; level < from; ++level) (*headings)[level] = (*headings_)[level];
  for (std::size_t level = from; level < bands_.groups.size(); ++level) {
    Group& group = bands_.groups[level];
    if (group.heading) (*headings)[level] = group.heading();
    if (group.total) totals_[level] = group.total();
  }
  headings_ = headings;
  for (std::size_t level = from; level < bands_.groups.size(); ++level) {
    const Group& group = bands_.groups[level];
    if (group.together) ++together_;
    Strip strip = heading(level, (*headings)[level]);
    strip.bookmark = (*headings)[level];
    strip.withNext = true;
    strip.newPage = group.newPage && !first_ && level == from;
    if (strip.height > 0 || strip.newPage) add(std::move(strip));
  }
}

void ReportRun::closeGroups(std::size_t from) {
  for (std::size_t level = bands_.groups.size(); level-- > from;) {
    Group& group = bands_.groups[level];
    if (group.total || !group.footer.items.empty()) {
      Strip strip =
          sums(Part::groupFooter, group.footer, group.total ? totals_[level] : std::string(), groupSums_[level]);
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
  if (!bands_.total.empty() || !bands_.summary.items.empty()) {
    Strip strip = sums(Part::summary, bands_.summary, bands_.total, reportSums_);
    strip.withPrevious = true;
    add(std::move(strip));
  }
  flush();
  if (!first_ || bands_.printIfEmpty) endPage();
  pages_->complete = true;
}

// Strips to pages.

void ReportRun::add(Strip strip) {
  const bool joins = !chain_.empty() && !strip.newPage &&
                     (chain_.back().withNext || strip.withPrevious || (together_ > 0 && strip.depth > 0));
  if (!joins) flush();
  chainHeight_ += strip.height;
  chain_.push_back(std::move(strip));
  if (chainHeight_ > bottom_ - bodyTop_) flush();
}

void ReportRun::flush() {
  if (chain_.empty()) return;
  const bool fresh = y_ <= bodyTop_;
  if (!fresh && (chain_.front().newPage || y_ + chainHeight_ > bottom_)) startPage(&chain_.front());
  for (Strip& strip : chain_) {
    if (y_ + strip.height > bottom_ && y_ > bodyTop_) startPage(&strip);
    append(std::move(strip));
  }
  chain_.clear();
  chainHeight_ = 0;
}

void ReportRun::append(Strip strip) {
  if (!strip.bookmark.empty())
    pages_->bookmarks.push_back(
        {static_cast<int>(strip.depth), pages_->pageCount() + 1, y_, std::move(strip.bookmark)});
  const auto texts = static_cast<std::uint32_t>(page_.texts.size());
  const auto values = static_cast<std::int32_t>(page_.values.size());
  for (Element element : strip.content.elements) {
    element.box.x = narrow(element.box.x + pages_->left);
    element.box.y = narrow(element.box.y + y_);
    if (element.kind == Element::Kind::text) element.text += texts;
    if (element.value >= 0) element.value += values;
    page_.elements.push_back(element);
  }
  page_.texts += strip.content.texts;
  std::ranges::move(strip.content.values, std::back_inserter(page_.values));
  y_ += strip.height;
}

// `first`: the strip that it begins with; none for the report's first page.
void ReportRun::startPage(const Strip* first) {
  if (first != nullptr) endPage();
  y_ = kMargin;
  if (first == nullptr) append(titleStrip());
  if (Strip header{.part = Part::pageHeader, .content = {}}; first != nullptr && !bands_.pageHeader.items.empty()) {
    header.add(bands_.pageHeader, 0);
    append(std::move(header));
  }
  append(columnHeader());
  if (first != nullptr && first->headings)
    for (std::size_t level = 0; level < first->depth; ++level)
      if (const std::string& text = (*first->headings)[level]; !text.empty())
        append(heading(level, text + " (continued)"));
  bodyTop_ = y_;
}

void ReportRun::endPage() {
  Strip strip{.part = Part::pageFooter, .content = {}};
  Style small = style(), right = style();
  small.size = right.size = kSmall;
  small.quiet = right.quiet = true;
  right.align = Align::right;
  strip.line({0, 60, narrow(bodyWidth_), 0});
  const std::string name = company_.empty() ? report_->reportTitle : company_ + " · " + report_->reportTitle;
  strip.text(lineBox(0, 90, bodyWidth_ - 1000, kSmall), small, name);
  strip.text(lineBox(bodyWidth_ - 1000, 90, 1000, kSmall), right, "Page " + std::to_string(pages_->pageCount() + 1));
  strip.add(bands_.pageFooter, 90);
  y_ = bottom_;
  append(std::move(strip));
  pages_->pages.push_back(std::move(page_));
  page_ = {};
}

// What stands on them.

Style ReportRun::style(Face face) const { return {.face = face, .size = static_cast<std::uint16_t>(bands_.size)}; }

Box ReportRun::lineBox(int x, int y, int width, int size) const {
  return {narrow(x), narrow(y), narrow(width), narrow(lineHeight(size))};
}

Strip ReportRun::titleStrip() {
  Strip strip{.part = Part::title, .content = {}};
  constexpr int kDateWidth = 1500;
  const auto put = [&](int size, Face face, const std::string& text) {
    if (text.empty()) return;
    Style look = style(face);
    look.size = static_cast<std::uint16_t>(size);
    strip.text(lineBox(0, strip.height, bodyWidth_ - kDateWidth, size), look, text);
  };
  Style right = style();
  right.align = Align::right, right.quiet = true, right.size = kSmall;
  strip.text(lineBox(bodyWidth_ - kDateWidth, 0, kDateWidth, kCompanyName), right,
             longDate(session_.app(), session_.app().today()));
  strip.height = 0;
  put(kCompanyName, Face::regular, company_);
  put(kTitleSize, Face::bold, report_->reportTitle);
  put(bands_.size, Face::regular, report_->lblAsOf);
  std::string selection = report_->lblSelection;
  selection.erase(0, std::min(selection.find_first_not_of(' '), selection.size()));
  put(bands_.size, Face::regular, selection);
  strip.add(bands_.title, strip.height);
  strip.height += 100;
  return strip;
}

Strip ReportRun::columnHeader() const {
  Strip strip{.part = Part::columnHeader, .content = {}};
  const bool any = std::ranges::any_of(bands_.columns, [](const Column& column) { return !column.caption.empty(); });
  if (!any) return strip;
  for (std::size_t i = 0; i < places_.size(); ++i) {
    Style look = style(Face::bold);
    look.align = bands_.columns[i].align;
    Box box = places_[i].box;
    box.y = narrow(places_[i].line * box.height);
    strip.text(box, look, bands_.columns[i].caption);
  }
  strip.line({0, narrow(strip.height + kRuleRoom), narrow(bodyWidth_), 0});
  strip.height += kRuleRoom;
  return strip;
}

Strip ReportRun::heading(std::size_t level, const std::string& text) const {
  Strip strip{.part = Part::groupHeader, .content = {}, .depth = level, .headings = headings_};
  if (!text.empty()) {
    constexpr int kAbove = 60, kIndent = 120;
    const int indent = kIndent * static_cast<int>(level);
    strip.text(lineBox(indent, kAbove, bodyWidth_ - indent, bands_.size), style(Face::bold), text);
  }
  strip.add(bands_.groups[level].header, strip.height);
  return strip;
}

Strip ReportRun::detail() {
  Strip strip{.part = Part::detail, .content = {}, .depth = bands_.groups.size(), .headings = headings_};
  const RowLook look = bands_.look ? bands_.look() : RowLook{};
  int height = look.spaceAbove + lines_ * lineHeight(bands_.size);
  std::uint8_t jump = 0;
  for (std::size_t i = 0; i < places_.size(); ++i) {
    const std::size_t before = strip.content.elements.size();
    height = std::max(height, detailCell(strip, i, look));
    const Column& column = bands_.columns[i];
    if (!column.jump) continue;
    ++jump;
    if (strip.content.elements.size() == before) continue;
    const std::int32_t key = column.jumpKey();
    if (key < 0) continue;
    strip.content.elements.back().jump = jump;
    strip.content.elements.back().jumpKey = key;
  }
  strip.height = std::max(strip.height, height);
  strip.add(bands_.detail, strip.height);
  if (look.ruleBelow) strip.height += 2 * kRuleRoom;
  return strip;
}

// Gives how far down it reaches.
int ReportRun::detailCell(Strip& strip, std::size_t i, const RowLook& look) {
  const Column& column = bands_.columns[i];
  const Value value = column.value ? column.value() : report_->value(places_[i].field);
  Style itsStyle = style(look.face);
  itsStyle.align = column.align;
  Box box = places_[i].box;
  box.y = narrow(look.spaceAbove + places_[i].line * box.height);
  if (i == 0) box.x = narrow(box.x + look.indent), box.width = narrow(box.width - look.indent);
  const bool figure = column.align == Align::right;
  if (figure && look.ruleAbove && !value.isNull()) strip.line({box.x, box.y, box.width, 0});
  if (figure && look.ruleBelow && !value.isNull())
    for (const int below : {0, kRuleRoom}) strip.line({box.x, narrow(box.bottom() + below), box.width, 0});
  if (value.isNull()) return box.bottom();
  const std::string text = column.format->show(value);
  if (text.empty()) return box.bottom();
  if (!column.wraps) {
    figure&& value.isNumber() ? strip.figure(box, itsStyle, text, value) : void(strip.text(box, itsStyle, text, value));
    return box.bottom();
  }
  for (const std::string& some : wrapped(text, itsStyle, box.width)) {
    strip.text(box, itsStyle, some);
    box.y = narrow(box.y + box.height);
  }
  return box.y;
}

Strip ReportRun::sums(Part part, const Band& band, const std::string& words, const Sums& sums) const {
  Strip strip{.part = part, .content = {}};
  strip.add(band, 0);
  if (words.empty()) return strip;
  int room = bodyWidth_, top = strip.height + kRuleRoom;
  for (std::size_t i = 0; i < places_.size(); ++i)
    if (bands_.columns[i].summed) room = std::min<int>(room, places_[i].box.x);
  const bool apart = room < kLeastLabel && room < bodyWidth_;
  strip.text(lineBox(0, top, apart ? bodyWidth_ : room - (room < bodyWidth_ ? kGap : 0), bands_.size),
             style(Face::bold), words);
  if (apart) top = strip.height;
  for (std::size_t i = 0; i < places_.size(); ++i) {
    const Column& column = bands_.columns[i];
    if (!column.summed) continue;
    Box box = places_[i].box;
    box.y = narrow(top + places_[i].line * box.height);
    Style look = style(Face::bold);
    look.align = Align::right;
    if (places_[i].line == 0) strip.line({box.x, box.y, box.width, 0});
    strip.figure(box, look, column.format->show(Value(sums[i])), Value(sums[i]));
    if (part == Part::summary && places_[i].line + 1 == lines_)
      for (const int below : {0, kRuleRoom}) strip.line({box.x, narrow(box.bottom() + below), box.width, 0});
  }
  strip.height += part == Part::summary ? 2 * kRuleRoom : kRuleRoom;
  return strip;
}

}  // namespace quillon::reports
