#include "form/QueryListScreen.h"

#include "form/RowKey.h"

namespace quillon::form {

void QueryListScreen::showOnly(const std::string& condition) {
  condition_ = condition;
  reread();
}

void QueryListScreen::reread() {
  const bool stands = rows_.isOpen() && !rows_.isEmpty();
  moveTo(stands ? valuesOf(rows_, key_) : std::vector<store::Value>());
}

void QueryListScreen::moveTo(const std::vector<store::Value>& key) {
  rows_.close();
  rows_.setStatement(statement(condition_));
  rows_.open();
  rowsRead();
  if (!key.empty()) rows_.locate(key_, key);
}

store::Value QueryListScreen::value(const char* field) const {
  return rows_.isOpen() ? rows_.value(field) : store::Value();
}

}  // namespace quillon::form
