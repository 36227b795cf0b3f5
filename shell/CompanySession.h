#pragma once

#include <string>

namespace quillon::shell {

class Session;

// False, after a message, when the settings name a remote store server: this version works on company folders only, so
// no company is opened or made then.
bool worksOnFolders(Session& session);

inline constexpr const char* kFormsOpenAtChange = "All forms must be closed before changing to another company";

// The only way into a company: closes the one that is open and opens the folder's tables. False, after a message, when
// that cannot be; then the one that was open stays open if the folder is none of a company at all. An empty name: the
// folder was given directly. A damaged header of the table Company is repaired first. Error when a screen stays open.
bool openCompany(Session& session, const std::string& name, const std::string& folder);

// Makes all tables of a new company in a folder that is there. The company that is open is closed first; Error when a
// screen of it stays open, StoreError when the folder has the table Company already.
void createCompany(Session& session, const std::string& folder);

// Asks every screen to close. Error with the words when one stays open; nothing is closed any further then.
void closeForms(Session& session, const std::string& words);
// The only way out while the process goes on: closeForms, then all tables.
void closeCompany(Session& session);

// Opens and logs in. Then the menus are enabled, and a company that was never set up is: see setUpIfNew. False, with
// the menus disabled, when either fails.
bool enterCompany(Session& session, const std::string& name, const std::string& folder);

// Where "Your Company" was never entered: the wizard for a new company, with its name filled in. The sample company,
// which nobody enters by hand, gets its rows instead.
void setUpIfNew(Session& session, const std::string& name);

}  // namespace quillon::shell
