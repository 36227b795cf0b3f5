#pragma once

#include <memory>
#include <optional>
#include <string>

#include "form/App.h"
#include "form/Registry.h"
#include "store/Environment.h"
#include "store/Session.h"

namespace quillon::store {
class Cursor;
class Database;
}  // namespace quillon::store

namespace quillon::shell {

inline constexpr const char* kTitle = "Quillon Enterprise Accounting";

// What the desktop at hand says about its person.
struct Surroundings {
  form::Formats formats;
  std::string country = "unknown";  // English name
  std::string userName;
};

// One process's work on one company: the store, the screens, the company's tables. Lives as long as the process.
class Session {
 public:
  Session(const store::Environment& environment, form::Person& person, Surroundings surroundings);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  form::Registry& registry() { return registry_; }
  form::App& app() { return app_; }
  store::Session& store() { return store_; }
  const std::string& countryName() const { return surroundings_.country; }

  // Opens the company in a folder; Error when there is none, or when its tables cannot be opened. The one that was open
  // is closed first.
  void openCompany(const std::string& folder);
  // Frees every screen that no command stands in, and closes all tables. What goes wrong on the way is raised when all
  // is closed.
  void closeCompany();
  bool hasCompany() const { return database_ != nullptr; }
  const std::string& dataFolder() const { return dataFolder_; }
  store::Database& database() { return app_.database(); }
  bool tipShown = false;  // of changed account numbers, once in a run of the program

  // The company's settings, always open; one row, or none before they were entered.
  store::Cursor& tblCompany();

 private:
  Surroundings surroundings_;
  store::Session store_;
  form::Registry registry_;
  form::App app_;
  std::string dataFolder_;
  std::unique_ptr<store::Database> database_;
  std::unique_ptr<store::Cursor> tblCompany_;
};

// The process's main window, the screens of the whole program with their menu paths, and what this folder has of them.
void registerScreens(Session& session);

}  // namespace quillon::shell
