#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/sql/Ast.h"

namespace quillon::store::sql {

inline constexpr std::size_t kMaxStatementSize = std::size_t{1} << 20;  // bytes
inline constexpr int kMaxNesting = 200;  // of parentheses, calls and sub-selects in each other

// The tree of one statement, which may end with a ';'. `origin` is where the text stands in a larger one.
// StatementError (badStatement) with the place of what was not expected. Needs a bounded stack for any text.
std::unique_ptr<Statement> parse(std::string_view text, Place origin = {});

// A condition, as a cursor's filter holds it. StatementError as from `parse`.
ExprPtr parseFilter(std::string_view text);

// The parameters that the statement asks for, in the order and the case in which it first names them, without colons.
std::vector<std::string> parameterNames(const Statement& statement);

struct StatementText {
  std::string text;  // from its first token to its last, without the ';'
  Place place;       // of its first token in the script
};

// The statements of a script, parted by ';' outside of quotes and comments. Those without a token are left out. Raises
// nothing: what cannot be read stays in its statement.
std::vector<StatementText> splitStatements(std::string_view script);

}  // namespace quillon::store::sql
