// What a story cannot reach: damaged tables, drives that vanish, and somebody who comes in the middle.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>

#include "base/Text.h"
#include "form/Input.h"
#include "maintenance/PackTables.h"
#include "maintenance/Screens.h"
#include "platform/CopyFolder.h"
#include "platform/SettingsText.h"
#include "shell/CompanySession.h"
#include "shell/CopyTree.h"
#include "shell/Session.h"
#include "shell/SoleUse.h"
#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/Query.h"
#include "store/Verify.h"
#include "store/schema/CompanySchema.h"
#include "store/schema/CreateCompany.h"
#include "store/vfs/DiskFileSystem.h"
#include "support/ScriptedPerson.h"
#include "support/SimDesktop.h"
#include "support/TextFile.h"

namespace quillon::maintenance {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr int kRows = 2000;

class Maintenance : public testing::Test {
 protected:
  Maintenance() {
    fs::create_directories(company_);
    store::Session session(environment());
    store::Database database(session, company_);
    store::createCompanyTables(database);
    store::Query(database,
                 "INSERT INTO Company (CompanyName, FiscalYear, ApplicationVersion) VALUES ('Acme', 2026, '2017.6')")
        .execute();
    const store::Database::BulkScope bulk(database);
    store::Cursor vouchers(database, "JV");
    vouchers.open();
    for (int i = 1; i <= kRows; ++i) {
      vouchers.append();
      vouchers["JVID"] = i;
      vouchers["GLYear"] = 2026;
      vouchers["GLPeriod"] = 1;
      vouchers["JVNumber"] = 1000 + i;
      vouchers["TransDescription"] = "Voucher " + std::to_string(i) + std::string(30, '.');
      vouchers.post();
    }
  }
  ~Maintenance() override {
    if (session_) session_->detach();
  }

  store::Environment environment() { return {files_, store::systemClock(), "ANN", "PC", ::getpid()}; }
  // Another program, as far as locks go.
  std::unique_ptr<store::Database> elsewhere() {
    other_.settings().lockRetryCount = 1;
    return std::make_unique<store::Database>(other_, company_);
  }

  // Overwrites a part of the table's n-th leaf; gives how many rows it had.
  int damageLeaf(const std::string& table, int n) const {
    std::fstream file(company_ + "/" + table + ".DAT", std::ios::in | std::ios::out | std::ios::binary);
    std::string page(4096, '\0');
    for (int at = 0; file.seekg(at * 4096) && file.read(page.data(), 4096); ++at) {
      if (page[20] != 4 || n-- > 0) continue;
      file.seekp(at * 4096 + 2000);
      file.write("spilt coffee", 12);
      return static_cast<unsigned char>(page[22]) + 256 * static_cast<unsigned char>(page[23]);
    }
    throw std::logic_error("no such leaf");
  }

  void start() {
    session_ = std::make_unique<shell::Session>(environment(), person_, desktop_);
    session_->store().settings().lockRetryCount = 1;
    shell::registerScreens(*session_);
    maintenance::registerScreens(*session_);
    session_->attach(company_);
    session_->app().open("TfrmQuillon");
  }
  // Opens a modal screen, does something there, and leaves; what the person heard.
  std::string in(const char* screen, const std::function<void(form::Input&, form::Screen&)>& act) {
    form::Input input(session_->app());
    person_.modals.push_back([&](form::Screen& shown) {
      act(input, shown);
      if (shown.visible()) input.click(shown, *shown.find("btnCancel"));
    });
    person_.heard.clear();
    session_->app().runModal(screen);
    person_.heard.erase(person_.heard.begin());
    return person_.takeHeard();
  }
  std::string pack() {
    return in("TfrmPack", [](form::Input& input, form::Screen& screen) { input.click(screen, *screen.find("btnOK")); });
  }
  std::string backUp(const std::string& to, const std::function<void()>& meanwhile = {}) {
    return in("TfrmBackup", [&](form::Input& input, form::Screen& screen) {
      input.set(screen, *screen.find("editFolder"), to);
      if (meanwhile) meanwhile();
      input.click(screen, *screen.find("btnOK"));
    });
  }
  std::uint64_t rows(const std::string& table) {
    store::Cursor cursor(session_->database(), table);
    cursor.open();
    return cursor.recordCount();
  }

