#pragma once

#include <string_view>
#include <vector>

#include "store/Value.h"

namespace quillon::store {
class Cursor;
}

namespace quillon::form {

// What a row has in fields joined by ';', in their order.
std::vector<store::Value> valuesOf(store::Cursor& row, std::string_view fields);

}  // namespace quillon::form
