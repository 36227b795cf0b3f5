#include "form/QueryListScreen.h"

#include <vector>

namespace quillon::form {

void QueryListScreen::showOnly(const std::string& condition) {
  condition_ = condition;
  reread();
}

void QueryListScreen::reread() {
  std::vector<store::Value> place;
  if (rows_.isOpen() && !rows_.isEmpty())
    for (std::size_t from = 0; from <= key_.size();) {
      const std::size_t end = std::min(key_.find(';', from), key_.size());
      place.push_back(rows_.value(key_.substr(from, end - from)));
      from = end + 1;
    }
  rows_.close();
  rows_.setStatement(statement(condition_));
  rows_.open();
  rowsRead();
  if (!place.empty()) rows_.locate(key_, place);
}

store::Value QueryListScreen::value(const char* field) const {
  return rows_.isOpen() ? rows_.value(field) : store::Value();
}

}  // namespace quillon::form