  store::DiskFileSystem files_;
  sim::TempFolder temp_;
  std::string company_ = temp_.path() + "/company";
  store::Session other_{environment()};
  sim::ScriptedPerson person_;
  sim::SimDesktop desktop_;
  std::unique_ptr<shell::Session> session_;
};

TEST(PackOrder, HasEveryTableOnce) {
  std::multiset<std::string> packed, all;
  for (const char* table : packOrder()) packed.insert(table);
  for (const store::TableDef& table : store::companyTables()) all.insert(table.name);
  EXPECT_EQ(packed, all);
}

TEST_F(Maintenance, PackSavesWhatIsReadableAndTellsTheRest) {
  const int lost = damageLeaf("JV", 3);
  start();
  const std::string heard = pack();
  EXPECT_THAT(heard, HasSubstr("warning: Some data was damaged"));
  EXPECT_THAT(heard, HasSubstr("\rJV: " + std::to_string(lost) + " records lost\r"));
  EXPECT_EQ(rows("JV"), std::uint64_t{kRows} - static_cast<std::uint64_t>(lost));
  EXPECT_TRUE(fs::exists(company_ + "/JV.DAT~damaged"));
  EXPECT_THAT(sim::readFile(heard.substr(heard.rfind(company_))),
              AllOf(HasSubstr("\n  " + std::to_string(lost) + " records lost, entered after (JVID = "),
                    HasSubstr(") and before (JVID = "), Not(HasSubstr("is lost"))));
  EXPECT_EQ(pack(), "") << "the second time nothing is wrong";
}

TEST_F(Maintenance, PackStoppedInTheMiddleTellsWhatWasLostBefore) {
  damageLeaf("JV", 0);
  start();
  const auto other = elsewhere();
  store::Cursor held(*other, "Item");
  held.open();
  const std::string heard = pack();
  EXPECT_THAT(heard, HasSubstr("\rJV: "));
  EXPECT_THAT(heard, HasSubstr("\nerror: "));
  EXPECT_THAT(heard.substr(heard.find("\nerror: ")), HasSubstr("Item"));
  EXPECT_TRUE(fs::exists(company_ + "/JV.DAT~damaged")) << "it is done and stays done";
  EXPECT_EQ(session_->tblCompany()["CompanyName"].asText(), "Acme") << "open again";
}

TEST_F(Maintenance, ABackupKeepsOthersOutAndIsACompany) {
  const std::string to = temp_.path() + "/copy";
  bool asked = false;
  shell::copyCompany(other_, company_, to, [&](const platform::CopyProgress& progress) {
    if (progress.done == 0 || std::exchange(asked, true)) return;
    store::Session another(environment());
    another.settings().lockRetryCount = 1;
    store::Database database(another, company_);
    for (const char* table : {"Company", "JV"}) {
      store::Cursor cursor(database, table);
      EXPECT_THROW(cursor.open(), store::StoreError) << table;
    }
  });
  EXPECT_TRUE(asked);
  const store::VerifyReport report = store::verifyFolder(environment(), to, {});
  EXPECT_TRUE(report.clean());
  EXPECT_EQ(report.tables.size(), store::companyTables().size());
}

TEST_F(Maintenance, ABackupThatFailsLosesNothing) {
  start();
  const std::string own = "error: Backup to folder must not be same as database folder";
  fs::create_directory_symlink(company_, temp_.path() + "/link");
  EXPECT_EQ(backUp(temp_.path() + "/link"), own);
  fs::create_directories(temp_.path() + "/theirs");
  session_->settings().change(
      [&](platform::SettingsText& settings) { settings.set("Companies", "Theirs", temp_.path() + "/theirs"); });
  EXPECT_EQ(backUp(temp_.path() + "/theirs"), own + " of company 'Theirs'");

  const std::string to = temp_.path() + "/copy";
  EXPECT_EQ(backUp(to), "");
  const std::string before = sim::readFile(to + "/JV.DAT");
  store::Query(session_->database(), "UPDATE JV SET GLPeriod = 2").execute();
  session_->database().settle();
  // More than any disk has free; the file with the hole takes none itself.
  sim::writeFile(company_ + "/Notes.txt", "");
  std::error_code tooBig;
  fs::resize_file(company_ + "/Notes.txt", std::uintmax_t{15} << 40, tooBig);
  if (!tooBig) {
    EXPECT_THAT(backUp(to), HasSubstr("error: There is not enough space in '" + to));
  }
  EXPECT_TRUE(session_->hasCompany());
  fs::remove(company_ + "/Notes.txt");

  const std::string away = temp_.path() + "/away";
  EXPECT_THAT(backUp(to, [&] { fs::rename(company_, away); }), HasSubstr(company_));
  EXPECT_EQ(sim::readFile(to + "/JV.DAT"), before) << "the copy made before";
  fs::rename(away, company_);
  EXPECT_EQ(session_->tblCompany()["CompanyName"].asText(), "Acme") << "as if nothing had been";
  EXPECT_EQ(rows("JV"), std::uint64_t{kRows});
  EXPECT_EQ(backUp(to), "");
  EXPECT_NE(sim::readFile(to + "/JV.DAT"), before);
}

TEST_F(Maintenance, ACompanyThatCannotBeOpenedAgainIsTold) {
  start();
  const std::string away = temp_.path() + "/away";
  {
    const shell::SoleUse alone(*session_);
    EXPECT_FALSE(session_->hasCompany());
    fs::rename(company_, away);
  }
  EXPECT_THAT(person_.takeHeard(), HasSubstr("stop: The company in '" + company_ + "' could not be opened again...\r"));
  EXPECT_FALSE(session_->menusEnabled);
  fs::rename(away, company_);
  EXPECT_TRUE(shell::openCompany(*session_, "Acme", company_));
}

}  // namespace
}  // namespace quillon::maintenance
