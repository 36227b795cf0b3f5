// Two clerks reconcile one bank, while vouchers are posted and unposted: every row is ticked and reconciled as they
// left it, and the figures are those of the rows.
//
// Method of the random work: both work through their screens, in turn; the model keeps the flags of each row by what
// the commands say. A clerk who touches a row that the other one changed is told, and changes nothing.
#include <gtest/gtest.h>

#include <array>
#include <map>

#include "form/Grid.h"
#include "form/Input.h"
#include "form/Table.h"
#include "form/Transaction.h"
#include "ledger/PostVouchers.h"
#include "ledger/Screens.h"
#include "shell/Session.h"
#include "store/schema/CreateCompany.h"
#include "support/LedgerFigures.h"
#include "support/ScriptedPerson.h"
#include "support/SeededRandom.h"
#include "support/SimDesktop.h"
#include "support/SimProcess.h"
#include "support/Trials.h"

namespace quillon::ledger {
namespace {

using store::Value;

// One clerk's process, with the reconciliation on view.
class Clerk {
 public:
  Clerk(sim::SimDisk& disk, sim::SimClock& clock, int number)
      : files_(disk.process()),
        session_(store::Environment{*files_, clock, "clerk " + std::to_string(number), "PC", number}, person,
                 desktop_) {
    shell::registerScreens(session_);
    ledger::registerScreens(session_);
    session_.attach(sim::kSharedFolder);
    screen_ = &session_.app().open("TfrmBankRec");
  }
  ~Clerk() { session_.detach(); }
  store::Database& database() { return session_.database(); }
  store::Cursor& rows() { return *screen_->tables().front(); }
  form::Ended click(const char* control) { return input_.click(*screen_, *screen_->find(control)); }
  form::Ended space() { return input_.key(*screen_, "Space"); }
  std::string figures() { return screen_->find("lblFigures")->caption(); }

  sim::ScriptedPerson person;

 private:
  std::unique_ptr<store::FileSystem> files_;
  sim::SimDesktop desktop_;
  shell::Session session_;
  form::Input input_{session_.app()};
  form::Screen* screen_ = nullptr;
};

class TwoAtReconciliation : public testing::Test {
 protected:
  struct Flags {
    Money amount;
    bool reconciled = false, ticked = false;
    bool operator==(const Flags&) const = default;
  };
  using Model = std::map<int, Flags>;  // by GLHistID

  TwoAtReconciliation() {
    disk_.process()->makeFolder(sim::kSharedFolder);
    setUp_.open();
    store::createCompanyTables(setUp_.database());
    for (const char* row :
         {"INSERT INTO Company (CompanyName, FiscalYear, DefaultCurrencyID) VALUES ('Pine', 2026, 1)",
          "INSERT INTO GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (1, '1', 'Bank', 1)",
          "INSERT INTO GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (2, '2', 'Sales', 3)",
          "INSERT INTO Currency (CurrencyID, CurrencyName, APGLAccountID, APDiscGLAccountID, ARGLAccountID, "
          "ARDiscGLAccountID) VALUES (1, 'Home', 1, 1, 1, 1)",
          "INSERT INTO Bank (BankID, BankName, BankGLAccountID, CurrencyID) VALUES (1, 'Main', 1, 1)",
          "UPDATE JVCtl SET NextJVID = 1000"})
      run(row);
    for (int id = 1; id <= kVouchers; ++id) {
      const std::string jv = std::to_string(id), amount = std::to_string(id * 3 % 7 - 2);
      run("INSERT INTO JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, JVAmount, Posted, "
          "AutoReverse) VALUES (" +
          jv + ", 2026, 1, " + jv + ", 'GL', 'JV', '2026-01-0" + jv + "', ABS(" + amount + "), false, false)");
      run("INSERT INTO JVDet (JVID, Seq, GLAccountID, GLAmount) VALUES (" + jv + ", 1, 1, " + amount + ")");
      run("INSERT INTO JVDet (JVID, Seq, GLAccountID, GLAmount) VALUES (" + jv + ", 2, 2, 0 - " + amount + ")");
    }
    for (int number : {1, 2}) clerks_.push_back(std::make_unique<Clerk>(disk_, clock_, number));
  }

  void run(const std::string& statement) { store::Query(setUp_.database(), statement).execute(); }
  static Model stored(store::Database& database) {
    store::Query rows(database, "SELECT GLHistID, Amount, Reconciled, Reconciling FROM GLHist WHERE GLAccountID = 1");
    rows.open();
    Model all;
    for (; !rows.eof(); rows.next())
      all[rows["GLHistID"].asInt()] = {rows["Amount"].asMoney(), rows["Reconciled"].asBool(),
                                       rows["Reconciling"].asBool()};
    return all;
  }
  // Posts the voucher, or unposts it.
  void turn(store::Database& database, int voucher, Model& model) {
    store::Query posted(database, "SELECT Posted FROM JV WHERE JVID = " + std::to_string(voucher));
    posted.open();
    const bool out = posted["Posted"].asBool();
    form::transact(database, kPostingTables, [&] {
      PostVouchers ledger(database);
      out ? ledger.unpost(voucher) : ledger.post(voucher);
    });
    const Model now = stored(database);
    std::erase_if(model, [&](const auto& row) { return !now.contains(row.first); });
    for (const auto& [id, flags] : now) model.try_emplace(id, Flags{flags.amount});
  }
  static std::string figuresOf(const Model& model) {
    Money balance, outstanding;
    for (const auto& [id, row] : model) {
      balance += row.amount;
      if (!row.reconciled && !row.ticked) outstanding += row.amount;
    }
    const form::ConverterPtr money = form::moneyConverter({});
    return "Balance: " + money->show(balance) + "       Outstanding: " + money->show(outstanding) +
           "       Adjusted Balance: " + money->show(balance - outstanding);
  }

