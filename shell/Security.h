#pragma once

#include <string>
#include <vector>

namespace quillon::store {
class Cursor;
}

namespace quillon::shell {

class Session;
struct Credentials;

// Asks who is there, where the company has users, until name and password fit or the person gives up; then no screen of
// the company stays open. Decides whether rights are checked until the company is closed.
bool login(Session& session);

// Whether the person who logged in has a right, a field of Users, now; tells them when not. The name shown is the
// field's where none is given. Everybody has every right while the company has no users.
bool checkAccess(Session& session, const std::string& field, const std::string& displayName = {});

// Whether somebody may change the users; tells when not. True too while there are none.
bool securityHasAdministrator(Session& session);

// For work past the screens: Error, which names the right, unless the company has no users, or whoever logged in, or
// gives this name and password, has it.
void requireRight(Session& session, const std::string& field);
void requireUser(store::Cursor& users, const Credentials& who);  // only that it is a user
void requireRight(store::Cursor& users, const Credentials& who, const std::string& field);

}  // namespace quillon::shell
