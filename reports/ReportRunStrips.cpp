// What stands in the strips of a report.
#include <algorithm>

#include "form/App.h"
#include "reports/ReportRun.h"
#include "shell/Session.h"

namespace quillon::reports {
namespace {

using store::Value;

constexpr int kRuleRoom = 25;
constexpr int kTitleSize = 160, kCompanyName = 110, kSmall = 80;
constexpr int kLeastLabel = 900;  // a total's words have their own line where there is less room

std::int16_t narrow(int number) { return static_cast<std::int16_t>(number); }

// The words of selections come with blanks before them, to be set one behind the other.
std::string trimmed(const std::string& words) {
  return words.substr(std::min(words.find_first_not_of(' '), words.size()));
}

}  // namespace

Style ReportRun::style(Face face) const { return {.face = face, .size = static_cast<std::uint16_t>(bands_.size)}; }

Box ReportRun::lineBox(int x, int y, int width, int size) const {
  return {narrow(x), y, narrow(width), narrow(lineHeight(size))};
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
  put(bands_.size, Face::regular, trimmed(report_->lblSelection));
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
    box.y = places_[i].line * box.height;
    strip.text(box, look, bands_.columns[i].caption);
  }
  strip.line({0, strip.height + kRuleRoom, narrow(bodyWidth_), 0});
  strip.height += kRuleRoom;
  return strip;
}

// As it was when the group began, whatever row is read by now.
Strip ReportRun::heading(std::size_t level, const std::vector<Heading>& headings, const char* more) const {
  const Heading& its = headings[level];
  Strip strip{.part = Part::groupHeader, .content = {}};
  if (!its.text.empty()) {
    constexpr int kAbove = 60, kIndent = 120;
    const int indent = kIndent * static_cast<int>(level);
    strip.text(lineBox(indent, kAbove, bodyWidth_ - indent, bands_.size), style(Face::bold), its.text + more);
  }
  place(Page(its.band.content), strip.content, 0, strip.height);
  strip.height += its.band.height;
  return strip;
}

Strip ReportRun::detail() {
  Strip strip{.part = Part::detail, .content = {}, .depth = bands_.groups.size(), .headings = headings_};
  const RowLook look = bands_.look ? bands_.look() : RowLook{};
  int height = look.spaceAbove + lines_ * lineHeight(bands_.size);
  for (std::size_t i = 0; i < places_.size(); ++i) {
    const std::size_t before = strip.content.elements.size();
    height = std::max(height, detailCell(strip, i, look));
    if (places_[i].jump == 0 || strip.content.elements.size() == before) continue;
    const std::int32_t key = bands_.columns[i].jumpKey();
    if (key < 0) continue;
    strip.content.elements.back().jump = places_[i].jump;
    strip.content.elements.back().jumpKey = key;
  }
  strip.height = std::max(strip.height, height);
  strip.add(bands_.detail, strip.height);
  if (look.ruleBelow) strip.height += 2 * kRuleRoom;
  strip.withNext = look.withNext, strip.withPrevious = look.withPrevious;
  return strip;
}

// Gives how far down it reaches.
int ReportRun::detailCell(Strip& strip, std::size_t i, const RowLook& look) {
  const Column& column = bands_.columns[i];
  const Value value = column.value ? column.value() : report_->value(places_[i].field);
  Style itsStyle = style(look.face);
  itsStyle.align = column.align;
  Box box = places_[i].box;
  box.y = look.spaceAbove + places_[i].line * box.height;
  if (i == 0) box.x = narrow(box.x + look.indent), box.width = narrow(box.width - look.indent);
  const bool figure = column.align == Align::right;
  if (figure && look.ruleAbove && !value.isNull()) strip.line({box.x, box.y, box.width, 0});
  if (figure && look.ruleBelow && !value.isNull())
    for (const int below : {0, kRuleRoom}) strip.line({box.x, box.bottom() + below, box.width, 0});
  if (value.isNull()) return box.bottom();
  const std::string text = column.format->show(value);
  if (text.empty()) return box.bottom();
  if (!column.wraps) {
    figure&& value.isNumber() ? strip.figure(box, itsStyle, text, value) : void(strip.text(box, itsStyle, text, value));
    return box.bottom();
  }
  for (const std::string& some : wrapped(text, itsStyle, box.width)) {
    strip.text(box, itsStyle, some);
    box.y += box.height;
  }
  return box.y;
}

Strip ReportRun::sums(Part part, const Band& band, const std::string& words, const Sums& sums, Leads leads) const {
  const auto has = [&](std::size_t i) {
    return bands_.columns[i].summed || (bands_.columns[i].carried && part == Part::groupFooter);
  };
  Strip strip{.part = part, .content = {}};
  strip.add(band, 0);
  if (words.empty()) return strip;
  int room = bodyWidth_, top = strip.height + kRuleRoom;
  for (std::size_t i = 0; i < places_.size(); ++i)
    if (has(i)) room = std::min<int>(room, places_[i].box.x);
  const bool apart = room < kLeastLabel && room < bodyWidth_;
  strip.text(lineBox(0, top, apart ? bodyWidth_ : room - (room < bodyWidth_ ? kGap : 0), bands_.size),
             style(Face::bold), words);
  if (apart) top = strip.height;
  for (std::size_t i = 0; i < places_.size(); ++i) {
    const Column& column = bands_.columns[i];
    if (!has(i)) continue;
    Box box = places_[i].box;
    box.y = top + places_[i].line * box.height;
    Style look = style(Face::bold);
    look.align = Align::right;
    if (places_[i].line == 0) strip.line({box.x, box.y, box.width, 0});
    strip.figure(box, look, column.format->show(Value(sums[i])), Value(sums[i]));
    Element& figure = strip.content.elements.back();
    if (leads.key >= 0) figure.jump = leads.jump, figure.jumpKey = leads.key;
    if (part == Part::summary && places_[i].line + 1 == lines_)
      for (const int below : {0, kRuleRoom}) strip.line({box.x, box.bottom() + below, box.width, 0});
  }
  strip.height += part == Part::summary ? 2 * kRuleRoom : kRuleRoom;
  return strip;
}

Strip ReportRun::pageFooter() const {
  constexpr int kNumberWidth = 1400;
  Strip strip{.part = Part::pageFooter, .content = {}};
  Style small = style(), right = style();
  small.size = right.size = kSmall;
  small.quiet = right.quiet = true;
  right.align = Align::right;
  strip.line({0, 60, narrow(bodyWidth_), 0});
  std::string name;
  for (const std::string& part : {company_, report_->reportTitle, report_->lblAsOf, trimmed(report_->lblSelection)})
    if (!part.empty()) name += (name.empty() ? "" : " · ") + part;
  strip.text(lineBox(0, 90, bodyWidth_ - kNumberWidth, kSmall), small, name);
  strip.text(lineBox(bodyWidth_ - kNumberWidth, 90, kNumberWidth, kSmall), right,
             "Page " + std::to_string(pages_->pageCount() + 1));
  strip.add(bands_.pageFooter, 90);
  return strip;
}

}  // namespace quillon::reports
