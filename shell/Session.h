#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "form/App.h"
#include "form/Registry.h"
#include "platform/SettingsFile.h"
#include "store/Environment.h"
#include "store/Session.h"

namespace quillon::platform {
class Desktop;
}

namespace quillon::store {
class Cursor;
class Database;
}  // namespace quillon::store

namespace quillon::shell {

inline constexpr const char* kTitle = "Quillon Enterprise Accounting";
inline constexpr const char* kEdition = "Quillon Enterprise Accounting with Manufacturing";
inline constexpr const char* kVersion = "2017.6";  // of the program, and of the companies that it can open

// A name and a password that were given before anybody asked.
struct Credentials {
  std::string userName, password;
};

// One process's work: the desktop at hand, the store, the screens, and the company that is open. Lives as long as the
// process.
class Session {
 public:
  // Finds or makes the folders; Error "Could not create folder ...".
  Session(const store::Environment& environment, form::Person& person, platform::Desktop& desktop);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  form::Registry& registry() { return registry_; }
  form::App& app() { return app_; }
  form::Person& person() { return app_.person(); }
  store::Session& store() { return store_; }
  platform::Desktop& desktop() { return desktop_; }

  // As the desktop said at the start.
  const std::string& countryName() const { return countryName_; }  // English; "unknown" where it is
  bool paperIsA4() const { return paperIsA4_; }                    // of the default printer
  const std::string& publicFolder() const { return publicFolder_; }
  // Quillon.ini of this user.
  platform::SettingsFile& settings() { return settings_; }
  // Writes settings; a failure is told as a warning and stops nothing.
  void writeSettings(const std::function<void(platform::SettingsText&)>& edit);

  // The company. dataFolder: of the one that is open, or that could not be opened; empty until one is chosen.
  std::string dataFolder;
  bool sampleDataOpen = false;
  std::string currentUser;  // who logged in
  bool securityActive = false;
  std::optional<Credentials> credentials;  // tried before the login asks
  bool menusEnabled = true;                // the module menus and the toolbar
  std::vector<std::string> companiesMenu;  // the names that the Companies menu shows, sorted; all of them
  bool tipShown = false;                   // of changed account numbers, once in a run of the program

  // Opens the folder's tables; those that were open are closed first. Error, StoreError.
  void attach(const std::string& folder);
  // Frees every screen of the company that no command stands in, and closes all its tables. What goes wrong on the way
  // is raised when all is closed.
  void detach();
  bool hasCompany() const { return tblCompany_ != nullptr && app_.hasDatabase(); }
  store::Database& database() { return app_.database(); }
  // The company's settings, always open; one row, or none before they were entered. Error when no company is open.
  store::Cursor& tblCompany();
  // Opened when first needed, then read live. Asks before it deletes a user.
  store::Cursor& tblUsers();

 private:
  platform::Desktop& desktop_;
  std::string countryName_, publicFolder_;
  bool paperIsA4_ = false;
  platform::SettingsFile settings_;
  store::Session store_;
  form::Registry registry_;
  std::unique_ptr<store::Database> database_;
  form::App app_;
  std::unique_ptr<store::Cursor> tblCompany_, tblUsers_;
};

// The process's main window, the screens of the whole program with their menu paths, and what this folder has of them.
void registerScreens(Session& session);

}  // namespace quillon::shell
