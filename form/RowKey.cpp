#include "form/RowKey.h"

#include "store/Cursor.h"

namespace quillon::form {

std::vector<store::Value> valuesOf(store::Cursor& row, std::string_view fields) {
  std::vector<store::Value> values;
  while (true) {
    const std::size_t end = fields.find(';');
    values.push_back(row.value(fields.substr(0, end)));
    if (end == std::string_view::npos) return values;
    fields.remove_prefix(end + 1);
  }
}

}  // namespace quillon::form
