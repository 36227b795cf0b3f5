#include "shell/CompanySession.h"

#include "base/Text.h"
#include "shell/Companies.h"
#include "shell/SampleCompany.h"
#include "shell/Security.h"
#include "shell/Session.h"
#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/Repair.h"
#include "store/schema/CompanySchema.h"
#include "store/schema/CreateCompany.h"
#include "store/vfs/File.h"

namespace quillon::shell {
namespace {

std::string beginning(const std::string& name, const std::string& folder) {
  if (name.empty()) return "Error opening database '" + folder + "'...";
  return "Error opening company '" + name + "', database '" + folder + "'...";
}

bool refused(Session& session, const std::string& text) {
  session.person().show(form::Tone::stop, text, kTitle);
  return false;
}

// A row in place of the lost one, for "Your Company" to be entered again.
void replaceLostCompany(Session& session) {
  store::Cursor& company = session.tblCompany();
  company.append();
  company["CompanyName"] = "Data lost: please re-enter";
  company["FiscalYear"] = 1990;
  company["ApplicationVersion"] = kVersion;
  company.post();
  company.flush();
  session.app().open("TfrmCompany");
}

void repairCompany(Session& session, const std::string& folder) {
  {
    store::Database database(session.store(), folder);
    database.repairTable("Company", {.definition = store::companyTable("Company")});
  }
  session.attach(folder);
}

// Without its tables a folder is opened by its journal alone.
bool journalIsDamaged(Session& session, const std::string& folder) {
  try {
    const store::Database database(session.store(), folder);
    return false;
  } catch (const store::StoreError& error) {
    if (error.code() != store::Code::headerDamaged) throw;
    return true;
  }
}

// A journal that cannot be read keeps everybody out. Nothing tells what it holds, so the person decides whether to go
// on without it.
void mendJournal(Session& session, const std::string& start, const std::string& folder) {
  const bool goOn = session.person().confirm(
      start +
          "\rThe journal of this company is damaged. It holds what was saved last: where the company was not closed "
          "since, those changes may be missing or there in part.\r\rSet the journal aside and open the company without "
          "it? If you have a good backup, answer No and use that instead.",
      form::Tone::warning, form::Button::no);
  if (!goOn) throw Abort();
  if (store::repairJournal(session.store().environment(), folder).empty())
    throw Error("The journal could not be set aside. Close the company everywhere and open it again.");
  session.person().show(
      form::Tone::warning,
      "The journal begins anew; the damaged one is kept beside it.\r\rPlease run Pack/Repair now, and "
      "check what was entered last.",
      kTitle);
}

// True when the header was damaged and is mended.
bool attachRepairing(Session& session, const std::string& start, const std::string& folder) {
  try {
    session.attach(folder);
    return false;
  } catch (const store::StoreError& error) {
    if (error.code() != store::Code::headerDamaged) throw;
    if (journalIsDamaged(session, folder)) {
      mendJournal(session, start, folder);
      return attachRepairing(session, start, folder);
    }
    session.person().show(form::Tone::warning,
                          start + "\r" + error.what() + "\rThe program will now attempt to repair it.", kTitle);
  }
  repairCompany(session, folder);
  return true;
}

bool isSampleData(Session& session, const std::string& name) {
  if (equalFolded(name, kSampleData)) return true;
  store::Cursor& company = session.tblCompany();
  return !company.isEmpty() && company["CompanyName"].asText().starts_with(kSampleData);
}

// Empty where the folder is a company's.
std::string whyNoneIsThere(Session& session, const std::string& folder) {
  try {
    if (!session.store().environment().files.folderExists(folder)) return "The specified directory does not exist.";
    return holdsCompany(session, folder) ? "" : "The specified directory does not contain a database.";
  } catch (const Error& error) {
    return error.what();
  }
}

// Empty where this program can work on it.
std::string otherVersion(Session& session) {
  store::Cursor& company = session.tblCompany();
  if (company.isEmpty()) return {};
  const std::string stored = company["ApplicationVersion"].asText();
  if (stored == kVersion) return {};
  return "Database '" + session.dataFolder + "' was created by a different version...\r\rProgram: " + kVersion +
         "  Database: " + stored +
         "\r\rData entered to a previous version must be imported so as to be compatible with the new version.\rPlease "
         "see readme.txt for instructions.";
}

}  // namespace

bool worksOnFolders(Session& session) {
  const auto& settings = session.settings();
  if (settings.text("General", "RemoteAddress").empty() && settings.text("General", "RemoteHost").empty()) return true;
  session.person().show(form::Tone::warning,
                        "The settings name a remote store server (RemoteHost or RemoteAddress).\rThis version works on "
                        "company folders only.\r\rRemove the setting to open a company: " +
                            settings.path(),
                        kTitle);
  return false;
}

bool openCompany(Session& session, const std::string& name, const std::string& folder) {
  if (!worksOnFolders(session)) return false;
  const std::string start = beginning(name, folder);
  if (const std::string why = whyNoneIsThere(session, folder); !why.empty())
    return refused(session, start + "\r" + why);
  if (session.hasCompany()) closeCompany(session);
  session.menusEnabled = false;  // until somebody has logged in
  session.dataFolder = folder;
  session.sampleDataOpen = session.securityActive = false;
  try {
    const bool repaired = attachRepairing(session, start, folder);
    session.sampleDataOpen = isSampleData(session, name);
    if (repaired && session.tblCompany().isEmpty()) replaceLostCompany(session);
    if (repaired) return true;
  } catch (const Abort&) {
    session.detach();
    return false;
  } catch (const Error& error) {
    session.detach();
    return refused(session, start + "\r" + error.what());
  }
  const std::string version = otherVersion(session);
  if (version.empty()) return true;
  session.detach();
  return refused(session, version);
}

void createCompany(Session& session, const std::string& folder) {
  if (session.hasCompany()) closeCompany(session);
  session.menusEnabled = false;
  store::Database database(session.store(), folder);
  store::createCompanyTables(database);
}

// The dialler belongs to no company, but nobody goes on dialling a customer of another one.
void closeForms(Session& session, const std::string& words) {
  form::Screen* dialer = session.app().find("frmDialer");
  const bool all = session.app().closeAll() && (dialer == nullptr || session.app().close(*dialer));
  session.app().settle();
  if (!all) throw Error(words);
}

void closeCompany(Session& session) {
  closeForms(session, kFormsOpenAtChange);
  session.detach();
}

bool enterCompany(Session& session, const std::string& name, const std::string& folder) {
  session.menusEnabled = openCompany(session, name, folder) && login(session);
  if (session.menusEnabled) setUpIfNew(session, name);
  return session.menusEnabled;
}

void setUpIfNew(Session& session, const std::string& name) {
  if (!session.tblCompany().isEmpty()) return;
  const bool sample = equalFolded(name, kSampleData) || session.dataFolder == companyFolder(session, kSampleData);
  if (sample && session.app().lookUp("GLAccnt").isEmpty()) return fillSampleCompany(session);
  session.app().runModal("TfrmGettingStarted", {.values = {{"CompanyName", store::Value(name)}}});
}

}  // namespace quillon::shell
