#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "apps/Command.h"
#include "shell/Security.h"
#include "shell/Session.h"

namespace quillon::store {
class Database;
}

namespace quillon::apps {

// The first line of a file. Error when it cannot be read.
std::string passwordIn(const std::string& path);

// Who gives a command that works past the screens: --user NAME and --password-file FILE, which may stand anywhere among
// its words.
class GivenLogin {
 public:
  explicit GivenLogin(Arguments arguments);  // UsageError, Error

  Arguments words() const { return words_; }  // without the two options
  // In the folder of a company that has users: Error unless this is one who has the right Security.
  void requireSecurity(store::Database& database) const;
  // The same for mending a company: where the users themselves cannot be read nobody is kept from mending them.
  void requireSecurityToMend(store::Database& database) const;

 private:
  std::vector<std::string_view> words_;
  std::optional<shell::Credentials> who_;
};

}  // namespace quillon::apps
