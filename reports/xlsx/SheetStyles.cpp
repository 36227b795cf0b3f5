#include "reports/xlsx/SheetStyles.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace quillon::reports {
namespace {

// With the room of a bracket behind what has none, so that points stand below each other.
constexpr std::array<const char*, 9> kFormats = {"General",
                                                 "#,##0.00##_);(#,##0.00##)",
                                                 "0_)",
                                                 "#,##0_);(#,##0)",
                                                 "#,##0.######_);(#,##0.######)",
                                                 "0.00##&quot;%&quot;",
                                                 "dd mmm yy",
                                                 "dd mmm yy hh:mm",
                                                 "hh:mm"};
constexpr std::uint32_t kFirstOwnFormat = 164;            // the numbers below are the format's own
constexpr std::int64_t kMostWhole = 999'999'999'999'999;  // a sheet keeps 15 digits
constexpr int kEpoch = 25569;                             // 1970-01-01, as sheets number days
constexpr int kFirstSureDay = 61;  // 1 March 1900; before it programs differ by a day, and there is none before 1900
constexpr std::uint32_t kQuietBit = 1 << 8;

std::string decimal(double number) {
  std::array<char, 40> digits;
  return {digits.data(), std::to_chars(digits.begin(), digits.end(), number).ptr};
}

CellNumber numberOfDay(Date date, const TimeOfDay* time) {
  const int day = date.days() + kEpoch;
  if (day < kFirstSureDay) return {};
  if (time == nullptr) return {CellFormat::date, std::to_string(day)};
  return {CellFormat::dateTime, decimal(day + static_cast<double>(time->milliseconds) / TimeOfDay::kDay)};
}

CellNumber numberOfReal(double number, std::string_view text) {
  if (!std::isfinite(number)) return {};
  if (text.ends_with('%')) return {CellFormat::percent, decimal(number)};
  return {number == std::floor(number) ? CellFormat::grouped : CellFormat::decimals, decimal(number)};
}

}  // namespace

std::size_t SheetStyles::numberOf(const Style& style, CellFormat format) {
  const Look look{
      static_cast<std::uint32_t>(style.face) | (style.quiet ? kQuietBit : 0u) | std::uint32_t{style.size} << 16,
      static_cast<std::uint32_t>(style.align) | static_cast<std::uint32_t>(format) << 8};
  const auto [found, fresh] = numbers_.try_emplace(look, looks_.size() + 1);  // 0 is the plain one
  if (fresh) looks_.push_back(look);
  return found->second;
}

std::string SheetStyles::part() const {
  std::map<std::uint32_t, std::size_t> fonts;
  std::string fontList = "<font><sz val=\"10\"/><name val=\"Arial\"/><family val=\"2\"/></font>", cells, formats;
  for (const Look& look : looks_) {
    const auto [font, fresh] = fonts.try_emplace(look.font, fonts.size() + 1);
    if (fresh) {
      const auto face = static_cast<Face>(look.font & 0xFF);
      fontList += "<font>";
      if (face == Face::bold || face == Face::boldItalic) fontList += "<b/>";
      if (face == Face::italic || face == Face::boldItalic) fontList += "<i/>";
      fontList += "<sz val=\"" + decimal((look.font >> 16) / 10.0) + "\"/>";
      std::array<char, 40> colour = {};
      std::snprintf(colour.data(), colour.size(), "<color rgb=\"FF%02X%02X%02X\"/>", kQuietShade, kQuietShade,
                    kQuietShade);
      if (look.font & kQuietBit) fontList += colour.data();
      fontList += "<name val=\"Arial\"/><family val=\"2\"/></font>";
    }
    const std::uint32_t format = look.cell >> 8;
    constexpr std::array<const char*, 3> kAligned = {"left", "center", "right"};
    cells += "<xf numFmtId=\"" + std::to_string(format == 0 ? 0 : kFirstOwnFormat + format) + "\" fontId=\"" +
             std::to_string(font->second) +
             "\" fillId=\"0\" borderId=\"0\" xfId=\"0\" applyNumberFormat=\"1\" applyFont=\"1\" applyAlignment=\"1\">"
             "<alignment horizontal=\"" +
             kAligned[look.cell & 0xFF] + "\"/></xf>";
  }
  for (std::uint32_t i = 1; i < kFormats.size(); ++i)
    formats += "<numFmt numFmtId=\"" + std::to_string(kFirstOwnFormat + i) + "\" formatCode=\"" + kFormats[i] + "\"/>";
  return "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
         "<styleSheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\"><numFmts count=\"" +
         std::to_string(kFormats.size() - 1) + "\">" + formats + "</numFmts><fonts count=\"" +
         std::to_string(fonts.size() + 1) + "\">" + fontList +
         "</fonts><fills count=\"2\"><fill><patternFill patternType=\"none\"/></fill>"
         "<fill><patternFill patternType=\"gray125\"/></fill></fills>"
         "<borders count=\"1\"><border><left/><right/><top/><bottom/><diagonal/></border></borders>"
         "<cellStyleXfs count=\"1\"><xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\"/></cellStyleXfs>"
         "<cellXfs count=\"" +
         std::to_string(looks_.size() + 1) +
         "\"><xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\" xfId=\"0\"/>" + cells +
         "</cellXfs><cellStyles count=\"1\"><cellStyle name=\"Normal\" xfId=\"0\" builtinId=\"0\"/></cellStyles>"
         "</styleSheet>";
}

CellNumber cellNumber(const store::Value& value, std::string_view text) {
  using Kind = store::Value::Kind;
  switch (value.kind()) {
    case Kind::whole:
      if (value.asInt64() > kMostWhole || value.asInt64() < -kMostWhole) return {};
      return {text.find_first_not_of("-0123456789") == std::string_view::npos ? CellFormat::whole : CellFormat::grouped,
              std::to_string(value.asInt64())};
    case Kind::real:
      return numberOfReal(value.asDouble(), text);
    case Kind::money:
      return {text.ends_with('%') ? CellFormat::percent : CellFormat::money, value.asMoney().toText()};
    case Kind::date:
      return numberOfDay(value.asDate(), nullptr);
    case Kind::dateTime: {
      const DateTime moment = value.asDateTime();
      return numberOfDay(moment.date, &moment.time);
    }
    case Kind::time:
      return {CellFormat::time, decimal(static_cast<double>(value.asTime().milliseconds) / TimeOfDay::kDay)};
    case Kind::null:
    case Kind::boolean:
    case Kind::text:
    case Kind::blob:
      return {};
  }
  return {};
}

}  // namespace quillon::reports
