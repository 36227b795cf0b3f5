#include "base/AmountFormat.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "base/Errors.h"

namespace quillon {

// The digits of an amount in front of the point, without leading zeros, and behind it.
struct AmountFormat::Decimal {
  std::string whole, fraction;
  bool negative = false;

  bool isZero() const { return (whole + fraction).find_first_not_of('0') == std::string::npos; }
  void round(std::size_t decimals);
};

// Half away from zero.
void AmountFormat::Decimal::round(std::size_t decimals) {
  if (fraction.size() <= decimals) return;
  bool carry = fraction[decimals] >= '5';
  fraction.resize(decimals);
  for (std::string* digits : {&fraction, &whole}) {
    for (std::size_t i = digits->size(); carry && i-- > 0;) {
      carry = (*digits)[i] == '9';
      (*digits)[i] = carry ? '0' : static_cast<char>((*digits)[i] + 1);
    }
  }
  if (carry) whole.insert(whole.begin(), '1');
}

namespace {

[[noreturn]] void raiseBadPicture(std::string_view picture, const char* reason) {
  throw Error("The format '" + std::string(picture) + "' " + reason);
}

// Takes the character or the quotation at the front of `rest`.
std::string_view takeLiteral(std::string_view& rest, std::string_view picture) {
  const char quote = rest.front();
  if (quote != '\'' && quote != '"') {
    const std::string_view literal = rest.substr(0, 1);
    rest.remove_prefix(1);
    return literal;
  }
  const std::size_t end = rest.find(quote, 1);
  if (end == rest.npos) raiseBadPicture(picture, "has an open quotation");
  const std::string_view literal = rest.substr(1, end - 1);
  rest.remove_prefix(end + 1);
  return literal;
}

}  // namespace

// Takes one section and the ';' behind it off `rest`.
AmountFormat::Section AmountFormat::readSection(std::string_view& rest, std::string_view picture) {
  Section section;
  bool pointSeen = false;
  bool closed = false;  // text behind the digits has begun
  while (!rest.empty() && rest.front() != ';') {
    section.empty = false;
    const char c = rest.front();
    if (c != '0' && c != '#' && c != ',' && c != '.') {
      closed = section.hasDigits || pointSeen;
      (closed ? section.after : section.before) += takeLiteral(rest, picture);
      continue;
    }
    rest.remove_prefix(1);
    if (closed) raiseBadPicture(picture, "has text between its digits");
    if (c == ',') {
      if (pointSeen) raiseBadPicture(picture, "groups digits behind the point");
      section.grouped = true;
    } else if (c == '.') {
      if (pointSeen) raiseBadPicture(picture, "has two decimal points");
      pointSeen = true;
    } else {
      section.hasDigits = true;
      if (pointSeen) {
        ++section.mostDecimals;
        if (c == '0') section.leastDecimals = section.mostDecimals;
      } else if (c == '0' || section.leastWhole > 0) {
        ++section.leastWhole;
      }
    }
  }
  if (!rest.empty()) rest.remove_prefix(1);
  return section;
}

AmountFormat::AmountFormat(std::string_view picture, Separators separators) : separators_(std::move(separators)) {
  std::string_view rest = picture;
  for (Section& section : sections_) section = readSection(rest, picture);
  if (!rest.empty()) raiseBadPicture(picture, "has more than three sections");
  if (sections_[0].empty) {
    sections_[0].hasDigits = true;
    sections_[0].leastWhole = 1;
    sections_[0].mostDecimals = 15;
  }
}

std::size_t AmountFormat::mostDecimals() const {
  return std::ranges::max(sections_, {}, &Section::mostDecimals).mostDecimals;
}

std::string AmountFormat::format(Money amount) const {
  Decimal decimal;
  std::string digits = amount.toText();
  if (digits.front() == '-') {
    decimal.negative = true;
    digits.erase(0, 1);
  }
  const std::size_t point = digits.find('.');
  decimal.whole = digits.substr(0, point);
  if (point != digits.npos) decimal.fraction = digits.substr(point + 1);
  return format(std::move(decimal));
}

std::string AmountFormat::format(double amount) const {
  if (!std::isfinite(amount)) throw Error("The amount is not a number");
  // d.dddddddddddddde+xx: the point goes behind as many of the digits as the exponent says.
  constexpr int kDigits = 15;
  char text[32];
  const auto end =
      std::to_chars(text, text + sizeof text, std::fabs(amount), std::chars_format::scientific, kDigits - 1);
  std::string digits(text, end.ptr);
  const int whole = 1 + std::atoi(digits.c_str() + kDigits + 2);
  digits.resize(kDigits + 1);
  digits.erase(1, 1);
  if (whole < 0) digits.insert(0, static_cast<std::size_t>(-whole), '0');
  if (whole > kDigits) digits.append(static_cast<std::size_t>(whole - kDigits), '0');
  const auto point = static_cast<std::size_t>(whole < 0 ? 0 : whole);
  return format(Decimal{digits.substr(0, point), digits.substr(point), amount < 0});
}

std::string AmountFormat::format(Decimal amount) const {
  const bool ownSection = amount.negative && !sections_[1].empty;
  const Section& section = sections_[ownSection ? 1 : 0];
  if (section.hasDigits) amount.round(section.mostDecimals);
  if (amount.isZero()) return write(sections_[sections_[2].empty ? 0 : 2], Decimal{});
  return (amount.negative && !ownSection ? "-" : "") + write(section, amount);
}

std::string AmountFormat::write(const Section& section, const Decimal& amount) const {
  if (!section.hasDigits) return section.before + section.after;
  std::string whole = amount.whole;
  whole.erase(0, whole.find_first_not_of('0'));
  if (whole.size() < section.leastWhole) whole.insert(0, section.leastWhole - whole.size(), '0');
  if (section.grouped) {
    for (std::size_t place = whole.size(); place > 3;) whole.insert(place -= 3, separators_.group);
  }
  std::string fraction = amount.fraction;
  fraction.erase(fraction.find_last_not_of('0') + 1);
  if (fraction.size() < section.leastDecimals) fraction.append(section.leastDecimals - fraction.size(), '0');
  return section.before + whole + (fraction.empty() ? "" : separators_.decimal + fraction) + section.after;
}

}  // namespace quillon
