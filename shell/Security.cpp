#include "shell/Security.h"

#include "base/Text.h"
#include "platform/Desktop.h"
#include "shell/Session.h"
#include "store/Cursor.h"

namespace quillon::shell {
namespace {

using store::Value;

constexpr int kLongestProposal = 31;  // in characters
const std::string kCaption = std::string(kTitle) + " Security";

// As they are typed: case counts, also in the name.
bool isKnown(store::Cursor& users, const Credentials& who) {
  const std::vector<Value> row = users.lookupAll("UserName", {Value(who.userName)}, "UserName;Password");
  return !row.empty() && row[0].asText() == who.userName && row[1].asText() == who.password;
}

bool mayUse(store::Cursor& users, const std::string& user, const std::string& field) {
  const Value right = users.lookup("UserName", {Value(user)}, field);
  return !right.isNull() && right.asBool();
}

std::string refusalOf(const std::string& user, const std::string& name) {
  return user + " is not allowed access to " + name + ".";
}

std::optional<Credentials> askWho(Session& session, const std::string& proposed) {
  if (session.credentials) return std::exchange(session.credentials, std::nullopt);
  const form::Result result = session.app().runModal("TfrmLogin", {.values = {{"UserName", Value(proposed)}}});
  if (!result.confirmed) return std::nullopt;
  return Credentials{result.values.at("UserName").asText(), result.values.at("Password").asText()};
}

}  // namespace

bool login(Session& session) {
  session.currentUser.clear();
  session.securityActive = true;  // also when nobody can tell, since the table is damaged
  store::Cursor& users = session.tblUsers();
  users.refresh();
  session.securityActive = !users.isEmpty();
  if (!session.securityActive) return true;
  std::string proposed(firstCharacters(session.desktop().userName(), kLongestProposal));
  while (const std::optional<Credentials> who = askWho(session, proposed)) {
    proposed = who->userName;
    users.refresh();
    if (isKnown(users, *who)) {
      session.currentUser = who->userName;
      return true;
    }
    session.person().show(form::Tone::stop, "Invalid User Name or Password.", kCaption);
  }
  session.app().dropScreens();
  return false;
}

bool checkAccess(Session& session, const std::string& field, const std::string& displayName) {
  if (!session.securityActive) return true;
  store::Cursor& users = session.tblUsers();
  users.refresh();
  if (mayUse(users, session.currentUser, field) || session.currentUser.empty() || users.isEmpty()) return true;
  const std::string& name = displayName.empty() ? field : displayName;
  session.person().show(form::Tone::stop, refusalOf(session.currentUser, name), kCaption);
  return false;
}

bool securityHasAdministrator(Session& session) {
  store::Cursor& users = session.tblUsers();
  users.refresh();
  if (users.isEmpty() || !users.lookupAll("Security", {Value(true)}, "UserName").empty()) return true;
  session.person().show(form::Tone::stop,
                        "Exit not allowed yet...\r\rIf security is active (one or more users specified), then at least "
                        "one user must be allowed access to Security.",
                        kCaption);
  return false;
}

void requireRight(Session& session, const std::string& field) {
  if (!session.securityActive) return;
  store::Cursor& users = session.tblUsers();
  users.refresh();
  if (users.isEmpty()) return;
  if (session.currentUser.empty()) throw Error("Nobody has logged in who is allowed access to " + field + ".");
  if (!mayUse(users, session.currentUser, field)) throw Error(refusalOf(session.currentUser, field));
}

void requireUser(store::Cursor& users, const Credentials& who) {
  if (!users.isEmpty() && !isKnown(users, who)) throw Error("Invalid User Name or Password.");
}

void requireRight(store::Cursor& users, const Credentials& who, const std::string& field) {
  requireUser(users, who);
  if (!users.isEmpty() && !mayUse(users, who.userName, field)) throw Error(refusalOf(who.userName, field));
}

}  // namespace quillon::shell
