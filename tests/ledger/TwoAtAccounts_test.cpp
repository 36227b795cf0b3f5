// An account goes with its totals that come to nothing, or neither goes, and gets an id of its own: also when another
// process is in the way.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "form/Input.h"
#include "form/Table.h"
#include "ledger/Screens.h"
#include "store/Query.h"
#include "store/schema/CreateCompany.h"
#include "support/Workplace.h"

namespace quillon::ledger {
namespace {

class TwoAtAccounts : public testing::Test, protected sim::Workplace {
 protected:
  TwoAtAccounts() {
    disk_.process()->makeFolder(sim::kSharedFolder);
    other_.open();
    store::createCompanyTables(other_.database());
    for (const char* row :
         {"INSERT INTO GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (7, '1000', 'Cash', 1)",
          "INSERT INTO GLActual (GLAccountID, GLYear, ActualBudget, Amount1, Amount2) VALUES (7, 2025, 'A', 5, -5)",
          "INSERT INTO GLActual (GLAccountID, GLYear, ActualBudget) VALUES (7, 2026, 'A')"})
      store::Query(other_.database(), row).execute();
    shell::registerScreens(session_);
    ledger::registerScreens(session_);
    session_.attach(sim::kSharedFolder);
    list_ = &session_.app().open("TfrmGLAccounts");
  }
  ~TwoAtAccounts() override { session_.detach(); }

  // "accounts totals", as the other process sees them.
  std::string left() {
    std::string counts;
    for (const char* table : {"GLAccnt", "GLActual"}) {
      store::Query count(other_.database(), std::string("SELECT count(*) FROM ") + table);
      count.open();
      counts += count.field(0).value().toText() + " ";
    }
    return counts;
  }
  form::Ended remove(std::initializer_list<form::Button> answers) {
    person_.answers.assign(answers);
    form::Input input(session_.app());
    return input.click(*list_, *list_->find("mnuDelete"));
  }

  static constexpr auto kYes = form::Button::yes, kNo = form::Button::no;
  form::Screen* list_ = nullptr;
};

TEST_F(TwoAtAccounts, WaitsForWhoeverHoldsTheTotals) {
  store::Cursor totals(other_.database(), "GLActual");
  totals.open();
  totals.lockTable();
  const form::Ended ended = remove({kYes});
  EXPECT_EQ(ended.code, 10258);
  EXPECT_THAT(ended.error,
              testing::MatchesRegex("The table 'GLActual' is being updated by another job \\(.* since .*\\)"
                                    ".\rPlease try again when that has finished."));
  EXPECT_EQ(left(), "1 2 ");
  totals.unlockTable();
  EXPECT_TRUE(remove({kYes}).ok) << person_.takeHeard();
  EXPECT_EQ(left(), "0 0 ");
}

// A total that another clerk edits cannot go, and so the account stays, with the total that could have gone.
TEST_F(TwoAtAccounts, LeavesAllWhenOneTotalIsEdited) {
  store::Cursor totals(other_.database(), "GLActual");
  totals.open();
  totals.last();
  totals.edit();
  EXPECT_EQ(
      remove({kYes}).error,
      "A record of the table 'GLActual' is being edited by another user.\rPlease try again when that has finished.");
  totals.cancel();
  EXPECT_EQ(left(), "1 2 ");
  EXPECT_TRUE(remove({kYes}).ok) << person_.takeHeard();
  EXPECT_EQ(left(), "0 0 ");
}

TEST_F(TwoAtAccounts, AsksAgainWhileTheAccountIsEdited) {
  store::Cursor accounts(other_.database(), "GLAccnt");
  accounts.open();
  accounts.edit();
  const form::Ended ended = remove({kYes, kYes, kNo});
  EXPECT_TRUE(ended.aborted);
  EXPECT_TRUE(person_.answers.empty());
  EXPECT_EQ(left(), "1 2 ");
}

// The other process saves an account between the look for the highest id and the save, twice.
TEST_F(TwoAtAccounts, ANewAccountWhoseIdWasTakenGetsAnother) {
  form::Input input(session_.app());
  const auto save = [&](const char* number) {
    form::Screen& account = session_.app().open("TfrmGLAccount", {.newRow = true});
    form::Table& rows = *account.tables().front();
    rows.events.beforePost = [&, check = rows.events.beforePost, id = 8]() mutable {
      check();
      if (id > 9) return;
      const std::string text = std::to_string(id++);
      store::Query(other_.database(),
                   "INSERT INTO GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (" + text + ", '" +
                       text + "', '" + text + "', 1)")
          .execute();
    };
    rows["GLAccount"] = number;
    rows["AccountName"] = "Rent";
    rows["AccountType"] = 4;
    return input.click(account, *account.find("btnOK")).error;
  };
  EXPECT_EQ(save("9"), "Account no. and Name must be unique") << "the other process has this number by now";
  session_.app().dismiss(*session_.app().find("frmGLAccount"));
  EXPECT_EQ(left(), "3 2 ");
  store::Query(other_.database(), "DELETE FROM GLAccnt WHERE GLAccountID > 7").execute();
  EXPECT_EQ(save("5000"), "");
  store::Query saved(other_.database(), "SELECT GLAccountID FROM GLAccnt WHERE GLAccount = '5000'");
  saved.open();
  EXPECT_EQ(saved.field(0).value(), store::Value(10));
}

}  // namespace
}  // namespace quillon::ledger
