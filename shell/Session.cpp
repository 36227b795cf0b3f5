#include "shell/Session.h"

#include "form/Ending.h"
#include "platform/Desktop.h"
#include "store/Cursor.h"
#include "store/Database.h"

namespace quillon::shell {
namespace {

form::Formats formatsOf(platform::Desktop& desktop) {
  return {.date = desktop.shortDateFormat(), .numbers = desktop.separators(), .today = [&] { return desktop.today(); }};
}

}  // namespace

Session::Session(const store::Environment& environment, form::Person& person, platform::Desktop& desktop)
    : desktop_(desktop),
      countryName_(desktop.countryName()),
      publicFolder_(desktop.publicFolder()),
      settings_(desktop.settingsFolder() + "/Quillon.ini"),
      store_(environment),
      app_(person, registry_, formatsOf(desktop), kTitle) {
  store_.settings().privateDir = desktop.scratchFolder();
  const auto printer = desktop.defaultPrinter();
  paperIsA4_ = printer && printer->paper == platform::Paper::a4;
}

// Tells nobody what goes wrong: whoever must know closes the company before.
Session::~Session() {
  form::Ending ending;
  ending.step([this] { detach(); });
}

void Session::writeSettings(const std::function<void(platform::SettingsText&)>& edit) {
  try {
    settings_.change(edit);
  } catch (const Error& error) {
    person().show(form::Tone::warning, error.what());
  }
}

void Session::attach(const std::string& folder) {
  detach();
  auto database = std::make_unique<store::Database>(store_, folder);
  auto company = std::make_unique<store::Cursor>(*database, "Company", "tblCompany");
  company->open();
  company->events.onEditError = [this](const store::StoreError& error) { return app_.editError(*tblCompany_, error); };
  database_ = std::move(database);
  tblCompany_ = std::move(company);
  dataFolder = folder;
  app_.setDatabase(database_.get());
}

void Session::detach() {
  form::Ending ending;
  ending.step([this] { app_.dropScreens(); });
  ending.step([this] { app_.settle(); });
  tblUsers_.reset();
  tblCompany_.reset();
  app_.setDatabase(nullptr);
  database_.reset();
  ending.raise();
}

store::Cursor& Session::tblCompany() {
  if (!tblCompany_) throw Error("No company is open");
  tblCompany_->open();  // it may have been closed for a moment, and the drive be gone then
  return *tblCompany_;
}

store::Cursor& Session::tblUsers() {
  if (!tblUsers_) {
    auto users = std::make_unique<store::Cursor>(database(), "Users", "tblUsers");
    users->events.onEditError = users->events.onDeleteError = [this](const store::StoreError& error) {
      return app_.editError(*tblUsers_, error);
    };
    users->events.beforeDelete = [this] {
      const form::Button answer = person().ask({.tone = form::Tone::confirmation,
                                                .text = "Delete '" + (*tblUsers_)["UserName"].asText() + "'?",
                                                .buttons = {form::Button::ok, form::Button::cancel},
                                                .standard = form::Button::ok});
      if (answer != form::Button::ok) throw Abort();
    };
    tblUsers_ = std::move(users);
  }
  tblUsers_->open();
  return *tblUsers_;
}

}  // namespace quillon::shell
