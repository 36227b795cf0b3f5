#include "apps/GivenLogin.h"

#include <algorithm>
#include <fstream>

#include "base/Errors.h"
#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Errors.h"

namespace quillon::apps {

std::string passwordIn(const std::string& path) {
  std::ifstream file(path);
  std::string line;
  if (!std::getline(file, line)) throw Error("cannot read a password from " + path);
  if (line.ends_with('\r')) line.pop_back();
  return line;
}

GivenLogin::GivenLogin(Arguments arguments) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view word = arguments[i], option = word.substr(0, word.find('='));
    if (option != "--user" && option != "--password-file") {
      words_.push_back(word);
      continue;
    }
    std::string_view value = word.substr(std::min(option.size() + 1, word.size()));
    if (option == word && i + 1 < arguments.size()) value = arguments[++i];
    if (value.empty()) throw UsageError(std::string(option) + " needs a value");
    if (!who_) who_.emplace();
    (option == "--user" ? who_->userName : who_->password) =
        option == "--user" ? std::string(value) : passwordIn(std::string(value));
  }
}

void GivenLogin::requireSecurity(store::Database& database) const {
  if (!database.exists("Company") || !database.exists("Users")) return;
  store::Cursor users(database, "Users");
  users.open();
  if (!who_ && !users.isEmpty())
    throw Error("the company has users: give --user NAME and --password-file FILE of one who has the right Security");
  shell::requireRight(users, who_.value_or(shell::Credentials()), "Security");
}

void GivenLogin::requireSecurityToMend(store::Database& database) const {
  using store::Code;
  try {
    requireSecurity(database);
  } catch (const store::StoreError& error) {
    if (error.code() != Code::headerDamaged && error.code() != Code::damaged && error.code() != Code::foreign) throw;
  }
}

}  // namespace quillon::apps