  static constexpr int kVouchers = 9;
  sim::SimDisk disk_;
  sim::SimClock clock_;
  sim::SimProcess setUp_{disk_, clock_, {}};
  std::vector<std::unique_ptr<Clerk>> clerks_;
};

TEST_F(TwoAtReconciliation, LeaveEveryRowAsTheyMarkedIt) {
  const sim::Trials trials = sim::Trials::fromEnvironment();
  const std::uint64_t seed = trials.seed.value_or(1);
  SCOPED_TRACE(sim::Trials::repeating(seed, "test_ledger", "TwoAtReconciliation*"));
  sim::SeededRandom random(seed);
  Model model;
  int refused = 0, ticked = 0;
  const auto eachListed = [&](const auto& change) {
    for (auto& [id, row] : model)
      if (!row.reconciled) change(row);
  };
  for (std::uint64_t step = 0; step < trials.aim(600, 6000); ++step) {
    Clerk& clerk = *clerks_[random.below(2)];
    form::Ended ended;
    bool anew = true;  // whether the figures are read anew
    if (const std::size_t deed = random.below(12); deed < 2) {
      turn(clerk.database(), 1 + static_cast<int>(random.below(kVouchers)), model);
      anew = false;
    } else if (deed < 8) {
      if (random.oneIn(2)) clerk.rows().goTo(1 + random.below(kVouchers));
      const int id = clerk.rows().isEmpty() ? 0 : clerk.rows()["GLHistID"].asInt();
      ended = clerk.space();
      const std::string told = clerk.person.takeHeard();
      ASSERT_TRUE(ended.ok || told.find("has been changed or deleted since last retrieved") != std::string::npos);
      if (ended.ok && id != 0) model.at(id).ticked = !model.at(id).ticked;
      ++(ended.ok ? ticked : refused);
      anew = id != 0;
    } else if (deed < 10) {
      ended = clerk.click(deed == 8 ? "btnSelectAll" : "btnSelectNone");
      eachListed([&](Flags& row) { row.ticked = deed == 8; });
    } else if (deed == 10) {
      ended = clerk.click("btnReconcile");
      eachListed([](Flags& row) { row.reconciled = row.ticked; });
    } else {
      clerk.person.answers = {form::Button::yes};
      ended = clerk.click("mnuUnreconcile");
      for (auto& [id, row] : model)
        if (row.reconciled) row = {row.amount};
    }
    if (!anew) clerk.click("mnuRefresh");
    ASSERT_EQ(stored(setUp_.database()), model) << "step " << step;
    ASSERT_EQ(clerk.figures(), figuresOf(model)) << "step " << step;
    if (step % 10 == 0) {
      ASSERT_EQ(sim::auditText(setUp_.database()), "") << "step " << step;
    }
  }
  EXPECT_GT(ticked, 20);
  EXPECT_GT(refused, 2);
}

// All or none: a row that somebody has at this moment is asked about, for a single tick as for all.
TEST_F(TwoAtReconciliation, AskAboutARowThatSomebodyHas) {
  Model model;
  for (int voucher = 1; voucher <= kVouchers; ++voucher) turn(setUp_.database(), voucher, model);
  Clerk& clerk = *clerks_.front();
  ASSERT_TRUE(clerk.click("mnuRefresh").ok);
  store::Cursor held(setUp_.database(), "GLHist");
  held.open();
  held.edit();
  for (const bool all : {false, true}) {
    clerk.person.answers = {form::Button::yes, form::Button::no};
    const form::Ended ended = all ? clerk.click("btnSelectAll") : clerk.space();
    EXPECT_TRUE(ended.aborted);
    EXPECT_TRUE(clerk.person.answers.empty());
    EXPECT_NE(clerk.person.takeHeard().find("The 'tblGLHist' record you are trying to edit or delete is currently "
                                            "locked. Do you want to try again?"),
              std::string::npos);
    EXPECT_EQ(stored(setUp_.database()), model);
  }
  held.cancel();
  EXPECT_TRUE(clerk.click("btnSelectAll").ok);
  for (auto& [id, row] : model) row.ticked = true;
  EXPECT_EQ(stored(setUp_.database()), model);
}

}  // namespace
}  // namespace quillon::ledger
