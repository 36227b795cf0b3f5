#include "shell/Security.h"

#include "shell/Session.h"
#include "store/Cursor.h"

namespace quillon::shell {
namespace {

using store::Value;

const std::string kCaption = std::string(kTitle) + " Security";

// As they are typed: case counts, also in the name.
bool isKnown(store::Cursor& users, const Credentials& who) {
  if (!users.locate("UserName", {Value(who.userName)})) return false;
  return users["UserName"].asText() == who.userName && users["Password"].asText() == who.password;
}

bool mayUse(store::Cursor& users, const std::string& user, const std::string& field) {
  const Value right = users.lookup("UserName", {Value(user)}, field);
  return !right.isNull() && right.asBool();
}

std::optional<Credentials> askWho(Session& session) {
  if (session.credentials) return std::exchange(session.credentials, std::nullopt);
  const form::Result result = session.app().runModal("TfrmLogin");
  if (!result.confirmed) return std::nullopt;
  return Credentials{result.values.at("UserName").asText(), result.values.at("Password").asText()};
}

}  // namespace

bool login(Session& session) {
  store::Cursor& users = session.tblUsers();
  users.refresh();
  session.securityActive = !users.isEmpty();
  if (!session.securityActive) return true;
  while (const std::optional<Credentials> who = askWho(session)) {
    users.refresh();
    if (isKnown(users, *who)) {
      session.currentUser = who->userName;
      return true;
    }
    session.person().show(form::Tone::stop, "Invalid User Name or Password.", kCaption);
  }
  return false;
}

bool checkAccess(Session& session, const std::string& field, const std::string& displayName) {
  if (!session.securityActive) return true;
  store::Cursor& users = session.tblUsers();
  users.refresh();
  if (mayUse(users, session.currentUser, field) || session.currentUser.empty() || users.isEmpty()) return true;
  const std::string& name = displayName.empty() ? field : displayName;
  session.person().show(form::Tone::stop, session.currentUser + " is not allowed access to " + name + ".", kCaption);
  return false;
}

bool securityHasAdministrator(Session& session) {
  store::Cursor& users = session.tblUsers();
  users.refresh();
  if (users.isEmpty() || users.locate("Security", {Value(true)})) return true;
  session.person().show(form::Tone::stop,
                        "Exit not allowed yet...\r\rIf security is active (one or more users specified), then at least "
                        "one user must be allowed access to Security.",
                        kCaption);
  return false;
}

void requireRight(store::Cursor& users, const Credentials& who, const std::string& field) {
  if (users.isEmpty()) return;
  if (!isKnown(users, who)) throw Error("Invalid User Name or Password.");
  if (!mayUse(users, who.userName, field)) throw Error(who.userName + " is not allowed access to " + field + ".");
}

}  // namespace quillon::shell
