#include "store/sql/Lexer.h"

#include <algorithm>
#include <array>

#include "base/Text.h"

namespace quillon::store::sql {
namespace {

constexpr auto kReserved = std::to_array<std::string_view>({
    "ALL",    "ALTER", "AND",      "AS",     "ASC",    "BETWEEN", "BY",     "CASE",   "CAST", "CREATE", "CROSS",
    "DELETE", "DESC",  "DISTINCT", "DROP",   "ELSE",   "END",     "EXISTS", "FALSE",  "FROM", "FULL",   "GROUP",
    "HAVING", "IF",    "IN",       "INNER",  "INSERT", "INTO",    "IS",     "JOIN",   "LEFT", "LIKE",   "NOCASE",
    "NOT",    "NULL",  "ON",       "OR",     "ORDER",  "OUTER",   "RIGHT",  "SELECT", "SET",  "TABLE",  "THEN",
    "TOP",    "TRUE",  "UNION",    "UPDATE", "VALUES", "WHEN",    "WHERE",
});

// Words only where the dialect expects them; elsewhere they are names.
constexpr auto kContextual = std::to_array<std::string_view>({
    "ADD",
    "COLUMN",
    "CURRENT_DATE",
    "EXPLAIN",
    "EXTRACT",
    "FOR",
    "INDEX",
    "KEY",
    "MODIFY",
    "PRECISION",
    "PRIMARY",
    "SUBSTRING",
    "UNIQUE",
});

static_assert(std::ranges::is_sorted(kReserved) && std::ranges::is_sorted(kContextual));

constexpr std::size_t kLongestKeyword = 12;

constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool isLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}
constexpr bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

template <std::size_t size>
std::string_view found(const std::array<std::string_view, size>& words, std::string_view upper) {
  const auto* place = std::ranges::lower_bound(words, upper);
  return place != words.end() && *place == upper ? *place : std::string_view();
}

std::string_view keywordOf(std::string_view word) {
  if (word.size() > kLongestKeyword) return {};
  std::array<char, kLongestKeyword> upper{};
  std::ranges::transform(word, upper.begin(),
                         [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  const std::string_view key(upper.data(), word.size());
  const std::string_view reserved = found(kReserved, key);
  return reserved.empty() ? found(kContextual, key) : reserved;
}

}  // namespace

Token Lexer::next() {
  if (!skipBlanks()) return take(TokenKind::bad, source_.size() - position_, "the comment has no end");
  if (position_ >= source_.size()) return take(TokenKind::end, 0);
  const char first = at(position_), second = at(position_ + 1);
  if (isLetter(first)) {
    Token word = take(TokenKind::word, wordEnd(position_) - position_);
    word.keyword = keywordOf(word.text);
    return word;
  }
  if (isDigit(first) || (first == '.' && isDigit(second))) return takeNumber();
  if (first == '\'') return takeQuoted(TokenKind::text);
  if (first == '"') return takeQuoted(TokenKind::quotedName);
  if (first == ':') {
    if (!isLetter(second)) return take(TokenKind::bad, 1, "a parameter is a colon and a name");
    return take(TokenKind::parameter, wordEnd(position_ + 1) - position_);
  }
  return takeMark();
}

bool Lexer::skipBlanks() {
  std::size_t end = position_;
  while (end < source_.size()) {
    if (isBlank(source_[end])) {
      ++end;
    } else if (source_.substr(end).starts_with("--")) {
      end = std::min(source_.find_first_of("\r\n", end), source_.size());
    } else if (source_.substr(end).starts_with("/*")) {
      const std::size_t close = source_.find("*/", end + 2);
      if (close == std::string_view::npos) {
        moveTo(end);
        return false;
      }
      end = close + 2;
    } else {
      break;
    }
  }
  moveTo(end);
  return true;
}

Token Lexer::take(TokenKind kind, std::size_t size, std::string_view fault) {
  Token token{.kind = kind,
              .text = source_.substr(position_, size),
              .keyword = {},
              .fault = fault,
              .place = place_,
              .begin = position_};
  if (kind != TokenKind::bad && !isValidUtf8(token.text)) {
    token.kind = TokenKind::bad;
    token.fault = "these bytes are no text in UTF-8";
  }
  moveTo(position_ + size);
  return token;
}

Token Lexer::takeQuoted(TokenKind kind) {
  const char quote = at(position_);
  std::size_t end = position_ + 1;
  while (true) {
    end = source_.find(quote, end);
    if (end == std::string_view::npos) {
      return take(TokenKind::bad, source_.size() - position_, "the closing quote is missing");
    }
    ++end;
    if (at(end) != quote) break;
    ++end;
  }
  const bool empty = kind == TokenKind::quotedName && end - position_ == 2;
  return take(empty ? TokenKind::bad : kind, end - position_, empty ? "the name in quotes is empty" : "");
}

Token Lexer::takeNumber() {
  std::size_t end = position_;
  while (isDigit(at(end))) ++end;
  if (at(end) == '.') {
    ++end;
    while (isDigit(at(end))) ++end;
  }
  if (at(end) == 'e' || at(end) == 'E') {
    std::size_t exponent = end + 1;
    if (at(exponent) == '+' || at(exponent) == '-') ++exponent;
    if (isDigit(at(exponent))) {
      end = exponent;
      while (isDigit(at(end))) ++end;
    }
  }
  if (isLetter(at(end))) return take(TokenKind::bad, wordEnd(end) - position_, "this is neither a number nor a name");
  return take(TokenKind::number, end - position_);
}

Token Lexer::takeMark() {
  constexpr std::string_view kSingle = "(),.;*=<>+-/";
  const std::string_view rest = source_.substr(position_);
  for (const std::string_view pair : {"<>", "<=", ">=", "||", "!="}) {
    if (rest.starts_with(pair)) return take(TokenKind::mark, pair.size());
  }
  if (kSingle.find(rest.front()) != std::string_view::npos) return take(TokenKind::mark, 1);
  return take(TokenKind::bad, 1, "a character that has no meaning here");
}

std::size_t Lexer::wordEnd(std::size_t from) const {
  while (isLetter(at(from)) || isDigit(at(from))) ++from;
  return from;
}

void Lexer::moveTo(std::size_t position) {
  for (; position_ < position; ++position_) {
    const char c = source_[position_];
    if (c == '\n') {
      ++place_.line;
      place_.column = 1;
    } else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) {  // a character is counted at its first byte
      ++place_.column;
    }
  }
}

std::string unquoted(std::string_view quoted) {
  const char quote = quoted.front();
  quoted = quoted.substr(1, quoted.size() - 2);
  std::string text;
  text.reserve(quoted.size());
  for (std::size_t i = 0; i < quoted.size(); ++i) {
    text += quoted[i];
    if (quoted[i] == quote) ++i;
  }
  return text;
}

bool isReserved(std::string_view keyword) { return !found(kReserved, keyword).empty(); }

bool isPlainName(std::string_view name) {
  const std::string_view keyword = keywordOf(name);
  return !name.empty() && !isDigit(name.front()) && !isReserved(keyword) && keyword != "CURRENT_DATE" &&
         std::ranges::all_of(name, [](char c) { return isLetter(c) || isDigit(c); });
}

}  // namespace quillon::store::sql
