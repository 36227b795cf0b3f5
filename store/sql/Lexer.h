#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "store/sql/Ast.h"

namespace quillon::store::sql {

enum class TokenKind : std::uint8_t {
  end,
  word,        // a name or a word of the dialect
  quotedName,  // "..."
  text,        // '...'
  number,
  parameter,  // :Name
  mark,       // ( ) , . ; * and the operators, also those of two characters
  bad,        // what no statement may hold; `fault` says why
};

// Its views look into the text of the statement.
struct Token {
  TokenKind kind = TokenKind::end;
  std::string_view text;     // as it stands there, with its quotes or colon
  std::string_view keyword;  // in upper case, of a word that the dialect knows; otherwise empty
  std::string_view fault;
  Place place;
  std::size_t begin = 0;  // in bytes from the start of the text
  std::size_t end() const { return begin + text.size(); }
};

// Cuts a statement's text into tokens, over blanks and comments. Never raises: what cannot be read is a bad token, and
// after the last one comes `end` again and again. The text must stay as long as the tokens are used.
class Lexer {
 public:
  explicit Lexer(std::string_view source, Place origin = {}) : source_(source), place_(origin) {}
  Token next();

 private:
  bool skipBlanks();  // false when a comment has no end
  Token take(TokenKind kind, std::size_t size, std::string_view fault = {});
  Token takeQuoted(TokenKind kind);
  Token takeNumber();
  Token takeMark();
  std::size_t wordEnd(std::size_t from) const;
  char at(std::size_t position) const { return position < source_.size() ? source_[position] : '\0'; }
  void moveTo(std::size_t position);

  std::string_view source_;
  std::size_t position_ = 0;
  Place place_;
};

// What a token in quotes says: without them, and each doubled quote inside once.
std::string unquoted(std::string_view quoted);
// Whether the name can stand without quotes: letters, digits and '_', no digit first, and none of the reserved words.
bool isPlainName(std::string_view name);
// Whether a word in upper case is a name only in quotes.
bool isReserved(std::string_view keyword);

}  // namespace quillon::store::sql
