#include "apps/ValueText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>

#include "base/Errors.h"
#include "base/Text.h"
#include "store/Schema.h"

namespace quillon::apps {
namespace {

using store::FieldType;
using store::Value;
using Kind = Value::Kind;

constexpr std::string_view kNull = "\\N";
constexpr std::string_view kHexDigits = "0123456789abcdef";

struct Escape {
  char raw, letter;
};
constexpr Escape kEscapes[] = {{'\t', 't'}, {'\r', 'r'}, {'\n', 'n'}, {'\\', '\\'}};

std::string shortest(double number) {
  std::array<char, 40> buffer;
  return {buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr};
}

std::string hexOf(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() * 2);
  for (const char byte : bytes) {
    text += kHexDigits[static_cast<unsigned char>(byte) >> 4];
    text += kHexDigits[static_cast<unsigned char>(byte) & 15];
  }
  return text;
}

std::string bytesOf(std::string_view digits) {
  const auto worth = [](char digit) {
    const auto place = kHexDigits.find(digit);
    if (place == std::string_view::npos) throw Error("hexadecimal digits in lower case are needed");
    return place;
  };
  if (digits.size() % 2) throw Error("an even number of hexadecimal digits is needed");
  std::string bytes;
  bytes.reserve(digits.size() / 2);
  for (std::size_t i = 0; i < digits.size(); i += 2)
    bytes += static_cast<char>(worth(digits[i]) << 4 | worth(digits[i + 1]));
  return bytes;
}

std::string textOf(const Value& value) {
  switch (value.kind()) {
    case Kind::boolean:
      return value.asBool() ? "true" : "false";
    case Kind::whole:
      return std::to_string(value.asInt64());
    case Kind::real:
      return shortest(value.asDouble());
    case Kind::money:
      return value.asMoney().toText();
    case Kind::text:
      return value.asText();
    case Kind::date:
      return value.asDate().toIso();
    case Kind::time:
      return value.asTime().toIso();
    case Kind::dateTime:
      return value.asDateTime().toIso();
    case Kind::blob:
      return hexOf(value.asBlob().bytes);
    case Kind::null:
      break;
  }
  return {};
}

template <typename Number>
Number numberOf(const std::string& text, const char* wanted) {
  Number number{};
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (fault != std::errc{} || end != text.data() + text.size()) throw Error(std::string(wanted) + " is needed");
  return number;
}

template <typename Some>
Some needed(const std::optional<Some>& some, const char* wanted) {
  if (!some) throw Error(std::string(wanted) + " is needed");
  return *some;
}

bool truthOf(std::string_view text) {
  const std::string folded = foldCase(text);
  if (folded == foldCase("true")) return true;
  if (folded == foldCase("false")) return false;
  throw Error("true or false is needed");
}

}  // namespace

void appendEscaped(std::string& line, std::string_view text) {
  for (const char c : text) {
    const Escape* escape = nullptr;
    for (const Escape& each : kEscapes)
      if (each.raw == c) escape = &each;
    if (escape) line += '\\';
    line += escape ? escape->letter : c;
  }
}

void appendCell(std::string& line, const Value& value) {
  if (value.isNull())
    line += kNull;
  else
    appendEscaped(line, textOf(value));
}

std::vector<std::string_view> cellsOf(std::string_view line) {
  std::vector<std::string_view> cells;
  while (true) {
    const std::size_t tab = line.find('\t');
    cells.push_back(line.substr(0, tab));
    if (tab == std::string_view::npos) return cells;
    line.remove_prefix(tab + 1);
  }
}

std::string unescaped(std::string_view cell) {
  std::string text;
  text.reserve(cell.size());
  for (std::size_t i = 0; i < cell.size(); ++i) {
    if (cell[i] != '\\') {
      text += cell[i];
      continue;
    }
    const Escape* escape = nullptr;
    for (const Escape& each : kEscapes)
      if (i + 1 < cell.size() && each.letter == cell[i + 1]) escape = &each;
    if (!escape) throw Error("a backslash begins \\t, \\r, \\n, \\\\ or is \\N, which is null");
    text += escape->raw;
    ++i;
  }
  return text;
}

Value valueOfCell(std::string_view cell, const store::FieldDef& field) {
  if (cell == kNull) return {};
  std::string text = unescaped(cell);
  const bool asText = field.type == FieldType::string || field.type == FieldType::memo;
  if (asText && !isValidUtf8(text)) throw Error("text in UTF-8 is needed");
  if (asText) return text;
  if (field.type == FieldType::blob || field.type == FieldType::graphic) return store::Blob{bytesOf(text)};
  if (text.empty()) return {};
  switch (field.type) {
    case FieldType::floating:
      return numberOf<double>(text, "a number");
    case FieldType::currency:
      return needed(Money::parse(text), "an amount with up to four decimals");
    case FieldType::boolean:
      return truthOf(text);
    case FieldType::date:
      return needed(Date::parseIso(text), "a date such as 2012-03-31");
    case FieldType::time:
      return needed(TimeOfDay::parseIso(text), "a time such as 14:05:00");
    case FieldType::dateTime:
      return needed(DateTime::parseIso(text), "a date and time such as 2012-03-31 14:05:00");
    default:
      return numberOf<std::int64_t>(text, "a whole number");
  }
}

void appendJsonText(std::string& out, std::string_view text) {
  out += '"';
  while (!text.empty()) {
    const std::string_view one = firstCharacters(text, 1);
    const auto byte = static_cast<unsigned char>(text.front());
    if (byte == '\r' || byte == '\n' || byte == '\t') {
      out.append(1, '\\').append(1, byte == '\r' ? 'r' : byte == '\n' ? 'n' : 't');
    } else if (byte < 0x20) {
      out += "\\u00";
      out += kHexDigits[byte >> 4];
      out += kHexDigits[byte & 15];
    } else if (byte == '"' || byte == '\\') {
      out.append(1, '\\').append(1, text.front());
    } else if (!isValidUtf8(one)) {
      out += "\xEF\xBF\xBD";
    } else {
      out += one;
    }
    text.remove_prefix(one.size());
  }
  out += '"';
}

void appendJson(std::string& out, const Value& value) {
  switch (value.kind()) {
    case Kind::null:
      out += "null";
      return;
    case Kind::real:
      if (!std::isfinite(value.asDouble())) {
        out += "null";
        return;
      }
      [[fallthrough]];
    case Kind::boolean:
    case Kind::whole:
    case Kind::money:
      out += textOf(value);
      return;
    default:
      appendJsonText(out, textOf(value));
  }
}

}  // namespace quillon::apps
