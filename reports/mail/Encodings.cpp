#include "reports/mail/Encodings.h"

#include <algorithm>

#include "base/Text.h"

namespace quillon::reports {
namespace {

constexpr std::size_t kLine = 76;
constexpr std::string_view kHex = "0123456789ABCDEF";

void appendHex(std::string& out, char mark, char byte) {
  const auto value = static_cast<unsigned char>(byte);
  out += mark;
  out += kHex[value >> 4U];
  out += kHex[value & 15U];
}

bool isPlain(char c) { return c >= ' ' && c <= '~'; }

std::string withoutControls(std::string_view text) {
  std::string clean(text);
  for (char& c : clean)
    if (static_cast<unsigned char>(c) < ' ' || c == 0x7F) c = ' ';
  return clean;
}

// What stands in a header as it is.
bool isShortAndPlain(std::string_view text) {
  constexpr std::size_t kShort = 60;
  return text.size() <= kShort && std::ranges::all_of(text, isPlain) && text.find("=?") == std::string_view::npos;
}

std::string quoted(std::string_view text) {
  std::string out = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') out += '\\';
    out += c;
  }
  return out + '"';
}

// Words of whole characters.
std::string encodedWords(std::string_view text) {
  constexpr std::size_t kBytes = 39;  // so that the word and a header's name fit a line
  std::string out;
  for (std::size_t from = 0; from < text.size();) {
    std::size_t to = from;
    for (std::size_t next = to; next < text.size();) {
      nextCodePoint(text, next);
      if (next - from > kBytes) break;
      to = next;
    }
    out += (out.empty() ? "=?UTF-8?B?" : "\r\n =?UTF-8?B?") + base64(text.substr(from, to - from)) + "?=";
    from = to;
  }
  return out;
}

}  // namespace

std::string base64(std::string_view bytes) {
  constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  out.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    const std::size_t here = std::min<std::size_t>(3, bytes.size() - at);
    unsigned group = 0;
    for (std::size_t i = 0; i < 3; ++i)
      group = group << 8U | (i < here ? static_cast<unsigned char>(bytes[at + i]) : 0U);
    for (std::size_t i = 0; i < 4; ++i) out += i <= here ? kDigits[group >> (18 - 6 * i) & 63U] : '=';
  }
  return out;
}

std::string base64Lines(std::string_view bytes) {
  constexpr std::size_t kBytes = kLine / 4 * 3;
  std::string out;
  out.reserve(bytes.size() / kBytes * (kLine + 2) + kLine + 2);
  for (std::size_t at = 0; at < bytes.size(); at += kBytes) out += base64(bytes.substr(at, kBytes)) + "\r\n";
  return out;
}

std::string quotedPrintable(std::string_view text) {
  std::string out;
  std::size_t column = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    const bool endsLine = text.substr(at).starts_with("\r\n") || c == '\n';
    if (endsLine) {
      at += c == '\r' ? 1 : 0;
      out += "\r\n";
      column = 0;
      continue;
    }
    // A blank at the end of a line may get lost on the way.
    const bool last = at + 1 == text.size() || text[at + 1] == '\n' || text[at + 1] == '\r';
    const bool stays = isPlain(c) && c != '=' && !(c == ' ' && last);
    const std::size_t width = stays ? 1 : 3;
    if (column + width >= kLine) {
      out += "=\r\n";
      column = 0;
    }
    column += width;
    stays ? void(out += c) : appendHex(out, '=', c);
  }
  return out;
}

std::string percentEncoded(std::string_view bytes, std::string_view kept) {
  std::string out;
  for (const char c : bytes) {
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    if (letter || std::string_view("-._~").find(c) != std::string_view::npos || kept.find(c) != std::string_view::npos)
      out += c;
    else
      appendHex(out, '%', c);
  }
  return out;
}

std::string headerText(std::string_view text) {
  const std::string clean = withoutControls(text);
  return isShortAndPlain(clean) ? clean : encodedWords(clean);
}

std::string headerName(std::string_view name) {
  const std::string clean = withoutControls(name);
  return isShortAndPlain(clean) ? quoted(clean) : encodedWords(clean);
}

std::string headerParameter(std::string_view name, std::string_view value) {
  const std::string clean = withoutControls(value), begin = ";\r\n " + std::string(name);
  if (isShortAndPlain(clean)) return begin + "=" + quoted(clean);
  constexpr std::size_t kPiece = 54;
  std::string rest = "UTF-8''" + percentEncoded(clean, ""), out;
  for (int number = 0; !rest.empty(); ++number) {
    std::size_t size = std::min(kPiece, rest.size());
    if (const std::size_t percent = rest.rfind('%', size - 1);
        size < rest.size() && percent != std::string::npos && percent + 3 > size)
      size = percent;
    out += begin + "*" + std::to_string(number) + "*=" + rest.substr(0, size);
    rest.erase(0, size);
  }
  return out;
}

std::string headerList(const std::vector<std::string>& addresses) {
  std::string out;
  for (const std::string& address : addresses) out += (out.empty() ? "" : ",\r\n ") + address;
  return out;
}

}  // namespace quillon::reports
