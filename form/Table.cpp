#include "form/Table.h"

#include "form/App.h"
#include "form/Screen.h"
#include "store/Schema.h"

namespace quillon::form {

Table::Table(Screen& screen, const std::string& table, std::string name)
    : Cursor(screen.database(), table, name.empty() ? "tbl" + table : std::move(name)) {
  wire(screen);
}

Table::Table(Screen& screen, const std::string& table, const store::follows& link, std::string name)
    : Cursor(screen.database(), table, link, name.empty() ? "tbl" + table : std::move(name)) {
  wire(screen);
}

void Table::wire(Screen& screen) {
  screen.attach(*this);
  const auto answer = [this, &screen](const store::StoreError& error) { return screen.app().editError(*this, error); };
  events.onEditError = answer;
  events.onDeleteError = answer;
}

void Table::reopenOn(const std::string& table) {
  close();
  setTarget(database(), table, false);
  setIndex("");
  open();
}

const Table::Rules* Table::rulesOf(int position) const {
  const auto found = rules_.find(definition().fields[static_cast<std::size_t>(position)].name);
  return found == rules_.end() ? nullptr : &found->second;
}

void Table::validate(const std::string& field, std::function<void(const store::Value& next)> check) {
  rules_[field].check = std::move(check);
  if (events.onValidate) return;
  events.onValidate = [this](int position, const store::Value& next) {
    if (const Rules* rules = rulesOf(position); rules != nullptr && rules->check) rules->check(next);
  };
}

void Table::change(const std::string& field, std::function<void(const store::Value& old)> handler) {
  rules_[field].handler = std::move(handler);
  if (events.onChange) return;
  events.onChange = [this](int position, const store::Value& old) {
    if (const Rules* rules = rulesOf(position); rules != nullptr && rules->handler) rules->handler(old);
  };
}

}  // namespace quillon::form
