#pragma once

#include <string>

#include "store/sql/Ast.h"

namespace quillon::sim {

// The whole tree of a statement, told with all its parentheses: trees are the same exactly when their shapes are.
// Places and source texts are left out, and a chain of AND or OR is one list, however it was grouped.
std::string shapeOf(const store::sql::Expr& expr);
std::string shapeOf(const store::sql::Select& select);
std::string shapeOf(const store::sql::Statement& statement);

}  // namespace quillon::sim
