#pragma once

#include <string>

#include "store/sql/Ast.h"

namespace quillon::store::sql {

// The type as CAST or a column definition writes it.
std::string printType(const CastType& type);

}  // namespace quillon::store::sql
