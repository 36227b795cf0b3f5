#include "shell/Session.h"

#include "form/Ending.h"
#include "store/Cursor.h"
#include "store/Database.h"

namespace quillon::shell {

Session::Session(const store::Environment& environment, form::Person& person, Surroundings surroundings)
    : surroundings_(std::move(surroundings)),
      store_(environment),
      app_(person, registry_, surroundings_.formats, kTitle) {}

// Tells nobody what goes wrong: whoever must know closes the company before.
Session::~Session() {
  form::Ending ending;
  ending.step([this] { closeCompany(); });
}

void Session::openCompany(const std::string& folder) {
  closeCompany();
  auto database = std::make_unique<store::Database>(store_, folder);
  if (!database->exists("Company"))
    throw Error("Error opening database '" + folder + "'...\rThe specified directory does not contain a database.");
  auto company = std::make_unique<store::Cursor>(*database, "Company", "tblCompany");
  company->open();
  database_ = std::move(database);
  tblCompany_ = std::move(company);
  dataFolder_ = folder;
  app_.setDatabase(database_.get());
}

void Session::closeCompany() {
  form::Ending ending;
  ending.step([this] { app_.dropScreens(); });
  ending.step([this] { app_.settle(); });
  app_.setDatabase(nullptr);
  tblCompany_.reset();
  database_.reset();
  dataFolder_.clear();
  ending.raise();
}

store::Cursor& Session::tblCompany() {
  if (!tblCompany_) throw Error("No company is open");
  return *tblCompany_;
}

}  // namespace quillon::shell
