#pragma once

#include <string>

#include "store/sql/Ast.h"

// The canonical text of a tree: words of the dialect in upper case, one space between tokens, no parentheses but those
// that are needed, names in quotes only where they must be. Parsing it gives the same tree again, places and texts
// apart; trees that mean the same for the same reason (chains of AND, the forms of IF and CASE) have the same text.
namespace quillon::store::sql {

std::string print(const Expr& expr);
std::string print(const Select& select);
std::string print(const Statement& statement);

// A name as it can stand in a statement.
std::string printName(const std::string& name);

}  // namespace quillon::store::sql
